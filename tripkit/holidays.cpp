#include "tripkit/holidays.h"

#include <algorithm>

#include "tripkit/json_fields.h"

namespace tripkit {
namespace {

struct HolidayInfo {
    FederalHoliday holiday;
    std::string_view caseName;
    std::string_view displayName;
};

constexpr std::array<HolidayInfo, 11> kHolidays = {{
    {FederalHoliday::newYearsDay, "newYearsDay", "New Year’s Day"},
    {FederalHoliday::martinLutherKingDay, "martinLutherKingDay", "Martin Luther King Jr. Day"},
    {FederalHoliday::washingtonsBirthday, "washingtonsBirthday", "Presidents’ Day"},
    {FederalHoliday::memorialDay, "memorialDay", "Memorial Day"},
    {FederalHoliday::juneteenth, "juneteenth", "Juneteenth"},
    {FederalHoliday::independenceDay, "independenceDay", "Independence Day"},
    {FederalHoliday::laborDay, "laborDay", "Labor Day"},
    {FederalHoliday::columbusDay, "columbusDay", "Columbus Day"},
    {FederalHoliday::veteransDay, "veteransDay", "Veterans Day"},
    {FederalHoliday::thanksgiving, "thanksgiving", "Thanksgiving"},
    {FederalHoliday::christmas, "christmas", "Christmas"},
}};

const HolidayInfo& info(FederalHoliday holiday) {
    return kHolidays[static_cast<std::size_t>(holiday)];
}

constexpr int kSunday = 1;
constexpr int kMonday = 2;
constexpr int kThursday = 5;
constexpr int kFriday = 6;
constexpr int kSaturday = 7;

Day dateIn(FederalHoliday holiday, std::int64_t year) {
    switch (holiday) {
        case FederalHoliday::newYearsDay: return Day::fromCivil(year, 1, 1);
        case FederalHoliday::martinLutherKingDay: return Holidays::nthWeekday(year, 1, kMonday, 3);
        case FederalHoliday::washingtonsBirthday: return Holidays::nthWeekday(year, 2, kMonday, 3);
        case FederalHoliday::memorialDay: {
            // The last Monday on or before May 31.
            Day may31 = Day::fromCivil(year, 5, 31);
            return may31 - (may31.weekday() - kMonday + 7) % 7;
        }
        case FederalHoliday::juneteenth: return Day::fromCivil(year, 6, 19);
        case FederalHoliday::independenceDay: return Day::fromCivil(year, 7, 4);
        case FederalHoliday::laborDay: return Holidays::nthWeekday(year, 9, kMonday, 1);
        case FederalHoliday::columbusDay: return Holidays::nthWeekday(year, 10, kMonday, 2);
        case FederalHoliday::veteransDay: return Day::fromCivil(year, 11, 11);
        case FederalHoliday::thanksgiving: return Holidays::nthWeekday(year, 11, kThursday, 4);
        case FederalHoliday::christmas: return Day::fromCivil(year, 12, 25);
    }
    return Day::fromCivil(year, 1, 1);
}

HolidayWindow windowIn(FederalHoliday holiday, std::int64_t year) {
    HolidayWindow w;
    w.holiday = holiday;
    w.date = dateIn(holiday, year);
    int weekday = w.date.weekday();
    w.observed = weekday == kSunday ? w.date + 1 : weekday == kSaturday ? w.date - 1 : w.date;
    int observedWeekday = w.observed.weekday();
    if (holiday == FederalHoliday::thanksgiving) {
        w.days = DayRange(w.observed, w.observed + 3);  // Thursday to Sunday
    } else if (observedWeekday == kMonday) {
        w.days = DayRange(w.observed - 2, w.observed);  // Saturday to Monday
    } else if (observedWeekday == kFriday) {
        w.days = DayRange(w.observed, w.observed + 2);  // Friday to Sunday
    } else {
        w.days = DayRange(w.observed, w.observed);
    }
    return w;
}

}  // namespace

const std::array<FederalHoliday, 11>& allFederalHolidays() {
    static const std::array<FederalHoliday, 11> all = [] {
        std::array<FederalHoliday, 11> out{};
        for (std::size_t i = 0; i < kHolidays.size(); ++i) out[i] = kHolidays[i].holiday;
        return out;
    }();
    return all;
}

std::string_view caseName(FederalHoliday holiday) { return info(holiday).caseName; }
std::string_view displayName(FederalHoliday holiday) { return info(holiday).displayName; }

std::optional<FederalHoliday> federalHolidayFromCaseName(std::string_view name) {
    for (const auto& h : kHolidays)
        if (h.caseName == name) return h.holiday;
    return std::nullopt;
}

Day Holidays::nthWeekday(std::int64_t year, int month, int weekday, int n) {
    Day first = Day::fromCivil(year, month, 1);
    return first + (weekday - first.weekday() + 7) % 7 + 7 * (n - 1);
}

std::vector<HolidayWindow> Holidays::windows(std::int64_t year) {
    std::vector<HolidayWindow> out;
    out.reserve(kHolidays.size());
    for (FederalHoliday h : allFederalHolidays()) out.push_back(windowIn(h, year));
    return out;
}

std::vector<HolidayWindow> Holidays::windows(Day from, Day to) {
    std::vector<HolidayWindow> out;
    for (std::int64_t year = from.year(); year <= to.year(); ++year) {
        for (const HolidayWindow& w : windows(year))
            if (w.days.last >= from && w.days.first <= to) out.push_back(w);
    }
    return out;
}

void decode(const json::Value& v, FederalHoliday& out) {
    auto name = v.stringView();
    auto holiday = federalHolidayFromCaseName(name);
    if (!holiday) v.fail("not a federal holiday: " + std::string(name));
    out = *holiday;
}

template <>
struct json::Fields<HolidayWindow> {
    using T = HolidayWindow;
    static constexpr auto list =
        std::tuple{json::field("holiday", &T::holiday), json::field("date", &T::date),
                   json::field("observed", &T::observed), json::field("days", &T::days)};
};

TRIPKIT_JSON_CODEC(HolidayWindow)

json::Json encode(FederalHoliday holiday) { return std::string(caseName(holiday)); }

}  // namespace tripkit
