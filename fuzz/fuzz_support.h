// What every fuzz target shares: the bytes go to the decoder the application
// uses, and a record that decodes is checked to survive its own encoding.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "tripkit/days.h"
#include "tripkit/json.h"

namespace roamwise::fuzz {

inline std::string_view bytesOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// The record the bytes decode to, or nothing when the decoder rejects them
// (the only exception a decoder of a file may throw).
template <class T>
std::optional<T> decoded(const std::uint8_t* data, std::size_t size) {
    try {
        return tripkit::json::decodeDocument<T>(bytesOf(data, size), "fuzz");
    } catch (const tripkit::json::DecodeError&) {
        return std::nullopt;
    }
}

[[noreturn]] inline void fail(const char* what) {
    std::fprintf(stderr, "fuzz: %s\n", what);
    std::abort();
}

// A record's fast reader must read a file exactly as the DOM decoder does
// (`same`), or leave it to the DOM decoder.
template <class T, class Same>
void checkFastReader(const std::uint8_t* data, std::size_t size, Same same) {
    const simdjson::padded_string padded(bytesOf(data, size));
    const std::optional<T> fast = T::readFast(padded.data(), padded.size());
    if (!fast) return;
    std::optional<T> tree;
    try {
        tree = tripkit::json::decodeTree<T>(bytesOf(data, size), "fuzz");
    } catch (const tripkit::json::DecodeError&) {
        fail("the fast reader took a file the DOM decoder refuses");
    }
    if (!same(*fast, *tree)) fail("the fast reader and the DOM decoder read different records");
}

// Records the application writes (saved state, the widget file, watches)
// must read back as themselves; anything else means a value was lost or
// invented on the way. Downloaded files are cached byte for byte, so their
// encoders only have to write something that decodes again (a calendar's two
// spellings of one day rightly collapse into one).
enum class Fidelity { exact, decodes };

template <class T>
void checkRoundTrip(const T& value, Fidelity kind = Fidelity::exact) {
    const std::string text = encode(value).dump();
    std::optional<T> again;
    try {
        again = tripkit::json::decodeDocument<T>(text, "fuzz-roundtrip");
    } catch (const tripkit::json::DecodeError& e) {
        std::fprintf(stderr, "fuzz: encoded record does not decode: %s\n%s\n", e.what(),
                     text.c_str());
        std::abort();
    }
    if (kind == Fidelity::exact && !(*again == value)) {
        std::fprintf(stderr, "fuzz: record changed on its way through JSON:\n%s\n", text.c_str());
        std::abort();
    }
}

// The day the logic is run for when the record does not give one.
inline tripkit::Day fuzzToday() { return tripkit::Day::fromCivil(2026, 11, 20); }

}  // namespace roamwise::fuzz
