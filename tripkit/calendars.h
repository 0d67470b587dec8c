// Fare calendars: per origin, the cheapest round trip found for each
// departure day to each destination ("calendars/CODE.json" on the data host),
// merged across the home airports into one day-by-day calendar.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tripkit/days.h"
#include "tripkit/json.h"

namespace tripkit {

// One round trip (or one-way fare) as the calendars and getaways pass it on.
struct RoundTrip {
    std::string origin;
    std::string destination;
    Day depart;
    std::optional<Day> returnDay;  // absent: one way
    double price = 0;              // dollars per person, whole trip
    std::string airline;
    int stops = 0;
    std::optional<Day> seen;
    std::optional<std::string> link;  // calendar files never carry one

    std::optional<std::int64_t> nights() const;
    // Seen more than three days before today; a trip without `seen` never is.
    bool isStale(Day today) const;
    friend bool operator==(const RoundTrip&, const RoundTrip&) = default;
};

// One calendar file. Cells are written positionally to keep the nightly file
// small: [price, airline, stops, back or null, seen].
struct CalendarBook {
    // One cell as it stands in the file; `back` and `seen` are day texts.
    struct Entry {
        double price = 0;
        std::string airline;
        int stops = 0;
        std::optional<std::string> back;
        std::optional<std::string> seen;
        friend bool operator==(const Entry&, const Entry&) = default;
    };

    std::string origin;
    std::string updated;  // day text, kept as written
    // destination code -> its trips, in the file's order of departure days
    std::map<std::string, std::vector<RoundTrip>> routes;

    std::optional<Day> updatedDay() const { return Day::parse(updated); }
    friend bool operator==(const CalendarBook&, const CalendarBook&) = default;
};

// The books of the home airports merged: per destination and departure day,
// the cheapest trip from any of them (ties go to the earlier book).
struct FareCalendar {
    std::map<std::string, std::map<Day, RoundTrip>> byDestination;

    FareCalendar() = default;
    explicit FareCalendar(const std::vector<CalendarBook>& books);

    bool isEmpty() const { return byDestination.empty(); }

    // The trips to `to` that may be shown on `from` (today): seen at most a
    // week before, leaving from today to 330 days on; by departure day.
    std::vector<RoundTrip> trips(std::string_view to, Day from) const;
    // The same for every destination, by departure day (then destination).
    std::vector<RoundTrip> allTrips(Day from) const;
    // The cheapest usable trip of each month that has one, in month order.
    std::vector<std::pair<YearMonth, RoundTrip>> months(std::string_view to, Day from) const;
    // `best` of the usable trips to `to`; with `within`, only trips that leave
    // and (when they have a return) come back inside it.
    std::optional<RoundTrip> cheapest(std::string_view to, std::optional<DayRange> within, Day from,
                                      bool freshOnly) const;

    // The lowest price among the fresh trips, or among all of them when none
    // is fresh and `freshOnly` is false; equal prices go to the earlier
    // departure, then to the earlier trip in the list.
    static std::optional<RoundTrip> best(const std::vector<RoundTrip>& trips, Day today,
                                         bool freshOnly);
    friend bool operator==(const FareCalendar&, const FareCalendar&) = default;
};

void decode(const json::Value& v, RoundTrip& out);
void decode(const json::Value& v, CalendarBook::Entry& out);
void decode(const json::Value& v, CalendarBook& out);
json::Json encode(const RoundTrip& t);
json::Json encode(const CalendarBook::Entry& e);
json::Json encode(const CalendarBook& b);

}  // namespace tripkit

template <>
struct std::hash<tripkit::RoundTrip> {
    std::size_t operator()(const tripkit::RoundTrip& t) const noexcept;
};
