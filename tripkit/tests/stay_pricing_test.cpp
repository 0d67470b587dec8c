#include "tripkit/stay_pricing.h"

#include <gtest/gtest.h>

#include "tripkit/disney_guide.h"
#include "tripkit/tests/test_data.h"
#include "tripkit/universal_guide.h"

namespace tripkit {
namespace {

using testing::parkData;
using testing::testDisneyGuide;
using testing::testUniversalGuide;

Day d(int y, int m, int day) {
    return Day::fromCivil(y, m, day);
}

TripSearch searchOf(int nights, int parkDays) {
    TripSearch s = json::decodeDocument<TripSearch>(parkData("search.json"), "search.json");
    s.nights = nights;
    s.parkDays = parkDays;
    return s;
}

// The tables answer exactly as the rules on every day they hold, and the
// rules answer around them: each shipped guide and the test guide, every
// resort, every day from a month before the tables to a month after.
TEST(StayPricing, TablesPriceAsTheRules) {
    const DisneyGuide testGuide = testDisneyGuide();
    // Seasons that start before the coverage and overlap (the first wins).
    DisneyGuide early = testGuide;
    early.coverage.from = d(2027, 1, 20);
    early.calendar.push_back(early.calendar[1]);
    early.calendar.back().rates = {500};
    early.busyEvents = {DayRange(d(2027, 3, 5), d(2027, 3, 7))};
    for (const DisneyGuide* guide :
         std::initializer_list<const DisneyGuide*>{&DisneyGuide::shipped(), &testGuide, &early}) {
        const auto& days = guide->days();
        // The tables hold every season's days, or the loop would test the rules alone.
        ASSERT_LE(days.first, guide->calendar.front().from);
        ASSERT_GE(days.first + static_cast<std::int64_t>(days.count) - 1,
                  guide->calendar.back().to);
        const Day first = days.first - 31;
        const Day last = days.first + static_cast<std::int64_t>(days.count) + 31;
        for (Day day = first; day <= last; day += 1) {
            ASSERT_EQ(guide->seasonLevel(day), guide->seasonLevelByRule(day)) << day;
            ASSERT_EQ(guide->isBusy(day), DisneyGuide::busyDate(day, guide->busyEvents)) << day;
            for (const ParkResort& resort : guide->resorts) {
                ASSERT_EQ(guide->nightlyRate(resort, day), guide->nightlyRateByRule(resort, day))
                    << resort.id << " " << day;
                const auto night = guide->hotelStay(resort, day, 1, 1);
                ASSERT_EQ(night.has_value(), guide->nightlyRateByRule(resort, day).has_value());
                if (night) {
                    ASSERT_EQ(night->estimated, guide->nightEstimatedByRule(day)) << day;
                }
            }
        }
    }
    const UniversalGuide& universal = UniversalGuide::shipped();
    for (Day day = universal.coverage.from - 31; day <= universal.coverage.to + 31; day += 1) {
        ASSERT_EQ(universal.isBusy(day), UniversalGuide::busyDate(day)) << day;
    }
}

// Which parts are estimated at the edges of the coverage. The test Disney
// guide publishes hotels through 30 March 2027 and tickets through 31 March,
// its seasons run 4 January to 30 April (April carried forward); the
// Universal one covers 1 January to 30 June 2027.
TEST(StayPricing, PartsOutsideTheCoverageEstimatedEveryAllowedResortAndCopies) {
    struct Case {
        bool disney;
        Day checkIn;
        int nights, parkDays;
        bool hotelPriced, hotelEstimated, ticketsEstimated;
    };
    const std::vector<Case> cases = {
        {true, d(2027, 3, 28), 3, 3, true, false, false},    // last published night and day
        {true, d(2027, 3, 28), 4, 3, true, true, false},     // a night past the hotel prices
        {true, d(2027, 3, 30), 2, 2, true, true, false},     // tickets through 31 March
        {true, d(2027, 3, 30), 2, 3, true, true, true},      // a park day in April
        {true, d(2027, 1, 3), 2, 1, false, false, true},     // before the coverage: no season
        {false, d(2027, 6, 26), 4, 5, true, false, false},   // checks out on the last day
        {false, d(2027, 6, 30), 1, 1, false, false, false},  // checks out past it
        {false, d(2027, 6, 30), 1, 2, false, false, true},
        {false, d(2026, 12, 31), 2, 2, false, false, true},
    };
    const DisneyGuide disney = testDisneyGuide();
    const UniversalGuide universal = testUniversalGuide();
    for (const Case& c : cases) {
        const ParkGuide& guide = c.disney ? static_cast<const ParkGuide&>(disney) : universal;
        const ParkResort resort = guide.parkResorts().front();
        const StayPrice s = priceStay(guide, resort, searchOf(c.nights, c.parkDays), c.checkIn);
        SCOPED_TRACE(::testing::Message() << c.checkIn << " " << c.nights << " " << c.parkDays);
        EXPECT_EQ(s.hotel.has_value(), c.hotelPriced);
        EXPECT_EQ(s.hotelEstimated(), c.hotelEstimated);
        EXPECT_EQ(s.ticketsEstimated(), c.ticketsEstimated);
        // No total without a hotel price; otherwise every part counts.
        ASSERT_EQ(s.total().has_value(), c.hotelPriced);
        if (s.total()) {
            EXPECT_EQ(*s.total(), s.hotel->total + s.tickets.tickets + s.tickets.hopper +
                                      s.lightningLane + s.transport + s.food);
        }
    }

    const DisneyGuide guide = testDisneyGuide();
    const TripSearch search = searchOf(4, 3);  // value and moderate resorts
    const auto stays = priceStays(guide, search, d(2027, 2, 1));
    ASSERT_EQ(stays.size(), 2u);
    EXPECT_EQ(stays[0].resort, guide.resorts[0]);
    EXPECT_EQ(stays[1].resort, guide.resorts[1]);
    EXPECT_EQ(stays[1].price, priceStay(guide, guide.resorts[1], search, d(2027, 2, 1)));
    // Presidents' Day weekend touches the stay from its check-out day.
    EXPECT_FALSE(priceStay(guide, guide.resorts[0], search, d(2027, 2, 8)).busy);
    EXPECT_TRUE(priceStay(guide, guide.resorts[0], search, d(2027, 2, 9)).busy);

    const DisneyGuide& shipped = DisneyGuide::shipped();
    const ParkResort& resort = shipped.resorts.back();
    const Day day = shipped.calendar.front().from;
    const auto before = shipped.nightlyRate(resort, day);  // the tables are built
    DisneyGuide dearer = shipped;
    for (auto& rate : dearer.calendar.front().rates) rate *= 2;
    EXPECT_EQ(dearer.nightlyRate(resort, day), dearer.nightlyRateByRule(resort, day));
    EXPECT_NE(dearer.nightlyRate(resort, day), before);
    EXPECT_EQ(shipped.nightlyRate(resort, day), before);
}

}  // namespace
}  // namespace tripkit
