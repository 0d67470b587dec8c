#include <gtest/gtest.h>

#include <cstdlib>

#include "cli/cli.h"
#include "cli/tests/cli_test_support.h"

namespace roamwise::cli {
namespace {

using testing::runCli;
using testing::TempDir;

std::vector<std::string> dealsArgs(const std::string& dir, const std::string& homes) {
    return {"deals", "--data", dir, "--home", homes, "--today", "2026-11-20", "--json"};
}

// The merge itself is the fare tests' business: one run of each form here.
TEST(DealsCommand, TheExampleFolderAsJsonAndAsATable) {
    const std::string data = std::string(ROAMWISE_EXAMPLES) + "/data";
    ::setenv("RWTravelpayoutsMarker", "12345", 1);
    auto r = runCli({"deals", "--data", data, "--home", "jfk,EWR", "--today", "2026-11-20",
                     "--json", "--links"});
    ::unsetenv("RWTravelpayoutsMarker");
    ASSERT_EQ(r.status, kOk) << r.err;
    EXPECT_TRUE(r.err.empty()) << r.err;
    const auto deals = r.json();
    ASSERT_EQ(deals.size(), 7u);
    // MIA had no "seen": it carries the file's day now; "return" keeps its key.
    EXPECT_EQ(deals[0]["destination"], "MIA");
    EXPECT_EQ(deals[0]["seen"], "2026-11-20");
    EXPECT_EQ(deals[0]["return"], "2026-12-07");
    EXPECT_EQ(deals[0]["searchLink"],
              "https://www.aviasales.com/search/JFK0312MIA07121?marker=12345");
    EXPECT_EQ(deals[2]["origin"], "EWR");
    EXPECT_FALSE(deals[2].contains("link"));  // the fare file's own key stays as it was

    r = runCli({"deals", "--data", data, "--home", "JFK", "--today", "2026-11-20", "--links"});
    ASSERT_EQ(r.status, kOk);
    EXPECT_NE(r.out.find("Icelandair"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("5d *"), std::string::npos);  // KEF, stale
    EXPECT_NE(r.out.find("\n      https://www.aviasales.com/search/JFK1301SJU20011\n"),
              std::string::npos)
        << r.out;
}

TEST(DealsCommand, SkipsMissingAndBrokenFilesAndSaysWhy) {
    TempDir dir;
    dir.write("flights/JFK.json",
              R"({"origin":"JFK","updated":"2026-11-20","toOrlando":{},)"
              R"("fromOrlando":{},"deals":[{"destination":"LIS","city":"Lisbon",)"
              R"("country":"Portugal","price":"cheap","depart":"2026-12-01",)"
              R"("airline":"TP","stops":0}]})");
    // Fares no search can have found (a price below zero, seen after today)
    // are left out with one line per file.
    dir.write("flights/EWR.json",
              R"({"origin":"EWR","updated":"2026-11-20","toOrlando":{},)"
              R"("fromOrlando":{},"deals":[{"destination":"CUN","city":"Cancún",)"
              R"("country":"Mexico","price":219,"depart":"2026-12-01",)"
              R"("airline":"UA","stops":0},{"destination":"LIS","city":"Lisbon",)"
              R"("country":"Portugal","price":-5,"depart":"2026-12-01",)"
              R"("airline":"UA","stops":0},{"destination":"OPO","city":"Porto",)"
              R"("country":"Portugal","price":300,"depart":"2026-12-01",)"
              R"("airline":"UA","stops":0,"seen":"2026-11-25"}]})");
    auto r = runCli(dealsArgs(dir.str(), "JFK,EWR,LGA"));
    ASSERT_EQ(r.status, kOk);
    EXPECT_NE(r.err.find("flights/JFK.json: deals[0].price: expected a number"), std::string::npos)
        << r.err;
    EXPECT_NE(r.err.find("LGA"), std::string::npos);
    EXPECT_NE(r.err.find("roamwise-cli: flights/EWR.json: skipped 2 fares with "
                         "impossible values\n"),
              std::string::npos)
        << r.err;
    ASSERT_EQ(r.json().size(), 1u);
    EXPECT_EQ(r.json()[0]["origin"], "EWR");

    // Nothing readable at all: a non-zero exit.
    dir.write("flights/EWR.json", std::string(5000, '['));
    r = runCli(dealsArgs(dir.str(), "JFK,EWR"));
    EXPECT_EQ(r.status, kNoData);
    EXPECT_NE(r.err.find("flights/EWR.json: not valid JSON"), std::string::npos) << r.err;
    EXPECT_TRUE(r.out.empty());
}

}  // namespace
}  // namespace roamwise::cli
