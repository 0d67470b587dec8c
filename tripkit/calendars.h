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

// One calendar fare held compactly: days as day counts, the airline and the
// origin as indexes into the tables of the book or calendar that holds it.
struct CalendarFare {
    static constexpr std::int32_t noDay = INT32_MIN;

    double price = 0;
    std::int32_t depart = 0;
    std::int32_t back = noDay;  // return day, or noDay for a one-way fare
    std::int32_t seen = noDay;
    std::int32_t stops = 0;
    std::uint32_t airline = 0;
    std::uint32_t origin = 0;

    Day departDay() const { return Day{depart}; }
    std::optional<Day> returnDay() const {
        return back == noDay ? std::nullopt : std::optional<Day>(Day{back});
    }
    std::optional<Day> seenDay() const {
        return seen == noDay ? std::nullopt : std::optional<Day>(Day{seen});
    }
    bool oneWay() const { return back == noDay; }
    friend bool operator==(const CalendarFare&, const CalendarFare&) = default;
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
    // destination code -> its fares, in the file's order of departure days
    std::map<std::string, std::vector<CalendarFare>, std::less<>> routes;
    std::vector<std::string> airlines;  // what CalendarFare::airline indexes
    // Cells the decoder dropped because their values cannot be true (see
    // `decode`); the caller reports them.
    int skippedImpossible = 0;

    // A book built from values (each trip goes to its destination's route;
    // its origin and link are not kept: the book's origin stands for all).
    static CalendarBook init(std::string origin, std::string updated,
                             const std::vector<RoundTrip>& trips);
    void add(const RoundTrip& trip);

    std::optional<Day> updatedDay() const { return Day::parse(updated); }
    // The trips to `to` in file order, built on demand.
    std::vector<RoundTrip> trips(std::string_view to) const;
    std::size_t tripCount() const;

    // Same origin, updated text and trips (airline tables may differ in order).
    friend bool operator==(const CalendarBook& a, const CalendarBook& b);

    // A whole calendar file read with simdjson's On-Demand API: no tape and
    // nothing allocated per value. Gives nothing for any file but a plainly
    // written one (see calendars.cpp); the DOM decoder then reads it and says
    // what is wrong. SIMDJSON_PADDING bytes after `data + size` must be readable.
    static std::optional<CalendarBook> readFast(const char* data, std::size_t size);
};

// The books of the home airports merged: per destination, the departure days
// that have a fare in day order, each with the cheapest fare from any book
// (ties go to the earlier book).
struct FareCalendar {
    using Row = std::vector<CalendarFare>;  // sorted by depart, one per day
    std::map<std::string, Row, std::less<>> byDestination;
    std::vector<std::string> origins;   // what CalendarFare::origin indexes
    std::vector<std::string> airlines;  // what CalendarFare::airline indexes

    FareCalendar() = default;
    explicit FareCalendar(const std::vector<CalendarBook>& books);
    // Merges one more book (a later home airport: it wins only strictly lower
    // prices), so books can be dropped as soon as they are read.
    void add(const CalendarBook& book);

    bool isEmpty() const { return byDestination.empty(); }
    // The fare held for (to, depart), as a trip.
    std::optional<RoundTrip> trip(std::string_view to, Day depart) const;
    // A held fare as a trip to `to`.
    RoundTrip roundTrip(std::string_view to, const CalendarFare& fare) const;

    // Calls visit(const CalendarFare&) for each fare to `to` that may be shown
    // on `from` (today), in departure order, without building trips.
    template <class F>
    void forEachUsable(std::string_view to, Day from, F&& visit) const {
        auto route = byDestination.find(to);
        if (route == byDestination.end()) return;
        forEachUsable(route->second, from, visit);
    }
    template <class F>
    static void forEachUsable(const Row& row, Day from, F&& visit) {
        for (const CalendarFare& fare : row) {
            if (usable(fare, from)) visit(fare);
        }
    }
    // Seen at most a week before `from`, leaving from `from` to 330 days on.
    static bool usable(const CalendarFare& fare, Day from);

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
};

void decode(const json::Value& v, RoundTrip& out);
void decode(const json::Value& v, CalendarBook::Entry& out);
// Decodes a calendar file. An undated cell is dropped, an unreadable return
// makes a one-way fare, an unreadable seen is the file's day. A cell whose
// values cannot be true is dropped and counted in `skippedImpossible`: a
// price that is not a positive finite number, negative stops, a return
// before the departure, a seen day after the file's `updated` day (the job
// cannot have seen a fare after it published it; today is not known here),
// or a day beyond what a day count of 32 bits holds.
void decode(const json::Value& v, CalendarBook& out);
json::Json encode(const RoundTrip& t);
json::Json encode(const CalendarBook::Entry& e);
json::Json encode(const CalendarBook& b);

}  // namespace tripkit

template <>
struct std::hash<tripkit::RoundTrip> {
    std::size_t operator()(const tripkit::RoundTrip& t) const noexcept;
};
