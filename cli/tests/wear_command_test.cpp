#include <gtest/gtest.h>

#include <fmt/format.h>

#include "cli/cli.h"
#include "cli/tests/cli_test_support.h"
#include "tripkit/wear_data.h"

namespace roamwise::cli {
namespace {

using testing::runCli;

const std::string kBerlinForecast =
    std::string(ROAMWISE_REAL_DATA) + "/met-norway/complete-berlin.json";

TEST(WearCommand, GuideForAPlaceByCodeNameOrAlias) {
    auto guide = runCli({"wear", "BER", "--from", "2022-08-13", "--to", "2022-08-02", "--forecast",
                         kBerlinForecast, "--activities", "cityWalking, beach", "--json"});
    ASSERT_EQ(guide.status, kOk) << guide.err;
    const auto json = guide.json();
    EXPECT_EQ(json["planDays"], 12);
    EXPECT_TRUE(json["usesForecast"].get<bool>());
    EXPECT_TRUE(json["usesTypical"].get<bool>());  // the 12th and 13th are past the forecast
    ASSERT_EQ(json["days"].size(), 12u);
    const auto& hot = json["days"][2];  // 2022-08-04 in Berlin
    EXPECT_EQ(hot["day"]["day"], "2022-08-04");
    EXPECT_EQ(hot["day"]["high"], 35.3);
    EXPECT_EQ(hot["day"]["source"], "forecast");
    EXPECT_EQ(hot["dayBand"], 6);
    EXPECT_EQ(json["days"][11]["day"]["source"], "typical");
    bool swimsuit = false;
    for (const auto& item : json["packing"]) {
        EXPECT_TRUE(item.contains("shop"));
        if (item["id"] == "swimsuit") {
            swimsuit = true;
            EXPECT_EQ(item["section"], "extras");
            EXPECT_TRUE(item["shop"].is_null());
        }
    }
    EXPECT_TRUE(swimsuit);
    EXPECT_EQ(json["summary"][0].get<std::string>().substr(0, 6), "Highs ");

    // Without a forecast the same dates are typical only; names and aliases work.
    auto typical = runCli({"wear", "new york city", "--from", "2026-01-10", "--to", "2026-01-12",
                           "--unit", "c", "--laundry", "--json"});
    ASSERT_EQ(typical.status, kOk) << typical.err;
    EXPECT_FALSE(typical.json()["usesForecast"].get<bool>());

    auto exported =
        runCli({"wear", "Lisbon", "--from", "2026-05-01", "--to", "2026-05-03", "--export"});
    ASSERT_EQ(exported.status, kOk);
    EXPECT_EQ(exported.out.substr(0, 46), "Packing list: Lisbon, 2026-05-01 to 2026-05-03");
    EXPECT_NE(
        // The shipped months are published normals, not NASA POWER data.
        exported.out.find("Typical weather for these dates (published climate normals), not a forecast."),
        std::string::npos);

    auto table = runCli({"wear", "LIS", "--from", "2026-05-01", "--to", "2026-05-03"});
    ASSERT_EQ(table.status, kOk);
    EXPECT_NE(table.out.find("Daytime: "), std::string::npos) << table.out;
    EXPECT_NE(table.out.find("°F"), std::string::npos);

    EXPECT_EQ(runCli({"wear", "Atlantis", "--from", "2026-05-01", "--to", "2026-05-03"}).status,
              kUsage);
    EXPECT_EQ(runCli({"wear", "LIS", "--from", "2026-05-01", "--to", "2026-05-03", "--activities",
                      "skiing"})
                  .status,
              kUsage);
}

TEST(ClimateCommand, ReducesADailyResponse) {
    testing::TempDir dir;
    // Two days a month: a dry one and a 3 mm one at a mean of 1 °C.
    tripkit::json::Json parameter;
    for (int m = 1; m <= 12; ++m) {
        for (int d = 1; d <= 2; ++d) {
            const std::string key = fmt::format("2021{:02d}{:02d}", m, d);
            parameter["T2M_MAX"][key] = d == 1 ? 12.0 : 2.0;
            parameter["T2M_MIN"][key] = d == 1 ? 4.0 : 0.0;
            parameter["PRECTOTCORR"][key] = d == 1 ? 0.0 : 3.0;
            parameter["RH2M"][key] = 80;
            parameter["WS10M"][key] = d == 1 ? -999 : 5.0;
        }
    }
    tripkit::json::Json daily = {{"geometry", {{"coordinates", {13.4, 52.5, 34}}}},
                                 {"properties", {{"parameter", parameter}}}};
    dir.write("daily.json", daily.dump());
    dir.write("uv.json",
              R"({"properties":{"parameter":{"ALLSKY_SFC_UV_INDEX_12":{"JAN":0.84,"JUL":6.25}}}})");

    auto out = runCli({"climate", "reduce", dir.str() + "/daily.json", "--uv",
                       dir.str() + "/uv.json", "--elevation", "1034", "--json"});
    ASSERT_EQ(out.status, kOk) << out.err;
    const auto months = out.json();
    ASSERT_EQ(months.size(), 12u);
    EXPECT_EQ(months[0]["high"], 0.5);  // 7 − 6.5 for a city 1000 m above its cell
    EXPECT_EQ(months[0]["coldNight"], -6.5);
    EXPECT_EQ(months[0]["rain"], 0.5);
    EXPECT_EQ(months[0]["snow"], 0.5);
    EXPECT_EQ(months[0]["wind"], 18);
    EXPECT_EQ(months[0]["uv"], 0.8);
    EXPECT_EQ(months[6]["uv"], 6.3);
    EXPECT_EQ(months[1]["uv"], 0);
    EXPECT_EQ(months[0].size(), 9u);

    auto table = runCli({"climate", "reduce", dir.str() + "/daily.json"});
    ASSERT_EQ(table.status, kOk);
    EXPECT_NE(table.out.find("Jan      7.0"), std::string::npos) << table.out;

    auto hourly =
        runCli({"climate", "reduce",
                std::string(ROAMWISE_REAL_DATA) + "/nasa-power/hourly-point-brazil-2026.json"});
    EXPECT_EQ(hourly.status, kNoData);
    EXPECT_NE(hourly.err.find("no day with both temperatures in JAN"), std::string::npos)
        << hourly.err;
}

TEST(ForecastCommand, DaysInThePlacesOwnZone) {
    auto out = runCli({"forecast", "days", kBerlinForecast, "--place", "Berlin", "--json"});
    ASSERT_EQ(out.status, kOk) << out.err;
    const auto days = out.json();
    ASSERT_EQ(days.size(), 10u);
    EXPECT_EQ(days[0]["day"], "2022-08-02");
    EXPECT_EQ(days[0]["low"], 18.6);  // 16:00 UTC is 18:00 in Berlin
    EXPECT_EQ(days[3]["rain"], 0.7);
    EXPECT_EQ(days[3]["source"], "forecast");
    for (const char* key : {"day", "high", "low", "rain", "snow", "humidity", "wind", "uv",
                            "hotDay", "coldNight", "source"}) {
        EXPECT_TRUE(days[0].contains(key)) << key;
    }
    // Honolulu's day starts ten hours after UTC's.
    auto honolulu = runCli({"forecast", "days", kBerlinForecast, "--place", "HNL", "--json"});
    ASSERT_EQ(honolulu.status, kOk);
    EXPECT_EQ(honolulu.json()[0]["day"], "2022-08-02");
    EXPECT_NE(honolulu.json()[0]["low"], 18.6);

    auto table = runCli({"forecast", "days", kBerlinForecast, "--place", "BER"});
    EXPECT_NE(table.out.find("Thu 2022-08-04  35.3"), std::string::npos) << table.out;
    EXPECT_EQ(runCli({"forecast", "days", "/nonexistent.json", "--place", "BER"}).status, kNoData);
}

}  // namespace
}  // namespace roamwise::cli
