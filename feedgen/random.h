// Counter-based randomness: every number is a hash of what it is for
// (seed, origin, destination, day, purpose), never the next value of a
// stream, so any day's files can be made alone and two days agree on what
// they share.
#pragma once

#include <cstdint>
#include <string_view>

namespace roamwise::feedgen {

// What a random number is drawn for; part of the hash.
enum class Purpose : std::uint64_t {
    route = 1,
    market,
    marketSlow,
    marketFast,
    gap,
    cell,
    cellNight,
    cellMissing,
    tripLength,
    oneWay,
    seen,
    dealSeen,
    orlandoDay,
    orlandoOption,
    advisory,
    place,
};

inline std::uint64_t mix(std::uint64_t x) {
    // splitmix64's finaliser
    x += 0x9e3779b97f4a7c15ULL;
    x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9ULL;
    x = (x ^ (x >> 27)) * 0x94d049bb133111ebULL;
    return x ^ (x >> 31);
}

// An airport or place code as a number (codes are a few ASCII letters).
inline std::uint64_t codeKey(std::string_view code) {
    std::uint64_t key = 0;
    for (char c : code) key = key * 131 + static_cast<unsigned char>(c);
    return key;
}

struct Key {
    std::uint64_t seed = 0;
    std::uint64_t origin = 0;
    std::uint64_t destination = 0;

    std::uint64_t hash(Purpose purpose, std::int64_t day, std::uint64_t extra = 0) const {
        std::uint64_t h = mix(seed);
        h = mix(h ^ origin);
        h = mix(h ^ destination);
        h = mix(h ^ static_cast<std::uint64_t>(day));
        h = mix(h ^ static_cast<std::uint64_t>(purpose));
        return mix(h ^ extra);
    }
    // Uniform in [0, 1).
    double uniform(Purpose purpose, std::int64_t day, std::uint64_t extra = 0) const {
        return static_cast<double>(hash(purpose, day, extra) >> 11) * 0x1.0p-53;
    }
    // Uniform in [-1, 1).
    double signedUniform(Purpose purpose, std::int64_t day, std::uint64_t extra = 0) const {
        return uniform(purpose, day, extra) * 2 - 1;
    }
    // Roughly normal with mean 0 and deviation 1 (a sum of three uniforms;
    // no transcendental functions, so every machine gets the same bits).
    double bell(Purpose purpose, std::int64_t day, std::uint64_t extra = 0) const {
        const std::uint64_t h = hash(purpose, day, extra);
        const double a = static_cast<double>(h & 0x1fffff) * 0x1.0p-21;
        const double b = static_cast<double>((h >> 21) & 0x1fffff) * 0x1.0p-21;
        const double c = static_cast<double>(h >> 43) * 0x1.0p-21;
        return (a + b + c - 1.5) * 2;  // variance of the sum is 1/4
    }
    // A smooth wave in [-1, 1] through random knots `period` days apart,
    // eased between them; `phase` shifts the knots so routes do not turn
    // together.
    double smooth(Purpose purpose, std::int64_t day, std::int64_t period,
                  std::int64_t phase) const {
        const std::int64_t shifted = day + phase;
        std::int64_t knot = shifted / period;
        if (shifted % period < 0) --knot;
        const double t = static_cast<double>(shifted - knot * period) / static_cast<double>(period);
        const double eased = t * t * (3 - 2 * t);
        const double a = signedUniform(purpose, knot);
        const double b = signedUniform(purpose, knot + 1);
        return a + (b - a) * eased;
    }
};

}  // namespace roamwise::feedgen
