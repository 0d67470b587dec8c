#include <gtest/gtest.h>

#include "cli/cli.h"
#include "cli/tests/cli_test_support.h"

namespace roamwise::cli {
namespace {

using testing::parkSearch;
using testing::runCli;
using testing::TempDir;
using testing::writeParkData;

std::vector<std::string> planArgs(const TempDir& dir, const std::string& park,
                                  const std::string& search = "search.json") {
    return {"plan",    park,         "--data",   dir.str(),
            "--home",  "JFK",        "--search", dir.str() + "/" + search,
            "--today", "2026-11-23", "--json"};
}

TEST(PlanCommand, TripsPartsAndMonthsAsJson) {
    TempDir dir;
    writeParkData(dir);
    auto r = runCli(planArgs(dir, "disney"));
    ASSERT_EQ(r.status, kOk) << r.err;
    const auto out = r.json();
    const auto& trips = out.at("trips");
    ASSERT_EQ(trips.size(), 3u);
    EXPECT_EQ(trips[0], tripkit::json::Json::parse(R"({"checkIn": "2027-01-11",
        "checkOut": "2027-01-13", "resort": "base", "season": "Value",
        "parts": {"flights": 336, "hotel": 225, "tickets": 200, "hopper": 0,
                  "lightningLane": 0, "transport": 100, "food": 300},
        "total": 1161, "estimated": false, "flightsSpread": 0, "travelers": 2,
        "outbound": {"price": 89, "estimated": false, "spread": 0},
        "inbound": {"price": 79, "estimated": false, "spread": 0}})"));
    EXPECT_EQ(out.at("months")[0].at("average"), 1161);
    EXPECT_EQ(out.at("overBudget"), 0);
    EXPECT_EQ(out.at("leftOut"), 114);  // 117 priced check-in days, 3 allowed

    // --top limits the trips only.
    auto args = planArgs(dir, "disney");
    args.insert(args.end(), {"--top", "1"});
    r = runCli(args);
    ASSERT_EQ(r.status, kOk) << r.err;
    EXPECT_EQ(r.json().at("trips").size(), 1u);
    EXPECT_EQ(r.json().at("months"), out.at("months"));
    args.back() = "0";
    EXPECT_EQ(runCli(args).status, kUsage);

    // Universal: Express instead of Lightning Lane.
    r = runCli(planArgs(dir, "universal"));
    ASSERT_EQ(r.status, kOk) << r.err;
    const auto u = r.json().at("trips")[0];
    EXPECT_EQ(u.at("resort"), "surfside");
    EXPECT_EQ(u.at("parts").at("express"), 0);
    EXPECT_FALSE(u.at("parts").contains("lightningLane"));
}

TEST(PlanCommand, EmptyResultsBudgetAndTheFoldersEvents) {
    TempDir dir;
    writeParkData(dir);
    dir.write("budget.json", parkSearch(R"(, "maxTotal": 1160)"));
    auto args = planArgs(dir, "disney", "budget.json");
    auto r = runCli(args);
    ASSERT_EQ(r.status, kOk) << r.err;
    EXPECT_EQ(r.json().at("trips").size(), 0u);
    EXPECT_EQ(r.json().at("overBudget"), 3);
    args.pop_back();  // as text
    r = runCli(args);
    ASSERT_EQ(r.status, kOk) << r.err;
    EXPECT_NE(r.out.find("No trips fit these limits\nTry more months, other resorts, fewer date "
                         "limits or a higher budget.\n3 trips were over your budget.\n114 "
                         "check-in dates were outside your limits.\n"),
              std::string::npos)
        << r.out;

    // A busy event of the folder's calendar on the 12th leaves only the
    // stay that starts after it.
    dir.write("disney-events.json", R"({"asOf": "2026-11-01", "sources": [], "events": [
        {"name": "Race", "nameEs": "Carrera", "first": "2027-01-12", "last": "2027-01-12",
         "busy": true, "estimated": false}]})");
    dir.write("busy.json", parkSearch("", true));
    r = runCli(planArgs(dir, "disney", "busy.json"));
    ASSERT_EQ(r.status, kOk) << r.err;
    ASSERT_EQ(r.json().at("trips").size(), 1u);
    EXPECT_EQ(r.json().at("trips")[0].at("checkIn"), "2027-01-13");

    // A guide in the folder that does not decode is reported; the shipped
    // one prices instead.
    dir.write("disney-guide.json", "{}");
    r = runCli(planArgs(dir, "disney"));
    ASSERT_EQ(r.status, kOk) << r.err;
    EXPECT_NE(r.err.find("using the shipped disney-guide.json"), std::string::npos) << r.err;

    EXPECT_EQ(runCli(planArgs(dir, "disney", "missing.json")).status, kNoData);
    args = planArgs(dir, "disney");
    args[5] = "ZZZ";
    EXPECT_EQ(runCli(args).status, kUsage);
}

TEST(PlanCommand, DefaultSearchOnSampleData) {
    auto r = runCli(
        {"plan", "disney", "--sample", "--home", "JFK", "--today", "2026-11-23", "--top", "3"});
    ASSERT_EQ(r.status, kOk) << r.err;
    EXPECT_NE(r.out.find("Walt Disney World from JFK: 5 nights, 4 park days, 4 travelers"),
              std::string::npos)
        << r.out;
}

}  // namespace
}  // namespace roamwise::cli
