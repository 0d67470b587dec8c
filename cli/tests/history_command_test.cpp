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

TEST(HistoryCommand, PrintsTheLastNinetyNights) {
    TempDir dir;
    // 100 nights from 2026-08-13 to 2026-11-20, one of them null.
    std::string values;
    for (int i = 0; i < 100; ++i) {
        if (i) values += ",";
        values += i == 50 ? "null" : std::to_string(200 + i);
    }
    dir.write("history/JFK.json", historyFile("2026-08-13", values));
    auto r = runCli({"history", "LIS", "--data", dir.str(), "--home", "jfk", "--today", "2026-11-20", "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    const auto nights = r.json();
    ASSERT_EQ(nights.size(), 89u);  // 90 nights less the null one
    EXPECT_EQ(nights.front()["day"], "2026-08-23");
    EXPECT_EQ(nights.front()["price"], 210);
    EXPECT_EQ(nights.back()["day"], "2026-11-20");
    EXPECT_EQ(nights.back()["price"], 299);

    auto table = runCli({"history", "LIS", "--data", dir.str(), "--home", "JFK", "--today", "2026-11-19"});
    ASSERT_EQ(table.status, kOk);
    EXPECT_NE(table.out.find("Cheapest price each night for the last 90 days to LIS\n2026-08-22      $209\n"),
              std::string::npos)
        << table.out;
    EXPECT_EQ(table.out.find("2026-11-20"), std::string::npos);

    auto none = runCli({"history", "CUN", "--data", dir.str(), "--home", "JFK", "--today", "2026-11-20"});
    EXPECT_EQ(none.status, kOk);
    EXPECT_EQ(none.out, "No prices to CUN in the last 90 days.\n");
}

}  // namespace
}  // namespace roamwise::cli
