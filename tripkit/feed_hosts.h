// The data host: which base addresses to try and how one file is fetched
// from them.
#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tripkit {

// One HTTP answer as the loader hands it back.
struct HttpResponse {
    int status = 0;
    std::string body;
};

// A fetch that failed: a transport error (no connection, time-out, TLS), or
// a server answer other than 200 and 404.
struct FetchError : std::runtime_error {
    enum class Kind { transport, badServerResponse };
    FetchError(Kind kind, std::string url, const std::string& message);
    Kind kind;
    std::string url;
};

// Issues one GET (following redirects) and returns status and body; throws
// FetchError of kind transport when no answer came.
using HttpLoader = std::function<HttpResponse(const std::string& url)>;

struct FeedHosts {
    static constexpr std::string_view basePath = "/roamwise-data/";

    std::vector<std::string> hosts;  // base addresses ending in "/", configured one first

    // `configured` is the RWDataURL setting; it is ignored when empty, when it
    // is an unexpanded "$(...)" build variable, or when it is not an https
    // address with a host. `fallback` is the built-in default.
    static FeedHosts make(std::optional<std::string> configured, const std::string& fallback);

    // The file's bytes from the first host that has it; nothing when every
    // host answered 404; otherwise throws the last error met.
    std::optional<std::string> fetch(std::string_view path, const HttpLoader& loader) const;

    static std::string faresPath(std::string_view code) { return "flights/" + std::string(code) + ".json"; }
    static std::string calendarPath(std::string_view code) { return "calendars/" + std::string(code) + ".json"; }
    static std::string historyPath(std::string_view code) { return "history/" + std::string(code) + ".json"; }
};

// Whether `text` is an https address with a host.
bool isHttpsUrl(std::string_view text);

}  // namespace tripkit
