#include "tripkit/holidays.h"

#include <gtest/gtest.h>

using namespace tripkit;

namespace {

Day d(int y, int m, int day) { return Day::fromCivil(y, m, day); }

HolidayWindow windowOf(FederalHoliday h, int year) {
    for (const auto& w : Holidays::windows(year))
        if (w.holiday == h) return w;
    ADD_FAILURE() << "no window for " << caseName(h);
    return {};
}

}  // namespace

TEST(Holidays, DatesOfAYearInCalendarOrder) {
    auto windows = Holidays::windows(2026);
    ASSERT_EQ(windows.size(), 11u);
    std::vector<Day> dates;
    for (const auto& w : windows) dates.push_back(w.date);
    EXPECT_EQ(dates, (std::vector<Day>{d(2026, 1, 1), d(2026, 1, 19), d(2026, 2, 16),
                                       d(2026, 5, 25), d(2026, 6, 19), d(2026, 7, 4),
                                       d(2026, 9, 7), d(2026, 10, 12), d(2026, 11, 11),
                                       d(2026, 11, 26), d(2026, 12, 25)}));
    for (std::size_t i = 0; i < windows.size(); ++i)
        EXPECT_EQ(windows[i].holiday, allFederalHolidays()[i]);

    // Memorial Day falling on May 31 itself; Thanksgiving on the 28th.
    EXPECT_EQ(windowOf(FederalHoliday::memorialDay, 2027).date, d(2027, 5, 31));
    EXPECT_EQ(windowOf(FederalHoliday::thanksgiving, 2024).date, d(2024, 11, 28));
    EXPECT_EQ(Holidays::nthWeekday(2026, 11, 5, 1), d(2026, 11, 5));  // month starts on a Sunday
}

TEST(Holidays, ObservedDaysAndDaysOff) {
    // Saturday: observed the Friday before, off Friday to Sunday.
    auto july2026 = windowOf(FederalHoliday::independenceDay, 2026);
    EXPECT_EQ(july2026.observed, d(2026, 7, 3));
    EXPECT_EQ(july2026.days, DayRange(d(2026, 7, 3), d(2026, 7, 5)));
    // Sunday: observed the Monday after, off Saturday to Monday.
    auto july2027 = windowOf(FederalHoliday::independenceDay, 2027);
    EXPECT_EQ(july2027.observed, d(2027, 7, 5));
    EXPECT_EQ(july2027.days, DayRange(d(2027, 7, 3), d(2027, 7, 5)));
    // A Wednesday holiday is one day off.
    EXPECT_EQ(windowOf(FederalHoliday::christmas, 2024).days.length(), 1);
    // Monday holidays: Saturday to Monday.
    EXPECT_EQ(windowOf(FederalHoliday::laborDay, 2026).days,
              DayRange(d(2026, 9, 5), d(2026, 9, 7)));
    // New Year's Day on a Saturday is observed in the year before.
    auto newYear2022 = windowOf(FederalHoliday::newYearsDay, 2022);
    EXPECT_EQ(newYear2022.observed, d(2021, 12, 31));
    EXPECT_EQ(newYear2022.days, DayRange(d(2021, 12, 31), d(2022, 1, 2)));
    // Thanksgiving is always Thursday to Sunday; every observed day is a
    // weekday and lies inside its days off.
    for (int year = 2020; year <= 2035; ++year) {
        const auto t = windowOf(FederalHoliday::thanksgiving, year);
        EXPECT_EQ(t.days, DayRange(t.date, t.date + 3)) << year;
        EXPECT_EQ(t.date.weekday(), 5) << year;
        for (const auto& w : Holidays::windows(year)) {
            EXPECT_TRUE(w.observed.weekday() != 1 && w.observed.weekday() != 7) << w.observed;
            EXPECT_TRUE(w.days.contains(w.observed)) << w.observed;
        }
    }
}

TEST(Holidays, WindowsOfASpanKeepOverlapsOnly) {
    // Juneteenth 2026 is a Friday, off to Sunday the 21st. A span from that
    // last day off to the first day off of July 4th holds both.
    auto windows = Holidays::windows(d(2026, 6, 21), d(2026, 7, 3));
    ASSERT_EQ(windows.size(), 2u);
    EXPECT_EQ(windows[0].holiday, FederalHoliday::juneteenth);
    EXPECT_EQ(windows[1].holiday, FederalHoliday::independenceDay);
    EXPECT_TRUE(Holidays::windows(d(2026, 6, 22), d(2026, 7, 2)).empty());

    // Across a year boundary, in order.
    auto turn = Holidays::windows(d(2026, 12, 20), d(2027, 1, 20));
    ASSERT_EQ(turn.size(), 3u);
    EXPECT_EQ(turn[0].holiday, FederalHoliday::christmas);
    EXPECT_EQ(turn[1].holiday, FederalHoliday::newYearsDay);
    EXPECT_EQ(turn[2].holiday, FederalHoliday::martinLutherKingDay);
    EXPECT_EQ(Holidays::windows(d(2026, 1, 1), d(2028, 12, 31)).size(), 33u);
}
