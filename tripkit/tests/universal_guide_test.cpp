#include "tripkit/universal_guide.h"

#include <array>

#include <gtest/gtest.h>

#include "tripkit/tests/test_data.h"

namespace tripkit {
namespace {

using testing::testUniversalGuide;

// The test guide: prices hold 1 January to 30 June 2027; Studios 119 a day,
// Epic Universe 139, the 3-day ticket 344.99 or 404.99 with park-to-park;
// 6.5% tax on tickets.
Day d(int y, int m, int day) {
    return Day::fromCivil(y, m, day);
}

class UniversalGuideTest : public ::testing::Test {
protected:
    UniversalGuide guide = testUniversalGuide();
    ParkResort surfside() const { return guide.hotels[0].resort(); }
    ParkResort portofino() const { return guide.hotels[1].resort(); }
};

TEST(UniversalGuideDecoding, ValuesNoPriceSheetCanHold) {
    const std::string text = testing::parkData("universal-guide.json");
    // What is replaced in the test guide, by what, and the error.
    // clang-format off
    const std::vector<std::array<std::string, 3>> cases = {
        {R"("express": ["portofino"])", R"("express": "portofino")", "express: expected an array or an object"},
        {R"("express": ["portofino"])", R"("express": ["portofino", "nowhere"])", "express[1]: no hotel with id nowhere"},
        {R"("from": 120)", R"("from": 0)", "hotels[0].from: expected a price above 0"},
        {R"("to": "2027-06-30")", R"("to": "2026-06-30")", "coverage.to: is before from"},
        {R"("hotel": 0.125)", R"("hotel": -0.125)", "taxes.hotel: expected an amount of 0 or more"},
        {R"({"published": 404.99})", R"({"published": 300})", "tickets.threeDayParkToPark: costs less than threeDayOneParkEach"},
        {R"("low": 35, "high": 55)", R"("low": 65, "high": 55)", "transport.rideshare: low is above high"},
    };
    // clang-format on
    for (const auto& [from, to, message] : cases) {
        EXPECT_EQ(testing::decodeError<UniversalGuide>(testing::replaced(text, from, to), "u.json"),
                  "u.json: " + message);
    }
}

TEST_F(UniversalGuideTest, TicketsTransportAndBusyDates) {
    using T = UniversalGuide::GuestTicket;
    // The 3-day ticket needs both three days and Epic Universe.
    EXPECT_EQ(guide.guestTicket(3, true, false), (T{344.99, 0}));
    const T hops = guide.guestTicket(3, true, true);
    EXPECT_EQ(hops.base, 344.99);
    EXPECT_NEAR(hops.parkToPark, 60, 1e-9);
    EXPECT_EQ(guide.guestTicket(3, false, false), (T{3 * 119, 0}));
    // One Epic Universe day, the others at the Studios.
    EXPECT_EQ(guide.guestTicket(4, true, false), (T{139 + 3 * 119, 0}));
    EXPECT_EQ(guide.guestTicket(0, true, false), (T{139, 0}));  // no park days count as one
    // Park-to-park has no published price outside the 3-day ticket.
    EXPECT_EQ(guide.guestTicket(4, true, true), (T{139 + 3 * 119, 0}));
    // A park the guide does not list costs nothing.
    UniversalGuide noEpic = guide;
    noEpic.tickets.oneDay.pop_back();
    EXPECT_EQ(noEpic.guestTicket(2, true, false), (T{119, 0}));

    // The 9-year-old pays as an adult, the 2-year-old pays nothing: 3 guests.
    const Party family{2, {9, 2}};
    auto t = guide.ticketTotals(3, family, d(2027, 3, 1), true, true);
    EXPECT_EQ(t.tickets, 1102);  // 344.99 x 3 x 1.065 = 1102.24
    EXPECT_EQ(t.hopper, 192);    // 60 x 3 x 1.065 = 191.7
    t = guide.ticketTotals(1, Party{1, {}}, d(2027, 3, 1), true, false);
    EXPECT_EQ(t.tickets, 127);  // 126.735
    EXPECT_EQ(t.hopper, 0);
    EXPECT_EQ(guide.ticketTotals(2, Party{0, {2, 1}}, d(2027, 3, 1), false, true).tickets, 0);

    const Party four{2, {9, 2}};  // and nobody on a lap
    // Every shuttle choice is priced as a rideshare.
    for (auto choice : {TransportChoice::mearsStandard, TransportChoice::mearsExpress,
                        TransportChoice::rideshare}) {
        EXPECT_EQ(guide.transportTotal(choice, four, 4, surfside()), 90);
        EXPECT_EQ(guide.transportTotal(choice, Party{4, {2}}, 4, surfside()), 140);
        EXPECT_EQ(guide.transportTotal(choice, Party{5, {3, 4}}, 4, surfside()), 280);
    }
    EXPECT_EQ(guide.transportTotal(TransportChoice::carService, four, 4, surfside()), 261);
    EXPECT_EQ(guide.transportTotal(TransportChoice::carService, Party{7, {}}, 4, surfside()), 522);
    // A car each day, no parking.
    EXPECT_EQ(guide.transportTotal(TransportChoice::rentalCar, four, 4, surfside()), 300);
    EXPECT_EQ(guide.transportTotal(TransportChoice::ownCar, four, 4, surfside()), 0);

    // 1-2 January and 20-31 December; Memorial Day 2026 (Monday 25 May) is
    // off from Saturday 23; New Year 2027 falls on a Friday, off to Sunday 3
    // January, where the fixed dates do not reach.
    // clang-format off
    const std::vector<std::pair<Day, bool>> busyDays = {
        {d(2026, 1, 1), true}, {d(2026, 1, 2), true}, {d(2026, 1, 3), false},
        {d(2026, 12, 19), false}, {d(2026, 12, 20), true}, {d(2026, 12, 31), true},
        {d(2026, 5, 22), false}, {d(2026, 5, 23), true},
        {d(2027, 1, 3), true}, {d(2027, 1, 4), false}};
    // clang-format on
    for (const auto& [day, busy] : busyDays) EXPECT_EQ(guide.isBusy(day), busy) << day;
    // Disney has no fixed busy days in late December.
    EXPECT_FALSE(DisneyGuide::busyDate(d(2026, 12, 20), {}));
}

TEST_F(UniversalGuideTest, RoundTripsHotelsAsResortsAndStaysWithinTheCoverage) {
    // Checking out on the last covered day is priced; one day later is not.
    auto stay = guide.hotelStay(portofino(), d(2027, 6, 26), 4, 2);
    ASSERT_TRUE(stay);
    EXPECT_EQ(stay->total, 450 * 4 * 2);
    EXPECT_FALSE(stay->estimated);
    EXPECT_EQ(guide.hotelStay(portofino(), d(2027, 6, 27), 4, 1), std::nullopt);
    EXPECT_EQ(guide.hotelStay(surfside(), d(2027, 1, 1), 2, 1)->total, 240);
    EXPECT_EQ(guide.hotelStay(guide.hotels[0], d(2027, 1, 1), 2, 1)->total, 240);
    ParkResort stranger = surfside();
    stranger.id = "elsewhere";
    EXPECT_EQ(guide.hotelStay(stranger, d(2027, 1, 1), 2, 1), std::nullopt);

    EXPECT_EQ(guide.nightlyRate(portofino(), d(2027, 6, 30)), 450);
    EXPECT_EQ(guide.nightlyRate(portofino(), d(2027, 7, 1)), std::nullopt);

    EXPECT_EQ(json::decodeDocument<UniversalGuide>(encode(guide).dump(), "again.json"), guide);
    const ParkGuide& g = guide;
    const auto resorts = g.parkResorts();
    ASSERT_EQ(resorts.size(), 2u);
    // A hotel's "from" rate is both ends of its range.
    EXPECT_EQ(resorts[1].low, 450);
    EXPECT_EQ(resorts[1].high, 450);
    EXPECT_TRUE(g.expressIncluded(resorts[1]));
    EXPECT_FALSE(g.expressIncluded(resorts[0]));
    EXPECT_EQ(g.lightningLaneTotal(LightningLaneChoice::multiPass(3), 3, d(2027, 3, 1), Party{}),
              0);
}

// check_guides.py checks the shipped guide; here: it decodes, and the parks
// looked up by name are there (a missing one would price at 0).
TEST(UniversalGuideShipped, DecodesWithEveryParkLookedUpByName) {
    const UniversalGuide& guide = UniversalGuide::shipped();
    EXPECT_GT(guide.oneDayPrice(UniversalGuide::studiosPark), 0);
    EXPECT_GT(guide.oneDayPrice(UniversalGuide::epicUniversePark), 0);
    ASSERT_FALSE(guide.hotels.empty());
    EXPECT_TRUE(guide.hotelStay(guide.hotels[0], guide.coverage.from, 3, 1));
}

}  // namespace
}  // namespace tripkit
