// Text from data files made safe to show in a terminal, and its width there.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tripkit {

struct DisplayText {
    // `text` with nothing a terminal would act on: C0 controls and DEL become
    // "\xHH" ("\x1b" for ESC, "\x0a" for a newline), C1 controls, line and
    // paragraph separators and bidirectional marks, embeddings, overrides and
    // isolates (U+061C, U+200E-U+200F, U+202A-U+202E, U+2066-U+2069) become
    // "\u{XXXX}", and each byte of invalid UTF-8 becomes U+FFFD.
    static std::string escaped(std::string_view text);

    // The columns `text` takes in a terminal, one grapheme cluster at a time:
    // wide (CJK, most emoji) clusters take two, a base letter with combining
    // marks one. Assumes escaped text; controls count as nothing.
    static std::size_t width(std::string_view text);
};

}  // namespace tripkit
