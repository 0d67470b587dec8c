#include "tripkit/getaways.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace tripkit;

namespace {

const Day kToday = Day::fromCivil(2026, 11, 20);  // a Friday

Day d(int y, int m, int day) {
    return Day::fromCivil(y, m, day);
}

RoundTrip trip(const std::string& to, Day depart, std::optional<Day> back, double price,
               const std::string& origin = "JFK") {
    RoundTrip t;
    t.origin = origin;
    t.destination = to;
    t.depart = depart;
    t.returnDay = back;
    t.price = price;
    t.airline = "B6";
    t.seen = kToday;
    return t;
}

FareCalendar calendar(const std::vector<RoundTrip>& trips) {
    return FareCalendar({CalendarBook::init("JFK", kToday.text(), trips)});
}

// Getaways::find on `c` as of kToday, every destination and price unless given.
std::vector<Getaway> find(const FareCalendar& c, const TripTiming& timing, TripLength length,
                          std::optional<std::set<std::string>> codes = std::nullopt,
                          std::optional<double> maxPrice = std::nullopt) {
    return Getaways::find(c, timing, length, codes, maxPrice, kToday);
}

std::vector<std::string> summary(const std::vector<Getaway>& found) {
    std::vector<std::string> out;
    for (const Getaway& g : found) {
        out.push_back(g.trip.destination + " " + g.trip.depart.text() + " " +
                      std::to_string(static_cast<int>(g.trip.price)));
    }
    return out;
}

TEST(Getaways, LengthsWeekendsAndHolidaysAtTheirEdges) {
    const Day out = kToday + 10;
    auto nights = [&](int n) { return trip("LIS", out, out + n, 100); };
    const RoundTrip oneWay = trip("LIS", out, std::nullopt, 100);
    // Each length, the nights that fit it and those that do not.
    using Nights = std::vector<int>;
    for (const auto& [length, fit, misfit] :
         std::vector<std::tuple<TripLength, Nights, Nights>>{{TripLength::short_, {2, 4}, {1, 5}},
                                                             {TripLength::week, {5, 9}, {4, 10}},
                                                             {TripLength::long_, {10, 60}, {9, 61}},
                                                             {TripLength::any, {0, 1, 61}, {}}}) {
        for (int n : fit) EXPECT_TRUE(Getaways::fitsLength(nights(n), length)) << n;
        for (int n : misfit) EXPECT_FALSE(Getaways::fitsLength(nights(n), length)) << n;
        EXPECT_EQ(Getaways::fitsLength(oneWay, length), length == TripLength::any);
    }

    // Out Thursday to Saturday, back Sunday to Tuesday, one to four nights.
    const Day friday = kToday + 7;
    ASSERT_EQ(friday.weekday(), 6);
    const std::vector<std::tuple<int, int, bool>> weekends = {
        {-1, 3, true},   // Thursday to Monday, 4 nights
        {1, 4, true},    // Saturday to Tuesday
        {-1, 4, false},  // Thursday to Tuesday: 5 nights
        {-2, 2, false},  // Wednesday to Sunday
        {0, 5, false},   // Friday to Wednesday
        {0, 1, false},   // back on Saturday
        {2, 3, false}};  // out on Sunday
    for (const auto& [out, back, fits] : weekends) {
        EXPECT_EQ(Getaways::fitsWeekend(trip("LIS", friday + out, friday + back, 100)), fits)
            << out << " " << back;
    }
    EXPECT_FALSE(Getaways::fitsWeekend(trip("LIS", friday, std::nullopt, 100)));

    // Holiday trips may leave two days early and return two days late. Labor
    // Day 2027 is Monday September 6: days off Saturday 4 to Monday 6.
    const auto windows = Holidays::windows(kToday, kToday + 400);
    auto fit = [&](Day out, std::optional<Day> back) {
        return Getaways::holidayWindowFor(trip("LIS", out, back, 100), windows);
    };
    const auto thursdayToWednesday = fit(d(2027, 9, 2), d(2027, 9, 8));
    ASSERT_TRUE(thursdayToWednesday);
    EXPECT_EQ(thursdayToWednesday->holiday, FederalHoliday::laborDay);
    EXPECT_FALSE(fit(d(2027, 9, 1), d(2027, 9, 6)));  // Wednesday before: too early
    EXPECT_FALSE(fit(d(2027, 9, 4), d(2027, 9, 5)));  // back Sunday, before the Monday
    EXPECT_FALSE(fit(d(2027, 9, 5), d(2027, 9, 7)));  // leaves after the days off begin
    EXPECT_FALSE(fit(d(2027, 9, 4), d(2027, 9, 9)));  // three days late
}

TEST(Getaways, FindKeepsTheCheapestFittingTripPerDestination) {
    const FareCalendar c = calendar({
        trip("LIS", kToday + 14, kToday + 16, 450),  // Fri-Sun weekend
        trip("LIS", kToday + 21, kToday + 23, 420),  // Fri-Sun weekend, cheaper
        trip("LIS", kToday + 30, kToday + 37, 300),  // a week, Sunday out
        trip("CUN", kToday + 14, kToday + 16, 250),  // weekend
        trip("CUN", kToday + 28, kToday + 30, 250),  // same price, later: loses
        trip("SJU", kToday + 7, std::nullopt, 99),   // one way
        trip("BCN", kToday + 14, kToday + 16, 250),  // ties CUN on price
        trip("MIA", kToday - 1, kToday + 1, 50),     // left yesterday: not usable
    });

    auto found = find(c, TripTiming::anytime(), TripLength::any);
    EXPECT_EQ(summary(found),
              (std::vector<std::string>{"SJU 2026-11-27 99", "BCN 2026-12-04 250",
                                        "CUN 2026-12-04 250", "LIS 2026-12-20 300"}));
    EXPECT_EQ(found[0].timing, TripTiming::anytime());
    EXPECT_FALSE(found[0].window);

    found = find(c, TripTiming::weekends(), TripLength::any);
    EXPECT_EQ(summary(found), (std::vector<std::string>{"BCN 2026-12-04 250", "CUN 2026-12-04 250",
                                                        "LIS 2026-12-11 420"}));

    // Length before timing: a short search drops the week and the one way.
    found = find(c, TripTiming::anytime(), TripLength::short_);
    EXPECT_EQ(summary(found).back(), "LIS 2026-12-11 420");
    EXPECT_EQ(found.size(), 3u);

    // Destinations and price ceiling: a price equal to the ceiling stays.
    const std::set<std::string> codes{"LIS", "CUN"};
    found = find(c, TripTiming::anytime(), TripLength::any, codes, 250);
    EXPECT_EQ(summary(found), (std::vector<std::string>{"CUN 2026-12-04 250"}));
    // An empty set admits nothing.
    EXPECT_TRUE(find(c, TripTiming::anytime(), TripLength::any, std::set<std::string>{}).empty());
}

TEST(Getaways, FindForHolidaysCarriesTheWindow) {
    const FareCalendar c = calendar({
        trip("LIS", d(2026, 11, 25), d(2026, 11, 29), 500),  // Thanksgiving
        trip("LIS", d(2026, 12, 24), d(2026, 12, 27), 480),  // Christmas, Friday 25 to 27
        trip("LIS", d(2027, 1, 16), d(2027, 1, 18), 300),    // Martin Luther King Jr. Day
        trip("CUN", d(2026, 12, 23), d(2026, 12, 28), 350),  // Christmas
        trip("CUN", d(2026, 12, 10), d(2026, 12, 14), 100),  // no holiday
        trip("SJU", d(2027, 9, 2), d(2027, 9, 8), 200),      // Labor Day 2027
        trip("SJU", d(2027, 9, 3), std::nullopt, 90),        // one way: never a holiday trip
    });
    auto found = find(c, TripTiming::anyHoliday(), TripLength::any);
    ASSERT_EQ(summary(found), (std::vector<std::string>{"SJU 2027-09-02 200", "LIS 2027-01-16 300",
                                                        "CUN 2026-12-23 350"}));
    EXPECT_EQ(found[1].window->holiday, FederalHoliday::martinLutherKingDay);
    EXPECT_EQ(found[2].window->holiday, FederalHoliday::christmas);

    const auto christmas = TripTiming::forHoliday(FederalHoliday::christmas);
    found = find(c, christmas, TripLength::any);
    ASSERT_EQ(summary(found),
              (std::vector<std::string>{"CUN 2026-12-23 350", "LIS 2026-12-24 480"}));
    EXPECT_EQ(found[1].timing, christmas);
    EXPECT_EQ(found[1].window->date, d(2026, 12, 25));

    const auto thanksgiving = TripTiming::forHoliday(FederalHoliday::thanksgiving);
    ASSERT_EQ(summary(find(c, thanksgiving, TripLength::short_)),
              (std::vector<std::string>{"LIS 2026-11-25 500"}));
    // Thanksgiving's trip is four nights: not a week.
    EXPECT_TRUE(find(c, thanksgiving, TripLength::week).empty());
}

}  // namespace
