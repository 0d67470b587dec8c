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
// value and moderate resorts.
TEST(ParkCommand, PricesADisneyStayPartByPart) {
    auto r = runCli({"park", "price", "disney", "--search", kSearch, "--check-in", "2027-02-01",
                     "--guide", kDisney, "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    const auto j = r.json();
    EXPECT_EQ(j["party"], tripkit::json::Json::parse(
                              R"({"adults":2,"adultPriced":3,"childPriced":1,"seats":5,)"
                              R"("lapBabies":1,"freeInParks":2,"rooms":1})"));
    ASSERT_EQ(j["stays"].size(), 2u);  // the deluxe resort is not asked for
    const auto& base = j["stays"].at(0);
    // Four weeknights at February's first rate; tickets 3 x 307.5 + 292.5
    // at level 0.25; hoppers 4 x 95; Premier 2 x 362.5 x 4 x 1.065; five
    // seats take the large car; food (3 x 60 + 30) x 5 days.
    EXPECT_EQ(base, tripkit::json::Json::parse(
                        R"({"resort":"base","checkIn":"2027-02-01","checkOut":"2027-02-05",)"
                        R"("hotel":600,"hotelEstimated":false,"tickets":1215,"hopper":380,)"
                        R"("lightningLane":3089,"transport":151,"food":1050,"total":6485,)"
                        R"("busy":false})"));
    EXPECT_EQ(j["stays"][1]["total"], 1124 + 1215 + 380 + 3089 + 151 + 1050);

    // Presidents' Day weekend; a stay with a night no season covers.
    r = runCli({"park", "price", "disney", "--search", kSearch, "--check-in", "2027-02-12",
                "--guide", kDisney, "--json"});
    EXPECT_EQ(r.json()["stays"].at(0)["busy"], true);
    r = runCli({"park", "price", "disney", "--search", kSearch, "--check-in", "2027-04-29",
                "--guide", kDisney, "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    const auto uncovered = r.json()["stays"].at(0);
    EXPECT_TRUE(uncovered["hotel"].is_null());
    EXPECT_TRUE(uncovered["total"].is_null());
    EXPECT_EQ(uncovered["hotelEstimated"], false);
    EXPECT_EQ(uncovered["tickets"], 3 * 345 + 330);  // level 0.5: April, and May has no season
}

TEST(ParkCommand, PricesAUniversalStay) {
    TempDir dir;
    dir.write("search.json", replaced(parkData("search.json"),
                                      R"({"cheapest": {"tiers": ["value", "moderate"]}})",
                                      R"({"only": {"ids": ["portofino"]}})"));
    const std::string search = (dir.path / "search.json").string();
    auto r = runCli({"park", "price", "universal", "--search", search, "--check-in", "2027-02-01",
                     "--guide", kUniversal, "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    const auto j = r.json();
    EXPECT_EQ(j["party"]["adultPriced"], 4);  // the 9- and 10-year-olds pay as adults
    EXPECT_EQ(j["party"]["childPriced"], 0);
    ASSERT_EQ(j["stays"].size(), 1u);
    const auto& stay = j["stays"].at(0);
    // The 3-day ticket with Epic Universe, 344.99 x 4 x 1.065, and
    // park-to-park, 60 x 4 x 1.065; Express comes with the hotel.
    EXPECT_EQ(stay, tripkit::json::Json::parse(
                        R"({"resort":"portofino","checkIn":"2027-02-01","checkOut":"2027-02-05",)"
                        R"("hotel":1800,"hotelEstimated":false,"tickets":1470,"hopper":256,)"
                        R"("express":true,"transport":140,"food":1050,"total":4716,"busy":false})"));

    // The search's Disney classes match no Universal hotel.
    r = runCli({"park", "price", "universal", "--search", kSearch, "--check-in", "2027-02-01",
                "--guide", kUniversal});
    ASSERT_EQ(r.status, kOk);
    EXPECT_NE(r.out.find("No hotel of the guide fits"), std::string::npos) << r.out;
}

TEST(ParkCommand, ReadableTable) {
    auto r = runCli({"park", "price", "disney", "--search", kSearch, "--check-in", "2027-02-12",
                     "--guide", kDisney});
    ASSERT_EQ(r.status, kOk) << r.err;
    EXPECT_NE(r.out.find("Walt Disney World: 4 nights, 3 park days\n"), std::string::npos) << r.out;
    EXPECT_NE(
        r.out.find("Base Value Resort (Value), 2027-02-12 to 2027-02-16, touches a busy date\n"),
        std::string::npos)
        << r.out;
    EXPECT_NE(r.out.find("  Lightning Lane   $3,089\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("  Transport        $151 (Rideshare)\n"), std::string::npos) << r.out;
}

TEST(ParkCommand, ShippedGuidesPriceEveryResortAsked) {
    TempDir dir;
    dir.write(
        "search.json",
        replaced(
            parkData("search.json"), R"({"cheapest": {"tiers": ["value", "moderate"]}})",
            R"({"cheapest": {"tiers": ["value", "moderate", "deluxe", "primeValue", "signature"]}})"));
    const std::string search = (dir.path / "search.json").string();
    for (const std::string park : {"disney", "universal"}) {
        auto r = runCli({"park", "price", park, "--search", search, "--check-in", "2026-12-01",
                         "--json"});
        ASSERT_EQ(r.status, kOk) << r.err;
        const auto stays = r.json()["stays"];
        ASSERT_FALSE(stays.empty()) << park;
        for (const auto& s : stays) {
            EXPECT_GT(s["hotel"].get<double>(), 0) << park << " " << s["resort"];
            EXPECT_GT(s["tickets"].get<double>(), 0) << park << " " << s["resort"];
        }
    }
}

TEST(ParkCommand, BadArgumentsAndUnreadableFiles) {
    for (const auto& args : std::vector<std::vector<std::string>>{
             {"park", "price", "seaworld", "--search", kSearch, "--check-in", "2027-02-01"},
             {"park", "price", "disney", "--search", kSearch},
             {"park", "price", "disney", "--check-in", "2027-02-01"},
             {"park", "price", "disney", "--search", kSearch, "--check-in", "2027-02-30"},
             {"park", "disney"},
         }) {
        EXPECT_EQ(runCli(args).status, kUsage) << ::testing::PrintToString(args);
    }

    TempDir dir;
    const std::string missing = (dir.path / "none.json").string();
    auto r = runCli({"park", "price", "disney", "--search", missing, "--check-in", "2027-02-01"});
    EXPECT_EQ(r.status, kNoData);
    EXPECT_NE(r.err.find("no trip search file " + missing), std::string::npos) << r.err;

    dir.write("search.json", replaced(parkData("search.json"), R"("nights": 4,)", ""));
    const std::string broken = (dir.path / "search.json").string();
    r = runCli({"park", "price", "disney", "--search", broken, "--check-in", "2027-02-01"});
    EXPECT_EQ(r.status, kNoData);
    EXPECT_NE(r.err.find(broken + ": nights: required key is missing"), std::string::npos) << r.err;
    EXPECT_TRUE(r.out.empty());

    dir.write("guide.json", replaced(parkData("disney-guide.json"), R"("taxRate": 0.065,)", ""));
    r = runCli({"park", "price", "disney", "--search", kSearch, "--check-in", "2027-02-01",
                "--guide", (dir.path / "guide.json").string()});
    EXPECT_EQ(r.status, kNoData);
    EXPECT_NE(r.err.find("guide.json: lightningLane.taxRate: required key is missing"),
              std::string::npos)
        << r.err;
    // A Disney guide is not a Universal one.
    r = runCli({"park", "price", "universal", "--search", kSearch, "--check-in", "2027-02-01",
                "--guide", kDisney});
    EXPECT_EQ(r.status, kNoData);
    EXPECT_NE(r.err.find("disney-guide.json: coverage.to: required key is missing"),
              std::string::npos)
        << r.err;
}

}  // namespace
}  // namespace roamwise::cli
