#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

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
    EXPECT_EQ(deals[0]["destination"], "MIA");
    EXPECT_EQ(deals[0]["searchLink"],
              "https://www.aviasales.com/search/JFK0312MIA07121?marker=12345");
    EXPECT_EQ(deals[2]["origin"], "EWR");
    EXPECT_FALSE(deals[2].contains("link"));  // the fare file's own key stays as it was

    r = runCli({"deals", "--data", data, "--home", "JFK", "--today", "2026-11-20", "--links"});
    ASSERT_EQ(r.status, kOk);
    EXPECT_THAT(r.out, HasSubstr("5d *"));  // KEF, stale
    EXPECT_THAT(r.out, HasSubstr("\n      https://www.aviasales.com/search/JFK1301SJU20011\n"));
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
    EXPECT_THAT(r.err, HasSubstr("flights/JFK.json: deals[0].price: expected a number"));
    EXPECT_THAT(r.err, HasSubstr("LGA"));
    EXPECT_THAT(r.err, HasSubstr("roamwise-cli: flights/EWR.json: skipped 2 fares with "
                                 "impossible values\n"));
    ASSERT_EQ(r.json().size(), 1u);
    EXPECT_EQ(r.json()[0]["origin"], "EWR");

    // Nothing readable at all: a non-zero exit.
    dir.write("flights/EWR.json", std::string(5000, '['));
    r = runCli(dealsArgs(dir.str(), "JFK,EWR"));
    EXPECT_EQ(r.status, kNoData);
    EXPECT_THAT(r.err, HasSubstr("flights/EWR.json: not valid JSON"));
    EXPECT_TRUE(r.out.empty());
}

TEST(FeedCommand, WritesATreeThatTheDataCommandsReadLikeSample) {
    TempDir dir;
    auto written =
        runCli({"feed", "write", dir.str(), "--today", "2026-11-20", "--airports", "jfk,EWR"});
    ASSERT_EQ(written.status, kOk) << written.err;
    for (const char* path :
         {"flights/JFK.json", "calendars/EWR.json", "history/JFK.json", "advisories.json"}) {
        EXPECT_TRUE(std::filesystem::exists(dir.path / path)) << path;
    }
    EXPECT_FALSE(std::filesystem::exists(dir.path / "flights/LGA.json"));

    // The same night made in memory reads exactly as the written tree.
    const std::vector<std::vector<std::string>> commands = {
        {"deals", "--home", "JFK,EWR", "--today", "2026-11-20", "--json"},
        {"price-check", "LIS", "--home", "JFK,EWR", "--today", "2026-11-20", "--json"},
        {"calendar", "CUN", "--months", "--home", "JFK,EWR", "--today", "2026-11-20", "--json"},
    };
    for (std::vector<std::string> args : commands) {
        std::vector<std::string> fromDisk = args;
        fromDisk.insert(fromDisk.begin() + 1, {"--data", dir.str()});
        std::vector<std::string> sample = args;
        sample.insert(sample.begin() + 1, "--sample");
        const auto a = runCli(fromDisk);
        const auto b = runCli(sample);
        ASSERT_EQ(a.status, kOk) << args[0] << ": " << a.err;
        EXPECT_EQ(a.out, b.out) << args[0];
        EXPECT_FALSE(a.json().empty()) << args[0];
    }
    auto advisories =
        runCli({"advisories", "--file", (dir.path / "advisories.json").string(), "--json"});
    ASSERT_EQ(advisories.status, kOk) << advisories.err;
    EXPECT_GT(advisories.json().size(), 50u);
}

TEST(FeedCommand, UsageErrorsAndAnAirportWithoutSampleFares) {
    TempDir dir;
    const std::vector<std::vector<std::string>> wrong = {
        {"feed", "write", dir.str(), "--airports", "JFK,XYZ"},
        {"feed", "write", dir.str(), "--airports", "JFK", "--all"},
        {"feed", "write", dir.str(), "--today", "2026-13-01"},
        {"deals", "--home", "JFK"},                                   // neither --data nor --sample
        {"deals", "--sample", "--data", dir.str(), "--home", "JFK"},  // both
        {"history", "LIS", "--home", "JFK"},
    };
    for (const auto& args : wrong) {
        auto r = runCli(args);
        EXPECT_EQ(r.status, kUsage) << args[0] << " " << args.back() << ": " << r.out;
    }
    EXPECT_TRUE(std::filesystem::is_empty(dir.path));

    // The sample has no fares for an airport it does not know.
    auto none = runCli({"deals", "--sample", "--home", "ZZZ", "--today", "2026-11-20"});
    EXPECT_EQ(none.status, kNoData);
    EXPECT_THAT(none.err, HasSubstr("no sample data for ZZZ"));
}

}  // namespace
}  // namespace roamwise::cli
