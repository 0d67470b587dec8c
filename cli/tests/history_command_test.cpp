#include <gtest/gtest.h>

#include "cli/cli.h"
#include "cli/tests/cli_test_support.h"

namespace roamwise::cli {
namespace {

using testing::runCli;
using testing::TempDir;

std::string historyFile(const std::string& from, const std::string& prices) {
    return R"({"origin":"JFK","updated":"2026-11-20","from":")" + from + R"(","routes":{"LIS":[)" +
           prices + "]}}";
}

// Which nights are shown is the price history tests' business.
TEST(HistoryCommand, PrintsTheNightsAsJsonAndAsATable) {
    TempDir dir;
    dir.write("history/JFK.json", historyFile("2026-11-18", "209,null,299"));
    auto r = runCli({"history", "LIS", "--data", dir.str(), "--home", "jfk", "--today",
                     "2026-11-20", "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    EXPECT_EQ(r.json().dump(),
              R"([{"day":"2026-11-18","price":209},{"day":"2026-11-20","price":299}])");

    auto table =
        runCli({"history", "LIS", "--data", dir.str(), "--home", "JFK", "--today", "2026-11-20"});
    ASSERT_EQ(table.status, kOk);
    EXPECT_NE(table.out.find("Cheapest price each night for the last 90 days to LIS\n"
                             "2026-11-18      $209\n"),
              std::string::npos)
        << table.out;

    auto none =
        runCli({"history", "CUN", "--data", dir.str(), "--home", "JFK", "--today", "2026-11-20"});
    EXPECT_EQ(none.status, kOk);
    EXPECT_EQ(none.out, "No prices to CUN in the last 90 days.\n");
}

}  // namespace
}  // namespace roamwise::cli
