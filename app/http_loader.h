// HTTPS GETs through libcurl. Blocking: call it on a worker thread. Peers
// are always verified, against the system's certificate store plus the file
// named by CURL_CA_BUNDLE when that is set (the curl tool's convention), so
// a private or test host can be trusted without turning verification off.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "tripkit/feed_hosts.h"

namespace roamwise::app {

struct HttpOptions {
    static constexpr long defaultConnectTimeoutSeconds = 10;
    static constexpr long defaultTotalTimeoutSeconds = 60;
    static constexpr long maxRedirects = 5;

    std::string userAgent = "Roamwise/1.0";
    long connectTimeoutSeconds = defaultConnectTimeoutSeconds;
    long totalTimeoutSeconds = defaultTotalTimeoutSeconds;
    bool compressed = true;  // ask for gzip, brotli, ... (whatever libcurl decodes)
};

// A conditional GET for services that say how long their answer is good
// for (MET Norway): send If-Modified-Since, read Last-Modified and Expires.
struct ConditionalRequest {
    std::string url;
    std::optional<std::string> ifModifiedSince;  // an HTTP date, as the server sent it
};
struct ConditionalResponse {
    int status = 0;  // 304: the copy already held is still current
    std::string body;
    std::optional<std::string> lastModified;
    std::optional<std::string> expires;
};

// One GET; throws tripkit::FetchError of kind transport when no answer came
// (no connection, time-out, TLS failure, a body over FileReader::maxBytes).
tripkit::HttpResponse httpGet(const std::string& url, const HttpOptions& options);
ConditionalResponse httpGetConditional(const ConditionalRequest& request, const HttpOptions& options);

// A GET that may be conditional and reads the caching headers: the weather
// services' seam, as tripkit::HttpLoader is the data host's. Throws
// tripkit::FetchError of kind transport when no answer came.
using WeatherLoader = std::function<ConditionalResponse(const ConditionalRequest&)>;

// libcurl with `options`; the application passes weatherOptions().
WeatherLoader conditionalLoader(HttpOptions options);
// A plain loader as a weather loader: it can neither send If-Modified-Since
// nor read Expires, so every request is a full fetch.
WeatherLoader plainWeatherLoader(tripkit::HttpLoader loader);

// Seconds since 1970 of an HTTP date ("Tue, 14 May 2024 10:32:11 GMT");
// nothing when it is not one.
std::optional<std::int64_t> httpDateSeconds(std::string_view text);

// The loader of the data host and the advisories service.
tripkit::HttpLoader curlLoader(HttpOptions options = {});
// The loader of the weather services, which ask who is calling.
tripkit::HttpLoader weatherLoader();
HttpOptions weatherOptions();

}  // namespace roamwise::app
