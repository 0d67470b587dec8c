// Destination climate: typical monthly weather near each destination (a
// catalog shipped with the library), the comfort of a month, and the best
// months to go, which join comfort with each month's cheapest fare.
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tripkit/calendars.h"
#include "tripkit/days.h"
#include "tripkit/destinations.h"
#include "tripkit/json.h"

namespace tripkit {

// One month of a place's normals.
struct MonthlyClimate {
    int month = 1;    // 1-12
    double high = 0;  // typical daily high, °F
    double low = 0;   // typical daily low, °F
    double rain = 0;  // typical precipitation of the month, inches
    friend bool operator==(const MonthlyClimate&, const MonthlyClimate&) = default;
};

// The climate catalog ("climate.json").
struct Climate {
    // Who measured the values and who compiled them; `name` is what the
    // credit line shows after "Weather: ".
    struct Source {
        std::string name;
        std::string url;
        std::string note;
        std::string credit() const { return "Weather: " + name; }
        friend bool operator==(const Source&, const Source&) = default;
    };

    // The normals used for one destination.
    struct Place {
        std::string name;                    // the destination
        std::optional<std::string> station;  // station id (GHCN or WMO) when known
        std::string stationName;
        double distanceKm = 0;               // from the destination's airport
        std::optional<std::string> period;   // when not the catalog's own
        std::vector<MonthlyClimate> months;  // twelve, January first

        // "Orlando International Airport (3 km away)"
        std::string stationLabel() const;
        friend bool operator==(const Place&, const Place&) = default;
    };

    std::string asOf;
    std::string period;  // "1991–2020"
    Source source;
    std::map<std::string, Place> places;  // by destination code

    // The catalog compiled into the library, decoded once.
    static const Climate& shipped();

    const Place* find(std::string_view code) const;
    // The years of a place's normals: its own when it has them, else the catalog's.
    const std::string& periodOf(const Place& place) const;

    // The comfort of a month, 0-1: a band of pleasant highs (warmer at the
    // beach), less 0.04 a degree outside it and a penalty for a wet month.
    static double comfort(const MonthlyClimate& month, bool beachBand);
    static double comfort(const MonthlyClimate& month, const Destination& place);
    // Whether `place` is judged against the beach band.
    static bool usesBeachBand(const Destination& place);

    static constexpr double beachLowF = 78, beachHighF = 90;
    static constexpr double otherLowF = 62, otherHighF = 82;
    static constexpr double wetInches = 4, veryWetInches = 6;

    static constexpr const char* noRecordText = ", so typical weather isn’t shown.";

    friend bool operator==(const Climate&, const Climate&) = default;
};

void decode(const json::Value& v, MonthlyClimate& out);
void decode(const json::Value& v, Climate::Source& out);
void decode(const json::Value& v, Climate::Place& out);
void decode(const json::Value& v, Climate& out);
json::Json encode(const MonthlyClimate& m);

// The best months to go.
struct BestTime {
    struct Pick {
        int index = 1;                  // month, 1-12
        std::optional<double> comfort;  // 0-1, when the place has a climate record
        std::optional<double> price;    // the month's cheapest round trip, dollars
        double score = 0;
        friend bool operator==(const Pick&, const Pick&) = default;
    };

    // Three stars: a season's worth of good months leaves room to fit a trip
    // around school and work, and starring more than a quarter of the year
    // would stop telling the months apart.
    static constexpr std::size_t starredCount = 3;

    // Picks from each month's comfort and cheapest price (index 0 = January),
    // best first; a month with neither gets none.
    static std::vector<Pick> picks(const std::array<std::optional<double>, 12>& comfort,
                                   const std::array<std::optional<double>, 12>& price);
    // The same for a destination: comfort from its climate place (none when
    // null) and prices from the cheapest trip of each month.
    static std::vector<Pick> picks(const Destination& place, const Climate::Place* climate,
                                   const std::vector<std::pair<YearMonth, RoundTrip>>& months);
    // Whether the pick at `position` of the ordered picks is starred.
    static bool isStarred(std::size_t position) { return position < starredCount; }

    static constexpr const char* balancedNote =
        "Starred months balance pleasant weather and price.";
    static constexpr const char* cheapestNote = "Starred months are the cheapest.";
};

}  // namespace tripkit

template <>
struct std::hash<tripkit::MonthlyClimate> {
    std::size_t operator()(const tripkit::MonthlyClimate& m) const noexcept;
};
