#include <gtest/gtest.h>

#include "cli/cli.h"
#include "cli/tests/cli_test_support.h"
#include "tripkit/destinations.h"
#include "tripkit/places.h"

namespace roamwise::cli {
namespace {

using testing::runCli;
using Codes = std::vector<std::string>;

// The `key` of each listed item of a --json run, in order.
Codes codesOf(const std::vector<std::string>& args, const char* key = "code") {
    const auto r = runCli(args);
    EXPECT_EQ(r.status, kOk) << r.err;
    Codes out;
    for (const auto& item : r.json()) out.push_back(item[key].get<std::string>());
    return out;
}

bool has(const Codes& list, const std::string& item) {
    return std::find(list.begin(), list.end(), item) != list.end();
}

TEST(PlacesCommand, AirportsListAndSearch) {
    auto all = runCli({"places", "airports", "--json"});
    ASSERT_EQ(all.status, kOk) << all.err;
    const auto& shipped = tripkit::Airports::shipped().list;
    ASSERT_EQ(all.json().size(), shipped.size());
    EXPECT_EQ(all.json()[0],
              tripkit::encode(shipped[0]));  // the catalog's own keys

    auto table = runCli({"places", "airports", "san j"});
    ASSERT_EQ(table.status, kOk);
    EXPECT_NE(table.out.find("SJU  San Juan"), std::string::npos) << table.out;
    EXPECT_EQ(runCli({"places", "airports", "zzzz"}).out, "No airport matches \"zzzz\".\n");
}

TEST(PlacesCommand, DestinationsFilterByCategoryPlaceAndSearch) {
    auto beaches =
        runCli({"places", "destinations", "--category", "beaches", "--abroad", "--json"});
    ASSERT_EQ(beaches.status, kOk) << beaches.err;
    ASSERT_FALSE(beaches.json().empty());
    for (const auto& d : beaches.json()) {
        EXPECT_FALSE(d["domestic"].get<bool>()) << d["id"];
        EXPECT_TRUE(has(d["categories"].get<Codes>(), "beaches")) << d["id"];
    }
    // Case and dashes do not matter in a category name.
    const Codes parks = codesOf(
        {"places", "destinations", "--category", "Theme-Parks", "--domestic", "--json"}, "id");
    EXPECT_TRUE(has(parks, "MCO"));
    EXPECT_FALSE(has(parks, "NRT"));  // theme parks, but abroad
    EXPECT_EQ(codesOf({"places", "destinations", "jose", "--json"}, "id"), Codes{"SJO"});
    EXPECT_NE(runCli({"places", "destinations", "lisbon"}).out.find("LIS  Lisbon"),
              std::string::npos);
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

    EXPECT_NE(runCli({"places", "nearby", "JFK", "--within", "25"})
                  .out.find("Within 25 miles of New York, NY (JFK):"),
              std::string::npos);
    auto alone = runCli({"places", "nearby", "HNL", "--within", "50"});
    EXPECT_EQ(alone.status, kOk);
    EXPECT_EQ(alone.out, "No airport within 50 miles of Honolulu, HI (HNL).\n");
}

// The other wrong arguments are in arguments_test.
TEST(PlacesCommand, AnUnknownCategoryListsTheKnownOnes) {
    auto category = runCli({"places", "destinations", "--category", "museums"});
    EXPECT_EQ(category.status, kUsage);
    for (const std::string& name : tripkit::Destination::categoryNames()) {
        EXPECT_NE(category.err.find(name), std::string::npos) << name;
    }
}

}  // namespace
}  // namespace roamwise::cli
