// One theme-park trip request: who travels, how long, which hotels, tickets
// and extras, which dates and which flights. The planner prices it for every
// check-in date; a park watch keeps it.
#pragma once

#include <optional>
#include <string>

#include "tripkit/park_guide.h"
#include "tripkit/fares.h"
#include "tripkit/json.h"
#include "tripkit/party.h"

namespace tripkit {

// Decoding refuses what no stay can be: more than `maxNights` nights, more
// park days than the stay has days (nights + 1), a negative food budget or
// total budget.
struct TripSearch {
    static constexpr int maxNights = 365;  // a stay of a year at most

    std::string origin;  // the main home airport
    Party party;
    int nights = 4;
    int parkDays = 3;
    ResortChoice resorts;
    bool parkHopper = false;
    LightningLaneChoice lightningLane;
    std::optional<bool> epicUniverse;  // Universal only
    TransportChoice transport = TransportChoice::rideshare;
    std::optional<FoodBudget> food;
    DateWindow window;
    FareFilter fares;  // which flights count
    std::optional<double> maxTotal;  // the whole trip's budget; absent is none
    friend bool operator==(const TripSearch&, const TripSearch&) = default;
};

void decode(const json::Value& v, TripSearch& out);
json::Json encode(const TripSearch& s);

}  // namespace tripkit
