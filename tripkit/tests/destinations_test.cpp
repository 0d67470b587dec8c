#include "tripkit/destinations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "tripkit/tests/test_data.h"
#include "tripkit/text_search.h"

namespace tripkit {
namespace {

std::string errorOf(const std::string& text) {
    return testing::decodeError<Destinations>(text, "destinations.json");
}

bool contains(const std::vector<std::string>& list, const std::string& item) {
    return std::find(list.begin(), list.end(), item) != list.end();
}

// The smallest record: every optional key left out.
const char* kBare =
    R"({"id":"LIS","name":"Lisbon","region":"Europe","country":"Portugal","domestic":false,)"
    R"("fareCode":"LIS","categories":["cities"],"blurb":"Trams."})";

TEST(Destination, OptionalKeysSpanishOnlyWhenAskedAndMalformedRecords) {
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

    auto with = [](const std::string& from, const std::string& to) {
        return "[" + std::string(kBare) + "," + testing::replaced(kBare, from, to) + "]";
    };
    // Half a position is a broken record.
    EXPECT_EQ(errorOf(with(R"("blurb":"Trams.")", R"("blurb":"Trams.","lat":38.7)")),
              "destinations.json: [1]: lat without lon");
    // The same id twice: the second one is named.
    EXPECT_EQ(errorOf(with(R"("name":"Lisbon")", R"("name":"Lisboa")")),
              "destinations.json: [1]: destination id LIS appears twice");
}

// The catalog's sources are checked by make_destinations.py; here: that it
// decodes, and what the screens key on is there.
TEST(DestinationCatalog, ShippedDecodesWithWhatTheScreensKeyOn) {
    const Destinations& catalog = Destinations::shipped();
    EXPECT_GE(catalog.list.size(), 150u);
    EXPECT_EQ(catalog.byCode.size(), catalog.list.size());
    for (const char* name : {"beaches", "islands", "cities", "outdoors", "theme parks", "family"}) {
        EXPECT_TRUE(contains(Destination::categoryNames(), name)) << name;
    }
    ASSERT_NE(catalog.find("MCO"), nullptr);
    EXPECT_TRUE(catalog.find("MCO")->hasCategory("theme parks"));
    // The advisories service keys countries by its own codes, not ISO ones.
    // Spot checks where the two differ; Liberia (Costa Rica) is not the country
    // Liberia; Guadeloupe and French Polynesia have advisories of their own.
    const std::map<std::string, std::string> serviceCode = {
        {"MAD", "SP"}, {"NRT", "JA"}, {"ICN", "KS"}, {"DUB", "EI"}, {"VIE", "AU"},
        {"SYD", "AS"}, {"LIR", "CS"}, {"PUJ", "DR"}, {"PTP", "GP"}, {"PPT", "FP"},
    };
    for (const auto& [code, advisory] : serviceCode) {
        const Destination* d = catalog.find(code);
        ASSERT_NE(d, nullptr) << code;
        EXPECT_EQ(d->advisory, advisory) << code;
    }
}

}  // namespace
}  // namespace tripkit
