#include "tripkit/text_search.h"

#include <gtest/gtest.h>

using namespace tripkit;

namespace {

using Fields = std::vector<std::optional<std::string>>;

const Fields kOrlando = {"MCO", "Orlando", "FL", "Orlando International Airport"};

TEST(TextSearch, EveryQueryWordMustBeginSomeFieldWordAbsentFieldsSkipped) {
    EXPECT_TRUE(TextSearch::matches("Orl", kOrlando));
    EXPECT_TRUE(TextSearch::matches("fl orlando", kOrlando));  // order does not matter
    EXPECT_FALSE(TextSearch::matches("orlando x", kOrlando));
    EXPECT_FALSE(TextSearch::matches("rlando", kOrlando));  // a prefix, not any substring
    // A query word may not span two field words, nor two fields.
    EXPECT_FALSE(TextSearch::matches("orlandointernational", kOrlando));

    // Punctuation separates words on both sides.
    EXPECT_TRUE(TextSearch::matches("st. louis", {"St. Louis"}));
    EXPECT_TRUE(TextSearch::matches("hare", {"Chicago O'Hare International Airport"}));
    EXPECT_FALSE(TextSearch::matches("t2", {"Terminal 2"}));

    // The query "san j" finds both San Juan and San José.
    EXPECT_TRUE(TextSearch::matches("san j", {"SJU", "San Juan"}));
    EXPECT_TRUE(TextSearch::matches("san j", {"SJO", "San José"}));
    EXPECT_FALSE(TextSearch::matches("san j", {"SAN", "San Diego"}));

    for (const char* query : {"", "--", "   ", ", . ' !?", "\xC2\xAD"}) {
        EXPECT_TRUE(TextSearch::matches(query, kOrlando)) << query;
        EXPECT_TRUE(TextSearch::matches(query, {})) << query;
    }
    EXPECT_FALSE(TextSearch::matches("a", {}));
    EXPECT_FALSE(TextSearch::matches("a", {std::nullopt, std::nullopt}));
    EXPECT_TRUE(TextSearch::matches("lax", {std::nullopt, "LAX", std::nullopt}));
    EXPECT_FALSE(TextSearch::matches("lax", {std::nullopt, "", "--"}));
}

TEST(TextSearch, FoldsCaseDiacriticsWidthLettersOfEveryScriptAndBadUtf8) {
    EXPECT_EQ(TextSearch::fold("BOGOTÁ"), "bogota");
    // Full width, and an ideographic space.
    EXPECT_EQ(TextSearch::fold("Ｌｏｓ　ＡＮＧＥＬＥＳ"), "los angeles");
    EXPECT_EQ(TextSearch::fold("São Paulo, Curaçao, Zürich, Kraków"),
              "sao paulo, curacao, zurich, krakow");
    EXPECT_EQ(TextSearch::fold("Straße"), "strasse");
    EXPECT_EQ(TextSearch::fold("ﬁre"), "fire");  // ligature
    // Decomposed input (e + combining acute) folds like the composed form.
    EXPECT_EQ(TextSearch::fold("Jose\xCC\x81"), TextSearch::fold("José"));

    EXPECT_TRUE(TextSearch::matches("JOSÉ", {"san jose"}));
    EXPECT_TRUE(TextSearch::matches("lax", {"ＬＡＸ"}));
    // A soft hyphen inside a word is ignored rather than splitting it.
    EXPECT_TRUE(TextSearch::matches("sanjo", {"San\xC2\xADJosé"}));

    EXPECT_EQ(TextSearch::words("Москва — Αθήνα, 東京"),
              (std::vector<std::string>{"москва", "αθηνα", "東京"}));
    EXPECT_TRUE(TextSearch::matches("моск", {"Москва"}));
    EXPECT_TRUE(TextSearch::matches("東", {"東京"}));
    EXPECT_FALSE(TextSearch::matches("京", {"東京"}));
    // Symbols separate words; circled and superscript digits fold to ASCII,
    // the digits of other scripts stay digits.
    EXPECT_EQ(TextSearch::words("a★b ①"), (std::vector<std::string>{"a", "b", "1"}));
    EXPECT_EQ(TextSearch::words("١٢ x²"), (std::vector<std::string>{"١٢", "x2"}));

    const std::string broken = std::string("ab\xFF") + "cd\xC3";
    EXPECT_EQ(TextSearch::words(broken), (std::vector<std::string>{"ab", "cd"}));
    const std::string cut = std::string("\xE2\x82") + "a\xED\xA0\x80" + "b";
    EXPECT_EQ(TextSearch::words(cut), (std::vector<std::string>{"a", "b"}));
    EXPECT_TRUE(TextSearch::matches("cd", {broken}));
    EXPECT_TRUE(TextSearch::matches(std::string("\xFF\xFE"), {"anything"}));
}

}  // namespace
