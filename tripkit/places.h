// Airports a user may call home, the shipped catalog of them and the distance
// between them.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tripkit/json.h"

namespace tripkit {

struct Airport {
    std::string code;  // IATA, upper case; the identity
    std::string city;
    std::string state;  // two-letter U.S. state or territory
    std::string name;
    double lat = 0;
    double lon = 0;

    std::string label() const { return city + ", " + state + " (" + code + ")"; }
    // The texts a search field matches against.
    std::vector<std::optional<std::string>> searchFields() const;
    friend bool operator==(const Airport&, const Airport&) = default;
};

// Great-circle distance on a sphere of radius 3958.8 miles.
double distanceMiles(double lat1, double lon1, double lat2, double lon2);
inline double distanceMiles(const Airport& a, const Airport& b) {
    return distanceMiles(a.lat, a.lon, b.lat, b.lon);
}

void decode(const json::Value& v, Airport& out);
json::Json encode(const Airport& a);

// The home-airport catalog: the list in file order and the same airports by
// code.
struct Airports {
    std::vector<Airport> list;
    std::map<std::string, Airport> byCode;

    // The catalog compiled into the library ("airports.json"), decoded once.
    static const Airports& shipped();
    // Builds `byCode`; throws std::invalid_argument when a code repeats.
    static Airports fromList(std::vector<Airport> list);

    const Airport* find(std::string_view code) const;
    // Airports within `withinMiles` of the one with `code` (itself left out),
    // nearest first, at most `limit`; empty for an unknown code.
    std::vector<Airport> nearby(const std::string& code, double withinMiles, int limit) const;
};

// A JSON array of airports; a repeated code fails at the repeating element.
void decode(const json::Value& v, Airports& out);

}  // namespace tripkit
