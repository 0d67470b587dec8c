#include "tripkit/events.h"

#include <algorithm>

#include "tripkit/json_fields.h"
#include "tripkit/resources.h"

namespace tripkit {

const EventCalendar& EventCalendar::shipped() {
    static const EventCalendar calendar =
        resources::decodeShipped<EventCalendar>(resources::disneyEvents, "disney-events.json");
    return calendar;
}

std::vector<Day> EventCalendar::busyDays() const {
    std::vector<Day> days;
    for (const Event& e : events) {
        if (!e.busy) continue;
        for (Day d = e.first; d <= e.last; d += 1) days.push_back(d);
    }
    // Busy spans overlap (spring break and Easter, a race during a school
    // break), so the same day can come from several events.
    std::sort(days.begin(), days.end());
    days.erase(std::unique(days.begin(), days.end()), days.end());
    return days;
}

bool EventCalendar::isBusy(Day d) const {
    return std::any_of(events.begin(), events.end(),
                       [&](const Event& e) { return e.busy && e.days().contains(d); });
}

std::vector<Event> EventCalendar::busyOverlapping(const DayRange& r) const {
    std::vector<Event> out;
    for (const Event& e : events) {
        if (e.busy && e.overlaps(r)) out.push_back(e);
    }
    return out;
}

template <>
struct json::Fields<Event> {
    static constexpr auto list = std::tuple{
        json::field("name", &Event::name),   json::field("nameEs", &Event::nameEs),
        json::field("first", &Event::first), json::field("last", &Event::last),
        json::field("busy", &Event::busy),   json::field("estimated", &Event::estimated)};
    // A reversed span is a typo in the file, not an event to turn around.
    static void check(const json::Value& v, Event& e) {
        if (e.last < e.first) v.fail("first " + e.first.text() + " is after last " + e.last.text());
    }
};

template <>
struct json::Fields<EventCalendar::Source> {
    using T = EventCalendar::Source;
    static constexpr auto list =
        std::tuple{json::field("name", &T::name), json::field("nameEs", &T::nameEs),
                   json::field("url", &T::url)};
};

template <>
struct json::Fields<EventCalendar> {
    using T = EventCalendar;
    static constexpr auto list =
        std::tuple{json::field("asOf", &T::asOf), json::field("sources", &T::sources),
                   json::field("events", &T::events)};
};

TRIPKIT_JSON_CODEC(Event)

TRIPKIT_JSON_CODEC(EventCalendar::Source)

TRIPKIT_JSON_CODEC(EventCalendar)

}  // namespace tripkit
