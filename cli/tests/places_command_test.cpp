#include <gtest/gtest.h>

#include "cli/tests/cli_test_support.h"
#include "tripkit/destinations.h"
#include "tripkit/places.h"

namespace roamwise::cli {
namespace {

using ::testing::Contains;
using ::testing::Not;
using testing::runCli;
using Codes = std::vector<std::string>;
using testing::TempDir;

// The `key` of each listed item of a --json run, in order.
Codes codesOf(const std::vector<std::string>& args, const char* key = "code") {
    const auto r = runCli(args);
    EXPECT_EQ(r.status, kOk) << r.err;
    Codes out;
    for (const auto& item : r.json()) out.push_back(item[key].get<std::string>());
    return out;
}

TEST(PlacesCommand, AirportsAndDestinationsListedFilteredAndSearched) {
    auto all = runCli({"places", "airports", "--json"});
    ASSERT_EQ(all.status, kOk) << all.err;
    const auto& shipped = tripkit::Airports::shipped().list;
    ASSERT_EQ(all.json().size(), shipped.size());
    EXPECT_EQ(all.json()[0], tripkit::encode(shipped[0]));  // the catalog's own keys

    auto table = runCli({"places", "airports", "san j"});
    ASSERT_EQ(table.status, kOk);
    EXPECT_THAT(table.out, HasSubstr("SJU  San Juan"));
    EXPECT_EQ(runCli({"places", "airports", "zzzz"}).out, "No airport matches \"zzzz\".\n");

    // Case and dashes do not matter in a category name.
    const Codes parks = codesOf(
        {"places", "destinations", "--category", "Theme-Parks", "--domestic", "--json"}, "id");
    EXPECT_THAT(parks, Contains("MCO"));
    EXPECT_THAT(parks, Not(Contains("NRT")));  // theme parks, but abroad
    EXPECT_THAT(runCli({"places", "destinations", "lisbon"}).out, HasSubstr("LIS  Lisbon"));
    // An unknown category lists the known ones.
    auto category = runCli({"places", "destinations", "--category", "museums"});
    EXPECT_EQ(category.status, kUsage);
    for (const std::string& name : tripkit::Destination::categoryNames())
        EXPECT_THAT(category.err, HasSubstr(name));
}

TEST(PlacesCommand, NearbyAirports) {
    auto r = runCli({"places", "nearby", "mco", "--within", "120", "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    const auto list = r.json();
    ASSERT_GE(list.size(), 3u);
    // The airport's own keys come along with its distance.
    auto expected = tripkit::encode(tripkit::Airports::shipped().byCode.at("SFB"));
    expected["distanceMiles"] = list[0]["distanceMiles"];
    EXPECT_EQ(list[0], expected);
    // Without --limit every airport within the distance is listed, the
    // eleventh (Jacksonville, 144 miles from Orlando) too.
    const Codes all = codesOf({"places", "nearby", "MCO", "--json"});
    EXPECT_GT(all.size(), 10u);
    EXPECT_EQ(all.back(), "JAX");
    EXPECT_EQ(codesOf({"places", "nearby", "JFK", "--limit", "2", "--json"}).size(), 2u);

    EXPECT_THAT(runCli({"places", "nearby", "JFK", "--within", "25"}).out,
                HasSubstr("Within 25 miles of New York, NY (JFK):"));
    auto alone = runCli({"places", "nearby", "HNL", "--within", "50"});
    EXPECT_EQ(alone.status, kOk);
    EXPECT_EQ(alone.out, "No airport within 50 miles of Honolulu, HI (HNL).\n");
}

const std::string kRealFeed =
    std::string(ROAMWISE_REAL_DATA) + "/advisories/travel-advisories-api-sample.json";

TEST(AdvisoriesCommand, JoinsTheRealFeedWithTheCatalog) {
    auto r = runCli({"advisories", "--file", kRealFeed, "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    const auto all = r.json();
    ASSERT_EQ(all.size(), 3u);
    // By code: IR, LI, QA.
    EXPECT_EQ(all[0]["levelText"], "Do not travel");
    // The catalog's places come with the advisory that names them.
    EXPECT_THAT(all[2]["destinations"].dump(), HasSubstr(R"("id":"DOH")"));

    auto table = runCli({"advisories", "--file", kRealFeed});
    ASSERT_EQ(table.status, kOk);
    EXPECT_THAT(table.out, HasSubstr("Exercise increased caution"));
}

TEST(AdvisoriesCommand, MaxLevelKeepsDomesticPlacesAndLowLevelsAndBadFeedsFail) {
    TempDir dir;
    dir.write("feed.json", R"([
      {"Title": "Mexico Travel Advisory - Level 2: Exercise Increased Caution", "Link": "m", "Category": ["MX"]},
      {"Title": "Portugal - Level 1: Exercise Normal Precautions", "Link": "p", "Category": ["PO"]}
    ])");
    const std::string feed = dir.str() + "/feed.json";
    auto levels = [&](const std::string& maxLevel) {
        auto r = runCli({"advisories", "--file", feed, "--max-level", maxLevel, "--json"});
        EXPECT_EQ(r.status, kOk) << r.err;
        std::map<std::string, tripkit::json::Json> byId;
        for (const auto& p : r.json()) byId[p["id"].get<std::string>()] = p;
        return byId;
    };
    // Safe & Fun's rule is the advisory tests' business: --max-level reaches it.
    auto one = levels("1");
    EXPECT_TRUE(one.contains("LIS") && one.contains("MIA") && !one.contains("CUN"));
    EXPECT_EQ(levels("2")["CUN"]["level"], 2);

    auto table = runCli({"advisories", "--file", feed, "--max-level", "1"});
    EXPECT_THAT(table.out, HasSubstr("Level 1: Exercise normal precautions"));

    // A feed that does not decode: its message, no data.
    dir.write("object.json", R"({"Title": "Chad - Level 3"})");
    auto r = runCli({"advisories", "--file", dir.str() + "/object.json", "--json"});
    EXPECT_EQ(r.status, kNoData);
    EXPECT_THAT(r.err, HasSubstr(dir.str() + "/object.json: expected an array"));
    EXPECT_TRUE(r.out.empty());
}

}  // namespace
}  // namespace roamwise::cli
