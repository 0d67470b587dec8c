#include "tripkit/json_windows.h"

#include <gtest/gtest.h>

#include "tripkit/fares.h"

namespace tripkit {
namespace {

using json::fast::childrenOf;

TEST(JsonWindows, ChildrenAreFoundByStringsAndBracketsAlone) {
    struct Case {
        std::string text;
        std::optional<std::vector<std::string>> items;  // nothing: not one container
        std::string rest;
    };
    const std::vector<Case> cases = {
        {R"( [1, "a,]}", {"b":[2,{"c":3}]} ,null] x)",
         {{"1", R"("a,]}")", R"({"b":[2,{"c":3}]})", "null"}},
         " x"},
        {R"({"k":"x\"y","m":"\\"})", {{R"("k":"x\"y")", R"("m":"\\")"}}, ""},
        {"[]", {{}}, ""},
        {"{ \n}", {{}}, ""},
        {"[1,,2]", {}, ""},
        {"[1,]", {}, ""},
        {"[,1]", {}, ""},
        {"[1}", {}, ""},
        {R"({"a":[1})", {}, ""},
        {R"(["abc)", {}, ""},
        {R"(["a\"])", {}, ""},
        {"[[1]", {}, ""},
        {"1", {}, ""},
        {"", {}, ""},
    };
    for (const Case& c : cases) {
        const auto children = childrenOf(c.text);
        ASSERT_EQ(children.has_value(), c.items.has_value()) << c.text;
        if (!children) continue;
        EXPECT_EQ(std::vector<std::string>(children->items.begin(), children->items.end()),
                  *c.items)
            << c.text;
        EXPECT_EQ(children->rest, c.rest) << c.text;
    }
    EXPECT_EQ(json::fast::memberValue(R"("deals" : [1])", "deals"), "[1]");
    EXPECT_FALSE(json::fast::memberValue(R"("dealsX":[1])", "deals"));
    EXPECT_FALSE(json::fast::memberValue(R"("d\u0065als":[1])", "deals"));
}

// A fare file of `deals` deals and three Orlando days, written plainly.
std::string fareFile(int deals, const std::string& lastDeal = "") {
    std::string text =
        R"({"origin":"JFK","updated":"2026-11-23","toOrlando":{)"
        R"("2026-12-01":[{"airline":"B6","price":89,"stops":0},)"
        R"({"airline":"NK","price":0,"stops":0}],"2026-12-02":[],)"
        R"("2026-12-03":[{"airline":"DL","price":119,"stops":1,"seen":"2026-11-20"}]},)"
        R"("fromOrlando":{"2026-12-08":[{"airline":"B6","price":99,"stops":0}]},)"
        R"("deals":[)";
    for (int i = 0; i < deals; ++i) {
        text += std::string(i ? "," : "") + R"({"destination":"D)" + std::to_string(i) +
                R"(","city":"City","country":"Portugal","price":)" + std::to_string(100 + i % 50) +
                R"(,"depart":"2026-12-01","return":"2026-12-08","airline":"TP","stops":0})";
    }
    return text + lastDeal + "]}";
}

FareBook tree(const std::string& text) {
    return json::decodeTree<FareBook>(text, "JFK.json");
}

TEST(JsonWindows, AFareFileReadInWindowsOfAnySizeIsTheTreesReading) {
    const std::string plain = fareFile(5);
    const std::string escaped = fareFile(5, R"(,{"destination":"X","city":"C","country":"P",)"
                                            R"("price":1,"depart":"2026-12-01","airline":"TP",)"
                                            R"("st\u006fps":0})");
    const simdjson::padded_string a(plain), b(escaped), c(plain + "x");
    for (std::size_t window :
         {std::size_t{1}, std::size_t{60}, std::size_t{250}, std::size_t{1} << 20}) {
        const std::optional<FareBook> fast = FareBook::readFast(a.data(), a.size(), window);
        ASSERT_TRUE(fast) << window;
        EXPECT_EQ(*fast, tree(plain)) << window;
        EXPECT_EQ(fast->impossible, 1);
        EXPECT_FALSE(FareBook::readFast(b.data(), b.size(), window)) << window;
        EXPECT_FALSE(FareBook::readFast(c.data(), c.size(), window)) << window;
    }
}

TEST(JsonWindows, ALargeFileGivesItsPagesBackAndIsReadAgainOnlyForTheTree) {
    // Pages wholly inside the range read as zeros; the bytes at its edges stay.
    simdjson::padded_string bytes(std::string(5 * 4096, 'x'));
    json::fast::GiveBack pages{bytes.data() + 1};
    pages.upTo(bytes.data() + bytes.size() - 1);
    EXPECT_EQ(bytes.data()[1], 'x');
    EXPECT_EQ(bytes.data()[bytes.size() - 2], 'x');
    EXPECT_EQ(std::count(bytes.data(), bytes.data() + bytes.size(), 0) % 4096, 0);
    EXPECT_GE(std::count(bytes.data(), bytes.data() + bytes.size(), 0), 3 * 4096);

    const int deals = static_cast<int>(json::giveBackBytes / 100);  // above the limit
    for (const bool late : {false, true}) {
        const std::string text =
            fareFile(deals, late ? R"(,{"destination":"D1","city":"C","country":"P",)"
                                   R"("price":1,"depart":"2026-12-01","airline":"TP",)"
                                   R"("stops":2.0})"
                                 : "");
        ASSERT_GT(text.size(), json::giveBackBytes);
        int readAgain = 0;
        const FareBook book =
            json::decodePadded<FareBook>(simdjson::padded_string(text), "JFK.json", [&] {
                ++readAgain;
                return simdjson::padded_string(text);
            });
        EXPECT_EQ(readAgain, late ? 1 : 0);
        EXPECT_EQ(book, tree(text));
    }
}

}  // namespace
}  // namespace tripkit
