// Which airlines fly a route and how: a small table of where the real
// carriers have hubs, focus cities and gateways, good enough to make the
// airline of a sample fare believable (JetBlue from JFK to San Juan, Spirit
// from Fort Lauderdale, TAP to Lisbon) without claiming to be a schedule.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tripkit/destinations.h"
#include "tripkit/places.h"

namespace roamwise::feedgen {

// One airline on one route.
struct RouteCarrier {
    std::string_view code;
    bool lowCost = false;
    double priceFactor = 1;  // against a network carrier's fare
    int stops = 0;           // fewest stops it offers on the route
};

// The airlines that fly from `origin` to `destination`, `distanceMiles`
// apart, in a fixed order (network carriers first). Never empty: some
// network carrier always sells a connection.
std::vector<RouteCarrier> carriersFor(const tripkit::Airport& origin,
                                      const tripkit::Destination& destination,
                                      double distanceMiles);

}  // namespace roamwise::feedgen
