#include "tripkit/getaways.h"

#include <algorithm>
#include <array>

#include "tripkit/hashing.h"
#include "tripkit/json_fields.h"

namespace tripkit {

namespace {

constexpr std::array<std::pair<TripLength, std::string_view>, 4> kLengths = {{
    {TripLength::any, "any"},
    {TripLength::short_, "short"},
    {TripLength::week, "week"},
    {TripLength::long_, "long"},
}};

constexpr std::array<std::pair<TripTiming::Kind, std::string_view>, 4> kTimings = {{
    {TripTiming::Kind::anytime, "anytime"},
    {TripTiming::Kind::weekends, "weekends"},
    {TripTiming::Kind::holiday, "holiday"},
    {TripTiming::Kind::anyHoliday, "anyHoliday"},
}};

// Weekday numbers, 1 = Sunday.
constexpr int kSunday = 1;
constexpr int kTuesday = 3;
constexpr int kThursday = 5;
constexpr int kSaturday = 7;

}  // namespace

std::string_view caseName(TripLength length) {
    for (const auto& [l, name] : kLengths) {
        if (l == length) return name;
    }
    return "any";
}

std::optional<TripLength> tripLengthFromCaseName(std::string_view name) {
    for (const auto& [l, n] : kLengths) {
        if (n == name) return l;
    }
    return std::nullopt;
}

std::optional<std::pair<int, int>> nightsRange(TripLength length) {
    switch (length) {
        case TripLength::any: return std::nullopt;
        case TripLength::short_: return std::pair{2, 4};
        case TripLength::week: return std::pair{5, 9};
        case TripLength::long_: return std::pair{10, 60};
    }
    return std::nullopt;
}

std::string_view caseName(TripTiming::Kind kind) {
    for (const auto& [k, name] : kTimings) {
        if (k == kind) return name;
    }
    return "anytime";
}

namespace {

// The rules over the days alone, so that the search can test calendar fares
// without building a trip for each.
bool fitsLengthDays(Day depart, std::optional<Day> back, TripLength length) {
    const auto range = nightsRange(length);
    if (!range) return true;
    if (!back) return false;
    const std::int64_t nights = *back - depart;
    return nights >= range->first && nights <= range->second;
}

bool fitsWeekendDays(Day depart, std::optional<Day> back) {
    if (!back) return false;
    const std::int64_t nights = *back - depart;
    if (nights < 1 || nights > 4) return false;
    const int leave = depart.weekday();
    const int home = back->weekday();
    // Thursday to Saturday out, Sunday to Tuesday back.
    return leave >= kThursday && leave <= kSaturday && home >= kSunday && home <= kTuesday;
}

const HolidayWindow* holidayWindowForDays(Day depart, std::optional<Day> back,
                                          const std::vector<HolidayWindow>& windows) {
    if (!back) return nullptr;
    for (const HolidayWindow& w : windows) {
        const int slack = Getaways::slackDays;
        const bool leaves = w.days.first - slack <= depart && depart <= w.days.first;
        const bool returns = w.days.last <= *back && *back <= w.days.last + slack;
        if (leaves && returns) return &w;
    }
    return nullptr;
}

}  // namespace

bool Getaways::fitsLength(const RoundTrip& trip, TripLength length) {
    return fitsLengthDays(trip.depart, trip.returnDay, length);
}

bool Getaways::fitsWeekend(const RoundTrip& trip) {
    return fitsWeekendDays(trip.depart, trip.returnDay);
}

std::optional<HolidayWindow> Getaways::holidayWindowFor(const RoundTrip& trip,
                                                        const std::vector<HolidayWindow>& windows) {
    const HolidayWindow* w = holidayWindowForDays(trip.depart, trip.returnDay, windows);
    return w ? std::optional<HolidayWindow>(*w) : std::nullopt;
}

std::vector<Getaway> Getaways::find(const FareCalendar& calendar, const TripTiming& timing,
                                    TripLength length,
                                    const std::optional<std::set<std::string>>& to,
                                    std::optional<double> maxPrice, Day today) {
    std::vector<HolidayWindow> windows;
    if (timing.isHoliday()) {
        windows = Holidays::windows(today, today + holidaySearchDays);
        if (timing.kind == TripTiming::Kind::holiday) {
            std::erase_if(windows, [&](const HolidayWindow& w) {
                return !timing.holiday || w.holiday != *timing.holiday;
            });
        }
    }

    // Each destination on its own, its fares by departure day: a getaway
    // depends only on its destination's fares, so this keeps what a walk over
    // all trips by day would, without building a trip per fare.
    std::vector<Getaway> out;
    for (const auto& [code, row] : calendar.byDestination) {
        if (to && !to->contains(code)) continue;
        const CalendarFare* kept = nullptr;
        const HolidayWindow* keptWindow = nullptr;
        FareCalendar::forEachUsable(row, today, [&](const CalendarFare& fare) {
            if (maxPrice && fare.price > *maxPrice) return;
            // On equal prices the earlier departure, met first, stays.
            if (kept && kept->price <= fare.price) return;
            const Day depart = fare.departDay();
            const std::optional<Day> back = fare.returnDay();
            if (!fitsLengthDays(depart, back, length)) return;
            const HolidayWindow* window = nullptr;
            switch (timing.kind) {
                case TripTiming::Kind::anytime: break;
                case TripTiming::Kind::weekends:
                    if (!fitsWeekendDays(depart, back)) return;
                    break;
                case TripTiming::Kind::holiday:
                case TripTiming::Kind::anyHoliday:
                    window = holidayWindowForDays(depart, back, windows);
                    if (!window) return;
                    break;
            }
            kept = &fare;
            keptWindow = window;
        });
        if (!kept) continue;
        out.push_back(Getaway{calendar.roundTrip(code, *kept), timing,
                              keptWindow ? std::optional<HolidayWindow>(*keptWindow)
                                         : std::nullopt});
    }
    // Destination order so far; a stable sort keeps it for equal prices.
    std::stable_sort(out.begin(), out.end(), [](const Getaway& a, const Getaway& b) {
        return a.trip.price < b.trip.price;
    });
    return out;
}

void decode(const json::Value& v, TripLength& out) {
    const std::string_view name = v.stringView();
    const auto length = tripLengthFromCaseName(name);
    if (!length) v.fail("not a trip length: " + std::string(name));
    out = *length;
}

void decode(const json::Value& v, TripTiming& out) {
    const auto [name, fields] = v.caseKeyed();
    if (name == "anytime") {
        out = TripTiming::anytime();
    } else if (name == "weekends") {
        out = TripTiming::weekends();
    } else if (name == "holiday") {
        out = TripTiming::forHoliday(fields.get<FederalHoliday>("_0"));
    } else if (name == "anyHoliday") {
        out = TripTiming::anyHoliday();
    } else {
        v.fail("not a trip timing: " + name);
    }
}

template <>
struct json::Fields<Getaway> {
    static constexpr auto list =
        std::tuple{json::field("trip", &Getaway::trip), json::field("timing", &Getaway::timing),
                   json::field("window", &Getaway::window)};
};

TRIPKIT_JSON_CODEC(Getaway)

json::Json encode(TripLength length) { return std::string(caseName(length)); }

json::Json encode(const TripTiming& timing) {
    json::Json fields = json::Json::object();
    if (timing.kind == TripTiming::Kind::holiday && timing.holiday) {
        fields["_0"] = encode(*timing.holiday);
    }
    json::Json out = json::Json::object();
    out[std::string(caseName(timing.kind))] = std::move(fields);
    return out;
}

}  // namespace tripkit

std::size_t std::hash<tripkit::Getaway>::operator()(const tripkit::Getaway& g) const noexcept {
    std::size_t seed = tripkit::hashOf(g.trip, g.timing.kind, g.timing.holiday);
    if (!g.window) return seed;
    return tripkit::hashOf(seed, g.window->holiday, g.window->date, g.window->observed,
                           g.window->days.first, g.window->days.last);
}
