#include <gtest/gtest.h>

#include "cli/cli.h"
#include "cli/tests/cli_test_support.h"

namespace roamwise::cli {
namespace {

using testing::runCli;
using testing::TempDir;

std::string calendarFile(const std::string& origin, const std::string& cells) {
    return R"({"origin":")" + origin + R"(","updated":"2026-11-20","routes":{"LIS":{)" + cells + "}}}";
}

// JFK and EWR calendars around the edges of what is shown on 2026-11-20.
void writeTwoHomes(const TempDir& dir) {
    dir.write("calendars/JFK.json",
              calendarFile("JFK", R"("2026-11-19":[100,"TP",0,"2026-11-26"],)"
                                  R"("2026-11-20":[450,"TP",0,"2026-11-28","2026-11-20"],)"
                                  R"("2026-12-01":[400,"TP",0,"2026-12-08","2026-11-16"],)"
                                  R"("2026-12-02":[380,"TP",0,null,"2026-11-12"],)"
                                  R"("2026-12-03":[420,"TP",0],)"
                                  R"("2026-12-05":[410,"TP",1,"2026-12-12","2026-11-16"],)"
                                  R"("2027-10-16":[500,"TP",0,"2027-10-20"],)"
                                  R"("2027-10-17":[90,"TP",0,"2027-10-20"])"));
    dir.write("calendars/EWR.json",
              calendarFile("EWR", R"("2026-11-20":[450,"UA",1,"2026-11-27","2026-11-20"],)"
                                  R"("2026-12-01":[390,"UA",0,"2026-12-09","2026-11-20"],)"
                                  R"("2026-12-20":[300,"UA",0,"2026-12-27","2026-11-19"])"));
}

std::vector<std::string> calendarArgs(const std::string& dir, std::vector<std::string> extra) {
    std::vector<std::string> args = {"calendar", "LIS", "--data", dir, "--home", "JFK,EWR",
                                     "--today", "2026-11-20"};
    args.insert(args.end(), extra.begin(), extra.end());
    return args;
}

TEST(CalendarCommand, MergesTheHomeAirportsDayByDay) {
    TempDir dir;
    writeTwoHomes(dir);
    auto r = runCli(calendarArgs(dir.str(), {"--json"}));
    ASSERT_EQ(r.status, kOk) << r.err;
    EXPECT_TRUE(r.err.empty()) << r.err;
    std::vector<std::string> rows;
    for (const auto& t : r.json()) {
        rows.push_back(t["depart"].get<std::string>() + " " + t["origin"].get<std::string>() + " " +
                       std::to_string(t["price"].get<int>()));
    }
    // Yesterday, seen 8 days ago and 331 days ahead are left out; the tie on
    // the 20th stays with JFK, the cheaper EWR trip takes the 1st.
    EXPECT_EQ(rows, (std::vector<std::string>{"2026-11-20 JFK 450", "2026-12-01 EWR 390",
                                              "2026-12-03 JFK 420", "2026-12-05 JFK 410",
                                              "2026-12-20 EWR 300", "2027-10-16 JFK 500"}));
    const auto trips = r.json();
    EXPECT_EQ(trips[0]["returnDay"], "2026-11-28");
    EXPECT_EQ(trips[0]["nights"], 8);
    EXPECT_EQ(trips[0]["stale"], false);
    EXPECT_EQ(trips[0]["destination"], "LIS");
    // Three elements: one way, seen on the file's day.
    EXPECT_FALSE(trips[2].contains("returnDay"));
    EXPECT_FALSE(trips[2].contains("nights"));
    EXPECT_EQ(trips[2]["seen"], "2026-11-20");
    EXPECT_EQ(trips[3]["stale"], true);
    EXPECT_EQ(trips[3]["stops"], 1);

    auto table = runCli(calendarArgs(dir.str(), {}));
    ASSERT_EQ(table.status, kOk);
    EXPECT_NE(table.out.find("Day-by-day prices for Lisbon (LIS)"), std::string::npos) << table.out;
    EXPECT_NE(table.out.find("Sat 2026-12-05  Sat 2026-12-12       7       $410  TAP Air Portugal"),
              std::string::npos)
        << table.out;
    EXPECT_NE(table.out.find("JFK    4d *\n"), std::string::npos) << table.out;
    EXPECT_NE(table.out.find("Thu 2026-12-03  -                    -       $420"), std::string::npos);
    EXPECT_NE(table.out.find("* a fare seen over 3 days ago\n"), std::string::npos);

    // A destination without fares is no error.
    auto none = runCli({"calendar", "cun", "--data", dir.str(), "--home", "JFK", "--today", "2026-11-20"});
    EXPECT_EQ(none.status, kOk);
    EXPECT_EQ(none.out, "No fares to CUN leaving in the next 330 days were seen recently enough to show.\n");
}

TEST(CalendarCommand, MonthsKeepTheCheapestOfEach) {
    TempDir dir;
    writeTwoHomes(dir);
    auto r = runCli(calendarArgs(dir.str(), {"--months", "--json"}));
    ASSERT_EQ(r.status, kOk) << r.err;
    const auto months = r.json();
    ASSERT_EQ(months.size(), 3u);
    EXPECT_EQ(months[0]["month"].dump(), R"({"year":2026,"month":11})");
    EXPECT_EQ(months[0]["trip"]["price"], 450);
    EXPECT_EQ(months[1]["trip"]["depart"], "2026-12-20");
    EXPECT_EQ(months[1]["trip"]["origin"], "EWR");
    EXPECT_EQ(months[2]["month"]["month"], 10);

    auto table = runCli(calendarArgs(dir.str(), {"--months"}));
    EXPECT_NE(table.out.find("Cheapest round trip each month to Lisbon (LIS)"), std::string::npos);
    EXPECT_NE(table.out.find("\n2026-12   Sun 2026-12-20"), std::string::npos) << table.out;
    EXPECT_EQ(table.out.find("* a fare"), std::string::npos);  // no stale month winner

    // The example folder: February's cheapest is EWR's deal, seen 6 days before.
    auto example = runCli({"calendar", "LIS", "--months", "--data", std::string(ROAMWISE_EXAMPLES) + "/data",
                           "--home", "JFK,EWR", "--today", "2026-11-20", "--json"});
    ASSERT_EQ(example.status, kOk) << example.err;
    bool february = false;
    for (const auto& m : example.json()) {
        if (m["month"]["year"] == 2027 && m["month"]["month"] == 2) {
            february = true;
            EXPECT_EQ(m["trip"]["price"], 365);
            EXPECT_EQ(m["trip"]["origin"], "EWR");
            EXPECT_EQ(m["trip"]["stale"], true);
        }
    }
    EXPECT_TRUE(february);
}

TEST(CalendarCommand, UnreadableFilesAreSkippedAndNamed) {
    TempDir dir;
    dir.write("calendars/JFK.json", calendarFile("JFK", R"("2026-12-01":[400,"TP"])"));
    dir.write("calendars/EWR.json", calendarFile("EWR", R"("2026-12-01":[390,"UA",0])"));
    auto r = runCli(calendarArgs(dir.str(), {"--json"}));
    ASSERT_EQ(r.status, kOk);
    EXPECT_NE(r.err.find("skipping JFK: calendars/JFK.json: routes.LIS.2026-12-01: expected 3 to 5"),
              std::string::npos)
        << r.err;
    ASSERT_EQ(r.json().size(), 1u);
    EXPECT_EQ(r.json()[0]["origin"], "EWR");

    // Nothing readable: status 1 and nothing on the output.
    dir.write("calendars/EWR.json", "{");
    r = runCli(calendarArgs(dir.str(), {"--json"}));
    EXPECT_EQ(r.status, kNoData);
    EXPECT_TRUE(r.out.empty());
    EXPECT_NE(r.err.find("no calendar file could be read"), std::string::npos) << r.err;

    for (const auto& args : std::vector<std::vector<std::string>>{
             {"calendar", "LISB", "--data", dir.str(), "--home", "JFK"},
             {"calendar", "--data", dir.str(), "--home", "JFK"},
             {"calendar", "LIS", "--data", dir.str()},
             {"calendar", "LIS", "--data", dir.str(), "--home", "JFK", "--bogus"},
         }) {
        EXPECT_EQ(runCli(args).status, kUsage) << ::testing::PrintToString(args);
    }
}

}  // namespace
}  // namespace roamwise::cli
