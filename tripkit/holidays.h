// U.S. federal holidays and the long weekends they make. Dates are computed,
// never downloaded.
#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "tripkit/days.h"
#include "tripkit/json.h"

namespace tripkit {

enum class FederalHoliday {
    newYearsDay,
    martinLutherKingDay,
    washingtonsBirthday,
    memorialDay,
    juneteenth,
    independenceDay,
    laborDay,
    columbusDay,
    veteransDay,
    thanksgiving,
    christmas,
};

// In calendar order, the order the windows of a year come in.
const std::array<FederalHoliday, 11>& allFederalHolidays();
std::string_view caseName(FederalHoliday holiday);    // "newYearsDay", the JSON form
std::string_view displayName(FederalHoliday holiday);  // "New Year’s Day"
std::optional<FederalHoliday> federalHolidayFromCaseName(std::string_view name);

// One holiday of one year: its date, the weekday it is observed on, and the
// days off around it.
struct HolidayWindow {
    FederalHoliday holiday = FederalHoliday::newYearsDay;
    Day date;
    Day observed;
    DayRange days;

    friend bool operator==(const HolidayWindow&, const HolidayWindow&) = default;
};

void decode(const json::Value& v, FederalHoliday& out);
void decode(const json::Value& v, HolidayWindow& out);
json::Json encode(FederalHoliday holiday);
json::Json encode(const HolidayWindow& window);

struct Holidays {
    // The eleven windows of `year`, in calendar order.
    static std::vector<HolidayWindow> windows(std::int64_t year);
    // The windows of every year from `from`'s to `to`'s that overlap the span.
    static std::vector<HolidayWindow> windows(Day from, Day to);
    // The `n`th (1-based) `weekday` (1 = Sunday) of a month.
    static Day nthWeekday(std::int64_t year, int month, int weekday, int n);
};

}  // namespace tripkit
