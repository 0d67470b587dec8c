#include <map>

#include <gtest/gtest.h>

#include "cli/tests/cli_test_support.h"
#include "tripkit/climate.h"

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

TEST(CalendarCommand, TheHomeAirportsByDayAndByMonthAndTheFilesThatAreSkipped) {
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
    EXPECT_THAT(table.out, HasSubstr("\nSat 2026-12-05  Sat 2026-12-12       7       "
                                     "$410  TAP Air Portugal"
                                     "       1  JFK    4d *\n"));
    // A one-way fare keeps its day and says so.
    EXPECT_THAT(table.out, HasSubstr("\nThu 2026-12-03  one way              -       $420"));

    auto months = runCli(calendarArgs(dir.str(), {"--months", "--json"})).json();
    ASSERT_EQ(months.size(), 2u);
    EXPECT_EQ(months[1]["month"].dump(), R"({"year":2026,"month":12})");

    auto none =
        runCli({"calendar", "cun", "--data", dir.str(), "--home", "JFK", "--today", "2026-11-20"});
    EXPECT_EQ(none.status, kOk);
    EXPECT_EQ(none.out,
              "No fares to CUN leaving in the next 330 days were seen recently enough "
              "to show.\n");

    // Values no search can have found are left out with one line per file.
    dir.write("calendars/JFK.json",
              calendarFile("JFK", R"("2026-12-01":[400,"TP",-1],"2026-12-02":[0,"TP",0],)"
                                  R"("2026-12-04":[410,"TP",0])"));
    dir.write("calendars/EWR.json",
              calendarFile("EWR", R"("2026-12-01":[390,"UA",0,null,"2026-11-25"])"));
    r = runCli(calendarArgs(dir.str(), {"--json"}));
    ASSERT_EQ(r.status, kOk);
    EXPECT_EQ(r.err,
              "roamwise-cli: calendars/JFK.json: skipped 2 calendar fares with impossible values\n"
              "roamwise-cli: calendars/EWR.json: skipped 1 calendar fare with impossible values\n");
    ASSERT_EQ(r.json().size(), 1u);
    EXPECT_EQ(r.json()[0]["depart"], "2026-12-04");

    // A file that does not decode is skipped, naming the key; none at all is an error.
    dir.write("calendars/JFK.json", calendarFile("JFK", R"("2026-12-01":[400,"TP"])"));
    r = runCli(calendarArgs(dir.str(), {"--json"}));
    ASSERT_EQ(r.status, kOk);
    EXPECT_THAT(
        r.err,
        HasSubstr("skipping JFK: calendars/JFK.json: routes.LIS.2026-12-01: expected 3 to 5"));

    dir.write("calendars/EWR.json", "{");
    r = runCli(calendarArgs(dir.str(), {"--json"}));
    EXPECT_EQ(r.status, kNoData);
    EXPECT_TRUE(r.out.empty());
    EXPECT_THAT(r.err, HasSubstr("no calendar file could be read"));
}

TEST(BestTimeCommand, JoinsShippedClimateWithTheCalendarsMonths) {
    TempDir dir;
    // Lisbon, a city with beaches (so the 78-90 °F band): fares in three months.
    dir.write("calendars/JFK.json",
              calendarFile("JFK", R"("2027-01-12":[500,"TP",0,"2027-01-19"],)"
                                  R"("2027-01-20":[450,"TP",0,"2027-01-27"],)"
                                  R"("2027-05-05":[700,"TP",0,"2027-05-12"],)"
                                  R"("2027-08-03":[950,"TP",0,"2027-08-10"])"));
    auto r = runCli({"best-time", "lis", "--data", dir.str(), "--home", "JFK", "--today",
                     "2026-11-20", "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    const auto out = r.json();
    EXPECT_EQ(out["climate"], true);
    EXPECT_EQ(out["credit"], tripkit::Climate::shipped().source.credit());
    const auto& picks = out["picks"];
    ASSERT_EQ(picks.size(), 12u);
    // How months are scored is the best-time tests' business; each month
    // carries its cheapest fare (January's 450, not the 500 earlier that
    // month), or none.
    std::map<int, tripkit::json::Json> prices;
    for (const auto& pick : picks) prices[pick["index"].get<int>()] = pick["price"];
    EXPECT_EQ(prices[1], 450);
    EXPECT_TRUE(prices[2].is_null());

    auto table =
        runCli({"best-time", "LIS", "--data", dir.str(), "--home", "JFK", "--today", "2026-11-20"});
    ASSERT_EQ(table.status, kOk) << table.err;
    EXPECT_THAT(table.out, HasSubstr("km away), normals 1991–2020\n"));
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
    // 2026-11-20 is a Friday; Thanksgiving's days off are Thursday 26 to Sunday
    // 29 November, Christmas's Friday 25 to Sunday 27 December.
    dir.write("calendars/JFK.json",
              R"({"origin":"JFK","updated":"2026-11-20","routes":{
        "MIA":{"2026-12-04":[150,"B6",0,"2026-12-06"], "2026-12-08":[120,"AA",0,"2026-12-15"]},
        "SJU":{"2026-11-24":[300,"B6",0,"2026-11-29"], "2026-11-25":[280,"B6",0,"2026-11-30","2026-11-16"]},
        "CUN":{"2026-12-24":[400,"DL",0,"2026-12-28"], "2026-12-26":[180,"DL",0,null]}}})");
    dir.write("calendars/EWR.json",
              R"({"origin":"EWR","updated":"2026-11-20","routes":{
        "CUN":{"2026-12-23":[400,"UA",0,"2026-12-27"]}}})");
    // Which trips each timing keeps is the getaway tests' business; the
    // options reach it.
    EXPECT_EQ(rows(getaways(dir, {"--timing", "weekends"})),
              (std::vector<std::string>{"MIA/JFK/2026-12-04/150", "CUN/JFK/2026-12-24/400"}));
    EXPECT_EQ(rows(getaways(dir, {"--timing", "anytime", "--length", "short"})),
              (std::vector<std::string>{"MIA/JFK/2026-12-04/150", "CUN/EWR/2026-12-23/400"}));

    auto r = getaways(dir, {"--timing", "thanksgiving"});
    ASSERT_EQ(rows(r), (std::vector<std::string>{"SJU/JFK/2026-11-25/280"}));
    // --to and --max narrow the places and the price.
    EXPECT_EQ(rows(getaways(dir, {"--timing", "any-holiday", "--to", "cun, sju", "--max", "280"})),
              (std::vector<std::string>{"SJU/JFK/2026-11-25/280"}));

    auto table = getaways(dir, {"--timing", "any-holiday"}, false);
    EXPECT_THAT(table.out,
                HasSubstr("\n      Thanksgiving: days off Thu 2026-11-26 to Sun 2026-11-29\n"));

    // A home airport without a calendar has nothing to search.
    r = runCli({"getaways", "--data", dir.str(), "--home", "LGA", "--timing", "weekends"});
    EXPECT_EQ(r.status, kNoData);
    EXPECT_THAT(r.err, HasSubstr("Getaways need price calendars"));
}

TEST(HolidaysCommand, ElevenWindowsWithTheirDaysOff) {
    auto r = runCli({"holidays", "2027", "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    ASSERT_EQ(r.json().size(), 11u);
    // July 4, 2027 is a Sunday: observed Monday the 5th, off Saturday to Monday.
    EXPECT_EQ(r.json()[5].dump(),
              R"({"holiday":"independenceDay","date":"2027-07-04",)"
              R"("observed":"2027-07-05","days":{"first":"2027-07-03","last":"2027-07-05"}})");

    auto table = runCli({"holidays", "2027"});
    EXPECT_THAT(table.out,
                HasSubstr("\nIndependence Day            Sun 2027-07-04  Mon 2027-07-05  "
                          "Sat 2027-07-03 to Mon 2027-07-05 (3 days)\n"));
}

}  // namespace
}  // namespace roamwise::cli
