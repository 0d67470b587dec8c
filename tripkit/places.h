// Airports a user may call home and the distance between them.
#pragma once

#include <string>
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
    friend bool operator==(const Airport&, const Airport&) = default;
};

// Great-circle distance on a sphere of radius 3958.8 miles.
double distanceMiles(double lat1, double lon1, double lat2, double lon2);
inline double distanceMiles(const Airport& a, const Airport& b) {
    return distanceMiles(a.lat, a.lon, b.lat, b.lon);
}

void decode(const json::Value& v, Airport& out);
json::Json encode(const Airport& a);

}  // namespace tripkit
