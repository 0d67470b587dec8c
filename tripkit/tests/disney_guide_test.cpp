#include "tripkit/disney_guide.h"

#include <array>

#include <gtest/gtest.h>

#include "tripkit/tests/test_data.h"

namespace tripkit {
namespace {

using testing::parkData;
using testing::replaced;
using testing::testDisneyGuide;

// The test guide's seasons (2027): January's first rate 100 (the cheapest),
// February 150 and 200, March 300, 320 and 360 (the dearest), April four
// rates from 200, estimated; no season before 4 January or after April.
// Published hotel rates run through 30 March. 1 February and 1 March 2027
// are Mondays.
Day d(int y, int m, int day) {
    return Day::fromCivil(y, m, day);
}

// Two adults, a 10-, a 9-, a 2- and a 1-year-old: 3 adult-priced, 1
// child-priced, 5 seats.
const Party kFamily{2, {10, 9, 2, 1}};

class DisneyGuideTest : public ::testing::Test {
protected:
    DisneyGuide guide = testDisneyGuide();
    const ParkResort& base() const { return guide.resorts[0]; }
    const ParkResort& moderate() const { return guide.resorts[1]; }
    const ParkResort& deluxe() const { return guide.resorts[2]; }
};

TEST_F(DisneyGuideTest, RoundTripsAndGuidesThatCannotPriceDoNotDecode) {
    EXPECT_EQ(json::decodeDocument<DisneyGuide>(encode(guide).dump(), "again.json"), guide);
    auto error = [](const std::string& text) {
        return testing::decodeError<DisneyGuide>(text, "disney-guide.json");
    };
    const std::string text = parkData("disney-guide.json");
    // Each case: what is replaced in the test guide, by what, and the error.
    // clang-format off
    const std::vector<std::array<std::string, 3>> cases = {
        {R"("baseResort": "Base Value Resort")", R"("baseResort": "Nowhere")", "baseResort: no resort named Nowhere"},
        {R"(, {"days": 3, "low": 255, "high": 405})", "", "tickets.child: expected a row for every adult row"},
        // Values no price sheet can hold.
        {R"("low": 100, "high": 300)", R"("low": 0, "high": 300)", "resorts[0].low: expected a price above 0"},
        {R"("low": 200, "high": 450)", R"("low": 500, "high": 450)", "resorts[1]: low is above high"},
        {R"("parking": 20)", R"("parking": -20)", "resorts[1].parking: expected an amount of 0 or more"},
        {R"("rates": [150, 200])", R"("rates": [])", "calendar[1].rates: expected at least one rate"},
        {R"("from": "2027-02-01")", R"("from": "2027-03-01")", "calendar[1]: from 2027-03-01 is after to 2027-02-28"},
        {R"(Through": "2027-03-30")", R"(Through": "2026-03-30")", "coverage.hotelsPublishedThrough: is before from"},
        {R"({"days": 1, "low": 100)", R"({"days": 0, "low": 100)", "tickets.adult[0].days: expected 1 or more"},
        {R"({"fromDays": 3,)", R"({"fromDays": -3,)", "tickets.hopper[1].fromDays: expected a count of 0 or more"},
    };
    // clang-format on
    for (const auto& [from, to, message] : cases) {
        EXPECT_EQ(error(replaced(text, from, to)), "disney-guide.json: " + message) << to;
    }
}

TEST_F(DisneyGuideTest, SeasonsWeekdayRatesBusyDatesResortsAndStays) {
    EXPECT_DOUBLE_EQ(guide.seasonLevel(d(2027, 1, 4)), 0);
    EXPECT_DOUBLE_EQ(guide.seasonLevel(d(2027, 2, 28)), 0.25);
    EXPECT_DOUBLE_EQ(guide.seasonLevel(d(2027, 3, 15)), 1);
    EXPECT_DOUBLE_EQ(guide.seasonLevel(d(2027, 5, 1)), 0.5);  // no season
    // Overlapping seasons: the first in file order wins.
    DisneyGuide overlap = guide;
    overlap.calendar.insert(overlap.calendar.begin(),
                            {d(2027, 2, 10), d(2027, 2, 12), "Event", "Evento", {300}, false});
    EXPECT_DOUBLE_EQ(overlap.seasonLevel(d(2027, 2, 11)), 1);
    EXPECT_DOUBLE_EQ(overlap.seasonLevel(d(2027, 2, 13)), 0.25);
    DisneyGuide flat = guide;  // every season alike: the middle
    for (auto& s : flat.calendar) s.rates = {180, 400};
    EXPECT_DOUBLE_EQ(flat.seasonLevel(d(2027, 1, 4)), 0.5);

    // The first week of February and of March, Monday to Sunday: two rates put
    // Friday and Saturday high; three put Thursday and Sunday in the middle.
    std::vector<double> two, three;
    for (int day = 1; day <= 7; ++day) {
        two.push_back(guide.calendar[1].baseRate(d(2027, 2, day)));
        three.push_back(guide.calendar[2].baseRate(d(2027, 3, day)));
    }
    EXPECT_EQ(two, (std::vector<double>{150, 150, 150, 150, 200, 200, 150}));
    EXPECT_EQ(three, (std::vector<double>{300, 300, 300, 320, 360, 360, 320}));
    EXPECT_EQ(guide.calendar[3].baseRate(d(2027, 4, 3)), 200);  // four rates: the first
    EXPECT_EQ(guide.calendar[0].baseRate(d(2027, 1, 9)), 100);  // one rate
    EXPECT_EQ(DisneyGuide::Season{}.baseRate(d(2027, 1, 9)), 0);

    // 4 July 2027 is a Sunday: off Saturday 3 to Monday 5 (the windows' own
    // edges are Holidays' rules).
    EXPECT_TRUE(guide.isBusy(d(2027, 7, 3)));
    // Busy events come from the events calendar.
    EXPECT_FALSE(guide.isBusy(d(2027, 10, 2)));
    guide.busyEvents = {DayRange(d(2027, 10, 1), d(2027, 10, 3))};
    EXPECT_TRUE(guide.isBusy(d(2027, 10, 3)));
    EXPECT_FALSE(guide.isBusy(d(2027, 10, 4)));

    // The base resort prices at exactly the base rate.
    EXPECT_EQ(guide.nightlyRate(base(), d(2027, 2, 5)), 200);
    EXPECT_EQ(guide.nightlyRate(base(), d(2027, 1, 3)), std::nullopt);
    // The moderate resort is twice the base in the cheapest season and 1.5
    // times it in the dearest: February sits a quarter of the way, 1.875.
    EXPECT_EQ(guide.nightlyRate(moderate(), d(2027, 2, 1)), 281);  // 281.25
    EXPECT_EQ(guide.nightlyRate(moderate(), d(2027, 3, 5)), 540);
    // 4 to 3 times: 3.75 x 150 = 562.5 rounds away from zero.
    EXPECT_EQ(guide.nightlyRate(deluxe(), d(2027, 2, 2)), 563);

    // A season dearer than the base resort's high rate stays at the high
    // ratio; one below its low at the low ratio.
    DisneyGuide wide = guide;
    wide.calendar[2].rates = {600};
    wide.calendar[0].rates = {50};
    EXPECT_EQ(wide.nightlyRate(moderate(), d(2027, 3, 2)), 900);
    EXPECT_EQ(wide.nightlyRate(moderate(), d(2027, 1, 5)), 100);

    // Sunday 28 March, 3 nights: 480 + 450 + 450, within the published rates.
    auto stay = guide.hotelStay(moderate(), d(2027, 3, 28), 3, 1);
    ASSERT_TRUE(stay);
    EXPECT_EQ(stay->total, 1380);
    EXPECT_FALSE(stay->estimated);
    // One night more reaches past the published rates.
    stay = guide.hotelStay(moderate(), d(2027, 3, 28), 4, 1);
    EXPECT_EQ(stay->total, 1830);
    EXPECT_TRUE(stay->estimated);
    // A season carried forward from last year is estimated too.
    EXPECT_TRUE(guide.hotelStay(base(), d(2027, 4, 10), 1, 1)->estimated);
    // Checking out on 1 May needs no May season; one more night does.
    EXPECT_EQ(guide.hotelStay(base(), d(2027, 4, 29), 2, 1)->total, 400);
    EXPECT_EQ(guide.hotelStay(base(), d(2027, 4, 29), 3, 1), std::nullopt);
    EXPECT_EQ(guide.hotelStay(base(), d(2027, 1, 4), 0, 1)->total, 0);
}

TEST_F(DisneyGuideTest, TicketsHopperAndLightningLane) {
    const auto totals = [&](int days, Day first, const DisneyGuide* g = nullptr) {
        return (g ? *g : guide).ticketTotals(days, kFamily, first, true, false);
    };
    const auto expect = [&](int days, Day first, double tickets, double hopper) {
        const auto t = totals(days, first);
        EXPECT_EQ(t.tickets, tickets) << days << " " << first;
        EXPECT_EQ(t.hopper, hopper) << days << " " << first;
    };
    // Three February days (level 0.25): adult 307.5, child 292.5; the 3-day
    // hopper row, 95, for the four who pay.
    expect(3, d(2027, 2, 1), 3 * 307.5 + 292.5, 4 * 95);
    // The trip's level is the mean of its park days: 0, 0 and 0.25.
    expect(3, d(2027, 1, 30), 1115, 367);  // 3 x 282.5 + 267.5; 4 x 91.67
    // Five park days with three rows: the 3-day ticket at the level of the
    // first three days (all January, level 0).
    expect(5, d(2027, 1, 29), 3 * 270 + 255, 4 * 90);
    // No park days are priced as one; two days take the hopper row of 1+.
    expect(0, d(2027, 3, 1), 3 * 150 + 145, 4 * 85);
    expect(2, d(2027, 3, 1), 3 * 290 + 280, 4 * 85);
    EXPECT_EQ(guide.ticketTotals(3, kFamily, d(2027, 2, 1), false, false).hopper, 0);
    // 112.5 rounds up; babies and toddlers are free.
    EXPECT_EQ(guide.ticketTotals(1, Party{1, {2, 1}}, d(2027, 2, 2), false, false).tickets, 113);

    // Rows are taken by position, not by their `days`.
    DisneyGuide other = guide;
    for (auto& row : other.tickets.adult) row.days = 7;
    EXPECT_EQ(totals(2, d(2027, 3, 1), &other).tickets, 1150);
    // No hopper row low enough, or no tickets at all: nothing.
    other.tickets.hopper = {{4, 50, 60}};
    EXPECT_EQ(totals(3, d(2027, 3, 1), &other).hopper, 0);
    other.tickets = {};
    EXPECT_EQ(totals(3, d(2027, 3, 1), &other), ParkGuide::TicketTotals{});

    // Four people pay (the 2- and 1-year-olds do not); 6.5% tax.
    using LL = LightningLaneChoice;
    const Day jan31 = d(2027, 1, 31);  // level 0, then 1 February at 0.25
    const auto total = [&](const LL& choice, int days = 2, Day first = d(2027, 1, 31),
                           const DisneyGuide* g = nullptr) {
        return (g ? *g : guide).lightningLaneTotal(choice, days, first, kFamily);
    };
    // Multi Pass at the stay's mean level 0.125: 18 a day; 144 x 1.065 = 153.36.
    EXPECT_EQ(total(LL::multiPass(2)), 153);
    // Single Pass day by day: a mean of 12 on the first day, 14.25 on the second.
    EXPECT_EQ(total(LL::singlePasses()), 112);          // 105 x 1.065 = 111.825
    EXPECT_EQ(total(LL::multiPassAndSingles(2)), 265);  // 249 x 1.065 = 265.185
    // Premier: each park's mean at each day's level (350, then 362.5).
    EXPECT_EQ(total(LL::premier(1)), 1491);
    EXPECT_EQ(total(LL::premier(5)), 3035);  // cut to the 2 park days: 2850 x 1.065 = 3035.25
    EXPECT_EQ(total(LL::premier(-1)), 0);
    // Only the free ones: nothing to pay.
    EXPECT_EQ(guide.lightningLaneTotal(LL::premier(2), 2, jan31, Party{0, {2, 1}}), 0);

    DisneyGuide noSingles = guide;
    noSingles.lightningLane.singlePass.clear();
    EXPECT_EQ(total(LL::singlePasses(), 2, jan31, &noSingles), 0);
}

TEST_F(DisneyGuideTest, TransportAndTheParkGuideInterface) {
    const Party four{4, {}};
    const Party six{4, {10, 2}};
    using T = TransportChoice;
    const auto total = [&](T choice, const Party& party) {
        return guide.transportTotal(choice, party, 4, base());
    };
    EXPECT_DOUBLE_EQ(total(T::mearsStandard, kFamily), 125.5);  // 3 adult, 1 child fare each way
    // Mears Express: up to four seated people for the base price.
    EXPECT_EQ(total(T::mearsExpress, four), 250);
    EXPECT_EQ(total(T::mearsExpress, six), 330);
    // Rideshare: a large car from five seated people, two cars from seven.
    EXPECT_EQ(total(T::rideshare, four), 100);
    EXPECT_EQ(total(T::rideshare, Party{4, {0}}), 100);
    EXPECT_EQ(total(T::rideshare, kFamily), 151);
    EXPECT_EQ(total(T::rideshare, Party{7, {}}), 302);
    EXPECT_EQ(total(T::carService, six), 281);
    EXPECT_EQ(total(T::carService, Party{6, {2}}), 562);
    // Rental: the resort's parking each night and a car each day.
    EXPECT_EQ(guide.transportTotal(T::rentalCar, four, 4, moderate()), 408);  // 407.5
    ParkResort halfDollar = base();
    halfDollar.parking = 12.5;
    EXPECT_DOUBLE_EQ(guide.transportTotal(T::ownCar, four, 3, halfDollar), 37.5);

    // Through the interface: no Express at Disney, and Epic Universe means nothing.
    const ParkGuide& g = guide;
    EXPECT_FALSE(g.expressIncluded(guide.resorts[2]));
    EXPECT_EQ(g.ticketTotals(3, kFamily, d(2027, 2, 1), true, true),
              g.ticketTotals(3, kFamily, d(2027, 2, 1), true, false));
}

// check_guides.py checks the shipped guide's tables; here: it prices each
// resort, and takes its busy dates from the shipped events.
TEST(DisneyGuideShipped, PricesAndKnowsTheBusyEvents) {
    const DisneyGuide& guide = DisneyGuide::shipped();
    for (const ParkResort& resort : guide.resorts) {
        EXPECT_GT(guide.nightlyRate(resort, guide.coverage.from).value_or(0), 0) << resort.id;
    }
    ASSERT_FALSE(guide.busyEvents.empty());
    EXPECT_EQ(guide.busyEvents, DisneyGuide::busySpans(EventCalendar::shipped()));
}

}  // namespace
}  // namespace tripkit
