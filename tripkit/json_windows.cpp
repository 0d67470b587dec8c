#include "tripkit/json_windows.h"

#include <cstdint>
#include <cstring>

#include <sys/mman.h>
#include <unistd.h>

#include "tripkit/json_fast.h"

namespace tripkit::json::fast {

namespace {

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
    return text;
}

// The position of the quote that closes the string whose opening quote is
// just before `from`, or npos.
std::size_t closingQuote(std::string_view text, std::size_t from) {
    while (true) {
        const void* found = std::memchr(text.data() + from, '"', text.size() - from);
        if (found == nullptr) return std::string_view::npos;
        const std::size_t quote = static_cast<const char*>(found) - text.data();
        std::size_t backslashes = 0;
        while (quote - backslashes > from && text[quote - backslashes - 1] == '\\') ++backslashes;
        if (backslashes % 2 == 0) return quote;
        from = quote + 1;
    }
}

}  // namespace

bool isBlank(std::string_view text) {
    return trimmed(text).empty();
}

std::optional<std::string_view> memberValue(std::string_view member, std::string_view key) {
    if (member.size() < key.size() + 2 || member[0] != '"' || member.substr(1, key.size()) != key ||
        member[key.size() + 1] != '"') {
        return std::nullopt;
    }
    const std::string_view rest = trimmed(member.substr(key.size() + 2));
    if (rest.empty() || rest.front() != ':') return std::nullopt;
    return trimmed(rest.substr(1));
}

std::optional<Children> childrenOf(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size() && isSpace(text[i])) ++i;
    if (i == text.size() || (text[i] != '[' && text[i] != '{')) return std::nullopt;
    Children out;
    out.open = text[i];
    const char close = out.open == '[' ? ']' : '}';
    std::size_t start = ++i;
    int depth = 0;  // inside the current child
    for (; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '"') {
            i = closingQuote(text, i + 1);
            if (i == std::string_view::npos) return std::nullopt;
        } else if (c == '[' || c == '{') {
            ++depth;
        } else if (c == ']' || c == '}') {
            if (depth > 0) {
                --depth;
                continue;
            }
            if (c != close) return std::nullopt;
            const std::string_view last = trimmed(text.substr(start, i - start));
            if (!last.empty()) {
                out.items.push_back(last);
            } else if (!out.items.empty()) {
                return std::nullopt;  // a comma before the closing bracket
            }
            out.rest = text.substr(i + 1);
            return out;
        } else if (c == ',' && depth == 0) {
            const std::string_view item = trimmed(text.substr(start, i - start));
            if (item.empty()) return std::nullopt;
            out.items.push_back(item);
            start = i + 1;
        }
    }
    return std::nullopt;
}

void GiveBack::upTo(const char* end) {
    if (from == nullptr || end <= from) return;
    static const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    // Whole pages only: the ones at either edge hold bytes still to be read,
    // or another allocation's.
    const std::uintptr_t first = (reinterpret_cast<std::uintptr_t>(from) + page - 1) / page * page;
    const std::uintptr_t last = reinterpret_cast<std::uintptr_t>(end) / page * page;
    if (last > first) {
        madvise(reinterpret_cast<void*>(first), last - first, MADV_DONTNEED);
        from = reinterpret_cast<const char*>(last);
    }
}

bool forEachWindow(const Children& children, std::size_t windowBytes,
                   const std::function<bool(simdjson::ondemand::value)>& read, GiveBack* giveBack) {
    const char close = children.open == '[' ? ']' : '}';
    const auto& items = children.items;
    ThreadParser parser;
    std::string window;
    for (std::size_t first = 0; first < items.size();) {
        const char* begin = items[first].data();
        std::size_t last = first;
        while (last + 1 < items.size() &&
               static_cast<std::size_t>(items[last + 1].data() + items[last + 1].size() - begin) <=
                   windowBytes) {
            ++last;
        }
        const char* end = items[last].data() + items[last].size();
        const std::size_t length = static_cast<std::size_t>(end - begin) + 2;
        window.resize(length + simdjson::SIMDJSON_PADDING);
        window[0] = children.open;
        std::memcpy(window.data() + 1, begin, length - 2);
        window[length - 1] = close;
        simdjson::ondemand::document doc;
        simdjson::ondemand::value root;
        if (parser.get().iterate(window.data(), length, window.size()).get(doc) !=
                simdjson::SUCCESS ||
            doc.get_value().get(root) != simdjson::SUCCESS || !read(root) || !atEnd(doc)) {
            return false;
        }
        if (giveBack != nullptr) giveBack->upTo(end);
        first = last + 1;
    }
    return true;
}

bool readOnly(simdjson::ondemand::value array,
              const std::function<bool(simdjson::ondemand::value)>& read) {
    simdjson::ondemand::array elements;
    if (array.get_array().get(elements) != simdjson::SUCCESS) return false;
    std::size_t n = 0;
    for (auto element : elements) {
        simdjson::ondemand::value v;
        if (n++ > 0 || element.get(v) != simdjson::SUCCESS || !read(v)) return false;
    }
    return n == 1;
}

}  // namespace tripkit::json::fast
