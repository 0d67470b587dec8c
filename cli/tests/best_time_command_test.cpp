#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <optional>

#include "cli/cli.h"
#include "cli/tests/cli_test_support.h"
#include "tripkit/climate.h"
#include "tripkit/destinations.h"

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

    // Recompute each pick from the shipped normals and the fares above.
    const auto* lisbon = tripkit::Climate::shipped().find("LIS");
    const auto* place = tripkit::Destinations::shipped().find("LIS");
    double previous = 2;
    int starred = 0;
    for (std::size_t i = 0; i < picks.size(); ++i) {
        const auto& p = picks[i];
        const int month = p["index"].get<int>();
        const double comfort = tripkit::Climate::comfort(lisbon->months[month - 1], *place);
        EXPECT_NEAR(p["comfort"].get<double>(), comfort, 1e-6);
        // January's 450 is the lowest (the 500 earlier that month is not the
        // month's price), August's 950 the highest.
        const std::map<int, std::pair<double, double>> fares = {
            {1, {450, 1.0}}, {5, {700, 0.5}}, {8, {950, 0.0}}};
        std::optional<double> cheapness;
        if (auto it = fares.find(month); it != fares.end()) {
            EXPECT_EQ(p["price"].get<double>(), it->second.first) << month;
            cheapness = it->second.second;
        } else {
            EXPECT_TRUE(p["price"].is_null()) << month;
        }
        const double score = cheapness ? 0.6 * comfort + 0.4 * *cheapness : comfort;
        EXPECT_NEAR(p["score"].get<double>(), score, 1e-6) << month;
        EXPECT_LE(p["score"].get<double>(), previous);
        previous = p["score"].get<double>();
        starred += p["starred"].get<bool>() ? 1 : 0;
        EXPECT_EQ(p["starred"].get<bool>(), i < tripkit::BestTime::starredCount);
    }
    EXPECT_EQ(starred, 3);

    auto table =
        runCli({"best-time", "LIS", "--data", dir.str(), "--home", "JFK", "--today", "2026-11-20"});
    ASSERT_EQ(table.status, kOk) << table.err;
    EXPECT_NE(table.out.find("Best time to go to Lisbon (LIS)\n"), std::string::npos) << table.out;
    EXPECT_NE(table.out.find("km away), normals 1991–2020\n"), std::string::npos) << table.out;
}

TEST(BestTimeCommand, UnknownDestinationIsAUsageError) {
    TempDir dir;
    dir.write("calendars/JFK.json", R"({"origin":"JFK","updated":"2026-11-20","routes":{}})");
    auto r = runCli({"best-time", "QQQ", "--data", dir.str(), "--home", "JFK", "--json"});
    EXPECT_EQ(r.status, kUsage);
    EXPECT_NE(r.err.find("no destination with the code \"QQQ\""), std::string::npos) << r.err;
    EXPECT_TRUE(r.out.empty());
}

}  // namespace
}  // namespace roamwise::cli
