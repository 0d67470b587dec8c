#include <gtest/gtest.h>

#include "cli/tests/cli_test_support.h"

namespace roamwise::cli {
namespace {

using testing::contents;
using testing::runCli;
using testing::TempDir;

// One calendar file whose LIS price the test changes between two nights.
void writeCalendar(const TempDir& dir, int lisbon, int cancun) {
    dir.write("calendars/JFK.json", R"({"origin": "JFK", "updated": "2026-11-23", "routes": {
        "LIS": {"2026-12-05": [)" + std::to_string(lisbon) +
                                        R"(, "TP", 0, "2026-12-12"]},
        "CUN": {"2026-12-05": [)" + std::to_string(cancun) +
                                        R"(, "B6", 0, "2026-12-09"]}}})");
}

TEST(WatchCommand, AddCheckListRemove) {
    TempDir dir;
    const std::string file = dir.str() + "/watches.json";
    auto added = runCli({"watch", "add", "lis", "--file", file, "--today", "2026-11-20"});
    ASSERT_EQ(added.status, kOk) << added.err;
    const std::string lisbon = added.out.substr(0, 36);
    added = runCli({"watch", "add", "CUN", "--target", "300", "--window", "2026-12-01..2026-12-31",
                    "--file", file});
    ASSERT_EQ(added.status, kOk) << added.err;
    EXPECT_EQ(runCli({"watch", "add", "ZZZ", "--file", file}).status, kUsage);
    EXPECT_EQ(runCli({"watch", "add", "LIS", "--window", "2026-12-31..2026-12-01", "--file", file})
                  .status,
              kUsage);

    // The first night records Lisbon's price; Cancún is under its target at once.
    writeCalendar(dir, 520, 299);
    auto check = runCli({"watch", "check", "--file", file, "--data", dir.str(), "--home", "JFK",
                         "--today", "2026-11-23", "--json"});
    ASSERT_EQ(check.status, kOk) << check.err;
    auto alerts = check.json().at("alerts");
    ASSERT_EQ(alerts.size(), 1u);
    EXPECT_EQ(alerts[0].at("reason"), "reachedTarget");

    // The next night Lisbon dropped by $20: one alert, as the notification reads.
    writeCalendar(dir, 500, 299);
    check = runCli({"watch", "check", "--file", file, "--data", dir.str(), "--home", "JFK",
                    "--today", "2026-11-23"});
    ASSERT_EQ(check.status, kOk) << check.err;
    EXPECT_EQ(
        check.out,
        "Price drop: Lisbon\n  $500 round trip, the cheapest found in recent searches (was $520)."
        " Prices change quickly.\n");

    const auto list = runCli({"watch", "list", "--file", file, "--json"}).json();
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0].at("lastAlerted"), 500);
    EXPECT_EQ(list[0].at("created"), "2026-11-20");

    ASSERT_EQ(runCli({"watch", "remove", lisbon, "--file", file}).status, kOk);
    EXPECT_EQ(runCli({"watch", "list", "--file", file, "--json"}).json().size(), 1u);
    EXPECT_EQ(runCli({"watch", "remove", lisbon, "--file", file}).status, kUsage);
}

TEST(WatchCommand, AFileThatDoesNotDecodeIsLeftAlone) {
    TempDir dir;
    writeCalendar(dir, 500, 299);
    const std::string file = dir.str() + "/watches.json";
    const std::string broken = R"([{"id": "not-a-uuid", "kind": {"route": {}}}])";
    dir.write("watches.json", broken);
    for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
             {"watch", "add", "LIS", "--file", file},
             {"watch", "check", "--file", file, "--data", dir.str(), "--home", "JFK"}}) {
        const auto r = runCli(args);
        EXPECT_NE(r.status, kOk) << args[1];
        EXPECT_THAT(r.err, HasSubstr("watches.json: [0].id: expected a UUID"));
        EXPECT_EQ(contents(file), broken) << args[1];
    }
}

// A theme-park watch priced through the planner, over writeParkData's files.
TEST(WatchCommand, ThemeParkWatchIsPricedByThePlanner) {
    TempDir dir;
    const std::string file = dir.str() + "/watches.json";
    testing::writeParkData(dir);
    auto added = runCli({"watch", "add-trip", "disney", "--search", dir.str() + "/search.json",
                         "--check-in", "2027-01-11", "--file", file});
    ASSERT_EQ(added.status, kOk) << added.err;
    EXPECT_EQ(runCli({"watch", "add-trip", "universal", "--search", dir.str() + "/search.json",
                      "--check-in", "2027-01-11", "--file", file})
                  .status,
              kUsage);

    // The first night records the planner's price: $825 of stay and $336 of
    // flights (out $89, back $79, the days around scaled to them).
    auto check = runCli({"watch", "check", "--file", file, "--data", dir.str(), "--home", "JFK",
                         "--today", "2026-11-23"});
    ASSERT_EQ(check.status, kOk) << check.err;
    EXPECT_EQ(check.out, "No alerts.\n");
    const auto list = runCli({"watch", "list", "--file", file, "--today", "2027-01-14"});
    EXPECT_THAT(list.out,
                HasSubstr("Walt Disney World trip checking in 2027-01-11 (These dates have "
                          "passed)  any drop  $1,161  2026-11-23"));
}

}  // namespace
}  // namespace roamwise::cli
