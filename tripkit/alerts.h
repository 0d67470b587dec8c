// Price watches and the alerts they raise: which watches have news after the
// nightly files were read, and the notification each alert becomes. All of
// it runs on the user's computer; watches never leave it.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "tripkit/calendars.h"
#include "tripkit/days.h"
#include "tripkit/json.h"
#include "tripkit/park_guide.h"
#include "tripkit/trip_planner.h"
#include "tripkit/trip_search.h"

namespace tripkit {

struct Watch {
    // The cheapest round trip to one destination.
    struct Route {
        std::string code;   // destination code
        std::string place;  // its display name, so the watch shows without the catalog
        std::optional<DayRange> window;  // departure and return days; absent: any
        friend bool operator==(const Route&, const Route&) = default;
    };
    // The whole-trip total of a theme-park trip around a chosen stay. Kept
    // as "disney" for both resorts: a search that takes only Universal
    // Orlando hotels is a Universal trip.
    struct Disney {
        TripSearch search;
        DayRange window;  // the chosen stay, check-in to check-out
        // Only Universal classes, or only hotels of `universal` (the shipped
        // guide without one).
        bool isUniversal(const ParkGuide* universal = nullptr) const;
        friend bool operator==(const Disney&, const Disney&) = default;
    };
    using Kind = std::variant<Route, Disney>;

    std::string id;  // a UUID in its upper-case text form
    Kind kind;
    std::optional<double> target;  // absent: alert on any drop of $5 or more
    Day created;
    std::optional<double> lastPrice;
    std::optional<double> lastAlerted;
    std::optional<Day> lastChecked;

    // The place, or the trip's name, as alerts and lists show it.
    std::string name() const;
    // Whether the dates watched lie wholly before today ("These dates have passed").
    bool hasPassed(Day today) const;

    // A version 4 UUID text from 128 random bits.
    static std::string makeID(std::uint64_t high, std::uint64_t low);
    static bool isID(std::string_view text);
    friend bool operator==(const Watch&, const Watch&) = default;
};

struct WatchAlert {
    enum class Reason { reachedTarget, dropped };
    std::string watchID;
    double price = 0;
    std::optional<double> previous;
    Reason reason = Reason::dropped;
    friend bool operator==(const WatchAlert&, const WatchAlert&) = default;
};

// One desktop notification for an alert.
struct AlertNotification {
    static constexpr const char* watchKey = "watch";  // user information: the watch's id

    std::string title;
    std::string body;
    std::string identifier;  // "watch-" + id + "-" + the day, shared prefix per watch
    // What the notification carries for its response: watchKey -> the watch's id.
    std::map<std::string, std::string> userInfo;

    static AlertNotification of(const Watch& watch, const WatchAlert& alert, Day today);
};

struct Alerts {
    static constexpr double minDrop = 5.0;    // "Any drop" means $5 or more
    static constexpr double repeatMargin = 0.5;  // a price this close to the last alert is not news
    static constexpr int tripDaysAround = 3;  // theme-park watches: check-ins this many days either side

    // The whole-trip total of a theme-park watch's best check-in around its
    // stay, or nothing without a price; the planner supplies it.
    using TripPricer = std::function<std::optional<double>(const Watch::Disney&, Day today)>;

    // The lowest calendar price of a route watch among trips seen at most
    // Freshness::freshDays ago, leaving today or later, inside its window.
    static std::optional<double> routePrice(const Watch::Route& route, const FareCalendar& calendar,
                                            Day today);
    // Checks one watch against its current price and records the check on
    // it; with no price the watch is left unchanged.
    static std::optional<WatchAlert> check(Watch& watch, std::optional<double> price, Day today);
    // Theme-park watches priced by the planner: the lowest total of the
    // check-ins from `tripDaysAround` days before the chosen one to as many
    // after, at the cheapest hotel the saved search allows and within its
    // date limits; the watch's own target stands in for the search's
    // budget. `inputs` gives the fares and home airport (its `today`,
    // `checkIns` and `applyBudget` are set per watch); the guides must
    // outlive the pricer.
    static TripPricer tripPricer(const ParkGuide& disney, const ParkGuide& universal,
                                 PlanInputs inputs);
    // Every watch, in order; theme-park watches only when `trips` is given.
    static std::vector<WatchAlert> checkAll(std::vector<Watch>& watches, const FareCalendar& calendar,
                                            const TripPricer& trips, Day today);
};

void decode(const json::Value& v, Watch& out);
void decode(const json::Value& v, WatchAlert& out);
json::Json encode(const Watch& w);
json::Json encode(const WatchAlert& a);
std::string_view reasonText(WatchAlert::Reason reason);

}  // namespace tripkit
