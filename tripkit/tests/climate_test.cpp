#include "tripkit/climate.h"

#include <gtest/gtest.h>

#include "tripkit/tests/test_data.h"

namespace tripkit {
namespace {

MonthlyClimate month(double high, double rain) {
    return {1, high, high - 15, rain};
}

TEST(Climate, ComfortAtTheBandEdgesAndWithRain) {
    // clang-format off
    const std::vector<std::tuple<bool, double, double, double>> cases = {  // beach, °F, rain
        {true, 78, 0, 1.0},           // the beach band's edges count as inside
        {true, 77, 0, 0.96},          // one degree below
        {true, 91, 0, 0.96},          // one degree above
        {false, 62, 0, 1.0},          // the other band's edges
        {false, 61, 0, 0.96},
        {false, 83, 0, 0.96},
        {false, 72, 3.99, 1.0},       // rain just under 4: no penalty
        {false, 72, 4, 0.85},         // 4 up to 6: 0.15
        {false, 72, 6, 0.7},          // 6 and more: 0.3, not both
        {false, 37, 9, 0.0},          // and never below zero
    };
    // clang-format on
    for (const auto& [beach, high, rain, expected] : cases) {
        EXPECT_NEAR(Climate::comfort(month(high, rain), beach), expected, 1e-9)
            << (beach ? "beach " : "other ") << high << " °F, rain " << rain;
    }
    Destination island;
    island.categories = {"islands"};
    Destination city;
    city.categories = {"cities", "food"};
    // 88 °F is inside the beach band, 6 °F over the other one.
    EXPECT_NEAR(Climate::comfort(month(88, 0), island), 1.0, 1e-9);
    EXPECT_NEAR(Climate::comfort(month(88, 0), city), 0.76, 1e-9);
}

using Months = std::array<std::optional<double>, 12>;

std::vector<int> order(const std::vector<BestTime::Pick>& picks) {
    std::vector<int> out;
    for (const auto& p : picks) out.push_back(p.index);
    return out;
}

TEST(BestTime, ScoresOrderAndTheJoinWithTheCheapestTripOfEachMonth) {
    {  // prices 300, 400, 500 with comforts 1, 1, 0.5; months without price score on comfort
        Months comfort{}, price{};
        comfort.fill(0.2);
        comfort[0] = 1, comfort[1] = 1, comfort[2] = 0.5;
        price[0] = 300, price[1] = 400, price[2] = 500;
        const auto picks = BestTime::picks(comfort, price);
        ASSERT_EQ(picks.size(), 12u);
        EXPECT_EQ(order(picks), (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
        EXPECT_NEAR(picks[1].score, 0.8, 1e-9);
        EXPECT_NEAR(picks[2].score, 0.3, 1e-9);
        EXPECT_NEAR(picks[3].score, 0.2, 1e-9);
        EXPECT_FALSE(picks[3].price);
    }
    {  // no climate: the cheapest first; months without a price get no pick
        Months comfort{}, price{};
        price[10] = 250, price[3] = 250, price[6] = 500, price[1] = 400;
        const auto picks = BestTime::picks(comfort, price);
        EXPECT_EQ(order(picks), (std::vector<int>{4, 11, 2, 7}));  // the tie keeps month order
        EXPECT_NEAR(picks[2].score, 0.4, 1e-9);
        EXPECT_NEAR(picks[3].score, 0.0, 1e-9);
        EXPECT_FALSE(picks[0].comfort);
    }
    {  // every price equal: cheapness 1 for each
        Months comfort{}, price{};
        comfort[4] = 0.5, comfort[5] = 0.9;
        price[4] = 300, price[5] = 300;
        const auto picks = BestTime::picks(comfort, price);
        EXPECT_EQ(order(picks), (std::vector<int>{6, 5}));
        EXPECT_NEAR(picks[0].score, 0.6 * 0.9 + 0.4, 1e-9);
        EXPECT_NEAR(picks[1].score, 0.6 * 0.5 + 0.4, 1e-9);
    }
    {  // no prices: comfort alone, ties by month
        Months comfort{}, price{};
        comfort = {0.1, 0.3, 0.9, 1, 1, 0.7, 0.2, 0.2, 1, 0.8, 0.4, 0.1};
        const auto picks = BestTime::picks(comfort, price);
        EXPECT_EQ(order(picks), (std::vector<int>{4, 5, 9, 3, 10, 6, 11, 2, 7, 8, 1, 12}));
        EXPECT_TRUE(BestTime::isStarred(2));
        EXPECT_FALSE(BestTime::isStarred(3));
    }
    EXPECT_TRUE(BestTime::picks(Months{}, Months{}).empty());

    Destination city;
    city.categories = {"cities"};
    Climate::Place climate;
    for (int m = 1; m <= 12; ++m) climate.months.push_back({m, 40.0 + 3 * m, 30.0, 1.0});
    // 72 °F in October (comfort 1), 76 °F in December (comfort 1); 46 °F in February
    auto trip = [](int year, int month, double price) {
        RoundTrip t;
        t.depart = Day::fromCivil(year, month, 10);
        t.price = price;
        return std::make_pair(YearMonth::of(t.depart), t);
    };
    const std::vector<std::pair<YearMonth, RoundTrip>> months = {
        trip(2026, 12, 600), trip(2027, 2, 200), trip(2027, 10, 400)};
    const auto picks = BestTime::picks(city, &climate, months);
    ASSERT_EQ(picks.size(), 12u);
    // Months without a fare score on comfort alone, so pleasant ones lead;
    // October has both (0.6 + 0.4 × 0.5), December only the dearest fare (0.6).
    // April (comfort 0.6, no fare) and December tie at 0.6: April first.
    EXPECT_EQ(order(picks), (std::vector<int>{8, 9, 11, 7, 6, 10, 5, 2, 4, 12, 3, 1}));
    EXPECT_NEAR(picks[5].score, 0.8, 1e-9);
    EXPECT_EQ(picks[5].price, 400);
    const auto february =
        std::find_if(picks.begin(), picks.end(), [](auto& p) { return p.index == 2; });
    EXPECT_NEAR(february->score, 0.6 * (1 - 0.04 * 16) + 0.4, 1e-9);

    const auto cheapest = BestTime::picks(city, nullptr, months);
    EXPECT_EQ(order(cheapest), (std::vector<int>{2, 10, 12}));
}

TEST(Climate, DecodingIsStrictAndTheShippedCatalogDecodes) {
    auto place = [](const std::string& months) {
        return R"({"asOf":"2026-11-23","period":"1991–2020","source":{"name":"n","url":"u","note":"x"},)"
               R"("places":{"LIS":{"name":"Lisbon","station":null,"stationName":"S","distanceKm":6,)"
               R"("months":[)" +
               months + "]}}}";
    };
    std::string twelve;
    for (int m = 1; m <= 12; ++m) {
        twelve += (m > 1 ? "," : "") + std::string(R"({"month":)") + std::to_string(m) +
                  R"(,"high":60,"low":50,"rain":2})";
    }
    const auto ok = json::decodeDocument<Climate>(place(twelve), "climate.json");
    ASSERT_NE(ok.find("LIS"), nullptr);
    EXPECT_FALSE(ok.find("LIS")->station);
    EXPECT_EQ(ok.periodOf(*ok.find("LIS")), "1991–2020");
    EXPECT_EQ(ok.find("LIS")->stationLabel(), "S (6 km away)");

    const std::string eleven = twelve.substr(0, twelve.rfind(",{"));
    EXPECT_EQ(testing::decodeError<Climate>(place(eleven), "climate.json"),
              "climate.json: places.LIS.months: expected twelve months");
    EXPECT_EQ(testing::decodeError<Climate>(
                  place(testing::replaced(twelve, R"("low":50)", R"("low":60)")), "climate.json"),
              "climate.json: places.LIS.months[0]: the low is not below the high");
    EXPECT_EQ(
        testing::decodeError<Climate>(
            place(testing::replaced(twelve, R"({"month":2,)", R"({"month":3,)")), "climate.json"),
        "climate.json: places.LIS.months: month 3 out of order");

    // check_climate.py checks every place; here: it decodes, one per
    // destination, in °F and inches (Phoenix in July).
    const Climate& climate = Climate::shipped();
    EXPECT_EQ(climate.places.size(), Destinations::shipped().list.size());
    ASSERT_NE(climate.find("PHX"), nullptr);
    EXPECT_GT(climate.find("PHX")->months[6].high, 100);
}

}  // namespace
}  // namespace tripkit
