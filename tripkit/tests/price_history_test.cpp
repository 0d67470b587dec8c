#include "tripkit/price_history.h"

#include <gtest/gtest.h>

#include "tripkit/tests/test_data.h"

namespace tripkit {
namespace {

const Day kToday = Day::fromCivil(2026, 11, 20);

// Prices on consecutive nights ending `endDaysAgo` before today.
std::vector<NightPrice> series(const std::vector<double>& prices, int endDaysAgo = 0) {
    std::vector<NightPrice> out;
    const Day first = kToday - endDaysAgo - static_cast<std::int64_t>(prices.size()) + 1;
    for (std::size_t i = 0; i < prices.size(); ++i) {
        out.push_back({first + static_cast<std::int64_t>(i), prices[i]});
    }
    return out;
}

TEST(PriceCheck, PercentilesVerdictEdgesAndWhatItNeeds) {
    std::vector<double> prices;  // 100 to 300 by tens
    for (int p = 100; p <= 300; p += 10) prices.push_back(p);
    ASSERT_EQ(prices.size(), 21u);
    // Shuffled order must not matter.
    std::rotate(prices.begin(), prices.begin() + 7, prices.end());
    const auto history = series(prices);

    auto at = [&](double price) { return PriceCheck::judge(price, history, kToday).value(); };
    const PriceCheck c = at(150);
    EXPECT_EQ((std::vector<double>{c.low, c.typical, c.high}),
              (std::vector<double>{150, 200, 250}));
    EXPECT_EQ(c.verdict, PriceCheck::Verdict::low);  // equal to the 25th percentile
    EXPECT_EQ(at(150.01).verdict, PriceCheck::Verdict::typical);
    EXPECT_EQ(at(250).verdict, PriceCheck::Verdict::typical);  // equal to the 75th
    EXPECT_EQ(at(250.01).verdict, PriceCheck::Verdict::high);

    // Strictly below only: 150 has 5 cheaper nights (100..140).
    EXPECT_DOUBLE_EQ(c.cheaperShare, 5.0 / 21);
    EXPECT_DOUBLE_EQ(at(100).cheaperShare, 0);
    EXPECT_DOUBLE_EQ(at(301).cheaperShare, 1);

    // Interpolation between ranks, and the degenerate sizes.
    EXPECT_DOUBLE_EQ(PriceCheck::percentile({10, 20, 30, 40}, 0.25), 17.5);
    EXPECT_DOUBLE_EQ(PriceCheck::percentile({42}, 0.75), 42);
    EXPECT_DOUBLE_EQ(PriceCheck::percentile({}, 0.5), 0);

    // Twenty-one nights and a positive price are needed.
    prices.assign(21, 200);
    EXPECT_TRUE(PriceCheck::judge(200, series(prices), kToday));
    prices.pop_back();
    EXPECT_FALSE(PriceCheck::judge(200, series(prices), kToday));

    prices.push_back(200);
    EXPECT_FALSE(PriceCheck::judge(0, series(prices), kToday));
    EXPECT_TRUE(PriceCheck::judge(0.01, series(prices), kToday));

    // Nights with gaps: days spans from the earliest night to today.
    const auto gappy = PriceCheck::judge(200, series(prices, 10), kToday).value();
    EXPECT_EQ(gappy.nights, 21);
    EXPECT_EQ(gappy.days, 31);
}

TEST(PriceCheck, LowestInDaysRun) {
    // 40 nights at 300 ending yesterday: nothing cheaper, so the run is the
    // whole span (41 days: the earliest night to today).
    auto history = series(std::vector<double>(40, 300), 1);
    auto c = PriceCheck::judge(250, history, kToday).value();
    EXPECT_EQ(c.days, 41);
    EXPECT_EQ(c.lowestInDays, 41);

    // The newest cheaper night decides, not the oldest: cheaper 15 days ago
    // gives a run of 14; 14 days ago gives 13, which is not worth saying.
    history[history.size() - 15].price = 200;  // 15 days before today
    history[0].price = 100;
    c = PriceCheck::judge(250, history, kToday).value();
    EXPECT_EQ(c.lowestInDays, 14);
    history[history.size() - 14].price = 240;  // 14 days before today
    c = PriceCheck::judge(250, history, kToday).value();
    EXPECT_FALSE(c.lowestInDays);
    // An equal price does not break the run.
    history[history.size() - 14].price = 250;
    EXPECT_EQ(PriceCheck::judge(250, history, kToday)->lowestInDays, 14);

    // A run of the whole span that is under 14 days is left out. (21 nights
    // need 21 days, so only a history running into the future can do that.)
    auto future = series(std::vector<double>(21, 300), -10);
    c = PriceCheck::judge(250, future, kToday).value();
    EXPECT_EQ(c.days, 11);
    EXPECT_FALSE(c.lowestInDays);
}

HistoryBook book(const std::string& origin, Day updated, Day from,
                 std::map<std::string, std::vector<std::optional<double>>> routes) {
    return HistoryBook{origin, updated, from, std::move(routes)};
}

TEST(FareHistory, MergeKeepsTheCheapestNightAndSkipsOldBooks) {
    const Day from = kToday - 3;
    const auto jfk =
        book("JFK", kToday, from, {{"LIS", {120, std::nullopt, 0, 300}}, {"CUN", {-1}}});
    const auto ewr = book("EWR", kToday - 1, from, {{"LIS", {110, 200, 250, 300}}});
    FareHistory h({jfk, ewr}, kToday);
    EXPECT_EQ(
        h.prices.at("LIS"),
        (std::map<Day, double>{{from, 110}, {from + 1, 200}, {from + 2, 250}, {from + 3, 300}}));
    EXPECT_FALSE(h.prices.contains("CUN"));  // nothing positive: no entry at all

    // A lower price from the later book replaces; a higher one does not.
    FareHistory reversed({ewr, jfk}, kToday);
    EXPECT_EQ(reversed.prices.at("LIS").at(from), 110);

    // A book published 8 days before today is left out; 7 days is kept; with
    // no day given nothing is left out.
    auto old = book("BOS", kToday - 8, from, {{"LIS", {50}}});
    EXPECT_EQ(FareHistory({jfk, old}, kToday).prices.at("LIS").at(from), 120);
    EXPECT_EQ(FareHistory({jfk, old}, std::nullopt).prices.at("LIS").at(from), 50);
    old.updated = kToday - 7;
    EXPECT_EQ(FareHistory({jfk, old}, kToday).prices.at("LIS").at(from), 50);

    EXPECT_TRUE(
        FareHistory({book("JFK", kToday, from, {{"LIS", {std::nullopt, 0}}})}, kToday).isEmpty());
}

TEST(FareHistory, NightsCoverTheLastNinetyDays) {
    // One value per night from 95 days ago to 2 days ahead.
    std::vector<std::optional<double>> values;
    for (int i = 0; i <= 97; ++i) values.push_back(100 + i);
    const Day from = kToday - 95;
    FareHistory h({book("JFK", kToday, from, {{"LIS", values}})}, kToday);

    const auto nights = h.nights("LIS", kToday);
    ASSERT_EQ(nights.size(), 90u);
    EXPECT_EQ(nights.front().day, kToday - 89);  // 90 days before is out
    EXPECT_EQ(nights.back().day, kToday);        // today is in, tomorrow is not

    // check() judges against exactly those nights; codes are exact keys.
    EXPECT_FALSE(h.check(150, "lis", kToday));
    EXPECT_EQ(h.check(150, "LIS", kToday), PriceCheck::judge(150, nights, kToday));
}

TEST(PriceHistoryJson, HistoryBooksRoundTrip) {
    const std::string text = R"({"origin":"JFK","updated":"2026-11-20","from":"2026-11-01",
        "routes":{"LIS":[412,null,399.5,0,-3],"CUN":[]}})";
    const auto b = json::decodeDocument<HistoryBook>(text, "history/JFK.json");
    EXPECT_EQ(b.from, Day::fromCivil(2026, 11, 1));
    EXPECT_EQ(b.nights("LIS"), (std::vector<NightPrice>{{b.from, 412}, {b.from + 2, 399.5}}));
    EXPECT_TRUE(b.nights("NRT").empty());
    EXPECT_EQ(b.impossible, 2);  // 0 and -3 read as no fare, and are counted
    auto again = json::decodeDocument<HistoryBook>(encode(b).dump(), "again");
    EXPECT_EQ(again.impossible, 0);
    again.impossible = b.impossible;
    EXPECT_EQ(again, b);

    EXPECT_EQ(testing::decodeError<HistoryBook>(testing::replaced(text, "399.5", R"("x")"), "h"),
              "h: routes.LIS[2]: expected a number");
}

}  // namespace
}  // namespace tripkit
