#include "tripkit/watch_nudge.h"

#include <algorithm>

#include <utf8proc.h>

namespace tripkit {

namespace {

// Upper case of every letter of a UTF-8 text (bytes that are not UTF-8 are
// kept as they are).
std::string upperCased(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
    auto left = static_cast<utf8proc_ssize_t>(text.size());
    while (left > 0) {
        utf8proc_int32_t cp = 0;
        const utf8proc_ssize_t used = utf8proc_iterate(bytes, left, &cp);
        if (used <= 0) {  // not UTF-8: keep the byte as it is
            out += static_cast<char>(*bytes);
            ++bytes;
            --left;
            continue;
        }
        utf8proc_uint8_t encoded[4];
        const utf8proc_ssize_t n = utf8proc_encode_char(utf8proc_toupper(cp), encoded);
        out.append(reinterpret_cast<const char*>(encoded), static_cast<std::size_t>(n));
        bytes += used;
        left -= used;
    }
    return out;
}

}  // namespace

bool WatchNudge::recordView(const std::string& code, bool watching, bool offeredThisSession) {
    const std::string key = upperCased(code);
    if (key.empty()) return false;
    int& count = views[key];
    count = std::min(count + 1, maxViews);
    if (watching || offeredThisSession) return false;
    if (offered.contains(key)) return false;
    // The second opening or later: the user came back without watching.
    if (count > 1) {
        offered.insert(key);
        return true;
    }
    return false;
}

void decode(const json::Value& v, WatchNudge& out) {
    out.views.clear();
    v.field("views").forEachMember([&](std::string_view code, const json::Value& count) {
        out.views[std::string(code)] = count.as<int>();
    });
    out.offered = v.get<std::set<std::string>>("offered");
}

json::Json encode(const WatchNudge& n) {
    json::Json out = json::Json::object();
    json::Json views = json::Json::object();
    for (const auto& [code, count] : n.views) views[code] = count;
    out["views"] = std::move(views);
    out["offered"] = json::array(n.offered);
    return out;
}

}  // namespace tripkit
