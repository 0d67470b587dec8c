#include "tripkit/party.h"

#include <climits>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tripkit/tests/test_data.h"

namespace tripkit {
namespace {

using testing::decodeError;

Day d(int y, int m, int day) {
    return Day::fromCivil(y, m, day);
}

Party party(int adults, std::vector<int> ages = {}) {
    return Party{adults, std::move(ages)};
}

// Disney adult- and child-priced, Universal ticketed, free in the parks,
// plane seats, lap babies, rooms.
std::vector<int> counts(const Party& p) {
    return {p.adultPriced(), p.childPriced(), p.universalTicketed(), p.freeInParks(), p.seats(),
            p.lapBabies(),   p.rooms()};
}

TEST(Party, AgesDecideTicketsSeatsLapsRoomsAndFood) {
    // 10 is a Disney adult; 9 a Disney child and a Universal adult; 3 is the
    // first age that pays; a 2-year-old has a seat but no park ticket, a
    // 1-year-old neither. A room sleeps four and a baby under 3.
    EXPECT_EQ(counts(party(1, {10, 9, 3})), (std::vector<int>{2, 2, 4, 0, 4, 0, 1}));
    EXPECT_EQ(counts(party(2, {2})), (std::vector<int>{2, 0, 2, 1, 3, 0, 1}));
    EXPECT_EQ(counts(party(2, {1})), (std::vector<int>{2, 0, 2, 1, 2, 1, 1}));
    EXPECT_EQ(counts(party(4, {3})), (std::vector<int>{4, 1, 5, 0, 5, 0, 2}));
    EXPECT_EQ(counts(party(4, {2, 1})), (std::vector<int>{4, 0, 4, 2, 5, 1, 1}));
    EXPECT_EQ(party(9).rooms(), 3);
    EXPECT_EQ(party(0).rooms(), 1);

    // Flight passengers: 12 and over fly as adults, 2 to 11 as children.
    const auto p = party(2, {12, 11, 2, 1, 0}).passengers();
    EXPECT_EQ((std::vector<int>{p.adults, p.children, p.infants}), (std::vector<int>{3, 2, 2}));

    // Counts do not wrap.
    EXPECT_THROW(party(INT_MAX, {10}).adultPriced(), std::overflow_error);
    EXPECT_THROW(party(INT_MAX - 1, {4, 30}).seats(), std::overflow_error);
    EXPECT_EQ(party(INT_MAX, {1}).seats(), INT_MAX);
    EXPECT_THROW(FoodBudget{}.total(party(1), INT_MAX), std::overflow_error);

    const FoodBudget food{60, 30};
    // Adult budget for 2 adults and the 10-year-old, child budget for the
    // 9- and 3-year-olds, nothing for the 2-year-old; 4 nights are 5 days.
    EXPECT_EQ(food.total(party(2, {10, 9, 3, 2}), 4), (3 * 60 + 2 * 30) * 5);
    EXPECT_EQ(food.total(party(1), 0), 60);
    EXPECT_EQ(FoodBudget({12.25, 0}).total(party(2), 1), 49);
    EXPECT_EQ(FoodBudget({10.25, 0}).total(party(1), 1), 21);  // 20.5: half away from zero
}

TEST(Party, FlightSearchOfAPlannerLegJsonFormsAndTheirLimits) {
    FareQuote leg;
    leg.day = d(2027, 5, 14);
    const Party family = party(2, {12, 8, 1});
    const std::string base = "https://flights.example";
    EXPECT_EQ(flightSearch(leg, "JFK", "MCO", family, base, "77"),
              base + "/search/JFK1405MCO311?marker=77");
    EXPECT_EQ(flightSearch(leg, "MCO", "JFK", party(2), base, ""), base + "/search/MCO1405JFK2");
    // A found fare's own link wins, under the partner's base when relative.
    leg.link = "search/JFK1405MCO1";
    EXPECT_EQ(flightSearch(leg, "JFK", "MCO", family, base, "77"),
              base + "/search/JFK1405MCO1?marker=77");

    // A choice of resorts by id (the search file chooses by class).
    ParkResort pop, poly;
    poly.id = "poly";
    const auto only = json::decodeDocument<ResortChoice>(R"({"only":{"ids":["poly"]}})", "c.json");
    EXPECT_FALSE(only.allows(pop));
    EXPECT_TRUE(only.allows(poly));

    const auto expectErrors = [](auto decoded,
                                 std::vector<std::pair<std::string, std::string>> cases) {
        using T = decltype(decoded);
        for (const auto& [text, message] : cases) {
            EXPECT_EQ(decodeError<T>(text, "x.json"), "x.json: " + message);
        }
    };
    const std::string w = R"("only":[],"avoid":[],"avoidHolidays":false})";
    // clang-format off
    expectErrors(Party{}, {
        {R"({"adults":-1,"childAges":[]})", "adults: expected a count of 0 or more"},
        {R"({"adults":1,"childAges":[4,-2]})", "childAges[1]: expected an age of 0 or more"}});
    expectErrors(ResortChoice{}, {
        {R"({"nearest":{}})", "nearest: not a resort choice: nearest"},
        {R"({"cheapest":{"tiers":["luxury"]}})", "cheapest.tiers[0]: not a resort class: luxury"}});
    expectErrors(DateWindow{}, {
        {R"({"months":[13],"checkInWeekdays":[],)" + w, "months[0]: expected 1 to 12"},
        {R"({"months":[],"checkInWeekdays":[0],)" + w, "checkInWeekdays[0]: expected 1 to 7"}});
    // clang-format on
}

TEST(DateWindow, LimitsOnTheCheckInDayOnlyKeepsWholeStaysAvoidSkipsAnyTouch) {
    DateWindow w;
    EXPECT_TRUE(w.withinLimits(d(2027, 2, 3), 4));  // nothing set: everything goes
    w.earliest = d(2027, 2, 1);
    w.latest = d(2027, 2, 10);
    EXPECT_FALSE(w.withinLimits(d(2027, 1, 31), 4));
    EXPECT_TRUE(w.withinLimits(d(2027, 2, 1), 4));
    EXPECT_TRUE(w.withinLimits(d(2027, 2, 10), 30));  // check-in alone is bounded
    EXPECT_FALSE(w.withinLimits(d(2027, 2, 11), 1));

    w = DateWindow{};
    w.months = {3};
    EXPECT_TRUE(w.withinLimits(d(2027, 3, 31), 5));  // the stay may run into April
    EXPECT_FALSE(w.withinLimits(d(2027, 2, 28), 1));

    w = DateWindow{};
    w.checkInWeekdays = {1, 7};                      // weekends
    EXPECT_TRUE(w.withinLimits(d(2027, 2, 7), 3));   // Sunday
    EXPECT_FALSE(w.withinLimits(d(2027, 2, 5), 3));  // Friday

    DateWindow only;
    only.only = {DayRange(d(2027, 2, 1), d(2027, 2, 5)), DayRange(d(2027, 2, 6), d(2027, 2, 8))};
    EXPECT_TRUE(only.withinLimits(d(2027, 2, 1), 4));   // out on the 5th
    EXPECT_TRUE(only.withinLimits(d(2027, 2, 3), 5));   // across two touching ranges
    EXPECT_FALSE(only.withinLimits(d(2027, 2, 5), 4));  // check-out on the 9th
    EXPECT_FALSE(only.withinLimits(d(2027, 1, 31), 2));

    DateWindow avoid;
    avoid.avoid = {DayRange(d(2027, 2, 12), d(2027, 2, 16))};
    EXPECT_FALSE(avoid.withinLimits(d(2027, 2, 8), 4));  // check-out day touches it
    EXPECT_TRUE(avoid.withinLimits(d(2027, 2, 8), 3));
    EXPECT_TRUE(avoid.withinLimits(d(2027, 2, 17), 3));
    EXPECT_FALSE(avoid.withinLimits(d(2027, 2, 16), 3));

    // Busy dates count only when avoiding holidays, and are not date limits.
    const auto busy = [](Day day) { return day == Day::fromCivil(2027, 7, 5); };
    w = DateWindow{};
    EXPECT_TRUE(w.allows(d(2027, 7, 1), 4, busy));
    w.avoidHolidays = true;
    EXPECT_FALSE(w.allows(d(2027, 7, 1), 4, busy));  // out on the 5th
    EXPECT_TRUE(w.allows(d(2027, 7, 1), 3, busy));
    EXPECT_TRUE(w.withinLimits(d(2027, 7, 1), 4));
    EXPECT_FALSE(w.allows(d(2027, 7, 5), 0, busy));
    w.months = {8};
    EXPECT_FALSE(w.allows(d(2027, 7, 10), 2, busy));
}

TEST(DateWindow, JsonSortsMonthsAndOrdersRanges) {
    const auto w = json::decodeDocument<DateWindow>(
        R"({"latest":"2027-03-01","months":[3,1,3],"checkInWeekdays":[7],"only":[],)"
        R"("avoid":[{"first":"2027-02-16","last":"2027-02-12"}],"avoidHolidays":true})",
        "w.json");
    EXPECT_FALSE(w.earliest);
    EXPECT_EQ(w.latest, d(2027, 3, 1));
    EXPECT_EQ(w.months, (std::set<int>{1, 3}));
    ASSERT_EQ(w.avoid.size(), 1u);
    EXPECT_EQ(w.avoid[0].first, d(2027, 2, 12));
    EXPECT_EQ(json::decodeDocument<DateWindow>(encode(w).dump(), "w.json"), w);
}

}  // namespace
}  // namespace tripkit
