#include <gtest/gtest.h>

#include <set>

#include "cli/cli.h"
#include "cli/tests/cli_test_support.h"
#include "tripkit/destinations.h"
#include "tripkit/places.h"

namespace roamwise::cli {
namespace {

using testing::runCli;

std::vector<std::string> codesOf(const tripkit::json::Json& list, const char* key) {
    std::vector<std::string> out;
    for (const auto& item : list) out.push_back(item[key].get<std::string>());
    return out;
}

bool has(const std::vector<std::string>& list, const std::string& item) {
    return std::find(list.begin(), list.end(), item) != list.end();
}

TEST(PlacesCommand, AirportsListAndSearch) {
    auto all = runCli({"places", "airports", "--json"});
    ASSERT_EQ(all.status, kOk) << all.err;
    const auto& shipped = tripkit::Airports::shipped().list;
    ASSERT_EQ(all.json().size(), shipped.size());
    // The catalog's own keys, in file order.
    EXPECT_EQ(all.json()[0], tripkit::encode(shipped[0]));

    auto orlando = runCli({"places", "airports", "orlando", "--json"});
    ASSERT_EQ(orlando.status, kOk);
    const auto codes = codesOf(orlando.json(), "code");
    EXPECT_TRUE(has(codes, "MCO"));
    EXPECT_TRUE(has(codes, "SFB"));  // "Orlando Sanford International Airport"
    EXPECT_FALSE(has(codes, "TPA"));

    auto accents = runCli({"places", "airports", "munoz marin", "--json"});
    EXPECT_EQ(codesOf(accents.json(), "code"), (std::vector<std::string>{"SJU"}));

    auto table = runCli({"places", "airports", "san j"});
    ASSERT_EQ(table.status, kOk);
    EXPECT_NE(table.out.find("SJU  San Juan"), std::string::npos) << table.out;
    EXPECT_EQ(table.out.find("SAN "), std::string::npos) << table.out;
    EXPECT_EQ(runCli({"places", "airports", "zzzz"}).out, "No airport matches \"zzzz\".\n");
}

TEST(PlacesCommand, DestinationsFilterByCategoryPlaceAndSearch) {
    auto beaches = runCli({"places", "destinations", "--category", "beaches", "--abroad", "--json"});
    ASSERT_EQ(beaches.status, kOk) << beaches.err;
    ASSERT_FALSE(beaches.json().empty());
    for (const auto& d : beaches.json()) {
        EXPECT_FALSE(d["domestic"].get<bool>()) << d["id"];
        const auto cats = d["categories"].get<std::vector<std::string>>();
        EXPECT_TRUE(has(cats, "beaches")) << d["id"];
        EXPECT_TRUE(d.contains("advisory"));
    }

    // Case and dashes do not matter in a category name.
    auto parks = runCli({"places", "destinations", "--category", "Theme-Parks", "--domestic", "--json"});
    ASSERT_EQ(parks.status, kOk) << parks.err;
    const auto parkCodes = codesOf(parks.json(), "id");
    EXPECT_TRUE(has(parkCodes, "MCO"));
    EXPECT_FALSE(has(parkCodes, "NRT"));  // theme parks, but abroad
    for (const auto& d : parks.json()) EXPECT_FALSE(d.contains("advisory")) << d["id"];

    auto jose = runCli({"places", "destinations", "jose", "--json"});
    EXPECT_EQ(codesOf(jose.json(), "id"), (std::vector<std::string>{"SJO"}));

    const std::size_t total = tripkit::Destinations::shipped().list.size();
    auto home = runCli({"places", "destinations", "--domestic", "--json"});
    auto abroad = runCli({"places", "destinations", "--abroad", "--json"});
    EXPECT_EQ(home.json().size() + abroad.json().size(), total);

    auto table = runCli({"places", "destinations", "lisbon"});
    ASSERT_EQ(table.status, kOk);
    EXPECT_NE(table.out.find("LIS  Lisbon"), std::string::npos) << table.out;
}

TEST(PlacesCommand, NearbyAirports) {
    auto r = runCli({"places", "nearby", "mco", "--within", "120", "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    const auto list = r.json();
    ASSERT_GE(list.size(), 3u);
    EXPECT_EQ(list[0]["code"], "SFB");
    // The airport's own keys come along with its distance.
    const auto& sfb = tripkit::Airports::shipped().byCode.at("SFB");
    auto expected = tripkit::encode(sfb);
    expected["distanceMiles"] = list[0]["distanceMiles"];
    EXPECT_EQ(list[0], expected);
    EXPECT_LE(list.back()["distanceMiles"].get<double>(), 120);
    // Without --limit every airport within the distance is listed, the
    // eleventh (Jacksonville, 144 miles from Orlando) too.
    const auto all = codesOf(runCli({"places", "nearby", "MCO", "--json"}).json(), "code");
    EXPECT_GT(all.size(), 10u);
    EXPECT_EQ(all.back(), "JAX");
    auto two = runCli({"places", "nearby", "JFK", "--limit", "2", "--json"});
    EXPECT_EQ(codesOf(two.json(), "code"), (std::vector<std::string>{"LGA", "EWR"}));

    auto table = runCli({"places", "nearby", "JFK", "--within", "25"});
    ASSERT_EQ(table.status, kOk);
    EXPECT_NE(table.out.find("Within 25 miles of New York, NY (JFK):"), std::string::npos) << table.out;
    auto alone = runCli({"places", "nearby", "HNL", "--within", "50"});
    EXPECT_EQ(alone.status, kOk);
    EXPECT_EQ(alone.out, "No airport within 50 miles of Honolulu, HI (HNL).\n");
}

TEST(PlacesCommand, WrongArgumentsAreUsageErrors) {
    auto unknown = runCli({"places", "nearby", "XYZ"});
    EXPECT_EQ(unknown.status, kUsage);
    EXPECT_NE(unknown.err.find("no airport with the code \"XYZ\""), std::string::npos) << unknown.err;

    auto category = runCli({"places", "destinations", "--category", "museums"});
    EXPECT_EQ(category.status, kUsage);
    for (const std::string& name : tripkit::Destination::categoryNames()) {
        EXPECT_NE(category.err.find(name), std::string::npos) << name;
    }

    for (const auto& args : std::vector<std::vector<std::string>>{
             {"places"},
             {"places", "ports"},
             {"places", "airports", "hi", "kona"},  // one query argument; quote it
             {"places", "destinations", "--domestic", "--abroad"},
             {"places", "nearby", "MCO", "--within", "-1"},
             {"places", "nearby", "MCO", "--limit", "0"},
             {"places", "nearby", "MCO", "--limit", "2.5"},
         }) {
        auto r = runCli(args);
        EXPECT_EQ(r.status, kUsage) << ::testing::PrintToString(args);
        EXPECT_TRUE(r.out.empty()) << r.out;
    }
}

}  // namespace
}  // namespace roamwise::cli
