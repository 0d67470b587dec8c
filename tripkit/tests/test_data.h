// Helpers shared by the tests: the hand-made files of tripkit/tests/data and
// the text of a decode error.
#pragma once

#include <fstream>
#include <optional>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "tripkit/disney_guide.h"
#include "tripkit/fares.h"
#include "tripkit/json.h"
#include "tripkit/trip_search.h"
#include "tripkit/universal_guide.h"

namespace tripkit::testing {

// A file decoded by decodeDocument (its fast reader first) as by the DOM
// decoder alone: the same record by `same`, or the same message; `fast` says
// whether the fast reader takes it.
template <class T, class Same>
void expectReadAsTheTree(const std::string& text, bool fast, Same same) {
    SCOPED_TRACE(text.substr(0, 160));
    const simdjson::padded_string padded(text);
    EXPECT_EQ(T::readFast(padded.data(), padded.size()).has_value(), fast);
    std::optional<T> tree, document;
    std::string treeError, documentError;
    try {
        tree = json::decodeTree<T>(text, "file.json");
    } catch (const json::DecodeError& e) {
        treeError = e.what();
    }
    try {
        document = json::decodeDocument<T>(text, "file.json");
    } catch (const json::DecodeError& e) {
        documentError = e.what();
    }
    EXPECT_EQ(documentError, treeError);
    ASSERT_EQ(document.has_value(), tree.has_value());
    if (tree) {
        EXPECT_TRUE(same(*document, *tree));
    }
}

inline std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    EXPECT_TRUE(in) << "no test file " << path;
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

inline std::string parkData(const std::string& name) {
    return readFile(std::string(TRIPKIT_TEST_DATA) + "/parks/" + name);
}

// `text` with its first `from` replaced by `to` (which must be there).
inline std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const auto at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) text.replace(at, from.size(), to);
    return text;
}

// The full text of the error decoding `text` as T from `source`, or
// "decoded" when it decodes.
template <class T>
std::string decodeError(const std::string& text, const std::string& source) {
    try {
        json::decodeDocument<T>(text, source);
    } catch (const json::DecodeError& e) {
        return e.what();
    }
    return "decoded";
}

inline DisneyGuide testDisneyGuide() {
    return json::decodeDocument<DisneyGuide>(parkData("disney-guide.json"), "disney-guide.json");
}

inline UniversalGuide testUniversalGuide() {
    return json::decodeDocument<UniversalGuide>(parkData("universal-guide.json"),
                                                "universal-guide.json");
}

// Two adults, two nights, one park day at the cheapest hotel of `tiers`, a
// rideshare and $50 a day of food each: the trip the planner's and the
// alerts' tests price by hand.
inline TripSearch parkSearch(std::vector<Tier> tiers) {
    TripSearch s;
    s.party = Party{2, {}};
    s.nights = 2;
    s.parkDays = 1;
    s.resorts.tiers = std::move(tiers);
    s.food = FoodBudget{50, 0};
    return s;
}

// Found fares, one a day at the given prices, in a book dated `updated`.
inline FareBook fareBook(const std::vector<std::pair<Day, double>>& toOrlando,
                         const std::vector<std::pair<Day, double>>& fromOrlando, Day updated) {
    FareBook b;
    b.origin = "HOM";
    b.updated = updated.text();
    const auto fare = [](double price) { return FareOption{"B6", price, 0, {}, {}}; };
    for (const auto& [day, price] : toOrlando) b.toOrlando[day.text()] = {fare(price)};
    for (const auto& [day, price] : fromOrlando) b.fromOrlando[day.text()] = {fare(price)};
    return b;
}

}  // namespace tripkit::testing
