// Matching of what the user types in a search field ("City, state, airport or
// code") against a record's texts.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tripkit {

struct TextSearch {
    // `text` with case, diacritics and character width folded away, so that
    // "Bogotá", "BOGOTA" and full-width "ＢＯＧＯＴＡ" all read "bogota".
    // Invalid UTF-8 is read as U+FFFD.
    static std::string fold(std::string_view text);
    // The folded words of `text`: maximal runs of letters and digits.
    static std::vector<std::string> words(std::string_view text);
    // True when every word of the query begins some word of the present
    // fields; a query without words matches everything.
    static bool matches(std::string_view query,
                        const std::vector<std::optional<std::string>>& fields);
};

}  // namespace tripkit
