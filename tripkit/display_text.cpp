#include "tripkit/display_text.h"

#include <algorithm>

#include <fmt/format.h>
#include <utf8proc.h>

namespace tripkit {

namespace {

constexpr utf8proc_int32_t kReplacement = 0xFFFD;
constexpr utf8proc_int32_t kEmojiPresentation = 0xFE0F;

// The code point at the start of `text` and its length in bytes; a bad byte
// reads as one U+FFFD.
std::pair<utf8proc_int32_t, std::size_t> next(std::string_view text) {
    utf8proc_int32_t cp = 0;
    const utf8proc_ssize_t n =
        utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                         static_cast<utf8proc_ssize_t>(text.size()), &cp);
    if (n <= 0) return {kReplacement, 1};
    return {cp, static_cast<std::size_t>(n)};
}

// Code points that reorder or hide the text around them.
bool isBidiControl(utf8proc_int32_t cp) {
    return cp == 0x061C || cp == 0x200E || cp == 0x200F || (cp >= 0x202A && cp <= 0x202E) ||
           (cp >= 0x2066 && cp <= 0x2069);
}

void append(std::string& out, utf8proc_int32_t cp) {
    utf8proc_uint8_t buffer[4];
    const utf8proc_ssize_t n = utf8proc_encode_char(cp, buffer);
    out.append(reinterpret_cast<const char*>(buffer), static_cast<std::size_t>(n));
}

}  // namespace

std::string DisplayText::escaped(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const auto [cp, length] = next(text);
        if (cp < 0x20 || cp == 0x7F) {
            out += fmt::format("\\x{:02x}", cp);
        } else if ((cp >= 0x80 && cp <= 0x9F) || cp == 0x2028 || cp == 0x2029 ||
                   isBidiControl(cp)) {
            out += fmt::format("\\u{{{:04x}}}", cp);
        } else if (cp == kReplacement) {
            append(out, cp);
        } else {
            out.append(text.substr(0, length));
        }
        text.remove_prefix(length);
    }
    return out;
}

std::size_t DisplayText::width(std::string_view text) {
    std::size_t total = 0;
    int cluster = 0;        // width of the grapheme cluster being read
    bool pictured = false;  // shown as a picture: an emoji variant or a flag
    int regional = 0;       // regional indicators; two make a flag
    utf8proc_int32_t previous = -1;
    utf8proc_int32_t state = 0;
    auto close = [&] {
        total += static_cast<std::size_t>(pictured && cluster > 0 ? 2 : cluster);
        cluster = 0;
        pictured = false;
        regional = 0;
    };
    while (!text.empty()) {
        const auto [cp, length] = next(text);
        text.remove_prefix(length);
        if (previous >= 0 && utf8proc_grapheme_break_stateful(previous, cp, &state)) close();
        cluster = std::max(cluster, utf8proc_charwidth(cp));
        if (cp >= 0x1F1E6 && cp <= 0x1F1FF) ++regional;
        pictured = pictured || cp == kEmojiPresentation || regional == 2;
        previous = cp;
    }
    close();
    return total;
}

}  // namespace tripkit
