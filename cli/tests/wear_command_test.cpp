#include <gtest/gtest.h>

#include <fmt/format.h>

#include "cli/cli.h"
#include "cli/tests/cli_test_support.h"
#include "tripkit/wear.h"

namespace roamwise::cli {
namespace {

using testing::runCli;

const std::string kBerlinForecast =
    std::string(ROAMWISE_REAL_DATA) + "/met-norway/complete-berlin.json";

bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(WearCommand, GuideForAPlaceByCodeNameOrAlias) {
    auto guide = runCli({"wear", "BER", "--from", "2022-08-13", "--to", "2022-08-02", "--forecast",
                         kBerlinForecast, "--activities", "cityWalking, beach", "--json"});
    ASSERT_EQ(guide.status, kOk) << guide.err;
    const auto json = guide.json();
    EXPECT_EQ(json["planDays"], 12);
    EXPECT_TRUE(json["usesTypical"].get<bool>());  // the 12th and 13th are past the forecast
    ASSERT_EQ(json["days"].size(), 12u);
    EXPECT_EQ(json["days"][2]["day"]["high"], 35.3);  // 2022-08-04 in Berlin
    EXPECT_EQ(json["days"][2]["day"]["source"], "forecast");
    EXPECT_EQ(json["days"][11]["day"]["source"], "typical");
    // --activities reaches the packing list.
    bool swimsuit = false;
    for (const auto& item : json["packing"]) swimsuit = swimsuit || item["id"] == "swimsuit";
    EXPECT_TRUE(swimsuit);

    // Without a forecast the same dates are typical only; names and aliases work.
    auto typical = runCli({"wear", "new york city", "--from", "2026-01-10", "--to", "2026-01-12",
                           "--unit", "c", "--laundry", "--json"});
    ASSERT_EQ(typical.status, kOk) << typical.err;
    EXPECT_FALSE(typical.json()["usesForecast"].get<bool>());

    auto exported =
        runCli({"wear", "Lisbon", "--from", "2026-05-01", "--to", "2026-05-03", "--export"});
    ASSERT_EQ(exported.status, kOk);
    EXPECT_TRUE(exported.out.starts_with("Packing list: Lisbon, 2026-05-01 to 2026-05-03\n"));
    // The shipped months are published normals, not NASA POWER data.
    EXPECT_TRUE(has(exported.out, std::string(tripkit::WhatToWear::normalsSourceLine)))
        << exported.out;

    auto table = runCli({"wear", "LIS", "--from", "2026-05-01", "--to", "2026-05-03"});
    ASSERT_EQ(table.status, kOk);
    EXPECT_TRUE(has(table.out, "Daytime: ") && has(table.out, "°F")) << table.out;
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
    EXPECT_EQ(months[6]["uv"], 6.3);
    EXPECT_EQ(months[0].size(), 9u);

    auto table = runCli({"climate", "reduce", dir.str() + "/daily.json"});
    ASSERT_EQ(table.status, kOk);
    EXPECT_TRUE(has(table.out, "Jan      7.0")) << table.out;

    auto hourly =
        runCli({"climate", "reduce",
                std::string(ROAMWISE_REAL_DATA) + "/nasa-power/hourly-point-brazil-2026.json"});
    EXPECT_EQ(hourly.status, kNoData);
    EXPECT_TRUE(has(hourly.err, "no day with both temperatures in JAN")) << hourly.err;
}

TEST(ForecastCommand, DaysInThePlacesOwnZone) {
    auto out = runCli({"forecast", "days", kBerlinForecast, "--place", "Berlin", "--json"});
    ASSERT_EQ(out.status, kOk) << out.err;
    const auto days = out.json();
    ASSERT_EQ(days.size(), 10u);
    EXPECT_EQ(days[0]["day"], "2022-08-02");
    EXPECT_EQ(days[0]["low"], 18.6);  // 16:00 UTC is 18:00 in Berlin
    EXPECT_EQ(days[0].size(), 11u);   // every key of a day
    // Honolulu's day starts ten hours after UTC's.
    auto honolulu = runCli({"forecast", "days", kBerlinForecast, "--place", "HNL", "--json"});
    ASSERT_EQ(honolulu.status, kOk);
    EXPECT_NE(honolulu.json()[0]["low"], 18.6);

    auto table = runCli({"forecast", "days", kBerlinForecast, "--place", "BER"});
    EXPECT_TRUE(has(table.out, "Thu 2022-08-04  35.3")) << table.out;
    EXPECT_EQ(runCli({"forecast", "days", "/nonexistent.json", "--place", "BER"}).status, kNoData);
}

}  // namespace
}  // namespace roamwise::cli
