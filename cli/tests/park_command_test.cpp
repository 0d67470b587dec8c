#include <gtest/gtest.h>

#include "cli/tests/cli_test_support.h"
#include "tripkit/tests/test_data.h"

namespace roamwise::cli {
namespace {

using testing::parkSearch;
using testing::runCli;
using testing::TempDir;
using testing::writeParkData;
using tripkit::testing::parkData;
using tripkit::testing::replaced;

const std::string kParks = std::string(TRIPKIT_TEST_DATA) + "/parks";
const std::string kSearch = kParks + "/search.json";
const std::string kDisney = kParks + "/disney-guide.json";
const std::string kUniversal = kParks + "/universal-guide.json";

// The search: 2 adults and children of 10, 9, 2 and 1; 4 nights, 3 park days
// with hoppers, 2 Premier Pass days, rideshare, food at 60 and 30 a day;
// value and moderate resorts. The sums are the guides' tests' business.
TEST(ParkCommand, PricesAStayAsJsonAndAsATable) {
    auto r = runCli({"park", "price", "disney", "--search", kSearch, "--check-in", "2027-02-01",
                     "--guide", kDisney, "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    const auto j = r.json();
    ASSERT_EQ(j["stays"].size(), 2u);  // the deluxe resort is not asked for
    EXPECT_EQ(j["stays"][0],
              tripkit::json::Json::parse(
                  R"({"resort":"base","checkIn":"2027-02-01","checkOut":"2027-02-05",)"
                  R"("hotel":600,"hotelEstimated":false,"tickets":1215,"hopper":380,)"
                  R"("lightningLane":3089,"transport":151,"food":1050,"total":6485,)"
                  R"("busy":false})"));

    // Universal's stays carry Express in place of Lightning Lane.
    TempDir dir;
    dir.write("search.json",
              replaced(parkData("search.json"), R"({"cheapest": {"tiers": ["value", "moderate"]}})",
                       R"({"only": {"ids": ["portofino"]}})"));
    r = runCli({"park", "price", "universal", "--search", (dir.path / "search.json").string(),
                "--check-in", "2027-02-01", "--guide", kUniversal, "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    const auto stay = r.json()["stays"].at(0);
    EXPECT_EQ(stay["express"], true);
    EXPECT_FALSE(stay.contains("lightningLane"));

    // Without --guide the shipped guide prices.
    r = runCli(
        {"park", "price", "disney", "--search", kSearch, "--check-in", "2026-12-01", "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    EXPECT_GT(r.json()["stays"].at(0)["total"].get<double>(), 0);

    r = runCli({"park", "price", "disney", "--search", kSearch, "--check-in", "2027-02-12",
                "--guide", kDisney});
    ASSERT_EQ(r.status, kOk) << r.err;
    for (const char* line : {"Walt Disney World: 4 nights, 3 park days\n",
                             "Base Value Resort (Value), 2027-02-12 to 2027-02-16, touches a busy "
                             "date\n"})
        EXPECT_THAT(r.out, HasSubstr(line));
    // The search's Disney classes match no Universal hotel.
    r = runCli({"park", "price", "universal", "--search", kSearch, "--check-in", "2027-02-01",
                "--guide", kUniversal});
    ASSERT_EQ(r.status, kOk);
    EXPECT_THAT(r.out, HasSubstr("No hotel of the guide fits"));
}

// Each file that cannot be read is named; nothing is printed.
TEST(ParkCommand, UnreadableFiles) {
    TempDir dir;
    const std::string missing = (dir.path / "none.json").string();
    dir.write("search.json", replaced(parkData("search.json"), R"("nights": 4,)", ""));
    const std::string broken = (dir.path / "search.json").string();
    dir.write("guide.json", replaced(parkData("disney-guide.json"), R"("taxRate": 0.065,)", ""));
    const std::string guide = (dir.path / "guide.json").string();
    const struct {
        std::string park, search, guide, error;
    } cases[] = {
        {"disney", missing, kDisney, "no trip search file " + missing},
        {"disney", broken, kDisney, broken + ": nights: required key is missing"},
        {"disney", kSearch, guide, "guide.json: lightningLane.taxRate: required key is missing"},
        // A Disney guide is not a Universal one.
        {"universal", kSearch, kDisney, "disney-guide.json: coverage.to: required key is missing"},
    };
    for (const auto& c : cases) {
        auto r = runCli({"park", "price", c.park, "--search", c.search, "--check-in", "2027-02-01",
                         "--guide", c.guide});
        EXPECT_EQ(r.status, kNoData) << c.error;
        EXPECT_THAT(r.err, HasSubstr(c.error));
        EXPECT_TRUE(r.out.empty()) << r.out;
    }
}

std::vector<std::string> planArgs(const TempDir& dir, const std::string& park,
                                  const std::string& search = "search.json") {
    return {"plan",    park,         "--data",   dir.str(),
            "--home",  "JFK",        "--search", dir.str() + "/" + search,
            "--today", "2026-11-23", "--json"};
}

TEST(PlanCommand, TripsBudgetEventsAndTheFoldersFiles) {
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

    // Over the budget: nothing fits, and the text says why.
    dir.write("budget.json", parkSearch(R"(, "maxTotal": 1160)"));
    args = planArgs(dir, "disney", "budget.json");
    r = runCli(args);
    ASSERT_EQ(r.status, kOk) << r.err;
    EXPECT_EQ(r.json().at("trips").size(), 0u);
    EXPECT_EQ(r.json().at("overBudget"), 3);
    args.pop_back();  // as text
    r = runCli(args);
    ASSERT_EQ(r.status, kOk) << r.err;
    EXPECT_THAT(r.out,
                HasSubstr("No trips fit these limits\nTry more months, other resorts, fewer date "
                          "limits or a higher budget.\n3 trips were over your budget.\n114 "
                          "check-in dates were outside your limits.\n"));

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
    EXPECT_THAT(r.err, HasSubstr("using the shipped disney-guide.json"));

    EXPECT_EQ(runCli(planArgs(dir, "disney", "missing.json")).status, kNoData);
    args = planArgs(dir, "disney");
    args[5] = "ZZZ";
    EXPECT_EQ(runCli(args).status, kUsage);
}

TEST(PlanCommand, DefaultSearchOnSampleData) {
    auto r = runCli(
        {"plan", "disney", "--sample", "--home", "JFK", "--today", "2026-11-23", "--top", "3"});
    ASSERT_EQ(r.status, kOk) << r.err;
    EXPECT_THAT(r.out, HasSubstr("Walt Disney World from JFK: 5 nights, 4 park days, 4 travelers"));
}

}  // namespace
}  // namespace roamwise::cli
