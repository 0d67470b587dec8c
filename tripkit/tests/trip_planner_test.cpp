#include "tripkit/trip_planner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "tripkit/disney_guide.h"
#include "tripkit/tests/test_data.h"
#include "tripkit/universal_guide.h"

namespace tripkit {
namespace {

using testing::testDisneyGuide;
using testing::testUniversalGuide;

Day d(int y, int m, int day) {
    return Day::fromCivil(y, m, day);
}

const Day kToday = d(2026, 11, 23);
// Home at Orlando's own spot: every typical one-way fare is the floor's,
// round((level × 0.45 + 0.85) × 120 × 0.5): $51 at level 0 (the test
// guide's January), $58 at 0.25 (February), $65 at Universal's 0.5.
const Airport kHome{"HOM", "Home", "FL", "", 28.43, -81.31};
const Airport kOrlando{"MCO", "Orlando", "FL", "", 28.43, -81.31};

// Two adults, two nights, one park day at the base value resort, a rideshare
// ($100 both ways in the test guides' middle) and $50 a day of food for
// each ($300 over three days). In the test Disney guide's January (the base
// rate $100 a night, tickets at level 0: $100 each) every stay costs
// $225 hotel with tax + $200 tickets + $100 + $300 = $825.
TripSearch simpleSearch() {
    TripSearch s =
        testing::parkSearch({Tier::value, Tier::moderate, Tier::primeValue, Tier::signature});
    s.origin = "HOM";
    return s;
}

PlanInputs inputs(const FareBook* book) {
    PlanInputs in;
    in.book = book;
    in.home = kHome;
    in.orlando = kOrlando;
    in.today = kToday;
    return in;
}

FareBook bookWith(const std::vector<std::pair<Day, double>>& out,
                  const std::vector<std::pair<Day, double>>& back) {
    return testing::fareBook(out, back, kToday);
}

const TripQuote* tripOn(const TripSearchResult& r, Day checkIn) {
    for (const TripQuote& t : r.trips)
        if (t.checkIn == checkIn) return &t;
    return nullptr;
}

std::vector<Day> checkIns(const std::vector<TripQuote>& trips) {
    std::vector<Day> out;
    for (const TripQuote& t : trips) out.push_back(t.checkIn);
    return out;
}

TEST(TripPlanner, HandComputedTripsOnChosenDays) {
    const DisneyGuide guide = testDisneyGuide();
    // Found fares out on 11 January and back on the 13th ($89 and $79): they
    // also scale the estimates of the days around them.
    const FareBook book = bookWith({{d(2027, 1, 11), 89}, {d(2027, 3, 30), 100}},
                                   {{d(2027, 1, 13), 79}, {d(2027, 4, 1), 100}});
    const TripSearchResult r = TripPlanner::plan(simpleSearch(), guide, inputs(&book));

    struct Case {
        Day checkIn;
        double out, back, outSpread, backSpread;  // per seat
        double total;
        bool estimated;
        const char* season;
    };
    const std::vector<Case> cases = {
        // Both legs found: (89 + 79) × 2 = 336 for flights.
        {d(2027, 1, 11), 89, 79, 0, 0, 825 + 336, false, "Value"},
        // Estimates 5 and 7 days from the found fares: the typical $51 times
        // the median ratio (89/51 and 79/51) is $84; the band is 25%/√2 for
        // two samples plus 1% a day to the nearest: $19 and $21 a seat.
        {d(2027, 1, 18), 84, 84, 19, 21, 825 + 336, true, "Value"},
        // February, out of their reach: the typical $58 each way with a band
        // of half of it. Thursday $150 and Friday $200 with 12.5% tax is
        // $393.75, rounded once to $394; tickets at level 0.25: 2 × 112.5.
        {d(2027, 2, 4), 58, 58, 29, 29, 394 + 225 + 100 + 300 + 232, true, "Regular"},
        // Found fares, but the second night is past the published hotel
        // prices (30 March): estimated all the same. Peak Tuesday and
        // Wednesday nights $300 each with tax: $675; tickets at level 1.
        {d(2027, 3, 30), 100, 100, 0, 0, 675 + 300 + 100 + 300 + 400, true, "Peak"},
    };
    for (const Case& c : cases) {
        const TripQuote* t = tripOn(r, c.checkIn);
        ASSERT_TRUE(t) << c.checkIn;
        EXPECT_EQ(t->inbound.day, c.checkIn + 2);
        EXPECT_EQ(t->season, c.season);
        EXPECT_EQ(t->outbound.price, c.out) << c.checkIn;
        EXPECT_EQ(t->inbound.price, c.back) << c.checkIn;
        EXPECT_EQ(t->outbound.spread, c.outSpread) << c.checkIn;
        EXPECT_EQ(t->inbound.spread, c.backSpread) << c.checkIn;
        EXPECT_EQ(t->flightsSpread, (c.outSpread + c.backSpread) * 2) << c.checkIn;
        EXPECT_EQ(t->total(), c.total) << c.checkIn;
        EXPECT_EQ(t->estimated, c.estimated) << c.checkIn;
    }
}

TEST(TripPlanner, CheapestAllowedHotelAndPartyCounts) {
    const DisneyGuide disney = testDisneyGuide();
    TripSearch s = simpleSearch();
    s.window.earliest = s.window.latest = d(2027, 1, 11);
    // Two adults, children of 10, 9, 2 and 1: two adult tickets and a child
    // ticket each besides the adults' ($100 × 3 + $95), five seats on the
    // plane (the 1-year-old on a lap), one room, and the larger rideshare
    // ($75.5 a way).
    s.party = Party{2, {10, 9, 2, 1}};
    s.resorts.kind = ResortChoice::Kind::only;
    s.resorts.ids = {"mod", "lux"};
    // The moderate resort in January: twice the base rate, $400 with tax $450.
    TripSearchResult r = TripPlanner::plan(s, disney, inputs(nullptr));
    ASSERT_EQ(r.trips.size(), 1u);
    const TripQuote& t = r.trips[0];
    EXPECT_EQ(t.resort.id, "mod");
    EXPECT_EQ(t.travelers, 5);
    EXPECT_EQ(t.flightsSpread, (26 + 26) * 5);  // half of $51, rounded
    // Food: $50 for the three adult-priced, three days.
    EXPECT_EQ(t.total(), 450 + 395 + 151 + 450 + (51 + 51) * 5);

    // Universal: "from" prices with its own 12.5% room tax ($240 → $270),
    // the Studios day at $119 each with 6.5% tax ($253.47 → $253), and its
    // flat season level for the typical $65 fares.
    const UniversalGuide universal = testUniversalGuide();
    s = simpleSearch();
    s.window.earliest = s.window.latest = d(2027, 1, 11);
    r = TripPlanner::plan(s, universal, inputs(nullptr));
    ASSERT_EQ(r.trips.size(), 1u);
    EXPECT_EQ(r.trips[0].resort.id, "surfside");
    EXPECT_EQ(r.trips[0].total(), 270 + 253 + 90 + 300 + (65 + 65) * 2);
    EXPECT_TRUE(r.trips[0].fromPrices);
    EXPECT_FALSE(r.trips[0].expressIncluded);
}

// The test Disney guide prices nights from 4 January to 30 April 2027: 117
// check-in days after today. MLK weekend is 16 to 18 January. The date
// limits themselves are DateWindow's (party_test); here: that the planner
// asks them with the stay's nights, adds the guide's busy dates, counts
// what it leaves out and stops at the end of the prices.
TEST(TripPlanner, DateWindowAndBudgetRulesAtTheirEdges) {
    const DisneyGuide guide = testDisneyGuide();
    const auto jan = [](int day) { return d(2027, 1, day); };
    struct Case {
        const char* label;
        std::function<void(DateWindow&)> limit;
        std::vector<Day> expected;
    };
    const auto tenTo20 = [](DateWindow& w) {
        w.earliest = d(2027, 1, 10);
        w.latest = d(2027, 1, 20);
    };
    // clang-format off
    const std::vector<Case> cases = {
        {"earliest and latest count", tenTo20,
         {jan(10), jan(11), jan(12), jan(13), jan(14), jan(15), jan(16), jan(17), jan(18), jan(19), jan(20)}},
        // The 13th leaves on the 15th; the 19th arrives after the weekend.
        {"busy stays skipped", [&](DateWindow& w) { tenTo20(w); w.avoidHolidays = true; },
         {jan(10), jan(11), jan(12), jan(13), jan(19), jan(20)}},
        // The last nights priced are 29 and 30 April: the 29th is the last check-in.
        {"to the end of the prices", [](DateWindow& w) { w.earliest = d(2027, 4, 27); },
         {d(2027, 4, 27), d(2027, 4, 28), d(2027, 4, 29)}},
        {"months beyond the coverage", [](DateWindow& w) { w.months = {5, 6, 7}; }, {}},
    };
    // clang-format on
    for (const Case& c : cases) {
        TripSearch s = simpleSearch();
        c.limit(s.window);
        const TripSearchResult r = TripPlanner::plan(s, guide, inputs(nullptr));
        std::vector<Day> days = checkIns(r.trips);
        std::sort(days.begin(), days.end());
        EXPECT_EQ(days, c.expected) << c.label;
        // Days past the prices (30 April) are skipped without counting.
        const int skipped = s.window.earliest == d(2027, 4, 27) ? 1 : 0;
        EXPECT_EQ(r.leftOut, 117 - static_cast<int>(days.size()) - skipped) << c.label;
    }

    // Every trip above the budget is dropped and counted.
    TripSearch s = simpleSearch();
    s.window.earliest = d(2027, 1, 10);
    s.window.latest = d(2027, 1, 20);
    s.maxTotal = 1028;  // every one of these trips is $1,029
    TripSearchResult r = TripPlanner::plan(s, guide, inputs(nullptr));
    EXPECT_TRUE(r.trips.empty());
    EXPECT_TRUE(r.months.empty());
    EXPECT_EQ(r.overBudget, 11);
    s.maxTotal = 1029;  // at the budget is within it
    r = TripPlanner::plan(s, guide, inputs(nullptr));
    EXPECT_EQ(r.trips.size(), 11u);
    EXPECT_EQ(r.overBudget, 0);
}

TEST(TripPlanner, FoundFaresFirstUnlessATypicalDateIsClearlyCheaper) {
    const DisneyGuide guide = testDisneyGuide();
    TripSearch s = simpleSearch();
    // Check-ins on 4 and 21 January only. The 21st is more than two weeks
    // from the found fares, so it keeps the typical $51 each way: $1,029.
    s.window.only = {DayRange(d(2027, 1, 4), d(2027, 1, 6)),
                     DayRange(d(2027, 1, 21), d(2027, 1, 23))};
    // Found fares of the 4th and 6th, and whether the typical date goes first.
    const std::vector<std::tuple<double, double, bool>> cases = {
        {60, 60, false},  // $1,065: the typical date is cheaper, but not by 10%
        {80, 79, false},  // $1,143: 10% below is $1,028.70, and $1,029 is not under it
        {80, 80, true},   // $1,145: 10% below is $1,030.50
    };
    for (const auto& [out, back, typicalFirst] : cases) {
        const FareBook book = bookWith({{d(2027, 1, 4), out}}, {{d(2027, 1, 6), back}});
        const TripSearchResult r = TripPlanner::plan(s, guide, inputs(&book));
        ASSERT_EQ(r.trips.size(), 2u);
        EXPECT_EQ(r.trips[0].checkIn, typicalFirst ? d(2027, 1, 21) : d(2027, 1, 4)) << out + back;
        EXPECT_EQ(tripOn(r, d(2027, 1, 4))->total(), 825 + (out + back) * 2);
    }

    // Within a group the lower total first, equal totals the earlier date:
    // without fares every January day to the 29th costs $1,029; every March
    // day is dearer, and has a price (the last nights in April's season).
    s = simpleSearch();
    s.window.months = {1, 3};
    const TripSearchResult r = TripPlanner::plan(s, guide, inputs(nullptr));
    ASSERT_EQ(r.trips.size(), 59u);
    EXPECT_EQ(r.trips[0].checkIn, d(2027, 1, 4));
    EXPECT_EQ(r.trips[25].checkIn, d(2027, 1, 29));
    // The 30th flies back on 1 February's typical $58 ($1,043); the 31st also
    // sleeps the $150 Monday ($250 with tax $281): $1,099.
    EXPECT_EQ(r.trips[26].checkIn, d(2027, 1, 30));
    EXPECT_EQ(r.trips[26].total(), 1043);
    EXPECT_EQ(r.trips[27].checkIn, d(2027, 1, 31));
    EXPECT_EQ(r.trips[27].total(), 1099);
    // January: 26 days at $1,029, then $1,043 and $1,099: an average of
    // $1,032, the best $3 below it.
    ASSERT_EQ(r.months.size(), 2u);
    EXPECT_EQ(r.months[0].year * 100 + r.months[0].month, 202701);
    EXPECT_EQ(r.months[1].trips.size(), 31u);
    EXPECT_DOUBLE_EQ(r.months[0].average, 1032);
    EXPECT_EQ(r.months[0].cheapest(), 1029);
    EXPECT_DOUBLE_EQ(r.months[0].below(), 3);
}

}  // namespace
}  // namespace tripkit
