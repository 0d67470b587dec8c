#include "tripkit/advisories.h"

#include <utf8proc.h>

#include "tripkit/json_fields.h"

namespace tripkit {

namespace {

struct CodePoint {
    utf8proc_int32_t value = -1;  // -1: a byte that is not UTF-8
    std::size_t size = 1;         // bytes
};

CodePoint codePointAt(std::string_view text, std::size_t at) {
    utf8proc_int32_t cp = -1;
    const utf8proc_ssize_t used =
        utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data() + at),
                         static_cast<utf8proc_ssize_t>(text.size() - at), &cp);
    if (used <= 0) return {};
    return {cp, static_cast<std::size_t>(used)};
}

bool isSpace(utf8proc_int32_t cp) {
    if (cp == ' ' || (cp >= '\t' && cp <= '\r')) return true;
    if (cp < 0) return false;
    const utf8proc_category_t category = utf8proc_category(cp);
    return category == UTF8PROC_CATEGORY_ZS || category == UTF8PROC_CATEGORY_ZL ||
           category == UTF8PROC_CATEGORY_ZP || cp == 0x85;
}

std::string trimmed(std::string_view text) {
    std::size_t begin = 0;
    while (begin < text.size()) {
        const CodePoint c = codePointAt(text, begin);
        if (!isSpace(c.value)) break;
        begin += c.size;
    }
    std::size_t end = begin;  // just past the last character that is not space
    for (std::size_t at = begin; at < text.size();) {
        const CodePoint c = codePointAt(text, at);
        at += c.size;
        if (!isSpace(c.value)) end = at;
    }
    return std::string(text.substr(begin, end - begin));
}

// The first `count` characters (not bytes) of a text.
std::string prefixChars(std::string_view text, std::size_t count) {
    std::size_t at = 0;
    for (std::size_t n = 0; n < count && at < text.size(); ++n) at += codePointAt(text, at).size;
    return std::string(text.substr(0, at));
}

// The level of "... Level 2: Exercise Increased Caution". The first "Level"
// followed by a space and any decimal digit counts; a digit that is not a
// plain 0-9 (say, an Arabic-Indic one) makes the level unreadable.
std::optional<int> levelIn(std::string_view title) {
    constexpr std::string_view word = "Level ";
    for (std::size_t at = title.find(word); at != std::string_view::npos;
         at = title.find(word, at + 1)) {
        const CodePoint digit = codePointAt(title, at + word.size());
        if (digit.value < 0 || utf8proc_category(digit.value) != UTF8PROC_CATEGORY_ND) continue;
        if (digit.value >= '0' && digit.value <= '9') return digit.value - '0';
        return std::nullopt;
    }
    return std::nullopt;
}

std::string countryIn(std::string_view title) {
    constexpr std::string_view suffix = " Travel Advisory";
    std::string part(title.substr(0, title.find(" - ")));
    for (std::size_t at = part.find(suffix); at != std::string::npos; at = part.find(suffix, at)) {
        part.erase(at, suffix.size());
    }
    return trimmed(part);
}

}  // namespace

std::optional<Advisory> Advisories::advisory(const Raw& raw) {
    if (!raw.category || raw.category->empty()) return std::nullopt;
    const std::optional<int> level = levelIn(raw.title);
    if (!level || *level < lowestLevel || *level > highestLevel) return std::nullopt;
    Advisory a;
    a.code = raw.category->front();
    a.country = countryIn(raw.title);
    a.level = *level;
    a.title = raw.title;
    a.link = raw.link;
    a.updated = raw.updated ? prefixChars(*raw.updated, 10) : std::string();
    return a;
}

Advisories::Feed Advisories::read(std::string_view data, std::string source) {
    const json::Document doc = json::parse(data, std::move(source));
    Feed out;
    doc.root().forEach([&](const json::Value& element) {
        const Raw raw = element.as<Raw>();
        if (auto a = advisory(raw)) {
            out.byCode.insert_or_assign(a->code, std::move(*a));
        } else if (raw.category && !raw.category->empty() && levelIn(raw.title)) {
            ++out.impossible;  // a level was there, but not one the service uses
        }
    });
    return out;
}

std::string_view Advisories::levelText(int level) {
    switch (level) {
        case 1: return "Exercise normal precautions";
        case 2: return "Exercise increased caution";
        case 3: return "Reconsider travel";
        case 4: return "Do not travel";
        default: return "";
    }
}

const Advisory* Advisories::of(const Destination& d,
                               const std::map<std::string, Advisory>& advisories) {
    if (d.domestic || !d.advisory) return nullptr;
    auto it = advisories.find(*d.advisory);
    return it == advisories.end() ? nullptr : &it->second;
}

std::vector<const Destination*> Advisories::destinations(const Advisory& a,
                                                         const std::vector<Destination>& catalog) {
    std::vector<const Destination*> out;
    for (const Destination& d : catalog) {
        if (!d.domestic && d.advisory == a.code) out.push_back(&d);
    }
    return out;
}

bool Advisories::isShown(const Destination& d, const std::map<std::string, Advisory>& advisories,
                         int maxLevel) {
    if (d.domestic) return true;
    const Advisory* a = of(d, advisories);
    return a != nullptr && a->level >= lowestLevel && a->level <= maxLevel;
}

std::vector<Destination> Advisories::safeAndFun(const std::vector<Destination>& catalog,
                                                const std::map<std::string, Advisory>& advisories,
                                                int maxLevel) {
    std::vector<Destination> out;
    for (const Destination& d : catalog) {
        if (isShown(d, advisories, maxLevel)) out.push_back(d);
    }
    return out;
}

template <>
struct json::Fields<Advisories::Raw> {
    using T = Advisories::Raw;
    static constexpr auto list =
        std::tuple{json::field("Title", &T::title), json::field("Link", &T::link),
                   json::field("Category", &T::category), json::field("Updated", &T::updated)};
};

template <>
struct json::Fields<Advisory> {
    using T = Advisory;
    static constexpr auto list =
        std::tuple{json::field("code", &T::code),
                   json::field("country", &T::country),
                   json::field("level", &T::level,
                               json::Between{Advisories::lowestLevel, Advisories::highestLevel,
                                             "advisory levels run from 1 to 4"}),
                   json::field("title", &T::title),
                   json::field("link", &T::link),
                   json::field("updated", &T::updated)};
};

TRIPKIT_JSON_DECODER(Advisories::Raw)

TRIPKIT_JSON_CODEC(Advisory)

}  // namespace tripkit
