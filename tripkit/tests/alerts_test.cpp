#include "tripkit/alerts.h"

#include <gtest/gtest.h>

#include "tripkit/tests/test_data.h"

namespace tripkit {
namespace {

const Day kToday = Day::fromCivil(2026, 11, 23);
const std::string kID = "E621E1F8-C36C-495A-93FC-0C247A3E6E5F";

Watch routeWatch(std::optional<double> target, std::optional<double> last,
                 std::optional<double> alerted) {
    Watch w;
    w.id = kID;
    w.kind = Watch::Route{"LIS", "Lisbon", std::nullopt};
    w.target = target;
    w.created = kToday - 10;
    w.lastPrice = last;
    w.lastAlerted = alerted;
    return w;
}

TEST(Alerts, CheckRulesAndRoutePricesFromFreshFaresInsideTheWindow) {
    using R = WatchAlert::Reason;
    const std::nullopt_t none = std::nullopt;
    using P = std::optional<double>;  // target, last price, last alerted; price; alert
    const std::vector<std::tuple<P, P, P, double, std::optional<R>>> cases = {
        {none, none, none, 300, none},       // the first check only records
        {none, 305, none, 300.01, none},     // a drop of 4.99
        {none, 305, none, 300, R::dropped},  // exactly 5.00
        {none, 310, 300, 299.6, none},       // under 50 cents below the last alert
        {none, 310, 300, 299.4, R::dropped},
        {250, 260, none, 250, R::reachedTarget},   // at the target
        {250, none, none, 249, R::reachedTarget},  // a target alerts on the first check
        {250, 240, 240, 245, none},                // already announced lower
        {250, 240, 240, 239, R::reachedTarget},
        {250, 400, none, 251, none},  // a big drop, but above the target
    };
    for (const auto& [target, last, alerted, price, reason] : cases) {
        Watch w = routeWatch(target, last, alerted);
        const auto alert = Alerts::check(w, price, kToday);
        SCOPED_TRACE(::testing::Message() << price << " after " << last.value_or(-1));
        EXPECT_EQ(alert ? std::optional(alert->reason) : std::nullopt, reason);
        EXPECT_EQ(alert ? alert->previous : last, last);
        EXPECT_EQ(w.lastPrice, price);
        EXPECT_EQ(w.lastChecked, kToday);
        EXPECT_EQ(w.lastAlerted, alert ? std::optional(price) : alerted);
    }
    // No usable price: the watch is left as it was.
    Watch w = routeWatch(std::nullopt, 300, std::nullopt);
    const Watch before = w;
    EXPECT_FALSE(Alerts::check(w, std::nullopt, kToday));
    EXPECT_EQ(w, before);

    // Seen 4 days ago is the cheapest but too old for an alert; 3 days is fine.
    const CalendarBook book = json::decodeDocument<CalendarBook>(R"({"origin": "JFK",
        "updated": "2026-11-23", "routes": {"LIS": {
          "2026-12-01": [199, "TP", 0, "2026-12-08", "2026-11-19"],
          "2026-12-03": [350, "TP", 0, "2026-12-10", "2026-11-20"],
          "2026-12-20": [320, "TP", 1, "2026-12-27", "2026-11-23"],
          "2026-11-22": [150, "TP", 0, "2026-11-29", "2026-11-23"]}}})",
                                                                 "c");
    const FareCalendar calendar({book});
    Watch::Route route{"LIS", "Lisbon", std::nullopt};
    EXPECT_EQ(Alerts::routePrice(route, calendar, kToday), 320);
    route.window = DayRange(Day::fromCivil(2026, 12, 1), Day::fromCivil(2026, 12, 10));
    EXPECT_EQ(Alerts::routePrice(route, calendar, kToday), 350);

    // checkAll: route watches from the calendar, trips from the pricer, in order.
    std::vector<Watch> watches = {routeWatch(330, std::nullopt, std::nullopt)};
    Watch trip = routeWatch(std::nullopt, 4000, std::nullopt);
    trip.id = Watch::makeID(1, 2);
    trip.kind = Watch::Disney{TripSearch{}, DayRange(kToday + 30, kToday + 35)};
    watches.push_back(trip);
    auto alerts = Alerts::checkAll(watches, calendar, nullptr, kToday);
    ASSERT_EQ(alerts.size(), 1u);  // no pricer: the trip watch is left alone
    EXPECT_EQ(watches[1], trip);
    alerts = Alerts::checkAll(
        watches, calendar, [](const Watch::Disney&, Day) { return std::optional<double>(3990); },
        kToday);
    ASSERT_EQ(alerts.size(), 1u);
    EXPECT_EQ(alerts[0].watchID, trip.id);
    EXPECT_EQ(alerts[0].reason, WatchAlert::Reason::dropped);
}

// testing::parkSearch in the test Disney guide, with typical fares only:
// $1,029 for check-ins 4 to 29 January, $1,043 on the 30th (back on
// February's $58 fare), $1,099 on the 31st (also a $150 February night),
// $1,195 on 1 February. At Universal, $1,173 on any January weekday.
using testing::parkSearch;

TEST(Alerts, ThemeParkWatchesNotificationTextsAndTheWatchFileForm) {
    const DisneyGuide disney = testing::testDisneyGuide();
    const UniversalGuide universal = testing::testUniversalGuide();
    const Airport here{"HOM", "Home", "FL", "", 28.43, -81.31};  // typical fares at the floor
    const auto jan = [](int day) { return Day::fromCivil(2027, 1, day); };
    const auto feb = [](int day) { return Day::fromCivil(2027, 2, day); };
    // Found fares at exactly the typical $58 out on 1 February and back on
    // the 3rd: that date ($1,195) leads the planner's order, but is not the
    // lowest total.
    const FareBook book = testing::fareBook({{feb(1), 58}}, {{feb(3), 58}}, kToday);

    struct Case {
        const char* label;
        std::vector<Tier> tiers;
        Day chosen;
        bool withBook;
        std::optional<Day> earliest;
        std::optional<double> maxTotal, price;
    };
    const std::vector<Tier> value = {Tier::value};
    const std::vector<Case> cases = {
        {"three days before counts, four do not", value, feb(3), false, {}, {}, 1099},
        {"lowest, not first", value, feb(3), true, {}, {}, 1099},
        {"three days after counts", value, jan(18), false, jan(21), {}, 1029},
        {"four days after does not", value, jan(17), false, jan(21), {}, std::nullopt},
        {"the watch's target, not the search's budget", value, feb(2), false, {}, 1, 1043},
        {"Universal hotels only", {Tier::primeValue}, jan(11), false, {}, {}, 1173},
    };
    PlanInputs inputs;
    inputs.book = &book;
    inputs.home = here;
    inputs.orlando = here;
    const Alerts::TripPricer withBook = Alerts::tripPricer(disney, universal, inputs);
    inputs.book = nullptr;
    const Alerts::TripPricer typicalOnly = Alerts::tripPricer(disney, universal, inputs);
    for (const Case& c : cases) {
        Watch::Disney trip{parkSearch(c.tiers), DayRange(c.chosen, c.chosen + 2)};
        trip.search.window.earliest = c.earliest;
        trip.search.maxTotal = c.maxTotal;
        EXPECT_EQ((c.withBook ? withBook : typicalOnly)(trip, kToday), c.price) << c.label;
    }

    // A watch on Universal hotels only is a Universal trip.
    Watch named;
    named.kind = Watch::Disney{parkSearch({Tier::primeValue}), DayRange(jan(11), jan(13))};
    EXPECT_EQ(named.name(), "Universal Orlando trip checking in 2027-01-11");
    TripSearch byId = parkSearch({});
    byId.resorts = {ResortChoice::Kind::only, {}, {"surfside"}};
    EXPECT_TRUE((Watch::Disney{byId, {}}.isUniversal(&universal)));
    byId.resorts.ids.push_back("base");
    EXPECT_FALSE((Watch::Disney{byId, {}}.isUniversal(&universal)));

    Watch route = routeWatch(std::nullopt, 1305, std::nullopt);
    const WatchAlert dropped{kID, 1299.5, 1305, WatchAlert::Reason::dropped};
    auto n = AlertNotification::of(route, dropped, kToday);
    EXPECT_EQ(n.title, "Price drop: Lisbon");
    EXPECT_EQ(n.body,
              "$1,300 round trip, the cheapest found in recent searches (was $1,305). Prices "
              "change quickly.");
    EXPECT_EQ(n.identifier, "watch-" + kID + "-2026-11-23");

    Watch trip = route;
    const Day jan4 = Day::fromCivil(2027, 1, 4);
    trip.kind = Watch::Disney{TripSearch{}, DayRange(jan4, jan4 + 5)};
    n = AlertNotification::of(trip, {kID, 4210, {}, WatchAlert::Reason::reachedTarget}, kToday);
    EXPECT_EQ(n.title, "Under your price: Walt Disney World trip checking in 2027-01-04");
    EXPECT_EQ(n.body, "About $4,210 for the whole trip. Estimates; check before booking.");
    EXPECT_TRUE(trip.hasPassed(jan4 + 6));
    EXPECT_FALSE(trip.hasPassed(jan4 + 5));
    EXPECT_FALSE(route.hasPassed(Day::fromCivil(2099, 1, 1)));  // no window never passes

    Watch w = routeWatch(250, 300, 280);
    std::get<Watch::Route>(w.kind).window = DayRange(kToday, kToday + 9);
    w.lastChecked = kToday;
    const std::string text = json::Json::array({encode(w)}).dump();
    EXPECT_EQ(json::decodeDocument<std::vector<Watch>>(text, "w"), std::vector<Watch>{w});

    const std::string id = Watch::makeID(0xFFFFFFFFFFFFFFFFULL, 0);
    EXPECT_TRUE(Watch::isID(id));
    EXPECT_EQ(id.substr(14, 1), "4");  // version 4
    EXPECT_EQ(id.substr(19, 1), "8");  // variant 10xx
    EXPECT_NE(Watch::makeID(1, 2), Watch::makeID(1, 3));

    const std::string minimal = R"({"id": "e621e1f8-c36c-495a-93fc-0c247a3e6e5f",
        "kind": {"route": {"code": "LIS", "place": "Lisbon"}}, "created": "2026-11-01"})";
    EXPECT_EQ(json::decodeDocument<Watch>(minimal, "w").id, kID);  // kept upper-case
    const auto error = [&](const std::string& from, const std::string& to) {
        return testing::decodeError<Watch>(testing::replaced(minimal, from, to), "w");
    };
    EXPECT_EQ(error("e621e1f8-", "e621e1f8"), "w: id: expected a UUID");
    EXPECT_EQ(error("route", "flight"), "w: kind.flight: not a kind of watch: flight");
    EXPECT_EQ(error(R"("created")", R"("target": -1, "created")"),
              "w: target: expected a price of 0 or more");
}

}  // namespace
}  // namespace tripkit
