#include <gtest/gtest.h>

#include "cli/cli.h"
#include "cli/tests/cli_test_support.h"
#include "tripkit/tests/test_data.h"

namespace roamwise::cli {
namespace {

using testing::runCli;
using testing::TempDir;
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
    EXPECT_EQ(j["party"],
              tripkit::json::Json::parse(R"({"adults":2,"adultPriced":3,"childPriced":1,"seats":5,)"
                                         R"("lapBabies":1,"freeInParks":2,"rooms":1})"));
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
    EXPECT_EQ(stay["total"], 4716);

    // Without --guide the shipped guide prices.
    r = runCli(
        {"park", "price", "disney", "--search", kSearch, "--check-in", "2026-12-01", "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    EXPECT_GT(r.json()["stays"].at(0)["total"].get<double>(), 0);

    r = runCli({"park", "price", "disney", "--search", kSearch, "--check-in", "2027-02-12",
                "--guide", kDisney});
    ASSERT_EQ(r.status, kOk) << r.err;
    for (const char* line : {"Walt Disney World: 4 nights, 3 park days\n",
                             "Base Value Resort (Value), 2027-02-12 to "
                             "2027-02-16, touches a busy date\n",
                             "  Transport        $151 (Rideshare)\n"}) {
        EXPECT_NE(r.out.find(line), std::string::npos) << line << r.out;
    }
    // The search's Disney classes match no Universal hotel.
    r = runCli({"park", "price", "universal", "--search", kSearch, "--check-in", "2027-02-01",
                "--guide", kUniversal});
    ASSERT_EQ(r.status, kOk);
    EXPECT_NE(r.out.find("No hotel of the guide fits"), std::string::npos) << r.out;
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
        EXPECT_NE(r.err.find(c.error), std::string::npos) << r.err;
        EXPECT_TRUE(r.out.empty()) << r.out;
    }
}

}  // namespace
}  // namespace roamwise::cli
