#include <fmt/format.h>
#include <gtest/gtest.h>

#include "cli/tests/cli_test_support.h"
#include "tripkit/wear.h"

namespace roamwise::cli {
namespace {

using ::testing::AllOf;
using testing::runCli;

const std::string kBerlinForecast =
    std::string(ROAMWISE_REAL_DATA) + "/met-norway/complete-berlin.json";

TEST(WearCommand, GuideForAPlaceByCodeNameOrAlias) {
    auto guide = runCli({"wear", "BER", "--from", "2022-08-13", "--to", "2022-08-02", "--forecast",
                         kBerlinForecast, "--activities", "cityWalking, beach", "--json"});
    ASSERT_EQ(guide.status, kOk) << guide.err;
    const auto json = guide.json();
    ASSERT_EQ(json["days"].size(), 12u);  // the 12th and 13th are past the forecast
    EXPECT_EQ(json["days"][2]["day"]["source"], "forecast");
    EXPECT_EQ(json["days"][11]["day"]["source"], "typical");
    // --activities reaches the packing list.
    EXPECT_THAT(json["packing"].dump(), HasSubstr(R"("id":"swimsuit")"));

    auto exported =
        runCli({"wear", "Lisbon", "--from", "2026-05-01", "--to", "2026-05-03", "--export"});
    ASSERT_EQ(exported.status, kOk);
    EXPECT_TRUE(exported.out.starts_with("Packing list: Lisbon, 2026-05-01 to 2026-05-03\n"));
    // The shipped months are published normals, not NASA POWER data.
    EXPECT_THAT(exported.out, HasSubstr(std::string(tripkit::WhatToWear::normalsSourceLine)));

    auto table = runCli({"wear", "LIS", "--from", "2026-05-01", "--to", "2026-05-03"});
    ASSERT_EQ(table.status, kOk);
    EXPECT_THAT(table.out, AllOf(HasSubstr("Daytime: "), HasSubstr("°F")));
}

TEST(ClimateCommand, ReducesADailyResponse) {
    testing::TempDir dir;
    // One day a month at 7 (°C, mm, % and m/s alike): how months are reduced
    // is the climate tests' business.
    tripkit::json::Json parameter;
    for (int m = 1; m <= 12; ++m) {
        for (const char* name : {"T2M_MAX", "T2M_MIN", "PRECTOTCORR", "RH2M", "WS10M"})
            parameter[name][fmt::format("2021{:02d}01", m)] = 7.0;
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

    auto hourly =
        runCli({"climate", "reduce",
                std::string(ROAMWISE_REAL_DATA) + "/nasa-power/hourly-point-brazil-2026.json"});
    EXPECT_EQ(hourly.status, kNoData);
    EXPECT_THAT(hourly.err, HasSubstr("no day with both temperatures in JAN"));
}

TEST(ForecastCommand, DaysInThePlacesOwnZone) {
    auto out = runCli({"forecast", "days", kBerlinForecast, "--place", "Berlin", "--json"});
    ASSERT_EQ(out.status, kOk) << out.err;
    const auto days = out.json();
    ASSERT_EQ(days.size(), 10u);
    EXPECT_EQ(days[0]["day"], "2022-08-02");
    EXPECT_EQ(days[0]["low"], 18.6);  // 16:00 UTC is 18:00 in Berlin

    auto table = runCli({"forecast", "days", kBerlinForecast, "--place", "BER"});
    EXPECT_THAT(table.out, HasSubstr("Thu 2022-08-04  35.3"));
    EXPECT_EQ(runCli({"forecast", "days", "/nonexistent.json", "--place", "BER"}).status, kNoData);
}

TEST(ChecklistCommand, APassportReminderStillAheadOrAlreadyPast) {
    // Nassau: islands and family abroad. The trip is 8 weeks and 2 days away,
    // so the reminder day is still to come; 9 weeks ahead it is past.
    auto r = runCli({"checklist", "nas", "--trip", "2027-01-20", "--weeks", "8", "--today",
                     "2026-11-23", "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    const auto abroad = r.json();
    EXPECT_EQ(abroad["place"], "Nassau");
    EXPECT_EQ(abroad["document"], "passport");
    EXPECT_EQ(abroad["items"][0].dump(), R"({"id":"passport","title":"Passport","packed":false})");
    EXPECT_EQ(abroad["reminder"].dump(), R"({"day":"2026-11-25","past":false})");

    auto late = runCli(
        {"checklist", "NAS", "--trip", "2027-01-20", "--weeks", "9", "--today", "2026-11-23"});
    ASSERT_EQ(late.status, kOk) << late.err;
    EXPECT_THAT(late.out, HasSubstr("Wed 2026-11-18\n  That’s already past, so check "
                                    "your passport now.\n"));
}

}  // namespace
}  // namespace roamwise::cli
