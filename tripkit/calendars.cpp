#include "tripkit/calendars.h"

#include <algorithm>
#include <cmath>

#include "tripkit/freshness.h"
#include "tripkit/hashing.h"

namespace tripkit {

std::optional<std::int64_t> RoundTrip::nights() const {
    if (!returnDay) return std::nullopt;
    return *returnDay - depart;
}

bool RoundTrip::isStale(Day today) const { return Freshness::isStale(seen, today); }

FareCalendar::FareCalendar(const std::vector<CalendarBook>& books) {
    for (const CalendarBook& book : books) {
        for (const auto& [to, trips] : book.routes) {
            for (const RoundTrip& trip : trips) {
                if (std::isinf(trip.price)) continue;
                auto& days = byDestination[to];
                auto [slot, inserted] = days.try_emplace(trip.depart, trip);
                // Strictly lower only: on a tie the earlier (main) airport stays.
                if (!inserted && trip.price < slot->second.price) slot->second = trip;
            }
        }
    }
}

std::vector<RoundTrip> FareCalendar::trips(std::string_view to, Day from) const {
    std::vector<RoundTrip> out;
    auto route = byDestination.find(std::string(to));
    if (route == byDestination.end()) return out;
    // The day map is ordered, so the result is already by departure day.
    for (const auto& [depart, trip] : route->second) {
        if (Freshness::isUsable(trip.seen, depart, from)) out.push_back(trip);
    }
    return out;
}

std::vector<RoundTrip> FareCalendar::allTrips(Day from) const {
    std::vector<RoundTrip> out;
    for (const auto& route : byDestination) {
        std::vector<RoundTrip> trips = this->trips(route.first, from);
        out.insert(out.end(), std::make_move_iterator(trips.begin()),
                   std::make_move_iterator(trips.end()));
    }
    // Stable: trips leaving the same day stay in destination order.
    std::stable_sort(out.begin(), out.end(),
                     [](const RoundTrip& a, const RoundTrip& b) { return a.depart < b.depart; });
    return out;
}

std::vector<std::pair<YearMonth, RoundTrip>> FareCalendar::months(std::string_view to,
                                                                  Day from) const {
    std::vector<std::pair<YearMonth, RoundTrip>> out;
    for (RoundTrip& trip : trips(to, from)) {
        const YearMonth month = YearMonth::of(trip.depart);
        // Trips come by departure day, so a month's trips are consecutive.
        if (out.empty() || out.back().first != month) {
            out.emplace_back(month, std::move(trip));
        } else if (trip.price < out.back().second.price) {
            out.back().second = std::move(trip);
        }
    }
    return out;
}

std::optional<RoundTrip> FareCalendar::cheapest(std::string_view to, std::optional<DayRange> within,
                                                Day from, bool freshOnly) const {
    std::vector<RoundTrip> candidates = trips(to, from);
    if (within) {
        std::erase_if(candidates, [&](const RoundTrip& t) {
            return !within->contains(t.depart) || (t.returnDay && !within->contains(*t.returnDay));
        });
    }
    return best(candidates, from, freshOnly);
}

std::optional<RoundTrip> FareCalendar::best(const std::vector<RoundTrip>& trips, Day today,
                                            bool freshOnly) {
    const bool anyFresh = std::any_of(trips.begin(), trips.end(),
                                      [&](const RoundTrip& t) { return !t.isStale(today); });
    if (!anyFresh && freshOnly) return std::nullopt;
    const RoundTrip* chosen = nullptr;
    for (const RoundTrip& t : trips) {
        if (anyFresh && t.isStale(today)) continue;
        if (!chosen || t.price < chosen->price ||
            (t.price == chosen->price && t.depart < chosen->depart)) {
            chosen = &t;
        }
    }
    if (!chosen) return std::nullopt;
    return *chosen;
}

void decode(const json::Value& v, RoundTrip& out) {
    out.origin = v.get<std::string>("origin");
    out.destination = v.get<std::string>("destination");
    out.depart = v.get<Day>("depart");
    out.returnDay = v.getOptional<Day>("returnDay");
    out.price = v.get<double>("price");
    out.airline = v.get<std::string>("airline");
    out.stops = v.get<int>("stops");
    out.seen = v.getOptional<Day>("seen");
    out.link = v.getOptional<std::string>("link");
}

void decode(const json::Value& v, CalendarBook::Entry& out) {
    if (!v.isArray()) v.fail("expected an array");
    std::vector<json::Value> cells;
    v.forEach([&](const json::Value& cell) { cells.push_back(cell); });
    if (cells.size() < 3 || cells.size() > 5) {
        v.fail("expected 3 to 5 elements [price, airline, stops, back, seen], found " +
               std::to_string(cells.size()));
    }
    out.price = cells[0].as<double>();
    out.airline = cells[1].as<std::string>();
    out.stops = cells[2].as<int>();
    out.back.reset();
    out.seen.reset();
    if (cells.size() > 3 && !cells[3].isNull()) out.back = cells[3].string();
    // Never written as null, but a null says "not seen" as well as a short array.
    if (cells.size() > 4 && !cells[4].isNull()) out.seen = cells[4].string();
}

void decode(const json::Value& v, CalendarBook& out) {
    out.origin = v.get<std::string>("origin");
    out.updated = v.get<std::string>("updated");
    const std::optional<Day> updated = Day::parse(out.updated);
    out.routes.clear();
    v.field("routes").forEachMember([&](std::string_view to, const json::Value& days) {
        std::vector<RoundTrip>& trips = out.routes[std::string(to)];
        days.forEachMember([&](std::string_view departText, const json::Value& cell) {
            const auto entry = cell.as<CalendarBook::Entry>();
            // A cell the job could not date or price says nothing: skip it alone.
            const std::optional<Day> depart = Day::parse(departText);
            if (!depart || !(entry.price > 0)) return;
            RoundTrip trip;
            trip.origin = out.origin;
            trip.destination = std::string(to);
            trip.depart = *depart;
            if (entry.back) trip.returnDay = Day::parse(*entry.back);
            trip.price = entry.price;
            trip.airline = entry.airline;
            trip.stops = entry.stops;
            std::optional<Day> seen = entry.seen ? Day::parse(*entry.seen) : std::nullopt;
            trip.seen = seen ? seen : updated;
            trips.push_back(std::move(trip));
        });
    });
}

json::Json encode(const RoundTrip& t) {
    json::Json out = json::Json::object();
    out["origin"] = t.origin;
    out["destination"] = t.destination;
    out["depart"] = t.depart.text();
    json::putOptional(out, "returnDay", t.returnDay);
    out["price"] = json::number(t.price);
    out["airline"] = t.airline;
    out["stops"] = t.stops;
    json::putOptional(out, "seen", t.seen);
    json::putOptional(out, "link", t.link);
    return out;
}

json::Json encode(const CalendarBook::Entry& e) {
    json::Json out = json::Json::array();
    out.push_back(json::number(e.price));
    out.push_back(e.airline);
    out.push_back(e.stops);
    // `back` keeps its place with a null so that `seen` stays fifth.
    out.push_back(e.back ? json::Json(*e.back) : json::Json());
    if (e.seen) out.push_back(*e.seen);
    return out;
}

json::Json encode(const CalendarBook& b) {
    json::Json out = json::Json::object();
    out["origin"] = b.origin;
    out["updated"] = b.updated;
    json::Json routes = json::Json::object();
    for (const auto& [to, trips] : b.routes) {
        json::Json days = json::Json::object();
        for (const RoundTrip& t : trips) {
            CalendarBook::Entry entry{t.price, t.airline, t.stops, std::nullopt, std::nullopt};
            if (t.returnDay) entry.back = t.returnDay->text();
            if (t.seen) entry.seen = t.seen->text();
            days[t.depart.text()] = encode(entry);
        }
        routes[to] = std::move(days);
    }
    out["routes"] = std::move(routes);
    return out;
}

}  // namespace tripkit

std::size_t std::hash<tripkit::RoundTrip>::operator()(const tripkit::RoundTrip& t) const noexcept {
    return tripkit::hashOf(t.origin, t.destination, t.depart, t.returnDay, t.price, t.airline,
                           t.stops, t.seen, t.link);
}
