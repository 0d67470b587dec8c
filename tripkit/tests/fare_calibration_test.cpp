#include "tripkit/fare_calibration.h"

#include <gtest/gtest.h>

namespace tripkit {
namespace {

const Day kToday = Day::fromCivil(2026, 11, 23);
// Home and Orlando at one spot with no demand: every typical fare is the
// floor's (0.85 × 120 × 0.5 = 51), so found fares read as plain ratios.
const Airport kHere{"MCO", "Orlando", "FL", "", 28.43, -81.31};
constexpr double kTypical = 51;

FareOption option(std::string airline, double price, std::optional<Day> seen = std::nullopt) {
    return FareOption{std::move(airline), price, 0, std::nullopt, seen};
}

TEST(FareCalibration, NearbyFoundFaresScaleTheEstimate) {
    FareBook book;
    book.origin = "MCO";
    book.updated = kToday.text();
    const Day found = kToday + 30;
    book.toOrlando[found.text()] = {option("B6", 2 * kTypical), option("NK", 10 * kTypical)};
    book.fromOrlando[(found + 20).text()] = {option("DL", 20 * kTypical)};       // clamped to 6
    book.fromOrlando[(found + 60).text()] = {option("AA", 1, kToday - 8)};       // too old
    book.fromOrlando[(found + 80).text()] = {option("NK", 1)};                   // avoided
    book.toOrlando["not a day"] = {option("B6", 1)};
    FareFilter filter;
    filter.avoidAirlines = {"NK"};
    const auto demand = [](Day) { return 0.0; };
    const FareCalibration c = FareCalibrations::make(book, filter, kHere, kHere, demand,
                                                     DayRange(kToday, kToday + 120), kToday);

    // One sample (the cheapest allowed fare of its day): factor 2, a band of
    // 25% for a lone sample plus 1% a day away from it.
    ASSERT_TRUE(c.at(found));
    EXPECT_EQ(c.at(found)->factor, 2);
    EXPECT_EQ(c.at(found)->spread, std::round(102 * 0.25));
    EXPECT_EQ(c.at(found - 14)->spread, std::round(102 * 0.39));
    EXPECT_FALSE(c.at(found - 15));
    EXPECT_EQ(c.at(found + 20)->factor, 6);
    // Near two samples the median of both.
    EXPECT_EQ(c.at(found + 10)->factor, 4);
    // The old and the avoided fares count for nothing.
    EXPECT_FALSE(c.at(found + 60));
    EXPECT_FALSE(c.at(found + 80));

    // A quote on a day without a found fare follows the calibration.
    QuoteRequest r;
    r.day = found + 1;
    r.home = kHere;
    r.orlando = kHere;
    r.calibration = c;
    const FareQuote q = Fares::quote(r);
    EXPECT_TRUE(q.estimated);
    EXPECT_EQ(q.price, 102);
    EXPECT_EQ(q.spread, std::round(102 * 0.26));
}

}  // namespace
}  // namespace tripkit
