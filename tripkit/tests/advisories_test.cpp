#include "tripkit/advisories.h"

#include <gtest/gtest.h>

#include "tripkit/tests/test_data.h"

namespace tripkit {
namespace {

TEST(Advisories, TheServicesOwnFeedTitlesCategoriesAndRepeats) {
    const auto sample = Advisories::parse(testing::readFile(
        std::string(ROAMWISE_REAL_DATA) + "/advisories/travel-advisories-api-sample.json"));
    ASSERT_EQ(sample.size(), 3u);
    const Advisory& qatar = sample.at("QA");
    EXPECT_EQ(std::tie(qatar.country, qatar.level, qatar.updated),
              std::tuple("Qatar", 3, "2026-03-01"));
    EXPECT_EQ(sample.at("LI").country, "Liberia");  // the service's own codes

    const auto feed = Advisories::read(R"([
      {"Title": "Mexico Travel Advisory - Level 2: Exercise Increased Caution", "Link": "m",
       "Category": ["MX"], "Updated": "2025-08-12T00:00:00-04:00", "Summary": "ignored"},
      {"Title": "  Portugal   - Level 1: Exercise Normal Precautions", "Link": "p", "Category": ["PO", "XX"]},
      {"Title": "Iceland - Level 1: Exercise Normal Precautions", "Link": "i", "Category": []},
      {"Title": "Japan - Level 1: Exercise Normal Precautions", "Link": "j"},
      {"Title": "Chad - Level 3: Reconsider Travel", "Link": "c1", "Category": ["CD"], "Updated": "2024-01-01"},
      {"Title": "Nowhere - Updated", "Link": "n", "Category": ["NW"]},
      {"Title": "Elsewhere - Level ٢: Exercise Increased Caution", "Link": "e", "Category": ["EL"]},
      {"Title": "Level up - level 2, Level x, Level 4: Do Not Travel", "Link": "l", "Category": ["LU"]},
      {"Title": "Chad - Level 4: Do Not Travel", "Link": "c2", "Category": ["CD"], "Updated": "2025"},
      {"Title": "Zeroland - Level 0: ?", "Link": "z", "Category": ["ZE"]},
      {"Title": "Fiveland - Level 5: ?", "Link": "f", "Category": ["FV"]}
    ])");
    const auto& all = feed.byCode;
    EXPECT_EQ(feed.impossible, 2);  // levels 0 and 5; a title without one is no value at all
    std::vector<std::string> codes;
    for (const auto& [code, a] : all) codes.push_back(code);
    EXPECT_EQ(codes, (std::vector<std::string>{"CD", "LU", "MX", "PO"}));

    const Advisory& mx = all.at("MX");
    EXPECT_EQ(mx.country, "Mexico");  // " Travel Advisory" removed
    EXPECT_EQ(mx.level, 2);
    EXPECT_EQ(mx.updated, "2025-08-12");

    EXPECT_EQ(all.at("PO").country, "Portugal");  // trimmed; first category is the code
    EXPECT_EQ(all.at("PO").updated, "");
    EXPECT_EQ(all.at("LU").level, 4);  // the first "Level" with a digit counts
    EXPECT_EQ(all.at("LU").country, "Level up");
    // The later element of a repeated code wins, whatever its level.
    EXPECT_EQ(all.at("CD").link, "c2");
    EXPECT_EQ(all.at("CD").level, 4);
    EXPECT_EQ(all.at("CD").updated, "2025");

    // The country part: every " Travel Advisory" goes, and no " - " at all
    // leaves the whole title.
    Advisories::Raw raw{"Peru Travel Advisory Travel Advisory - Level 1", "x",
                        std::vector<std::string>{"PE"}, "2026-01-05T12"};
    EXPECT_EQ(Advisories::advisory(raw)->country, "Peru");
    raw.title = "Level 1";
    EXPECT_EQ(Advisories::advisory(raw)->country, "Level 1");
}

TEST(Advisories, MalformedFeedsFailAndLevelsRunFromOneToFour) {
    auto failure = [](const std::string& body) -> std::string {
        try {
            Advisories::parse(body, "advisories.json");
        } catch (const json::DecodeError& e) {
            return e.what();
        }
        return "parsed";
    };
    EXPECT_EQ(failure(R"([{"Title": "Chad - Level 3", "Category": ["CD"]}])"),
              "advisories.json: [0].Link: required key is missing");
    EXPECT_NE(failure(R"([{"Title": "Chad)").find("advisories.json: not valid JSON"),
              std::string::npos);
    EXPECT_TRUE(Advisories::parse("[]").empty());

    EXPECT_EQ(Advisories::levelText(0), "");
    EXPECT_EQ(Advisories::levelText(4), "Do not travel");
    EXPECT_EQ(Advisories::levelText(5), "");
    Advisory a{"MX", "Mexico", 4, "Mexico Travel Advisory - Level 4: x", "https://e.x/mx", ""};
    EXPECT_EQ(json::decodeDocument<Advisory>(encode(a).dump(), "a"), a);
    a.level = 5;
    EXPECT_EQ(testing::decodeError<Advisory>(encode(a).dump(), "advisories-cache.json"),
              "advisories-cache.json: level: advisory levels run from 1 to 4");
}

Destination place(const std::string& code, bool domestic, std::optional<std::string> advisory) {
    Destination d;
    d.code = code;
    d.name = code + " city";
    d.domestic = domestic;
    d.advisory = std::move(advisory);
    return d;
}

TEST(Advisories, SafeAndFunFilterAndTheJoin) {
    const auto advisories = Advisories::parse(R"([
      {"Title": "Mexico Travel Advisory - Level 2: Exercise Increased Caution", "Link": "m", "Category": ["MX"]},
      {"Title": "Portugal - Level 1: Exercise Normal Precautions", "Link": "p", "Category": ["PO"]},
      {"Title": "Qatar - Level 3: Reconsider Travel", "Link": "q", "Category": ["QA"]},
      {"Title": "Oddland - Level 0: ?", "Link": "o", "Category": ["OD"]}
    ])");
    const std::vector<Destination> catalog = {
        place("MIA", true, std::nullopt),  place("CUN", false, "MX"), place("LIS", false, "PO"),
        place("DOH", false, "QA"),         place("XXX", false, "ZZ"),  // not in the feed
        place("NAS", false, std::nullopt), place("OPO", false, "PO"), place("ODD", false, "OD"),
        place("SJU", true, "PO"),  // domestic: its code is never looked at
    };
    auto codes = [](const std::vector<Destination>& list) {
        std::vector<std::string> out;
        for (const auto& d : list) out.push_back(d.code);
        return out;
    };
    EXPECT_EQ(codes(Advisories::safeAndFun(catalog, advisories, 1)),
              (std::vector<std::string>{"MIA", "LIS", "OPO", "SJU"}));
    EXPECT_EQ(codes(Advisories::safeAndFun(catalog, advisories, 2)),
              (std::vector<std::string>{"MIA", "CUN", "LIS", "OPO", "SJU"}));
    // With nothing known abroad only the domestic places stay.
    EXPECT_EQ(codes(Advisories::safeAndFun(catalog, {}, 2)),
              (std::vector<std::string>{"MIA", "SJU"}));

    EXPECT_EQ(Advisories::of(catalog[1], advisories)->level, 2);

    std::vector<std::string> portugal;
    for (const Destination* d : Advisories::destinations(advisories.at("PO"), catalog))
        portugal.push_back(d->code);
    EXPECT_EQ(portugal, (std::vector<std::string>{"LIS", "OPO"}));
}

}  // namespace
}  // namespace tripkit
