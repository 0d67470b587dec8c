#include "tripkit/text_search.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

#include <utf8proc.h>

namespace tripkit {

namespace {

const utf8proc_uint8_t* bytes(std::string_view s) {
    return reinterpret_cast<const utf8proc_uint8_t*>(s.data());
}

// utf8proc rejects a whole string for one bad byte; a search must not, so bad
// sequences become U+FFFD first.
std::string validUtf8(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    std::size_t i = 0;
    while (i < text.size()) {
        utf8proc_int32_t cp = 0;
        const utf8proc_ssize_t n = utf8proc_iterate(bytes(text.substr(i)),
                                                    static_cast<utf8proc_ssize_t>(text.size() - i), &cp);
        if (n > 0 && cp >= 0) {
            out.append(text.substr(i, static_cast<std::size_t>(n)));
            i += static_cast<std::size_t>(n);
        } else {
            out += "\xEF\xBF\xBD";
            ++i;
        }
    }
    return out;
}

bool isWordChar(utf8proc_int32_t cp) {
    if (cp < 0x80) {
        return (cp >= 'a' && cp <= 'z') || (cp >= 'A' && cp <= 'Z') || (cp >= '0' && cp <= '9');
    }
    switch (utf8proc_category(cp)) {
        case UTF8PROC_CATEGORY_LU:
        case UTF8PROC_CATEGORY_LL:
        case UTF8PROC_CATEGORY_LT:
        case UTF8PROC_CATEGORY_LM:
        case UTF8PROC_CATEGORY_LO:
        case UTF8PROC_CATEGORY_ND:
            return true;
        default:
            return false;
    }
}

// Splits already folded (so valid) text into words.
void splitWords(std::string_view folded, std::vector<std::string>& out) {
    std::string word;
    std::size_t i = 0;
    while (i < folded.size()) {
        utf8proc_int32_t cp = -1;
        const utf8proc_ssize_t n = utf8proc_iterate(
            bytes(folded.substr(i)), static_cast<utf8proc_ssize_t>(folded.size() - i), &cp);
        // Folded text is valid; a bad byte would still only separate words.
        const std::size_t length = n > 0 ? static_cast<std::size_t>(n) : 1;
        if (n > 0 && isWordChar(cp)) {
            word.append(folded.substr(i, length));
        } else if (!word.empty()) {
            out.push_back(std::move(word));
            word.clear();
        }
        i += length;
    }
    if (!word.empty()) out.push_back(std::move(word));
}

}  // namespace

std::string TextSearch::fold(std::string_view text) {
    const std::string valid = validUtf8(text);
    // COMPAT folds width and ligatures, STRIPMARK drops the accents that the
    // decomposition splits off, IGNORE drops soft hyphens and joiners.
    const auto options = static_cast<utf8proc_option_t>(
        UTF8PROC_STABLE | UTF8PROC_COMPOSE | UTF8PROC_COMPAT | UTF8PROC_CASEFOLD |
        UTF8PROC_STRIPMARK | UTF8PROC_IGNORE);
    utf8proc_uint8_t* mapped = nullptr;
    const utf8proc_ssize_t n =
        utf8proc_map(bytes(valid), static_cast<utf8proc_ssize_t>(valid.size()), &mapped, options);
    std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(mapped, &std::free);
    if (n < 0) return valid;  // only on allocation failure
    return std::string(reinterpret_cast<const char*>(mapped), static_cast<std::size_t>(n));
}

std::vector<std::string> TextSearch::words(std::string_view text) {
    std::vector<std::string> out;
    splitWords(fold(text), out);
    return out;
}

bool TextSearch::matches(std::string_view query,
                         const std::vector<std::optional<std::string>>& fields) {
    const std::vector<std::string> wanted = words(query);
    if (wanted.empty()) return true;
    std::vector<std::string> pool;
    for (const auto& field : fields) {
        if (field) splitWords(fold(*field), pool);
    }
    return std::all_of(wanted.begin(), wanted.end(), [&](const std::string& w) {
        return std::any_of(pool.begin(), pool.end(),
                           [&](const std::string& p) { return p.starts_with(w); });
    });
}

}  // namespace tripkit
