// The fare model of the sample data: what a round trip costs from one origin
// to one place, leaving on one day, seen on one night; and the cheapest
// price of each night, of which today's is the headline deal.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "feedgen/airlines.h"
#include "feedgen/random.h"
#include "tripkit/days.h"
#include "tripkit/destinations.h"
#include "tripkit/places.h"

namespace roamwise::feedgen {

// How the time of year moves a place's fares.
enum class Season { plain, ski, sun };
// How far a place is, which sets trip lengths and blank days.
enum class Reach { domestic, near, far };

struct Route {
    const tripkit::Destination* place = nullptr;
    Key key;
    double miles = 0;
    double base = 0;  // a network carrier's nonstop round trip at a plain time
    Season season = Season::plain;
    Reach reach = Reach::domestic;
    std::int64_t phase = 0;  // shifts the route's market waves
    std::vector<RouteCarrier> carriers;
};

// One calendar cell before it is written.
struct Cell {
    int ahead = 0;     // departure - today
    int nights = -1;   // -1: one way
    int carrier = 0;   // index into the route's carriers
    double price = 0;  // whole dollars once the calendar is priced
    int seenAgo = -1;  // today - seen; -1: no seen day
};

// One Orlando one-way option before it is written.
struct OrlandoOption {
    int carrier = 0;
    int stops = 0;
    double price = 0;  // whole dollars
    int seenAgo = 0;
};

// The factors that depend only on the night and the departure day, worked
// out once per night and shared by every route.
struct Night {
    static constexpr int kHorizon = 330;   // departure days offered, today included
    static constexpr int kMaxNights = 16;  // longest trip
    static constexpr int kSpan = kHorizon + kMaxNights;
    static constexpr int kHistoryNights = 180;

    tripkit::Day today;
    std::uint64_t seed = 0;
    std::array<std::vector<double>, 3> season;  // by Season, per day ahead
    std::vector<double> holiday;                // per day ahead
    std::vector<int> weekday;                   // per day ahead, 1 = Sunday
    std::vector<double> advance;                // per day ahead

    static Night make(tripkit::Day today, std::uint64_t seed);
};

// Round trip of a network carrier's nonstop at a plain time, before the
// route's own popularity.
double baseRoundTrip(double miles, bool domestic);
double stopsFactor(int stops);

Route makeRoute(const Night& night, const tripkit::Airport& origin,
                const tripkit::Destination& place, double miles);

// The cheapest round trip found on `night` (any night, not only today's);
// 0 on a night the search found nothing. Whole dollars.
double historyPrice(const Route& route, std::int64_t night);

// The day-by-day calendar of a route as of `night.today`, priced so that its
// cheapest fresh cell costs today's history price. `best` is that cell's
// index (-1 when the route has no fresh cell at all).
std::vector<Cell> calendarCells(const Night& night, const Route& route, int& best);

// The options of one day to or from Orlando; empty on a day without fares.
std::vector<OrlandoOption> orlandoOptions(const Night& night, const Route& route, int ahead,
                                          bool toOrlando, int optionsPerDay);

}  // namespace roamwise::feedgen
