#include <gtest/gtest.h>

#include <filesystem>

#include "cli/cli.h"
#include "cli/tests/cli_test_support.h"

namespace roamwise::cli {
namespace {

using testing::runCli;
using testing::TempDir;

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
        {"getaways", "--timing", "weekends", "--home", "JFK,EWR", "--today", "2026-11-20",
         "--json"},
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

TEST(FeedCommand, UsageErrors) {
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
}

TEST(FeedCommand, SampleForAnAirportWithoutFaresSaysSo) {
    auto none = runCli({"deals", "--sample", "--home", "ZZZ", "--today", "2026-11-20"});
    EXPECT_EQ(none.status, kNoData);
    EXPECT_NE(none.err.find("no sample data for ZZZ"), std::string::npos) << none.err;
}

}  // namespace
}  // namespace roamwise::cli
