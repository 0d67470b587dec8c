#include <gtest/gtest.h>

#include <map>

#include "cli/cli.h"
#include "cli/tests/cli_test_support.h"
#include "tripkit/climate.h"

namespace roamwise::cli {
namespace {

using testing::runCli;
using testing::TempDir;

TEST(BestTimeCommand, JoinsShippedClimateWithTheCalendarsMonths) {
    TempDir dir;
    // Lisbon, a city with beaches (so the 78-90 °F band): fares in three months.
    dir.write(
        "calendars/JFK.json",
        R"({"origin":"JFK","updated":"2026-11-20","routes":{"LIS":{)"
        R"("2027-01-12":[500,"TP",0,"2027-01-19"],"2027-01-20":[450,"TP",0,"2027-01-27"],)"
        R"("2027-05-05":[700,"TP",0,"2027-05-12"],"2027-08-03":[950,"TP",0,"2027-08-10"]}}})");
    auto r = runCli({"best-time", "lis", "--data", dir.str(), "--home", "JFK", "--today",
                     "2026-11-20", "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    const auto out = r.json();
    EXPECT_EQ(out["destination"], "LIS");
    EXPECT_EQ(out["climate"], true);
    EXPECT_EQ(out["note"], "Starred months balance pleasant weather and price.");
    EXPECT_EQ(out["credit"], tripkit::Climate::shipped().source.credit());
    const auto& picks = out["picks"];
    ASSERT_EQ(picks.size(), 12u);
    // How months are scored is the best-time tests' business; each month
    // carries its cheapest fare (January's 450, not the 500 earlier that
    // month), or none.
    std::map<int, tripkit::json::Json> prices;
    for (const auto& pick : picks) prices[pick["index"].get<int>()] = pick["price"];
    EXPECT_EQ(prices[1], 450);
    EXPECT_TRUE(prices[2].is_null());
    EXPECT_EQ(picks[0]["starred"], true);

    auto table =
        runCli({"best-time", "LIS", "--data", dir.str(), "--home", "JFK", "--today", "2026-11-20"});
    ASSERT_EQ(table.status, kOk) << table.err;
    EXPECT_NE(table.out.find("Best time to go to Lisbon (LIS)\n"), std::string::npos) << table.out;
    EXPECT_NE(table.out.find("km away), normals 1991–2020\n"), std::string::npos) << table.out;
}

}  // namespace
}  // namespace roamwise::cli
