#include "tripkit/display_text.h"

#include <gtest/gtest.h>

namespace tripkit {
namespace {

TEST(DisplayText, EscapesWhatATerminalWouldActOn) {
    const struct {
        std::string text;
        std::string shown;
    } cases[] = {
        {"Cancún 東京", "Cancún 東京"},
        {"Evil\x1b[2J", "Evil\\x1b[2J"},             // ESC: would clear the screen
        {"a\nb\tc\r\x07", "a\\x0ab\\x09c\\x0d\\x07"},  // newlines and tabs break a row too
        {std::string("nul\0.", 5), "nul\\x00."},
        {"\xC2\x9B" "31m", "\\u{009b}31m"},        // C1 CSI
        {"\xE2\x80\xAE" "gnp.exe", "\\u{202e}gnp.exe"},  // right-to-left override
        {"\xE2\x81\xA6x\xE2\x81\xA9", "\\u{2066}x\\u{2069}"},
        {"Canc\xC3", "Canc\xEF\xBF\xBD"},           // cut in the middle of a letter
        {"\xFF\xFE", "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},  // a lone surrogate
        {"\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD"},                  // an overlong "/"
    };
    for (const auto& c : cases) EXPECT_EQ(DisplayText::escaped(c.text), c.shown) << c.text;
}

TEST(DisplayText, WidthCountsColumnsNotBytes) {
    const struct {
        std::string text;
        std::size_t width;
    } cases[] = {
        {"", 0},
        {"Lisbon", 6},
        {"Cancún", 6},                           // precomposed
        {"Cancu\xCC\x81n", 6},                   // u + combining acute
        {"東京", 4},
        {"\xE1\x84\x92\xE1\x85\xA1\xE1\x86\xAB", 2},  // a Hangul syllable from its jamo
        {"\xF0\x9F\x91\x8D\xF0\x9F\x8F\xBD", 2},  // with a skin tone
        {"\xE2\x9D\xA4\xEF\xB8\x8F", 2},          // heart as an emoji
        {"\xF0\x9F\x87\xB5\xF0\x9F\x87\xB9", 2},  // flag of Portugal
        {"\xF0\x9F\x91\xA8\xE2\x80\x8D\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7", 2},  // a family
        {"ｌｉｓ", 6},                             // full-width letters
    };
    for (const auto& c : cases) EXPECT_EQ(DisplayText::width(c.text), c.width) << c.text;
}

}  // namespace
}  // namespace tripkit
