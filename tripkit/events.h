// The Walt Disney World events calendar: festivals, after-hours parties, race
// weekends and school-break peaks, and which days they make busy (the days
// "Skip holidays and big events" keeps a Disney stay away from).
#pragma once

#include <string>
#include <vector>

#include "tripkit/days.h"
#include "tripkit/json.h"

namespace tripkit {

struct Event {
    std::string name;
    std::string nameEs;
    Day first;
    Day last;  // inclusive
    // Crowds or hotel demand worth steering a trip around. Festivals and the
    // party seasons run for months without filling the parks, so they are
    // listed but not busy.
    bool busy = false;
    // The dates follow the event's yearly pattern rather than an announcement.
    bool estimated = false;

    DayRange days() const { return DayRange(first, last); }
    bool overlaps(const DayRange& r) const { return first <= r.last && r.first <= last; }
    friend bool operator==(const Event&, const Event&) = default;
};

// "disney-events.json": the shipped copy, or the data host's newer one.
struct EventCalendar {
    struct Source {
        std::string name;
        std::string nameEs;
        std::string url;
        friend bool operator==(const Source&, const Source&) = default;
    };

    std::string asOf;  // the day it was compiled, shown as written
    std::vector<Source> sources;
    std::vector<Event> events;  // as the file lists them (the shipped one by first day)

    // Decoded once from the copy compiled into the library.
    static const EventCalendar& shipped();

    // Every day inside a busy event, ascending, each once.
    std::vector<Day> busyDays() const;
    bool isBusy(Day d) const;
    // The busy events sharing at least one day with `r`, in file order.
    std::vector<Event> busyOverlapping(const DayRange& r) const;

    friend bool operator==(const EventCalendar&, const EventCalendar&) = default;
};

void decode(const json::Value& v, Event& out);
void decode(const json::Value& v, EventCalendar::Source& out);
void decode(const json::Value& v, EventCalendar& out);
json::Json encode(const Event& e);
json::Json encode(const EventCalendar::Source& s);
json::Json encode(const EventCalendar& c);

}  // namespace tripkit
