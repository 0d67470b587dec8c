#include <gtest/gtest.h>

#include "cli/cli.h"
#include "cli/tests/cli_test_support.h"

namespace roamwise::cli {
namespace {

using testing::runCli;
using testing::TempDir;

// 2026-11-20 is a Friday; Thanksgiving's days off are Thursday 26 to Sunday
// 29 November, Christmas's Friday 25 to Sunday 27 December.
void writeCalendars(const TempDir& dir) {
    dir.write("calendars/JFK.json",
              R"({"origin":"JFK","updated":"2026-11-20","routes":{
        "MIA":{"2026-12-04":[150,"B6",0,"2026-12-06"], "2026-12-08":[120,"AA",0,"2026-12-15"]},
        "SJU":{"2026-11-24":[300,"B6",0,"2026-11-29"], "2026-11-25":[280,"B6",0,"2026-11-30","2026-11-16"]},
        "CUN":{"2026-12-24":[400,"DL",0,"2026-12-28"], "2026-12-26":[180,"DL",0,null]}}})");
    dir.write("calendars/EWR.json",
              R"({"origin":"EWR","updated":"2026-11-20","routes":{
        "CUN":{"2026-12-23":[400,"UA",0,"2026-12-27"]}}})");
}

testing::CliResult getaways(const TempDir& dir, std::vector<std::string> extra, bool json = true) {
    std::vector<std::string> args = {"getaways", "--data",  dir.str(),   "--home",
                                     "JFK,EWR",  "--today", "2026-11-20"};
    if (json) args.push_back("--json");
    args.insert(args.end(), extra.begin(), extra.end());
    return runCli(args);
}

// "CUN/EWR/2026-12-23/400" per getaway, in output order.
std::vector<std::string> rows(const testing::CliResult& r) {
    std::vector<std::string> out;
    for (const auto& g : r.json()) {
        const auto& t = g["trip"];
        out.push_back(t["destination"].get<std::string>() + "/" + t["origin"].get<std::string>() +
                      "/" + t["depart"].get<std::string>() + "/" + t["price"].dump());
    }
    return out;
}

TEST(GetawaysCommand, TimingsLengthsAndFilters) {
    TempDir dir;
    writeCalendars(dir);
    // Which trips each timing keeps is the getaway tests' business; the
    // options reach it.
    EXPECT_EQ(rows(getaways(dir, {"--timing", "weekends"})),
              (std::vector<std::string>{"MIA/JFK/2026-12-04/150", "CUN/JFK/2026-12-24/400"}));
    EXPECT_EQ(rows(getaways(dir, {"--timing", "anytime", "--length", "short"})),
              (std::vector<std::string>{"MIA/JFK/2026-12-04/150", "CUN/EWR/2026-12-23/400"}));

    auto r = getaways(dir, {"--timing", "thanksgiving"});
    ASSERT_EQ(rows(r), (std::vector<std::string>{"SJU/JFK/2026-11-25/280"}));
    EXPECT_EQ(r.json()[0]["timing"].dump(), R"({"holiday":{"_0":"thanksgiving"}})");
    EXPECT_EQ(r.json()[0]["window"].dump(),
              R"({"holiday":"thanksgiving","date":"2026-11-26","observed":"2026-11-26",)"
              R"("days":{"first":"2026-11-26","last":"2026-11-29"}})");
    // --to and --max narrow the places and the price.
    EXPECT_EQ(rows(getaways(dir, {"--timing", "any-holiday", "--to", "cun, sju", "--max", "280"})),
              (std::vector<std::string>{"SJU/JFK/2026-11-25/280"}));

    auto table = getaways(dir, {"--timing", "any-holiday"}, false);
    EXPECT_NE(table.out.find("Cheapest trips that fit: any federal holiday’s "
                             "long weekend, any length\n"),
              std::string::npos)
        << table.out;
    EXPECT_NE(table.out.find("\n      Thanksgiving: days off Thu 2026-11-26 to Sun 2026-11-29\n"),
              std::string::npos)
        << table.out;
}

TEST(GetawaysCommand, MissingCalendars) {
    TempDir dir;
    writeCalendars(dir);
    auto r = runCli({"getaways", "--data", dir.str(), "--home", "LGA", "--timing", "weekends"});
    EXPECT_EQ(r.status, kNoData);
    EXPECT_NE(r.err.find("Getaways need price calendars"), std::string::npos) << r.err;
}

}  // namespace
}  // namespace roamwise::cli
