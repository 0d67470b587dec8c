#include "tripkit/destinations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "tripkit/places.h"
#include "tripkit/tests/test_data.h"
#include "tripkit/text_search.h"

namespace tripkit {
namespace {

std::string errorOf(const std::string& text) {
    return testing::decodeError<Destinations>(text, "destinations.json");
}

bool isUpperLetters(const std::string& s, std::size_t length) {
    return s.size() == length &&
           std::all_of(s.begin(), s.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
}

bool contains(const std::vector<std::string>& list, const std::string& item) {
    return std::find(list.begin(), list.end(), item) != list.end();
}

// The smallest record: every optional key left out.
const char* kBare =
    R"({"id":"LIS","name":"Lisbon","region":"Europe","country":"Portugal","domestic":false,)"
    R"("fareCode":"LIS","categories":["cities"],"blurb":"Trams."})";

TEST(Destination, OptionalKeysMayBeAbsentAndSpanishOnlyWhenAsked) {
    const auto list = json::decodeDocument<Destinations>(std::string("[") + kBare + "]", "x").list;
    ASSERT_EQ(list.size(), 1u);
    const Destination& bare = list[0];
    EXPECT_FALSE(bare.lat || bare.lon || bare.es || bare.advisory || bare.countryCode);
    EXPECT_EQ(encode(bare).dump(), kBare);        // absent keys stay absent
    EXPECT_EQ(bare.displayName(true), "Lisbon");  // no Spanish: the English text
    std::string nulls = kBare;                    // null is the same as absent
    nulls.insert(nulls.size() - 1, R"(,"lat":null,"lon":null,"es":null)");
    EXPECT_EQ(json::decodeDocument<Destination>(nulls, "x"), bare);

    Destination full = bare;
    full.es = Destination::Translation{"Lisboa", "Tranvías."};
    EXPECT_EQ(full.displayName(true), "Lisboa");
    EXPECT_EQ(full.displayBlurb(false), "Trams.");
    // Search: code, name, country, region; the Spanish name only in Spanish.
    EXPECT_TRUE(TextSearch::matches("portugal europe lis", full.searchFields()));
    EXPECT_FALSE(TextSearch::matches("trams", full.searchFields()));
    EXPECT_FALSE(TextSearch::matches("lisboa", full.searchFields()));
    EXPECT_TRUE(TextSearch::matches("lisboa", full.searchFields(true)));
    EXPECT_TRUE(TextSearch::matches("lisbon", full.searchFields(true)));
}

TEST(Destination, MalformedRecordsNameTheKey) {
    auto with = [](const std::string& from, const std::string& to) {
        std::string text = kBare;
        const auto at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        text.replace(at, from.size(), to);
        return "[" + std::string(kBare) + "," + text + "]";
    };
    EXPECT_EQ(errorOf(with(R"("fareCode":"LIS",)", "")),
              "destinations.json: [1].fareCode: required key is missing");
    EXPECT_EQ(errorOf(with(R"(["cities"])", R"(["cities",7])")),
              "destinations.json: [1].categories[1]: expected a string");
    EXPECT_EQ(errorOf(with(R"("blurb":"Trams.")", R"("blurb":"Trams.","es":{"name":"Lisboa"})")),
              "destinations.json: [1].es.blurb: required key is missing");
    // Half a position is a broken record.
    EXPECT_EQ(errorOf(with(R"("blurb":"Trams.")", R"("blurb":"Trams.","lat":38.7)")),
              "destinations.json: [1]: lat without lon");
    // The same id twice: the second one is named.
    EXPECT_EQ(errorOf(with(R"("name":"Lisbon")", R"("name":"Lisboa")")),
              "destinations.json: [1]: destination id LIS appears twice");
}

TEST(DestinationCatalog, IsWholeAndSound) {
    const Destinations& catalog = Destinations::shipped();
    const Airports& airports = Airports::shipped();
    const auto& categories = Destination::categoryNames();
    const auto& regions = Destination::regionNames();
    // Other screens (packing list, best time to go) key on these names.
    for (const char* name : {"beaches", "islands", "cities", "outdoors", "theme parks", "family"}) {
        EXPECT_TRUE(contains(categories, name)) << name;
    }

    EXPECT_GE(catalog.list.size(), 150u);
    EXPECT_EQ(catalog.byCode.size(), catalog.list.size());
    std::size_t domestic = 0;
    std::set<std::string> regionsUsed;
    std::map<std::string, std::string> advisoryOfCountry;
    for (const Destination& d : catalog.list) {
        SCOPED_TRACE(d.code);
        EXPECT_TRUE(isUpperLetters(d.code, 3) && isUpperLetters(d.fareCode, 3));
        EXPECT_TRUE(contains(regions, d.region)) << d.region;
        regionsUsed.insert(d.region);
        EXPECT_FALSE(d.categories.empty());
        for (const std::string& c : d.categories) EXPECT_TRUE(contains(categories, c)) << c;
        ASSERT_TRUE(d.es && d.lat && d.lon && d.countryCode);
        EXPECT_TRUE(std::abs(*d.lat) <= 90 && std::abs(*d.lon) <= 180);
        EXPECT_EQ(d.region == "United States", d.domestic);
        if (d.domestic) {
            ++domestic;
            // Places at home are airports of the home catalog, at its position.
            const Airport* airport = airports.find(d.fareCode);
            ASSERT_NE(airport, nullptr);
            EXPECT_EQ(airport->lat, *d.lat);
            EXPECT_EQ(airport->lon, *d.lon);
            EXPECT_FALSE(d.advisory.has_value());
        } else {
            ASSERT_TRUE(d.advisory.has_value());
            // One country, one advisory; a place abroad is no home airport.
            EXPECT_EQ(advisoryOfCountry.emplace(d.country, *d.advisory).first->second, *d.advisory);
            EXPECT_EQ(airports.find(d.code), nullptr);
        }
    }
    EXPECT_GE(domestic, 45u);
    EXPECT_GE(catalog.list.size() - domestic, 95u);
    EXPECT_EQ(regionsUsed.size(), regions.size());  // every region has places

    ASSERT_NE(catalog.find("MCO"), nullptr);
    EXPECT_TRUE(catalog.find("MCO")->hasCategory("theme parks"));
    // The advisories service keys countries by its own codes, not ISO ones.
    // Spot checks where the two differ, and Liberia (Costa Rica) is not the
    // country Liberia.
    const std::map<std::string, std::string> serviceCode = {
        {"MAD", "SP"}, {"FRA", "GM"}, {"NRT", "JA"}, {"ICN", "KS"}, {"DUB", "EI"},
        {"KEF", "IC"}, {"VIE", "AU"}, {"SYD", "AS"}, {"ZRH", "SZ"}, {"LIR", "CS"},
        {"PUJ", "DR"}, {"NAS", "BF"}, {"CPT", "SF"}, {"SGN", "VM"}, {"MNL", "RP"},
    };
    for (const auto& [code, advisory] : serviceCode) {
        const Destination* d = catalog.find(code);
        ASSERT_NE(d, nullptr) << code;
        EXPECT_EQ(d->advisory, advisory) << code;
        EXPECT_NE(d->advisory, d->countryCode) << code;
    }
}

}  // namespace
}  // namespace tripkit
