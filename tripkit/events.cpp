#include "tripkit/events.h"

#include <algorithm>

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

void decode(const json::Value& v, Event& out) {
    out.name = v.get<std::string>("name");
    out.nameEs = v.get<std::string>("nameEs");
    out.first = v.get<Day>("first");
    out.last = v.get<Day>("last");
    out.busy = v.get<bool>("busy");
    out.estimated = v.get<bool>("estimated");
    // A reversed span is a typo in the file, not an event to turn around.
    if (out.last < out.first) {
        v.fail("first " + out.first.text() + " is after last " + out.last.text());
    }
}

void decode(const json::Value& v, EventCalendar::Source& out) {
    out.name = v.get<std::string>("name");
    out.nameEs = v.get<std::string>("nameEs");
    out.url = v.get<std::string>("url");
}

void decode(const json::Value& v, EventCalendar& out) {
    out.asOf = v.get<std::string>("asOf");
    out.sources = v.get<std::vector<EventCalendar::Source>>("sources");
    out.events = v.get<std::vector<Event>>("events");
}

json::Json encode(const Event& e) {
    json::Json out = json::Json::object();
    out["name"] = e.name;
    out["nameEs"] = e.nameEs;
    out["first"] = encode(e.first);
    out["last"] = encode(e.last);
    out["busy"] = e.busy;
    out["estimated"] = e.estimated;
    return out;
}

json::Json encode(const EventCalendar::Source& s) {
    json::Json out = json::Json::object();
    out["name"] = s.name;
    out["nameEs"] = s.nameEs;
    out["url"] = s.url;
    return out;
}

json::Json encode(const EventCalendar& c) {
    json::Json out = json::Json::object();
    out["asOf"] = c.asOf;
    out["sources"] = json::array(c.sources);
    out["events"] = json::array(c.events);
    return out;
}

}  // namespace tripkit
