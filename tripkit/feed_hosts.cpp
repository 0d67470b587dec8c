#include "tripkit/feed_hosts.h"

#include <algorithm>
#include <cctype>

namespace tripkit {

FetchError::FetchError(Kind kind_, std::string url_, const std::string& message)
    : std::runtime_error(url_ + ": " + message), kind(kind_), url(std::move(url_)) {}

namespace {
std::string trim(std::string_view s) {
    auto isSpace = [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; };
    while (!s.empty() && isSpace(s.front())) s.remove_prefix(1);
    while (!s.empty() && isSpace(s.back())) s.remove_suffix(1);
    return std::string(s);
}
}  // namespace

bool isHttpsUrl(std::string_view text) {
    constexpr std::string_view scheme = "https://";
    if (text.size() <= scheme.size()) return false;
    for (std::size_t i = 0; i < scheme.size(); ++i) {
        if (std::tolower(static_cast<unsigned char>(text[i])) != scheme[i]) return false;
    }
    for (char c : text) {
        if (static_cast<unsigned char>(c) <= ' ' || c == '"' || c == '<' || c == '>' || c == '\\') {
            return false;
        }
    }
    std::string_view authority = text.substr(scheme.size());
    authority = authority.substr(0, authority.find_first_of("/?#"));
    if (auto at = authority.rfind('@'); at != std::string_view::npos) authority.remove_prefix(at + 1);
    std::string_view host = authority;
    if (!host.empty() && host.front() == '[') {  // IPv6 literal
        auto close = host.find(']');
        if (close == std::string_view::npos) return false;
        host = host.substr(0, close + 1);
    } else {
        host = host.substr(0, host.find(':'));
    }
    return !host.empty();
}

FeedHosts FeedHosts::make(std::optional<std::string> configured, const std::string& fallback) {
    FeedHosts out;
    if (configured) {
        std::string base = trim(*configured);
        if (!base.empty() && !base.starts_with("$(")) {
            if (!base.ends_with('/')) base += '/';
            if (isHttpsUrl(base)) out.hosts.push_back(base);
        }
    }
    if (out.hosts.empty() || out.hosts.front() != fallback) out.hosts.push_back(fallback);
    return out;
}

std::optional<std::string> FeedHosts::fetch(std::string_view path, const HttpLoader& loader) const {
    std::optional<FetchError> last;
    for (const std::string& base : hosts) {
        const std::string url = base + std::string(path);
        try {
            HttpResponse response = loader(url);
            if (response.status == 200) return std::move(response.body);
            if (response.status == 404) continue;
            last = FetchError(FetchError::Kind::badServerResponse, url,
                              "bad server response (status " + std::to_string(response.status) + ")");
        } catch (const FetchError& e) {
            last = e;
        }
    }
    if (last) throw *last;
    return std::nullopt;
}

}  // namespace tripkit
