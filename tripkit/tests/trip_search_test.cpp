#include "tripkit/trip_search.h"

#include <gtest/gtest.h>

#include "tripkit/tests/park_test_data.h"

namespace tripkit {
namespace {

using testing::parkData;
using testing::replaced;

TripSearch decodeSearch(const std::string& text) {
    return json::decodeDocument<TripSearch>(text, "search.json");
}

std::string errorOf(const std::string& text) {
    try {
        decodeSearch(text);
    } catch (const json::DecodeError& e) {
        return e.what();
    }
    return "decoded";
}

TEST(TripSearch, DecodesEveryKeyAndRoundTripsInOrder) {
    const TripSearch s = decodeSearch(parkData("search.json"));
    EXPECT_EQ(s.origin, "JFK");
    EXPECT_EQ(s.party, (Party{2, {10, 9, 2, 1}}));
    EXPECT_EQ(s.nights, 4);
    EXPECT_EQ(s.parkDays, 3);
    EXPECT_EQ(s.resorts.tiers, (std::vector<Tier>{Tier::value, Tier::moderate}));
    EXPECT_TRUE(s.parkHopper);
    EXPECT_EQ(s.lightningLane, LightningLaneChoice::premier(2));
    EXPECT_EQ(s.epicUniverse, true);
    EXPECT_EQ(s.transport, TransportChoice::rideshare);
    EXPECT_EQ(s.food, (FoodBudget{60, 30}));
    EXPECT_EQ(s.window.checkInWeekdays, (std::set<int>{1, 7}));
    EXPECT_EQ(s.window.only.size(), 1u);
    EXPECT_TRUE(s.window.avoidHolidays);
    EXPECT_EQ(s.fares.onlyAirlines, (std::set<std::string>{"B6"}));
    EXPECT_TRUE(s.fares.nonstopOnly);
    EXPECT_EQ(s.maxTotal, 9000);

    const json::Json encoded = encode(s);
    std::vector<std::string> keys;
    for (const auto& item : encoded.items()) keys.push_back(item.key());
    EXPECT_EQ(keys, (std::vector<std::string>{"origin", "party", "nights", "parkDays", "resorts",
                                              "parkHopper", "lightningLane", "epicUniverse",
                                              "transport", "food", "window", "fares", "maxTotal"}));
    EXPECT_EQ(decodeSearch(encoded.dump()), s);

    // The optional keys may be left out, and stay out when written again.
    TripSearch bare = s;
    bare.epicUniverse.reset();
    bare.food.reset();
    bare.maxTotal.reset();
    const std::string bareText = encode(bare).dump();
    EXPECT_EQ(bareText.find("epicUniverse"), std::string::npos);
    EXPECT_EQ(bareText.find("maxTotal"), std::string::npos);
    EXPECT_EQ(decodeSearch(bareText), bare);
    // Absent and null read alike.
    EXPECT_EQ(
        decodeSearch(replaced(parkData("search.json"), "\"maxTotal\": 9000", "\"maxTotal\": null"))
            .maxTotal,
        std::nullopt);
}

TEST(TripSearch, ErrorsNameTheKeyPath) {
    const std::string text = parkData("search.json");
    EXPECT_EQ(errorOf(replaced(text, R"({"premier": {"days": 2}})",
                               R"({"premier": {"days": 2}, "none": {}})")),
              "search.json: lightningLane: Invalid number of keys found, expected one.");
    EXPECT_EQ(errorOf(replaced(text, R"({"cheapest": {"tiers": ["value", "moderate"]}})", "{}")),
              "search.json: resorts: Invalid number of keys found, expected one.");
    EXPECT_EQ(errorOf(replaced(text, R"("transport": "rideshare")", R"("transport": "bus")")),
              "search.json: transport: not a transport choice: bus");
    EXPECT_EQ(errorOf(replaced(text, R"("nonstopOnly": true)", R"("nonstopOnly": "yes")")),
              "search.json: fares.nonstopOnly: expected a boolean");
    EXPECT_EQ(errorOf(replaced(text, R"("nights": 4,)", "")),
              "search.json: nights: required key is missing");
    EXPECT_EQ(errorOf(replaced(text, R"("parkDays": 3)", R"("parkDays": -1)")),
              "search.json: parkDays: expected a count of 0 or more");
    EXPECT_EQ(errorOf(replaced(text, R"("avoidHolidays": true)", R"("avoidHolidays": 1)")),
              "search.json: window.avoidHolidays: expected a boolean");
    EXPECT_EQ(errorOf(replaced(text, R"("childAges": [10, 9, 2, 1])", R"("childAges": [10, "9"])")),
              "search.json: party.childAges[1]: expected an integer");
}

TEST(LightningLaneChoice, CaseKeyedJsonAndLabels) {
    const std::vector<std::pair<LightningLaneChoice, std::string>> cases = {
        {LightningLaneChoice::none(), R"({"none":{}})"},
        {LightningLaneChoice::multiPass(3), R"({"multiPass":{"_0":3}})"},
        {LightningLaneChoice::singlePasses(), R"({"singlePasses":{}})"},
        {LightningLaneChoice::multiPassAndSingles(2), R"({"multiPassAndSingles":{"_0":2}})"},
        {LightningLaneChoice::premier(2), R"({"premier":{"days":2}})"},
    };
    for (const auto& [choice, text] : cases) {
        EXPECT_EQ(encode(choice).dump(), text);
        EXPECT_EQ(json::decodeDocument<LightningLaneChoice>(text, "ll.json"), choice);
    }
    EXPECT_EQ(LightningLaneChoice::multiPass(4).label(), "Multi Pass every park day");
    EXPECT_EQ(LightningLaneChoice::singlePasses().label(), "Single Pass rides");
    EXPECT_EQ(LightningLaneChoice::multiPassAndSingles(1).label(),
              "Multi Pass + Single Pass rides");
    EXPECT_EQ(LightningLaneChoice::premier(2).label(), "Premier Pass days: 2");

    auto error = [](const std::string& text) -> std::string {
        try {
            json::decodeDocument<LightningLaneChoice>(text, "ll.json");
        } catch (const json::DecodeError& e) {
            return e.what();
        }
        return "decoded";
    };
    EXPECT_EQ(error("{}"), "ll.json: Invalid number of keys found, expected one.");
    EXPECT_EQ(error(R"({"premier":{"_0":2}})"), "ll.json: premier.days: required key is missing");
    EXPECT_EQ(error(R"({"multiPass":{"days":2}})"),
              "ll.json: multiPass._0: required key is missing");
    EXPECT_EQ(error(R"({"fastPass":{}})"),
              "ll.json: fastPass: not a Lightning Lane choice: fastPass");
    EXPECT_EQ(error(R"({"none":true})"), "ll.json: none: expected an object");
    EXPECT_EQ(error(R"("none")"), "ll.json: expected an object");
}

TEST(TransportChoice, AllCasesInOrderWithLabels) {
    const auto& all = allTransportChoices();
    ASSERT_EQ(all.size(), 6u);
    std::vector<std::string> labels;
    for (TransportChoice c : all) {
        labels.emplace_back(label(c));
        EXPECT_EQ(transportChoiceFromCaseName(caseName(c)), c);
        EXPECT_EQ(json::decodeDocument<TransportChoice>(encode(c).dump(), "t.json"), c);
    }
    EXPECT_EQ(labels, (std::vector<std::string>{"Mears Connect shuttle", "Mears Connect Express",
                                                "Rideshare", "Private car service", "Rental car",
                                                "Drive my own car"}));
    EXPECT_EQ(caseName(all.front()), "mearsStandard");
    EXPECT_EQ(caseName(all.back()), "ownCar");
}

}  // namespace
}  // namespace tripkit
