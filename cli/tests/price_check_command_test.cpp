#include <gtest/gtest.h>

#include "cli/tests/cli_test_support.h"

namespace roamwise::cli {
namespace {

using testing::runCli;
using testing::TempDir;

const std::string kExamples = std::string(ROAMWISE_EXAMPLES) + "/data";

// A history file whose LIS series is `prices`, one per night up to `updated`.
std::string historyFile(const std::string& origin, const std::string& updated,
                        const std::string& from, const std::string& prices) {
    return R"({"origin":")" + origin + R"(","updated":")" + updated + R"(","from":")" + from +
           R"(","routes":{"LIS":[)" + prices + "]}}";
}

// Twenty nights, $300 rising by $10 a night.
constexpr const char* kTwentyNights =
    "300,310,320,330,340,350,360,370,380,390,400,410,420,430,440,450,460,470,480,490";

TEST(PriceCheckCommand, JudgesTodaysDealInTheExampleFolder) {
    auto r = runCli({"price-check", "lis", "--data", kExamples, "--home", "JFK,EWR", "--today",
                     "2026-11-20", "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    const auto j = r.json();
    EXPECT_EQ(j["destination"], "LIS");
    EXPECT_EQ(j["price"], 412);
    EXPECT_EQ(j["deal"]["origin"], "JFK");
    EXPECT_EQ(j["check"]["verdict"], "low");

    auto table = runCli({"price-check", "CUN", "--data", kExamples, "--home", "JFK,EWR", "--today",
                         "2026-11-20", "--price", "400"});
    ASSERT_EQ(table.status, kOk) << table.err;
    EXPECT_THAT(table.out,
                HasSubstr("CUN at $400\nHigher than most prices seen in the last 81 days\n"));
}

TEST(PriceCheckCommand, AHistoryPublishedTooLongAgoIsLeftOutAndSaidSo) {
    TempDir dir;
    // 20 nights from JFK; EWR adds one more night before them.
    dir.write("history/JFK.json", historyFile("JFK", "2026-11-20", "2026-11-01", kTwentyNights));
    std::string ewr = "400";
    for (int i = 0; i < 19; ++i) ewr += ",null";
    dir.write("history/EWR.json", historyFile("EWR", "2026-11-19", "2026-10-31", ewr));
    auto args = std::vector<std::string>{"price-check", "LIS",     "--data",  dir.str(),
                                         "--home",      "JFK,EWR", "--today", "2026-11-20",
                                         "--price",     "350",     "--json"};
    auto r = runCli(args);
    ASSERT_EQ(r.status, kOk) << r.err;
    EXPECT_EQ(r.json()["check"]["nights"], 21);

    // EWR's file, published 8 days before, is left out: too few nights.
    args[7] = "2026-11-27";
    r = runCli(args);
    ASSERT_EQ(r.status, kOk) << r.err;
    EXPECT_THAT(r.err, HasSubstr("skipping EWR: history published 2026-11-19"));
    EXPECT_TRUE(r.json()["check"].is_null());
}

TEST(PriceCheckCommand, NothingToJudgeAndWrongArguments) {
    TempDir dir;
    auto r = runCli({"price-check", "LIS", "--data", dir.str(), "--home", "JFK", "--price", "100"});
    EXPECT_EQ(r.status, kNoData);
    EXPECT_THAT(r.err, HasSubstr("no history file could be read"));

    // History but no fare file and no --price: nothing to judge.
    dir.write("history/JFK.json", historyFile("JFK", "2026-11-20", "2026-11-01", kTwentyNights));
    r = runCli(
        {"price-check", "LIS", "--data", dir.str(), "--home", "JFK", "--today", "2026-11-20"});
    EXPECT_EQ(r.status, kNoData);
    EXPECT_THAT(r.err, HasSubstr("give the price with --price"));
    EXPECT_TRUE(r.out.empty());

    dir.write("history/EWR.json", "{\"origin\":");
    r = runCli({"price-check", "LIS", "--data", dir.str(), "--home", "JFK,EWR", "--price", "99",
                "--today", "2026-11-20"});
    EXPECT_EQ(r.status, kOk);
    EXPECT_THAT(r.err, HasSubstr("history/EWR.json: not valid JSON"));
}

// Which nights are shown is the price history tests' business.
TEST(HistoryCommand, PrintsTheNightsAsJsonAndAsATable) {
    TempDir dir;
    dir.write("history/JFK.json", historyFile("JFK", "2026-11-20", "2026-11-18", "209,null,299"));
    auto r = runCli({"history", "LIS", "--data", dir.str(), "--home", "jfk", "--today",
                     "2026-11-20", "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    EXPECT_EQ(r.json().dump(),
              R"([{"day":"2026-11-18","price":209},{"day":"2026-11-20","price":299}])");

    auto table =
        runCli({"history", "LIS", "--data", dir.str(), "--home", "JFK", "--today", "2026-11-20"});
    ASSERT_EQ(table.status, kOk);
    EXPECT_THAT(table.out, HasSubstr("Cheapest price each night for the last 90 days to LIS\n"
                                     "2026-11-18      $209\n"));

    auto none =
        runCli({"history", "CUN", "--data", dir.str(), "--home", "JFK", "--today", "2026-11-20"});
    EXPECT_EQ(none.status, kOk);
    EXPECT_EQ(none.out, "No prices to CUN in the last 90 days.\n");
}

}  // namespace
}  // namespace roamwise::cli
