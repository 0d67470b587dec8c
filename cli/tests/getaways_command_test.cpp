#include <gtest/gtest.h>

#include "cli/cli.h"
#include "cli/tests/cli_test_support.h"

namespace roamwise::cli {
namespace {

using testing::runCli;
using testing::TempDir;

// 2026-11-20 is a Friday; Thanksgiving's days off are Thursday 26 to Sunday
// 29, Christmas's Friday 25 to Sunday 27 December.
void writeCalendars(const TempDir& dir) {
    dir.write("calendars/JFK.json", R"({"origin":"JFK","updated":"2026-11-20","routes":{
        "MIA":{"2026-12-04":[150,"B6",0,"2026-12-06"],
               "2026-12-08":[120,"AA",0,"2026-12-15"]},
        "SJU":{"2026-11-24":[300,"B6",0,"2026-11-29"],
               "2026-11-25":[280,"B6",0,"2026-11-30","2026-11-16"]},
        "CUN":{"2026-12-24":[400,"DL",0,"2026-12-28"],
               "2026-12-26":[180,"DL",0,null]}}})");
    dir.write("calendars/EWR.json", R"({"origin":"EWR","updated":"2026-11-20","routes":{
        "CUN":{"2026-12-23":[400,"UA",0,"2026-12-27"]}}})");
}

struct Row {
    std::string destination;
    std::string origin;
    std::string depart;
    int price;
    friend bool operator==(const Row&, const Row&) = default;
};
std::ostream& operator<<(std::ostream& out, const Row& r) {
    return out << r.destination << "/" << r.origin << "/" << r.depart << "/" << r.price;
}

std::vector<Row> rows(const testing::CliResult& r) {
    std::vector<Row> out;
    for (const auto& g : r.json()) {
        out.push_back({g["trip"]["destination"], g["trip"]["origin"], g["trip"]["depart"],
                       g["trip"]["price"].get<int>()});
    }
    return out;
}

testing::CliResult getaways(const TempDir& dir, std::vector<std::string> extra) {
    std::vector<std::string> args = {"getaways", "--data", dir.str(), "--home", "JFK,EWR",
                                     "--today", "2026-11-20", "--json"};
    args.insert(args.end(), extra.begin(), extra.end());
    return runCli(args);
}

TEST(GetawaysCommand, EachTimingKeepsTheCheapestFittingTrip) {
    TempDir dir;
    writeCalendars(dir);
    auto r = getaways(dir, {"--timing", "anytime"});
    ASSERT_EQ(r.status, kOk) << r.err;
    EXPECT_EQ(rows(r), (std::vector<Row>{{"MIA", "JFK", "2026-12-08", 120},
                                         {"CUN", "JFK", "2026-12-26", 180},
                                         {"SJU", "JFK", "2026-11-25", 280}}));
    EXPECT_EQ(r.json()[0]["timing"].dump(), R"({"anytime":{}})");
    EXPECT_FALSE(r.json()[0].contains("window"));
    EXPECT_EQ(r.json()[0]["trip"]["nights"], 7);

    // Weekends: Friday to Sunday and Thursday to Monday fit, Wednesday out does not.
    r = getaways(dir, {"--timing", "weekends"});
    EXPECT_EQ(rows(r), (std::vector<Row>{{"MIA", "JFK", "2026-12-04", 150},
                                         {"CUN", "JFK", "2026-12-24", 400}}));

    // Thanksgiving: both SJU trips fit; the cheaper one, though stale, wins.
    r = getaways(dir, {"--timing", "thanksgiving"});
    ASSERT_EQ(rows(r), (std::vector<Row>{{"SJU", "JFK", "2026-11-25", 280}}));
    const auto g = r.json()[0];
    EXPECT_EQ(g["timing"].dump(), R"({"holiday":{"_0":"thanksgiving"}})");
    EXPECT_EQ(g["window"]["holiday"], "thanksgiving");
    EXPECT_EQ(g["window"]["date"], "2026-11-26");
    EXPECT_EQ(g["window"]["observed"], "2026-11-26");
    EXPECT_EQ(g["window"]["days"].dump(), R"({"first":"2026-11-26","last":"2026-11-29"})");
    EXPECT_EQ(g["trip"]["stale"], true);

    // Any holiday: CUN's equal prices go to the earlier departure (EWR's),
    // the one-way trip never fits; sorted by price.
    r = getaways(dir, {"--timing", "any-holiday"});
    EXPECT_EQ(rows(r), (std::vector<Row>{{"SJU", "JFK", "2026-11-25", 280},
                                         {"CUN", "EWR", "2026-12-23", 400}}));
    EXPECT_EQ(r.json()[1]["window"]["holiday"], "christmas");
    EXPECT_EQ(r.json()[1]["timing"].dump(), R"({"anyHoliday":{}})");
}

TEST(GetawaysCommand, LengthDestinationsAndCeilingNarrowTheList) {
    TempDir dir;
    writeCalendars(dir);
    auto r = getaways(dir, {"--timing", "anytime", "--length", "short"});
    EXPECT_EQ(rows(r), (std::vector<Row>{{"MIA", "JFK", "2026-12-04", 150},
                                         {"CUN", "EWR", "2026-12-23", 400}}));
    r = getaways(dir, {"--timing", "anytime", "--length", "week"});
    EXPECT_EQ(rows(r), (std::vector<Row>{{"MIA", "JFK", "2026-12-08", 120},
                                         {"SJU", "JFK", "2026-11-25", 280}}));
    r = getaways(dir, {"--timing", "any-holiday", "--to", "cun, sju", "--max", "280"});
    EXPECT_EQ(rows(r), (std::vector<Row>{{"SJU", "JFK", "2026-11-25", 280}}));
    r = getaways(dir, {"--timing", "anytime", "--to", "LIS"});
    ASSERT_EQ(r.status, kOk);
    EXPECT_TRUE(r.json().empty());

    // The table names the long weekend under each trip.
    auto table = runCli({"getaways", "--data", dir.str(), "--home", "JFK,EWR", "--today",
                         "2026-11-20", "--timing", "any-holiday"});
    ASSERT_EQ(table.status, kOk);
    EXPECT_NE(table.out.find("Cheapest trips that fit: any federal holiday’s long weekend, any length\n"),
              std::string::npos)
        << table.out;
    EXPECT_NE(table.out.find("\n      Thanksgiving: days off Thu 2026-11-26 to Sun 2026-11-29\n"),
              std::string::npos)
        << table.out;
    EXPECT_NE(table.out.find("CUN   Cancún"), std::string::npos) << table.out;
    table = runCli({"getaways", "--data", dir.str(), "--home", "JFK", "--today", "2026-11-20",
                    "--timing", "laborDay", "--length", "long"});
    EXPECT_NE(table.out.find("Labor Day long weekend, 10 to 60 nights\nNo trip in the calendars fits.\n"),
              std::string::npos)
        << table.out;
}

TEST(GetawaysCommand, WrongArgumentsAndMissingCalendars) {
    TempDir dir;
    writeCalendars(dir);
    for (const auto& extra : std::vector<std::vector<std::string>>{
             {},
             {"--timing", "easter"},
             {"--timing", "anyHoliday"},
             {"--timing", "anytime", "--length", "longer"},
             {"--timing", "anytime", "--to", "L1S"},
             {"--timing", "anytime", "--to", ","},
             {"--timing", "anytime", "--max", "-5"},
             {"--timing", "anytime", "--max", "cheap"},
         }) {
        auto r = getaways(dir, extra);
        EXPECT_EQ(r.status, kUsage) << ::testing::PrintToString(extra);
        EXPECT_TRUE(r.out.empty());
    }

    auto r = runCli({"getaways", "--data", dir.str(), "--home", "LGA", "--today", "2026-11-20",
                     "--timing", "weekends"});
    EXPECT_EQ(r.status, kNoData);
    EXPECT_NE(r.err.find("Getaways need price calendars"), std::string::npos) << r.err;
}

}  // namespace
}  // namespace roamwise::cli
