#include "tripkit/wear_data.h"

#include <gtest/gtest.h>

#include <fmt/format.h>

#include "tripkit/tests/test_data.h"

namespace tripkit {
namespace {

using testing::readFile;

std::string realData(const std::string& name) {
    return readFile(std::string(ROAMWISE_REAL_DATA) + "/" + name);
}

// One day of a hand-made daily response; −999 is the service's fill value.
struct Row {
    double max = 20;
    double min = 10;
    double mm = 0;
    double rh = 60;
    double ws = 3;
};

// A daily response of 2021 whose every month holds `base` on four days, and
// whose January holds `january` instead (when given).
std::string dailyText(const std::vector<Row>& january,
                      std::vector<double> coordinates = {13.4, 52.5},
                      const std::vector<std::pair<std::string, Row>>& extraKeys = {}) {
    json::Json parameter = json::Json::object();
    const auto put = [&](const std::string& key, const Row& r) {
        parameter["T2M_MAX"][key] = r.max;
        parameter["T2M_MIN"][key] = r.min;
        parameter["PRECTOTCORR"][key] = r.mm;
        parameter["RH2M"][key] = r.rh;
        parameter["WS10M"][key] = r.ws;
    };
    for (int m = 1; m <= 12; ++m) {
        const std::vector<Row> rows = m == 1 ? january : std::vector<Row>(4, Row{});
        for (std::size_t i = 0; i < rows.size(); ++i) {
            put(fmt::format("2021{:02d}{:02d}", m, i + 1), rows[i]);
        }
    }
    for (const auto& [key, row] : extraKeys) put(key, row);
    json::Json doc = {{"type", "Feature"},
                      {"geometry", {{"type", "Point"}, {"coordinates", coordinates}}},
                      {"properties", {{"parameter", parameter}}}};
    return doc.dump();
}

WearClimate::Daily daily(const std::string& text) {
    return json::decodeDocument<WearClimate::Daily>(text, "daily.json");
}

WearMonth january(const std::vector<Row>& rows, std::optional<double> city = std::nullopt,
                  std::vector<double> coordinates = {13.4, 52.5, 0}) {
    return WearClimate::reduce(daily(dailyText(rows, coordinates)), {}, city)[0];
}

TEST(WearClimate, WetSnowPercentileAndFillValueRules) {
    // Every day with exactly 1.0 mm is wet; 0.99 mm is dry.
    EXPECT_EQ(january({{20, 10, 1.0}, {20, 10, 1.0}}).rain, 1.0);
    EXPECT_EQ(january({{20, 10, 0.99}, {20, 10, 1.0}}).rain, 0.5);
    // A mean of exactly 1 °C with 3 mm snows; 2.2 / 0 (mean 1.1) does not.
    WearMonth snowy = january({{2, 0, 3}, {2.2, 0, 3}, {2, 0, 0.5}});
    EXPECT_EQ(snowy.snow, 0.33);
    EXPECT_EQ(snowy.rain, 0.67);
    // P90 of ten values is index 8; P10 is index 1 (0.1 × 9 + 0.5 = 1.4).
    std::vector<Row> ten;
    for (int i = 10; i >= 1; --i) ten.push_back({double(i), double(-i), 2});
    WearMonth p = january(ten);
    EXPECT_EQ(p.hotDay, 9);
    EXPECT_EQ(p.coldNight, -9);
    EXPECT_EQ(p.high, 5.5);
    EXPECT_EQ(p.low, -5.5);
    // Means round half up: humidity to a whole number, wind ×3.6 to 0.1.
    WearMonth m = january({{20, 10, 0, 70, 2.5}, {20.5, 10, 0, 71, 2.5}});
    EXPECT_EQ(m.humidity, 71);  // 70.5
    EXPECT_EQ(m.wind, 9);
    EXPECT_EQ(m.high, 20.3);  // 20.25 up, not to even
    EXPECT_EQ(m.uv, 0);       // no climatology value

    // A missing minimum drops the whole day; missing rain, humidity or wind
    // only that value.
    WearMonth fill = january({{30, -999, 5, 10, 1}, {20, 10, -999, 50, -999}, {10, 0, 0, -999, 2}});
    EXPECT_EQ(fill.high, 15);
    EXPECT_EQ(fill.rain, 0);  // one precipitation day, dry
    EXPECT_EQ(fill.humidity, 50);
    EXPECT_EQ(fill.wind, 7.2);
    EXPECT_EQ(fill.coldNight, 0);
    // A fill value not quite −999 is still missing; −997.9 is a value.
    EXPECT_EQ(january({{20, 10, -998, 60, 3}, {20, 10, 2, 60, 3}}).rain, 1);
    EXPECT_EQ(january({{20, -997.9, 2}}).low, -997.9);
}

TEST(WearClimate, ElevationOffsetWithinEightDegreesAndAMonthWithoutDataFails) {
    // The cell's coordinates (and height), the city's height, the high.
    const std::vector<std::tuple<std::vector<double>, std::optional<double>, double>> cases = {
        {{13.4, 52.5, 0}, 1000, 13.5},          // city 1000 m above its cell: 6.5 colder
        {{13.4, 52.5, 0}, 2000, 12},            // capped at 8
        {{13.4, 52.5, 3000}, 0, 28},            // a city below its cell is warmer, also capped
        {{13.4, 52.5, 220}, 20, 21.3},          // 200 m: 1.3
        {{13.4, 52.5}, 1000, 20},               // no cell height
        {{13.4, 52.5, 500}, std::nullopt, 20},  // no city height
    };
    for (const auto& [coordinates, city, high] : cases) {
        WearMonth m = january({{20, 10, 2}}, city, coordinates);
        EXPECT_NEAR(m.high, high, 1e-9) << coordinates.size() << " " << city.value_or(-1);
        EXPECT_NEAR(m.hotDay - m.high, 0, 1e-9);
        EXPECT_NEAR(m.low - m.high, -10, 1e-9);
    }

    const auto failure = [](const std::string& text) -> std::string {
        try {
            WearClimate::reduce(daily(text), {}, std::nullopt);
        } catch (const WearClimate::Failure& f) {
            return f.what();
        }
        return "reduced";
    };
    EXPECT_EQ(failure(dailyText({})), "no day with both temperatures in JAN");
    EXPECT_EQ(failure(dailyText({{20, 10, -999}})), "no day with precipitation in JAN");
    // Keys that are not eight characters are not days.
    EXPECT_EQ(failure(dailyText({}, {13.4, 52.5}, {{"2021011512", Row{}}, {"202101", Row{}}})),
              "no day with both temperatures in JAN");
    EXPECT_EQ(failure(dailyText({Row{}})), "reduced");
}

TEST(WearClimate, RealUvClimatologyRequestPathsCacheKeyAndFetching) {
    // A climatology response without the UV parameter gives no UV (0).
    const auto phuket = json::decodeDocument<WearClimate::UvClimatology>(
        realData("nasa-power/climatology-point-phuket.json"), "phuket.json");
    for (const auto& month : phuket.months) EXPECT_FALSE(month.has_value());

    // With the parameter: JAN…DEC in order, ANN ignored, fill values missing.
    auto uvText = realData("nasa-power/climatology-point-phuket.json");
    uvText = testing::replaced(uvText, "\"PRECTOTCORR\"", "\"ALLSKY_SFC_UV_INDEX_12\"");
    uvText = testing::replaced(uvText, "\"FEB\":0.95", "\"FEB\":-999");
    const auto uv = json::decodeDocument<WearClimate::UvClimatology>(uvText, "uv.json");
    const auto months = WearClimate::reduce(daily(dailyText({Row{}})), uv, std::nullopt);
    EXPECT_EQ(months[0].uv, 2.6);
    EXPECT_EQ(months[1].uv, 0);
    EXPECT_EQ(months[8].uv, 11.7);

    EXPECT_EQ(WearClimate::dailyPath(38.7223, -9.13933),
              "/api/temporal/daily/point?parameters=T2M_MAX,T2M_MIN,PRECTOTCORR,RH2M,WS10M"
              "&community=AG&longitude=-9.14&latitude=38.72&start=20060101&end=20251231"
              "&format=JSON&time-standard=LST");
    EXPECT_EQ(WearClimate::uvPath(-33.9, 18.6),
              "/api/temporal/climatology/point?parameters=ALLSKY_SFC_UV_INDEX_12&community=AG"
              "&longitude=18.60&latitude=-33.90&format=JSON");
    EXPECT_EQ(WearClimate::cacheKey(38.7223, -9.13933), "38.72_-9.14");

    // Both requests, then the reduction; each way to fail throws.
    std::vector<std::string> asked;
    const std::string good = dailyText({Row{}});
    const std::string noUv = R"({"properties":{"parameter":{}}})";
    const auto fetchFrom = [&](std::string dailyBody, std::string uvBody) {
        return [&asked, dailyBody, uvBody](const std::string& path) {
            asked.push_back(path);
            return path.find("/daily/") != std::string::npos ? dailyBody : uvBody;
        };
    };
    EXPECT_EQ(WearClimate::monthly(1, 2, std::nullopt, fetchFrom(good, noUv)).size(), 12u);
    EXPECT_EQ(asked,
              (std::vector<std::string>{WearClimate::dailyPath(1, 2), WearClimate::uvPath(1, 2)}));
    const auto fails = [](const WearClimate::Fetch& fetch) {
        EXPECT_THROW(WearClimate::monthly(1, 2, std::nullopt, fetch), WearClimate::Failure);
    };
    fails([](const std::string&) -> std::string { throw std::runtime_error("offline"); });
    fails(fetchFrom(good, "{"));
    fails(fetchFrom(dailyText({}), noUv));
}

// check_wear_climate.py checks every place and zone; here: the file decodes
// and is found by name, by alias, and narrowed by country.
TEST(WearClimate, ShippedFileFindsPlacesAndDecodingIsStrict) {
    const auto& file = WearClimate::File::shipped();
    EXPECT_NE(file.find("Lisbon", "PT"), nullptr);
    EXPECT_NE(file.find("new york city"), nullptr);
    EXPECT_EQ(file.find("Paris", "US"), nullptr);

    // Decoding is strict.
    const std::string place =
        R"({"name":"X","region":"Europe","country":"PT","elevation":1,"lat":1,"lon":2,)"
        R"("timeZone":"Europe/Lisbon","months":[]})";
    EXPECT_EQ(testing::decodeError<WearPlace>(place, "wear-climate.json"),
              "wear-climate.json: months: expected twelve months");
    EXPECT_EQ(
        testing::decodeError<WearClimate::Daily>(
            R"({"geometry":{"coordinates":[1,2]},"properties":{"parameter":{"T2M_MAX":{"20210101":"x"}}}})",
            "daily.json"),
        "daily.json: properties.parameter.T2M_MAX.20210101: expected a number");
}

}  // namespace
}  // namespace tripkit
