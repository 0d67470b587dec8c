#include "tripkit/wear_forecast.h"

#include <array>

#include <gtest/gtest.h>

#include "tripkit/tests/test_data.h"

namespace tripkit {
namespace {

WearForecast::Doc berlin() {
    return json::decodeDocument<WearForecast::Doc>(
        testing::readFile(std::string(ROAMWISE_REAL_DATA) + "/met-norway/complete-berlin.json"),
        "complete-berlin.json");
}

// One hourly step at 10:00 UTC + `hour` of 2026-01-10 with `mm` in the next hour.
WearForecast::Doc::Step step(int hour, double temperature, double mm, double humidity = 80) {
    WearForecast::Doc::Step s;
    s.unixSeconds = Day::fromCivil(2026, 1, 10).count * 86400 + (10 + hour) * 3600;
    s.data.instant.airTemperature = temperature;
    s.data.instant.relativeHumidity = humidity;
    s.data.instant.windSpeed = 5;
    s.data.next1Hours = WearForecast::Doc::StepData::Next{mm, std::nullopt, std::nullopt};
    return s;
}

TEST(WearForecast, RainSnowAndSampleRulesInstantsAndRequest) {
    for (const auto& [mm, rain] : std::vector<std::pair<double, double>>{
             {3.0, 0.9}, {2.99, 0.7}, {1.0, 0.7}, {0.99, 0.4}, {0.3, 0.4}, {0.29, 0.1}, {0, 0.1}}) {
        EXPECT_EQ(WearForecast::rainChance(mm), rain) << mm;
    }

    // A cold day (high 1, low −1, mean 0) with 1.2 mm: rain 0.7, snow 0.7.
    // The high (the other hours −1, 0 and 0.5 °C), the first hour's mm, rain, snow.
    const std::vector<std::array<double, 4>> days = {
        {1, 1.2, 0.7, 0.7},
        {1, 0.29, 0.1, 0},   // too little to count as snow
        {3, 0.3, 0.4, 0.4},  // mean exactly 1 °C
        {3.2, 5, 0.9, 0},    // mean 1.1 °C: rain
    };
    for (const auto& [high, mm, rain, snow] : days) {
        WearForecast::Doc doc;
        const double temperatures[] = {high, -1, 0, 0.5};
        for (int i = 0; i < 4; ++i)
            doc.properties.timeseries.push_back(step(i, temperatures[i], i == 0 ? mm : 0));
        const auto out = WearForecast::days(doc, "UTC");
        ASSERT_EQ(out.size(), 1u);
        const WearDay& d = out.begin()->second;
        EXPECT_EQ(d.rain, rain) << mm;
        EXPECT_EQ(d.snow, snow) << mm;
        EXPECT_EQ(d.source, WearDay::Source::forecast);
    }

    WearForecast::Doc doc;
    for (int i = 0; i < 3; ++i) doc.properties.timeseries.push_back(step(i, 5, 0));
    EXPECT_TRUE(WearForecast::days(doc, "UTC").empty());
    // Without humidity or wind samples the day reads 60 % and calm.
    auto fourth = step(3, 7, 0);
    doc.properties.timeseries.push_back(fourth);
    for (auto& s : doc.properties.timeseries) {
        s.data.instant.relativeHumidity.reset();
        s.data.instant.windSpeed.reset();
    }
    const auto out = WearForecast::days(doc, "UTC");
    ASSERT_EQ(out.size(), 1u);
    const WearDay& d = out.at(Day::fromCivil(2026, 1, 10));
    // Humidity, wind, high, cold night.
    EXPECT_EQ((std::vector<double>{d.humidity, d.wind, d.high, d.coldNight}),
              (std::vector<double>{60, 0, 7, 5}));
    EXPECT_THROW(WearForecast::days(doc, "Mars/Olympus"), std::invalid_argument);

    EXPECT_EQ(parseInstant("1970-01-02T00:00:00Z"), 86400);
    EXPECT_EQ(parseInstant("2022-08-02T16:00:00Z"), parseInstant("2022-08-02T18:00:00+02:00"));
    EXPECT_EQ(parseInstant("2022-08-02T16:00:00.250Z"), parseInstant("2022-08-02T16:00:00Z"));
    for (const char* bad : {"2022-08-02", "2022-08-02T16:00Z", "2022-13-02T16:00:00Z",
                            "2022-08-02T16:00:00+2", "yesterday at noon"}) {
        EXPECT_FALSE(parseInstant(bad).has_value()) << bad;
    }
    EXPECT_EQ(
        testing::decodeError<WearForecast::Doc>(
            R"({"properties":{"timeseries":[{"time":"soon","data":{"instant":{"details":{}}}}]}})",
            "forecast.json"),
        "forecast.json: properties.timeseries[0].time: expected an ISO 8601 instant");
    EXPECT_EQ(WearForecast::path(52.52, 13.405),
              "/weatherapi/locationforecast/2.0/complete?lat=52.5200&lon=13.4050");
}

TEST(WearForecast, RealResponseGroupedByTheLocalDay) {
    const WearForecast::Doc doc = berlin();
    ASSERT_EQ(doc.properties.timeseries.size(), 84u);

    const auto local = WearForecast::days(doc, "Europe/Berlin");
    ASSERT_EQ(local.size(), 10u);
    EXPECT_EQ(local.begin()->first, Day::fromCivil(2022, 8, 2));
    const WearDay& hot = local.at(Day::fromCivil(2022, 8, 4));
    EXPECT_EQ(hot.high, 35.3);
    EXPECT_EQ(hot.uv, 5.5);
    EXPECT_NEAR(hot.wind, 7.98, 1e-9);
    // 2.7 mm on the 5th: six-hour periods where the hourly ones stop.
    const WearDay& wet = local.at(Day::fromCivil(2022, 8, 5));
    EXPECT_EQ(wet.rain, 0.7);
    EXPECT_EQ(wet.high, 25.3);  // 22:00 and 23:00 UTC of the 4th are the 5th in Berlin

    // In UTC the same steps fall on other days.
    const auto utc = WearForecast::days(doc, "UTC");
    EXPECT_EQ(utc.at(Day::fromCivil(2022, 8, 5)).high, 23.3);
}

}  // namespace
}  // namespace tripkit
