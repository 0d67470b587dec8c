#include "tripkit/trip_search.h"

#include <array>

#include <gtest/gtest.h>

#include "tripkit/tests/test_data.h"

namespace tripkit {
namespace {

using testing::parkData;
using testing::replaced;

TripSearch decodeSearch(const std::string& text) {
    return json::decodeDocument<TripSearch>(text, "search.json");
}

std::string errorOf(const std::string& text) {
    return testing::decodeError<TripSearch>(text, "search.json");
}

TEST(TripSearch, DecodesEveryKeyLeavesAbsentOnesOutAndNamesBadOnes) {
    const TripSearch s = decodeSearch(parkData("search.json"));
    EXPECT_EQ(s.epicUniverse, true);
    EXPECT_EQ(s.food, (FoodBudget{60, 30}));
    EXPECT_EQ(s.maxTotal, 9000);
    EXPECT_EQ(s.window.earliest, Day::fromCivil(2027, 1, 10));
    EXPECT_EQ(decodeSearch(encode(s).dump()), s);

    // The optional keys may be left out, and stay out when written again;
    // null reads as absent.
    TripSearch bare = s;
    bare.epicUniverse.reset();
    bare.food.reset();
    bare.maxTotal.reset();
    const std::string bareText = encode(bare).dump();
    EXPECT_EQ(bareText.find("epicUniverse"), std::string::npos);
    EXPECT_EQ(bareText.find("maxTotal"), std::string::npos);
    EXPECT_EQ(decodeSearch(bareText), bare);
    EXPECT_EQ(
        decodeSearch(replaced(parkData("search.json"), "\"maxTotal\": 9000", "\"maxTotal\": null"))
            .maxTotal,
        std::nullopt);

    const std::string text = parkData("search.json");
    // clang-format off
    const std::vector<std::array<std::string, 3>> cases = {
        {R"("transport": "rideshare")", R"("transport": "bus")", "transport: not a transport choice: bus"},
        {R"("parkDays": 3)", R"("parkDays": -1)", "parkDays: expected a count of 0 or more"},
        // Searches no trip can answer.
        {R"("perAdult": 60)", R"("perAdult": -60)", "food.perAdult: expected an amount of 0 or more"},
        {R"("parkDays": 3)", R"("parkDays": 6)", "parkDays: expected at most 5 park days in 4 nights"},
        {R"("nights": 4)", R"("nights": 2147483647)", "nights: expected 0 to 365 nights"},
        {R"("adults": 2)", R"("adults": 2147483646)", "party.childAges: too many travellers to count"},
        {R"("earliest": "2027-01-10")", R"("earliest": "2027-01-10", "latest": "2027-01-09")", "window.latest: is before earliest"},
    };
    // clang-format on
    for (const auto& [from, to, message] : cases) {
        EXPECT_EQ(errorOf(replaced(text, from, to)), "search.json: " + message) << to;
    }
    // The edges that are still a trip.
    EXPECT_EQ(errorOf(replaced(text, R"("parkDays": 3)", R"("parkDays": 5)")), "decoded");
    EXPECT_EQ(errorOf(replaced(text, R"("nights": 4)", R"("nights": 365)")), "decoded");
    EXPECT_EQ(errorOf(replaced(text, R"("adults": 2)", R"("adults": 2147483643)")), "decoded");
}

TEST(LightningLaneChoice, CaseKeyedJson) {
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
    auto error = [](const std::string& text) {
        return testing::decodeError<LightningLaneChoice>(text, "ll.json");
    };
    EXPECT_EQ(error(R"({"premier":{"_0":2}})"), "ll.json: premier.days: required key is missing");
    EXPECT_EQ(error(R"({"fastPass":{}})"),
              "ll.json: fastPass: not a Lightning Lane choice: fastPass");
    EXPECT_EQ(error(R"({"none":true})"), "ll.json: none: expected an object");
}

}  // namespace
}  // namespace tripkit
