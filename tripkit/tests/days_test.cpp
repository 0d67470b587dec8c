#include "tripkit/days.h"

#include <gtest/gtest.h>

using namespace tripkit;

namespace {

Day day(std::int64_t y, int m, int d) {
    return Day::fromCivil(y, m, d);
}

TEST(Day, ParsesOnlyTheFirstTenCharactersAndIsLenientOnPurpose) {
    EXPECT_EQ(Day::parse("2026-03-07")->text(), "2026-03-07");
    EXPECT_EQ(Day::parse("2026-03-07T10:00:00Z"), day(2026, 3, 7));
    EXPECT_EQ(Day::parse("+2026-+3-7"), day(2026, 3, 7));
    // Day-of-month 1..31 for every month: the civil arithmetic rolls over.
    EXPECT_EQ(Day::parse("2026-02-30"), day(2026, 3, 2));
    // Non-integer pieces are dropped, empty pieces too.
    EXPECT_EQ(Day::parse("2026--3-07"), day(2026, 3, 7));
    EXPECT_FALSE(Day::parse("2026--03-07").has_value());  // 11 characters: the day is cut to "0"
    EXPECT_EQ(Day::parse("x-2026-3-7"), day(2026, 3, 7));
    for (const char* bad : {"2026-13-01", "2026-00-10", "2026-03-00", "2026-03-32", "2026-03", "",
                            "20260307", "2026-3-7x", "-", "a-b-c", "20211-6-20"}) {
        EXPECT_FALSE(Day::parse(bad).has_value()) << bad;
    }
}

TEST(Day, CivilArithmeticWeekdaysAndTheLocalDayOfAnInstant) {
    EXPECT_EQ(day(1970, 1, 1).count, 0);
    EXPECT_EQ(Day{-1}.text(), "1969-12-31");
    EXPECT_EQ(Day{0}.weekday(), 5);             // Thursday
    EXPECT_EQ(Day{-1}.weekday(), 4);            // Wednesday
    EXPECT_EQ(day(2026, 11, 22).weekday(), 1);  // a Sunday
    EXPECT_EQ(day(2026, 11, 28).weekday(), 7);  // a Saturday
    EXPECT_EQ(day(2000, 3, 1) - day(2000, 2, 28), 2);
    EXPECT_EQ(day(2100, 3, 1) - day(2100, 2, 28), 1);
    // Round trip over four centuries, both sides of the epoch.
    for (std::int64_t n = -200000; n <= 200000; n += 7) {
        CivilDate c = Day{n}.civil();
        ASSERT_EQ(day(c.year, c.month, c.day).count, n);
    }

    // 2026-03-08 03:30 UTC is still the 7th in New York, already the 8th in Tokyo.
    const std::int64_t instant = day(2026, 3, 8).count * 86400 + 3 * 3600 + 1800;
    EXPECT_EQ(Day::at(instant, "America/New_York"), day(2026, 3, 7));
    EXPECT_EQ(Day::at(instant, "Asia/Tokyo"), day(2026, 3, 8));
    EXPECT_FALSE(Day::at(instant, "Nowhere/Atlantis").has_value());
    EXPECT_EQ(day(2026, 3, 8).unixSeconds(), static_cast<double>(day(2026, 3, 8).count) * 86400.0);
}

TEST(Day, DecodingNamesTheBadText) {
    auto doc = json::parse(R"({"d":"2026-13-01","ok":"2026-03-07"})", "t.json");
    EXPECT_EQ(doc.root().get<Day>("ok"), day(2026, 3, 7));
    try {
        doc.root().get<Day>("d");
        FAIL();
    } catch (const json::DecodeError& e) {
        EXPECT_EQ(e.message, "not a date: 2026-13-01");
        EXPECT_STREQ(e.what(), "t.json: d: not a date: 2026-13-01");
    }
    EXPECT_EQ(encode(day(26, 3, 7)), "0026-03-07");
}

TEST(YearMonth, ArithmeticLengthsAndOrder) {
    EXPECT_EQ((YearMonth{2026, 1}.plusMonths(-1)), (YearMonth{2025, 12}));
    EXPECT_EQ((YearMonth{2025, 12}.plusMonths(1)), (YearMonth{2026, 1}));
    EXPECT_EQ((YearMonth{2026, 3}.plusMonths(-27)), (YearMonth{2023, 12}));
    EXPECT_EQ((YearMonth{2024, 2}.days().size()), 29u);
    EXPECT_EQ((YearMonth{2100, 2}.days().size()), 28u);
    EXPECT_EQ((YearMonth{2000, 2}.days().size()), 29u);
    EXPECT_EQ((YearMonth{2026, 12}.days().back()), day(2026, 12, 31));
    EXPECT_LT((YearMonth{2025, 12}), (YearMonth{2026, 1}));
    EXPECT_EQ(YearMonth::of(day(2026, 3, 31)), (YearMonth{2026, 3}));

    auto bad = json::parse(R"({"year":2026,"month":13})", "m.json");
    EXPECT_THROW(bad.root().as<YearMonth>(), json::DecodeError);
}

}  // namespace
