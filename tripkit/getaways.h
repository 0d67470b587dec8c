// The getaway finder: for each destination, the cheapest calendar trip that
// fits a kind of trip (any dates, a weekend, a federal holiday's long weekend)
// and a length.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tripkit/calendars.h"
#include "tripkit/days.h"
#include "tripkit/holidays.h"
#include "tripkit/json.h"

namespace tripkit {

// How many nights a trip lasts. `short` and `long` are C++ keywords, hence
// the trailing underscores; the JSON and command-line forms are the plain words.
enum class TripLength { any, short_, week, long_ };

std::string_view caseName(TripLength length);  // "any", "short", "week", "long"
std::optional<TripLength> tripLengthFromCaseName(std::string_view name);
// The nights allowed, both ends included; nothing for `any`.
std::optional<std::pair<int, int>> nightsRange(TripLength length);

// When a trip may go.
struct TripTiming {
    enum class Kind { anytime, weekends, holiday, anyHoliday };
    Kind kind = Kind::anytime;
    std::optional<FederalHoliday> holiday;  // set for `holiday` only

    static TripTiming anytime() { return {Kind::anytime, std::nullopt}; }
    static TripTiming weekends() { return {Kind::weekends, std::nullopt}; }
    static TripTiming forHoliday(FederalHoliday h) { return {Kind::holiday, h}; }
    static TripTiming anyHoliday() { return {Kind::anyHoliday, std::nullopt}; }

    bool isHoliday() const { return kind == Kind::holiday || kind == Kind::anyHoliday; }
    friend bool operator==(const TripTiming&, const TripTiming&) = default;
};

std::string_view caseName(TripTiming::Kind kind);  // "anytime", "weekends", ...

// One destination's cheapest fitting trip, with the holiday's long weekend it
// fits when the timing is a holiday one.
struct Getaway {
    RoundTrip trip;
    TripTiming timing;
    std::optional<HolidayWindow> window;
    friend bool operator==(const Getaway&, const Getaway&) = default;
};

struct Getaways {
    // A holiday trip may leave this many days before the days off begin and
    // come back this many days after they end.
    static constexpr int slackDays = 2;
    // Holiday windows are looked for this far ahead of today.
    static constexpr int holidaySearchDays = 400;

    // One getaway per destination among the calendar's usable trips: only
    // destinations in `to` when given, none dearer than `maxPrice` when given.
    // Sorted by price, then destination code.
    static std::vector<Getaway> find(const FareCalendar& calendar, const TripTiming& timing,
                                     TripLength length,
                                     const std::optional<std::set<std::string>>& to,
                                     std::optional<double> maxPrice, Day today);

    // The single rules, for the screens' explanations and for tests.
    static bool fitsLength(const RoundTrip& trip, TripLength length);
    static bool fitsWeekend(const RoundTrip& trip);
    // The first window whose long weekend the trip covers, within the slack.
    static std::optional<HolidayWindow> holidayWindowFor(const RoundTrip& trip,
                                                         const std::vector<HolidayWindow>& windows);
};

void decode(const json::Value& v, TripLength& out);
void decode(const json::Value& v, TripTiming& out);
void decode(const json::Value& v, Getaway& out);
json::Json encode(TripLength length);
json::Json encode(const TripTiming& timing);
json::Json encode(const Getaway& g);

}  // namespace tripkit

template <>
struct std::hash<tripkit::Getaway> {
    std::size_t operator()(const tripkit::Getaway& g) const noexcept;
};
