#include <gtest/gtest.h>

#include "cli/cli.h"
#include "cli/tests/cli_test_support.h"

namespace roamwise::cli {
namespace {

using testing::runCli;
using testing::TempDir;

std::string calendarFile(const std::string& origin, const std::string& cells) {
    return R"({"origin":")" + origin + R"(","updated":"2026-11-20","routes":{"LIS":{)" + cells +
           "}}}";
}

std::vector<std::string> calendarArgs(const std::string& dir, std::vector<std::string> extra) {
    std::vector<std::string> args = {"calendar", "LIS",     "--data",  dir,
                                     "--home",   "JFK,EWR", "--today", "2026-11-20"};
    args.insert(args.end(), extra.begin(), extra.end());
    return args;
}

TEST(CalendarCommand, TheHomeAirportsByDayAndByMonth) {
    TempDir dir;
    dir.write("calendars/JFK.json",
              calendarFile("JFK", R"("2026-11-20":[450,"TP",0,"2026-11-28","2026-11-20"],)"
                                  R"("2026-12-01":[400,"TP",0,"2026-12-08","2026-11-16"],)"
                                  R"("2026-12-03":[420,"TP",0],)"
                                  R"("2026-12-05":[410,"TP",1,"2026-12-12","2026-11-16"])"));
    dir.write("calendars/EWR.json",
              calendarFile("EWR", R"("2026-12-01":[390,"UA",0,"2026-12-09","2026-11-20"])"));
    auto r = runCli(calendarArgs(dir.str(), {"--json"}));
    ASSERT_EQ(r.status, kOk) << r.err;
    EXPECT_TRUE(r.err.empty()) << r.err;
    const auto trips = r.json();
    // The merge's rules are the calendar tests' business; the shape is this
    // command's.
    ASSERT_EQ(trips.size(), 4u);
    EXPECT_EQ(trips[0].dump(), R"({"origin":"JFK","destination":"LIS","depart":"2026-11-20",)"
                               R"("returnDay":"2026-11-28","price":450,"airline":"TP","stops":0,)"
                               R"("seen":"2026-11-20","nights":8,"stale":false})");
    EXPECT_FALSE(trips[2].contains("nights"));  // one way: no return, no nights

    auto table = runCli(calendarArgs(dir.str(), {}));
    ASSERT_EQ(table.status, kOk);
    EXPECT_NE(table.out.find("Day-by-day prices for Lisbon (LIS)"), std::string::npos) << table.out;
    EXPECT_NE(table.out.find("\nSat 2026-12-05  Sat 2026-12-12       7       "
                             "$410  TAP Air Portugal"
                             "       1  JFK    4d *\n"),
              std::string::npos)
        << table.out;
    // A one-way fare keeps its day and says so.
    EXPECT_NE(table.out.find("\nThu 2026-12-03  one way              -       $420"),
              std::string::npos);

    auto months = runCli(calendarArgs(dir.str(), {"--months", "--json"})).json();
    ASSERT_EQ(months.size(), 2u);
    EXPECT_EQ(months[1]["month"].dump(), R"({"year":2026,"month":12})");

    auto none =
        runCli({"calendar", "cun", "--data", dir.str(), "--home", "JFK", "--today", "2026-11-20"});
    EXPECT_EQ(none.status, kOk);
    EXPECT_EQ(none.out,
              "No fares to CUN leaving in the next 330 days were seen "
              "recently enough to show.\n");
}

TEST(CalendarCommand, ImpossibleFaresAndUnreadableFiles) {
    TempDir dir;
    // Values no search can have found are left out with one line per file.
    dir.write("calendars/JFK.json",
              calendarFile("JFK", R"("2026-12-01":[400,"TP",-1],"2026-12-02":[0,"TP",0],)"
                                  R"("2026-12-04":[410,"TP",0])"));
    dir.write("calendars/EWR.json",
              calendarFile("EWR", R"("2026-12-01":[390,"UA",0,null,"2026-11-25"])"));
    auto r = runCli(calendarArgs(dir.str(), {"--json"}));
    ASSERT_EQ(r.status, kOk);
    EXPECT_EQ(r.err,
              "roamwise-cli: calendars/JFK.json: skipped 2 calendar fares "
              "with impossible values\n"
              "roamwise-cli: calendars/EWR.json: skipped 1 calendar fare "
              "with impossible values\n");
    ASSERT_EQ(r.json().size(), 1u);
    EXPECT_EQ(r.json()[0]["depart"], "2026-12-04");

    // A file that does not decode is skipped, naming the key; none at all is an
    // error.
    dir.write("calendars/JFK.json", calendarFile("JFK", R"("2026-12-01":[400,"TP"])"));
    r = runCli(calendarArgs(dir.str(), {"--json"}));
    ASSERT_EQ(r.status, kOk);
    EXPECT_NE(r.err.find("skipping JFK: calendars/JFK.json: "
                         "routes.LIS.2026-12-01: expected 3 to 5"),
              std::string::npos)
        << r.err;

    dir.write("calendars/EWR.json", "{");
    r = runCli(calendarArgs(dir.str(), {"--json"}));
    EXPECT_EQ(r.status, kNoData);
    EXPECT_TRUE(r.out.empty());
    EXPECT_NE(r.err.find("no calendar file could be read"), std::string::npos) << r.err;

    // The example folder's calendars decode whole.
    r = runCli({"calendar", "LIS", "--data", std::string(ROAMWISE_EXAMPLES) + "/data", "--home",
                "JFK,EWR", "--today", "2026-11-20", "--months"});
    EXPECT_EQ(r.status, kOk);
    EXPECT_TRUE(r.err.empty()) << r.err;
}

}  // namespace
}  // namespace roamwise::cli
