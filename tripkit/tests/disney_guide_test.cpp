#include "tripkit/disney_guide.h"

#include <array>
#include <stdexcept>

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
Day d(int y, int m, int day) { return Day::fromCivil(y, m, day); }

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

TEST_F(DisneyGuideTest, RoundTripsInTheFilesOrder) {
    EXPECT_EQ(guide.resortNamed("Base Value Resort"), &guide.resorts[0]);
    EXPECT_EQ(guide.resortWithId("lux"), &guide.resorts[2]);
    const json::Json encoded = encode(guide);
    EXPECT_EQ(json::decodeDocument<DisneyGuide>(encoded.dump(), "again.json"), guide);
    std::vector<std::string> keys;
    for (const auto& item : encoded.items()) keys.push_back(item.key());
    EXPECT_EQ(keys, (std::vector<std::string>{"asOf", "coverage", "sources", "baseResort",
                                              "calendar", "resorts", "tickets", "lightningLane",
                                              "transport"}));
}

TEST_F(DisneyGuideTest, GuidesThatCannotPriceDoNotDecode) {
    auto error = [](const std::string& text) {
        return testing::decodeError<DisneyGuide>(text, "disney-guide.json");
    };
    const std::string text = parkData("disney-guide.json");
    // Each case: what is replaced in the test guide, by what, and the error.
    const std::vector<std::array<std::string, 3>> cases = {
        {R"("baseResort": "Base Value Resort")", R"("baseResort": "Nowhere")",
         "baseResort: no resort named Nowhere"},
        {R"(, {"days": 3, "low": 255, "high": 405})", "",
         "tickets.child: expected a row for every adult row"},
        {R"("roundTripUpTo4": 250, )", "",
         "transport.mearsExpress.roundTripUpTo4: required key is missing"},
        // Values no price sheet can hold.
        {R"("low": 100, "high": 300)", R"("low": 0, "high": 300)",
         "resorts[0].low: expected a price above 0"},
        {R"("low": 200, "high": 450)", R"("low": 500, "high": 450)", "resorts[1]: low is above high"},
        {R"("parking": 20)", R"("parking": -20)",
         "resorts[1].parking: expected an amount of 0 or more"},
        {R"("rates": [150, 200])", R"("rates": [])", "calendar[1].rates: expected at least one rate"},
        {R"("rates": [150, 200])", R"("rates": [150, -200])",
         "calendar[1].rates[1]: expected a price above 0"},
        {R"("from": "2027-02-01", "to": "2027-02-28")", R"("from": "2027-03-01", "to": "2027-02-28")",
         "calendar[1]: from 2027-03-01 is after to 2027-02-28"},
        {R"("hotelsPublishedThrough": "2027-03-30")", R"("hotelsPublishedThrough": "2026-03-30")",
         "coverage.hotelsPublishedThrough: is before from"},
        {R"({"days": 2, "low": 190, "high": 290})", R"({"days": 2, "low": -190, "high": 290})",
         "tickets.adult[1].low: expected an amount of 0 or more"},
        {R"({"days": 2, "low": 190, "high": 290})", R"({"days": 2, "low": 390, "high": 290})",
         "tickets.adult[1]: low is above high"},
        {R"({"days": 1, "low": 100, "high": 150})", R"({"days": 0, "low": 100, "high": 150})",
         "tickets.adult[0].days: expected 1 or more"},
        {R"({"fromDays": 3,)", R"({"fromDays": -3,)",
         "tickets.hopper[1].fromDays: expected a count of 0 or more"},
        {R"("taxRate": 0.065)", R"("taxRate": -0.065)",
         "lightningLane.taxRate: expected an amount of 0 or more"},
        {R"("multiPass": {"low": 15, "high": 39})", R"("multiPass": {"low": 40, "high": 39})",
         "lightningLane.multiPass: low is above high"},
        {R"("park": "Ride B", "low": 14)", R"("park": "Ride B", "low": -14)",
         "lightningLane.singlePass[1].low: expected an amount of 0 or more"},
        {R"("child": 13.25)", R"("child": -13.25)",
         "transport.mearsStandard.child: expected an amount of 0 or more"},
        {R"("perExtraPerson": 40)", R"("perExtraPerson": -40)",
         "transport.mearsExpress.perExtraPerson: expected an amount of 0 or more"},
        {R"("carService": {"low": 120, "high": 161})", R"("carService": {"low": 120, "high": -161})",
         "transport.carService.high: expected an amount of 0 or more"},
    };
    for (const auto& [from, to, message] : cases) {
        EXPECT_EQ(error(replaced(text, from, to)), "disney-guide.json: " + message) << to;
    }

    // Built in code without them, pricing stops rather than guessing.
    DisneyGuide noBase = guide;
    noBase.baseResort = "Nowhere";
    EXPECT_THROW(noBase.nightlyRate(moderate(), d(2027, 2, 1)), std::logic_error);
    DisneyGuide shortChild = guide;
    shortChild.tickets.child.pop_back();
    EXPECT_THROW(shortChild.ticketTotals(3, kFamily, d(2027, 2, 1), false, false),
                 std::logic_error);
    EXPECT_NO_THROW(shortChild.ticketTotals(2, kFamily, d(2027, 2, 1), false, false));
}

TEST_F(DisneyGuideTest, SeasonLevel) {
    EXPECT_DOUBLE_EQ(guide.seasonLevel(d(2027, 1, 4)), 0);
    EXPECT_DOUBLE_EQ(guide.seasonLevel(d(2027, 2, 28)), 0.25);
    EXPECT_DOUBLE_EQ(guide.seasonLevel(d(2027, 3, 15)), 1);
    EXPECT_DOUBLE_EQ(guide.seasonLevel(d(2027, 4, 30)), 0.5);
    EXPECT_DOUBLE_EQ(guide.seasonLevel(d(2027, 5, 1)), 0.5);  // no season

    // Overlapping seasons: the first in file order wins.
    DisneyGuide overlap = guide;
    overlap.calendar.insert(overlap.calendar.begin(),
                            {d(2027, 2, 10), d(2027, 2, 12), "Event", "Evento", {300}, false});
    EXPECT_DOUBLE_EQ(overlap.seasonLevel(d(2027, 2, 11)), 1);
    EXPECT_DOUBLE_EQ(overlap.seasonLevel(d(2027, 2, 13)), 0.25);

    DisneyGuide flat = guide;
    for (auto& s : flat.calendar) s.rates = {180, 400};
    EXPECT_DOUBLE_EQ(flat.seasonLevel(d(2027, 1, 4)), 0.5);
    EXPECT_DOUBLE_EQ(flat.seasonLevel(d(2027, 3, 15)), 0.5);
    DisneyGuide empty = guide;
    empty.calendar.clear();
    EXPECT_DOUBLE_EQ(empty.seasonLevel(d(2027, 3, 15)), 0.5);
}

TEST_F(DisneyGuideTest, WeekdayRatePatterns) {
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
}

TEST_F(DisneyGuideTest, ResortsScaleFromTheBaseResort) {
    // The base resort prices at exactly the base rate.
    EXPECT_EQ(guide.nightlyRate(base(), d(2027, 2, 5)), 200);
    EXPECT_EQ(guide.nightlyRate(base(), d(2027, 3, 4)), 320);
    EXPECT_EQ(guide.nightlyRate(base(), d(2027, 1, 3)), std::nullopt);
    // The moderate resort is twice the base in the cheapest season and 1.5
    // times it in the dearest: February sits a quarter of the way, 1.875.
    EXPECT_EQ(guide.nightlyRate(moderate(), d(2027, 1, 8)), 200);
    EXPECT_EQ(guide.nightlyRate(moderate(), d(2027, 2, 1)), 281);  // 281.25
    EXPECT_EQ(guide.nightlyRate(moderate(), d(2027, 2, 5)), 375);
    EXPECT_EQ(guide.nightlyRate(moderate(), d(2027, 3, 5)), 540);
    EXPECT_EQ(guide.nightlyRate(moderate(), d(2027, 4, 10)), 350);  // 200 x 1.75
    // 4 to 3 times: 3.75 x 150 = 562.5 rounds away from zero.
    EXPECT_EQ(guide.nightlyRate(deluxe(), d(2027, 2, 2)), 563);

    // A season dearer than the base resort's high rate stays at the high
    // ratio; one below its low at the low ratio.
    DisneyGuide wide = guide;
    wide.calendar[2].rates = {600};
    wide.calendar[0].rates = {50};
    EXPECT_EQ(wide.nightlyRate(moderate(), d(2027, 3, 2)), 900);
    EXPECT_EQ(wide.nightlyRate(moderate(), d(2027, 1, 5)), 100);
}

TEST_F(DisneyGuideTest, HotelStays) {
    // Sunday 28 March, 3 nights: 480 + 450 + 450, within the published rates.
    auto stay = guide.hotelStay(moderate(), d(2027, 3, 28), 3, 1);
    ASSERT_TRUE(stay);
    EXPECT_EQ(stay->total, 1380);
    EXPECT_FALSE(stay->estimated);
    EXPECT_EQ(guide.hotelStay(moderate(), d(2027, 3, 28), 3, 2)->total, 2760);
    // One night more reaches past the published rates.
    stay = guide.hotelStay(moderate(), d(2027, 3, 28), 4, 1);
    EXPECT_EQ(stay->total, 1830);
    EXPECT_TRUE(stay->estimated);
    // A season carried forward from last year is estimated too.
    EXPECT_TRUE(guide.hotelStay(base(), d(2027, 4, 10), 1, 1)->estimated);
    // Checking out on 1 May needs no May season; one more night does.
    EXPECT_EQ(guide.hotelStay(base(), d(2027, 4, 29), 2, 1)->total, 400);
    EXPECT_EQ(guide.hotelStay(base(), d(2027, 4, 29), 3, 1), std::nullopt);
    EXPECT_EQ(guide.hotelStay(base(), d(2027, 1, 3), 3, 1), std::nullopt);
    EXPECT_EQ(guide.hotelStay(base(), d(2027, 1, 4), 0, 1)->total, 0);
}

TEST_F(DisneyGuideTest, TicketsAndHopper) {
    // Three February days (level 0.25): adult 307.5, child 292.5; the
    // 3-day hopper row, 95, for the four who pay.
    auto t = guide.ticketTotals(3, kFamily, d(2027, 2, 1), true, false);
    EXPECT_EQ(t.tickets, 3 * 307.5 + 292.5);
    EXPECT_EQ(t.hopper, 4 * 95);
    EXPECT_EQ(guide.ticketTotals(3, kFamily, d(2027, 2, 1), false, false).hopper, 0);

    // The trip's level is the mean of its park days: 0, 0 and 0.25.
    t = guide.ticketTotals(3, kFamily, d(2027, 1, 30), true, false);
    EXPECT_EQ(t.tickets, 1115);  // 3 x 282.5 + 267.5
    EXPECT_EQ(t.hopper, 367);    // 4 x 91.67

    // Five park days with three rows: the 3-day ticket at the level of the
    // first three days (all January, level 0).
    t = guide.ticketTotals(5, kFamily, d(2027, 1, 29), false, false);
    EXPECT_EQ(t.tickets, 3 * 270 + 255);

    // No park days are priced as one; two days take the hopper row of 1+.
    t = guide.ticketTotals(0, kFamily, d(2027, 3, 1), true, false);
    EXPECT_EQ(t.tickets, 3 * 150 + 145);
    EXPECT_EQ(t.hopper, 4 * 85);
    t = guide.ticketTotals(2, kFamily, d(2027, 3, 1), true, false);
    EXPECT_EQ(t.tickets, 3 * 290 + 280);
    EXPECT_EQ(t.hopper, 4 * 85);

    // 112.5 rounds up; babies and toddlers are free.
    EXPECT_EQ(guide.ticketTotals(1, Party{1, {2, 1}}, d(2027, 2, 2), false, false).tickets, 113);

    // Rows are taken by position, not by their `days`.
    DisneyGuide renumbered = guide;
    for (auto& row : renumbered.tickets.adult) row.days = 7;
    EXPECT_EQ(renumbered.ticketTotals(2, kFamily, d(2027, 3, 1), false, false).tickets, 1150);
    // No hopper row low enough, or no tickets at all: nothing.
    DisneyGuide lateHopper = guide;
    lateHopper.tickets.hopper = {{4, 50, 60}};
    EXPECT_EQ(lateHopper.ticketTotals(3, kFamily, d(2027, 3, 1), true, false).hopper, 0);
    DisneyGuide noTickets = guide;
    noTickets.tickets = {};
    EXPECT_EQ(noTickets.ticketTotals(3, kFamily, d(2027, 3, 1), true, false),
              ParkGuide::TicketTotals{});
}

TEST_F(DisneyGuideTest, LightningLane) {
    // Four people pay (the 2- and 1-year-olds do not); 6.5% tax.
    const Day jan31 = d(2027, 1, 31);  // level 0, then 1 February at 0.25
    EXPECT_EQ(guide.lightningLaneTotal(LightningLaneChoice::none(), 2, jan31, kFamily), 0);
    // Multi Pass at the stay's mean level 0.125: 18 a day.
    EXPECT_EQ(guide.lightningLaneTotal(LightningLaneChoice::multiPass(2), 2, jan31, kFamily),
              153);  // 144 x 1.065 = 153.36
    EXPECT_EQ(
        guide.lightningLaneTotal(LightningLaneChoice::multiPass(3), 3, d(2027, 2, 1), kFamily),
        268);  // 21 x 3 x 4 x 1.065
    // Single Pass day by day: a mean of 12 on the first day, 14.25 on the second.
    EXPECT_EQ(guide.lightningLaneTotal(LightningLaneChoice::singlePasses(), 2, jan31, kFamily),
              112);  // 105 x 1.065 = 111.825
    EXPECT_EQ(guide.lightningLaneTotal(LightningLaneChoice::multiPassAndSingles(2), 2, jan31,
                                       kFamily),
              265);  // 249 x 1.065 = 265.185
    // Premier: each park's mean at each day's level (350, then 362.5).
    EXPECT_EQ(guide.lightningLaneTotal(LightningLaneChoice::premier(1), 2, jan31, kFamily), 1491);
    EXPECT_EQ(guide.lightningLaneTotal(LightningLaneChoice::premier(5), 2, jan31, kFamily),
              3035);  // cut to the 2 park days: 2850 x 1.065 = 3035.25
    EXPECT_EQ(guide.lightningLaneTotal(LightningLaneChoice::premier(-1), 2, jan31, kFamily), 0);
    // No park days count as one.
    EXPECT_EQ(
        guide.lightningLaneTotal(LightningLaneChoice::multiPass(1), 0, d(2027, 3, 1), kFamily),
        166);  // 39 x 4 x 1.065 = 166.14
    // Only the free ones: nothing to pay.
    EXPECT_EQ(guide.lightningLaneTotal(LightningLaneChoice::premier(2), 2, jan31, Party{0, {2, 1}}),
              0);

    DisneyGuide noSingles = guide;
    noSingles.lightningLane.singlePass.clear();
    EXPECT_EQ(noSingles.lightningLaneTotal(LightningLaneChoice::singlePasses(), 2, jan31, kFamily),
              0);
    EXPECT_EQ(noSingles.lightningLaneTotal(LightningLaneChoice::multiPassAndSingles(2), 2, jan31,
                                           kFamily),
              153);
}

TEST_F(DisneyGuideTest, Transport) {
    const Party four{4, {}};
    const Party six{4, {10, 2}};
    // Mears shuttle: 3 adult and 1 child fare each way, to the cent.
    EXPECT_DOUBLE_EQ(guide.transportTotal(TransportChoice::mearsStandard, kFamily, 4, base()),
                     125.5);
    // Mears Express: up to four seated people for the base price.
    EXPECT_EQ(guide.transportTotal(TransportChoice::mearsExpress, four, 4, base()), 250);
    EXPECT_EQ(guide.transportTotal(TransportChoice::mearsExpress, Party{4, {1}}, 4, base()), 250);
    EXPECT_EQ(guide.transportTotal(TransportChoice::mearsExpress, six, 4, base()), 330);
    // Rideshare: a large car from five seated people, two cars from seven.
    EXPECT_EQ(guide.transportTotal(TransportChoice::rideshare, four, 4, base()), 100);
    EXPECT_EQ(guide.transportTotal(TransportChoice::rideshare, Party{4, {0}}, 4, base()), 100);
    EXPECT_EQ(guide.transportTotal(TransportChoice::rideshare, kFamily, 4, base()), 151);
    EXPECT_EQ(guide.transportTotal(TransportChoice::rideshare, Party{7, {}}, 4, base()), 302);
    EXPECT_EQ(guide.transportTotal(TransportChoice::carService, six, 4, base()), 281);
    EXPECT_EQ(guide.transportTotal(TransportChoice::carService, Party{6, {1}}, 4, base()), 281);
    EXPECT_EQ(guide.transportTotal(TransportChoice::carService, Party{6, {2}}, 4, base()), 562);
    // Rental: the resort's parking each night and a car each day.
    EXPECT_EQ(guide.transportTotal(TransportChoice::rentalCar, four, 4, moderate()), 408);  // 407.5
    ParkResort halfDollar = base();
    halfDollar.parking = 12.5;
    EXPECT_DOUBLE_EQ(guide.transportTotal(TransportChoice::ownCar, four, 3, halfDollar), 37.5);
    EXPECT_EQ(guide.transportTotal(TransportChoice::ownCar, four, 0, halfDollar), 0);
}

TEST_F(DisneyGuideTest, BusyDates) {
    // 4 July 2027 is a Sunday: off Saturday 3 to Monday 5.
    EXPECT_TRUE(guide.isBusy(d(2027, 7, 3)));
    EXPECT_TRUE(guide.isBusy(d(2027, 7, 5)));
    EXPECT_FALSE(guide.isBusy(d(2027, 7, 2)));
    EXPECT_FALSE(guide.isBusy(d(2027, 7, 6)));
    // New Year's Day 2028 is a Saturday, observed on Friday 31 December.
    EXPECT_TRUE(guide.isBusy(d(2027, 12, 31)));
    EXPECT_FALSE(guide.isBusy(d(2027, 12, 30)));
    // Busy events come from the events calendar.
    EXPECT_FALSE(guide.isBusy(d(2027, 10, 2)));
    guide.busyEvents = {DayRange(d(2027, 10, 1), d(2027, 10, 3))};
    EXPECT_TRUE(guide.isBusy(d(2027, 10, 1)));
    EXPECT_TRUE(guide.isBusy(d(2027, 10, 3)));
    EXPECT_FALSE(guide.isBusy(d(2027, 10, 4)));
    EXPECT_TRUE(DisneyGuide::busyDate(d(2027, 10, 2), guide.busyEvents));
}

TEST_F(DisneyGuideTest, PricesThroughTheParkGuideInterface) {
    const ParkGuide& g = guide;
    EXPECT_EQ(g.parkResorts(), guide.resorts);
    EXPECT_FALSE(g.expressIncluded(guide.resorts[2]));
    // Epic Universe means nothing at Disney.
    EXPECT_EQ(g.ticketTotals(3, kFamily, d(2027, 2, 1), true, true),
              g.ticketTotals(3, kFamily, d(2027, 2, 1), true, false));
}

TEST(DisneyGuideShipped, PricesEveryResortOnEverySeasonAndKnowsTheBusyEvents) {
    const DisneyGuide& guide = DisneyGuide::shipped();
    EXPECT_EQ(&guide, &DisneyGuide::shipped());  // decoded once
    ASSERT_FALSE(guide.calendar.empty());
    ASSERT_NE(guide.resortNamed(guide.baseResort), nullptr);
    for (const DisneyGuide::Season& season : guide.calendar) {
        EXPECT_LE(season.from, season.to) << season.from;
        for (const ParkResort& resort : guide.resorts) {
            const auto rate = guide.nightlyRate(resort, season.from);
            ASSERT_TRUE(rate) << resort.id << " " << season.from;
            EXPECT_GT(*rate, 0) << resort.id << " " << season.from;
        }
    }
    const Party family{2, {8}};
    const auto t = guide.ticketTotals(4, family, guide.coverage.from, true, false);
    EXPECT_GT(t.tickets, 0);
    EXPECT_GT(t.hopper, 0);

    const EventCalendar& events = EventCalendar::shipped();
    EXPECT_EQ(guide.busyEvents, DisneyGuide::busySpans(events));
    for (const Event& e : events.events) {
        if (e.busy) {
            EXPECT_TRUE(guide.isBusy(e.first)) << e.name;
        }
    }
}

}  // namespace
}  // namespace tripkit
