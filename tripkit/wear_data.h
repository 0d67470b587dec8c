// Typical weather: one day of weather, the twelve monthly values of a place,
// the shipped file of reference places, and the reduction of twenty years of
// NASA POWER daily point data to those twelve months.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tripkit/days.h"
#include "tripkit/hashing.h"
#include "tripkit/json.h"

namespace tripkit {

// One day of weather, typical or forecast. °C, km/h, percent, chances 0–1.
struct WearDay {
    enum class Source { typical, forecast };

    Day day;
    double high = 0;
    double low = 0;
    double rain = 0;
    double snow = 0;
    double humidity = 0;
    double wind = 0;
    double uv = 0;
    double hotDay = 0;     // how high a hot day at this time of year can reach
    double coldNight = 0;  // how low a cold night can go
    Source source = Source::typical;

    // Humid heat feels two degrees hotter, wind on a cold night two colder.
    double feelsHigh() const { return high >= 27 && humidity >= 70 ? high + 2 : high; }
    double feelsLow() const { return low < 10 && wind >= 20 ? low - 2 : low; }

    friend bool operator==(const WearDay&, const WearDay&) = default;
};

std::string_view caseName(WearDay::Source source);  // "typical", "forecast"
void decode(const json::Value& v, WearDay::Source& out);
json::Json encode(WearDay::Source source);

void decode(const json::Value& v, WearDay& out);
json::Json encode(const WearDay& d);

// The typical values of one calendar month.
struct WearMonth {
    double high = 0;       // mean daily maximum, °C
    double low = 0;        // mean daily minimum, °C
    double hotDay = 0;     // 90th percentile of the maxima, °C
    double coldNight = 0;  // 10th percentile of the minima, °C
    double rain = 0;       // share of days with at least 1 mm
    double snow = 0;       // share of such days with a mean of at most 1 °C
    double humidity = 0;   // mean relative humidity, percent
    double wind = 0;       // mean wind at 10 m, km/h
    double uv = 0;         // UV index
    friend bool operator==(const WearMonth&, const WearMonth&) = default;
};

void decode(const json::Value& v, WearMonth& out);
json::Json encode(const WearMonth& m);

// A reference place of the shipped file. `timeZone` (an IANA name) is ours:
// the forecast groups its hours by the place's own calendar day.
struct WearPlace {
    std::string name;
    std::string region;
    std::string country;               // two-letter code
    std::optional<std::string> alias;  // another name the place is known by
    double elevation = 0;              // metres
    double lat = 0;
    double lon = 0;
    std::string timeZone;
    std::vector<WearMonth> months;  // twelve, January first
    friend bool operator==(const WearPlace&, const WearPlace&) = default;
};

void decode(const json::Value& v, WearPlace& out);
json::Json encode(const WearPlace& p);

struct WearClimate {
    static constexpr std::string_view credit =
        "Typical weather: NASA Langley Research Center POWER Project (daily data 2006–2025, UV "
        "climatology 2001–2025).";
    static constexpr int firstYear = 2006;
    static constexpr int lastYear = 2025;
    static constexpr std::string_view host = "https://power.larc.nasa.gov";
    // Weather services ask who is calling.
    static constexpr std::string_view userAgent =
        "Roamwise/1.0 (https://roamwise.github.io; roamwise@users.noreply.github.com)";

    // The shipped file of reference places.
    struct File {
        struct Source {
            std::string name;
            std::string url;
            std::string credit;
            friend bool operator==(const Source&, const Source&) = default;
        };
        std::string asOf;
        std::string period;
        Source source;
        std::vector<WearPlace> places;

        // "wear-climate.json", decoded once.
        static const File& shipped();

        // The place called `name` (or so aliased), case, accents and
        // punctuation aside; within `country` when one is given.
        const WearPlace* find(std::string_view name, std::string_view country = {}) const;
    };

    // The daily point response. Values not above −998 (the service's fill
    // value, −999) are left out of the maps one by one.
    struct Daily {
        struct Geometry {
            std::vector<double> coordinates;  // longitude, latitude[, cell elevation m]
        };
        struct Props {
            // parameter -> date key ("YYYYMMDD") -> value
            std::map<std::string, std::map<std::string, double>> parameter;
        };
        Geometry geometry;
        Props properties;
    };

    // The UV climatology response: "ALLSKY_SFC_UV_INDEX_12" by "JAN"…"DEC".
    struct UvClimatology {
        std::array<std::optional<double>, 12> months{};
    };

    // Why a place has no monthly values.
    struct Failure : std::runtime_error {
        enum class Kind { network, decoding, incomplete };
        Failure(Kind kind, const std::string& message);
        Kind kind;
    };

    // Request paths on `host`.
    static std::string dailyPath(double lat, double lon, int fromYear = firstYear,
                                 int toYear = lastYear);
    static std::string uvPath(double lat, double lon);
    // "%.2f_%.2f" of latitude and longitude.
    static std::string cacheKey(double lat, double lon);

    // The lapse-rate offset added to the temperatures: (cell − city) × 6.5
    // °C per km, within ±8; 0 without both heights.
    static double elevationOffset(const Daily& daily, std::optional<double> cityElevation);

    // Twelve months, January first. Throws Failure (incomplete) when a month
    // has no day with both temperatures or no day with precipitation.
    static std::vector<WearMonth> reduce(const Daily& daily, const UvClimatology& uv,
                                         std::optional<double> cityElevation);

    // Fetches both responses through `fetch` (a path on `host` -> body; it
    // throws on a network error) and reduces them. Throws Failure.
    using Fetch = std::function<std::string(const std::string& path)>;
    static std::vector<WearMonth> monthly(double lat, double lon,
                                          std::optional<double> cityElevation, const Fetch& fetch);
};

void decode(const json::Value& v, WearClimate::File::Source& out);
void decode(const json::Value& v, WearClimate::File& out);
void decode(const json::Value& v, WearClimate::Daily::Geometry& out);
void decode(const json::Value& v, WearClimate::Daily::Props& out);
void decode(const json::Value& v, WearClimate::Daily& out);
void decode(const json::Value& v, WearClimate::UvClimatology& out);

}  // namespace tripkit

template <>
struct std::hash<tripkit::WearDay> {
    std::size_t operator()(const tripkit::WearDay& d) const noexcept {
        return tripkit::hashOf(d.day, d.high, d.low, d.rain, d.snow, d.humidity, d.wind, d.uv,
                               d.hotDay, d.coldNight, static_cast<int>(d.source));
    }
};
