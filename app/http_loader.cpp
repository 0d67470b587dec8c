#include "app/http_loader.h"

#include <sys/stat.h>

#include <cstdlib>
#include <memory>
#include <mutex>

#include <curl/curl.h>

#include "tripkit/file_reader.h"
#include "tripkit/wear_data.h"

namespace roamwise::app {

namespace {

// The system's store as Debian lays it out (hashed certificates).
constexpr const char* kSystemCertificates = "/etc/ssl/certs";

void initCurlOnce() {
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

struct Received {
    std::string body;
    bool tooLarge = false;
    std::optional<std::string> lastModified;
    std::optional<std::string> expires;
};

std::size_t onBody(char* data, std::size_t size, std::size_t count, void* user) {
    auto* received = static_cast<Received*>(user);
    const std::size_t bytes = size * count;
    if (received->body.size() + bytes > tripkit::FileReader::maxBytes) {
        received->tooLarge = true;
        return 0;  // ends the transfer with a write error
    }
    received->body.append(data, bytes);
    return bytes;
}

std::string trimmed(std::string text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    const auto last = text.find_last_not_of(" \t\r\n");
    return first == std::string::npos ? std::string() : text.substr(first, last - first + 1);
}

std::size_t onHeader(char* data, std::size_t size, std::size_t count, void* user) {
    auto* received = static_cast<Received*>(user);
    const std::string line(data, size * count);
    const auto colon = line.find(':');
    if (colon != std::string::npos) {
        std::string name = line.substr(0, colon);
        for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        // A redirect's headers come first; the final answer's win.
        if (name == "last-modified") received->lastModified = trimmed(line.substr(colon + 1));
        if (name == "expires") received->expires = trimmed(line.substr(colon + 1));
    }
    return size * count;
}

struct EasyDeleter {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};
struct ListDeleter {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};

bool isDirectory(const char* path) {
    struct stat info {};
    return ::stat(path, &info) == 0 && S_ISDIR(info.st_mode);
}

ConditionalResponse perform(const ConditionalRequest& request, const HttpOptions& options) {
    using tripkit::FetchError;
    initCurlOnce();
    std::unique_ptr<CURL, EasyDeleter> handle(curl_easy_init());
    if (!handle) throw FetchError(FetchError::Kind::transport, request.url, "could not start a request");
    CURL* h = handle.get();
    Received received;
    std::unique_ptr<curl_slist, ListDeleter> headers;
    if (request.ifModifiedSince) {
        headers.reset(curl_slist_append(nullptr, ("If-Modified-Since: " + *request.ifModifiedSince).c_str()));
    }
    char error[CURL_ERROR_SIZE] = {};

    curl_easy_setopt(h, CURLOPT_URL, request.url.c_str());
    curl_easy_setopt(h, CURLOPT_ERRORBUFFER, error);
    curl_easy_setopt(h, CURLOPT_NOSIGNAL, 1L);  // worker threads: no SIGALRM for time-outs
    // Only HTTPS, also after a redirect.
    curl_easy_setopt(h, CURLOPT_PROTOCOLS_STR, "https");
    curl_easy_setopt(h, CURLOPT_REDIR_PROTOCOLS_STR, "https");
    curl_easy_setopt(h, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(h, CURLOPT_MAXREDIRS, HttpOptions::maxRedirects);
    curl_easy_setopt(h, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(h, CURLOPT_SSL_VERIFYHOST, 2L);
    // The extra bundle is a file; the system store stays trusted beside it
    // through its directory.
    if (const char* bundle = std::getenv("CURL_CA_BUNDLE"); bundle && *bundle) {
        curl_easy_setopt(h, CURLOPT_CAINFO, bundle);
        if (isDirectory(kSystemCertificates)) curl_easy_setopt(h, CURLOPT_CAPATH, kSystemCertificates);
    }
    curl_easy_setopt(h, CURLOPT_CONNECTTIMEOUT, options.connectTimeoutSeconds);
    curl_easy_setopt(h, CURLOPT_TIMEOUT, options.totalTimeoutSeconds);
    curl_easy_setopt(h, CURLOPT_USERAGENT, options.userAgent.c_str());
    if (options.compressed) curl_easy_setopt(h, CURLOPT_ACCEPT_ENCODING, "");
    curl_easy_setopt(h, CURLOPT_WRITEFUNCTION, onBody);
    curl_easy_setopt(h, CURLOPT_WRITEDATA, &received);
    curl_easy_setopt(h, CURLOPT_HEADERFUNCTION, onHeader);
    curl_easy_setopt(h, CURLOPT_HEADERDATA, &received);
    if (headers) curl_easy_setopt(h, CURLOPT_HTTPHEADER, headers.get());

    const CURLcode code = curl_easy_perform(h);
    if (received.tooLarge) {
        throw FetchError(FetchError::Kind::transport, request.url, "the answer is too large");
    }
    if (code != CURLE_OK) {
        throw FetchError(FetchError::Kind::transport, request.url,
                         error[0] ? std::string(error) : std::string(curl_easy_strerror(code)));
    }
    long status = 0;
    curl_easy_getinfo(h, CURLINFO_RESPONSE_CODE, &status);
    ConditionalResponse response;
    response.status = static_cast<int>(status);
    response.body = std::move(received.body);
    response.lastModified = std::move(received.lastModified);
    response.expires = std::move(received.expires);
    return response;
}

}  // namespace

tripkit::HttpResponse httpGet(const std::string& url, const HttpOptions& options) {
    ConditionalResponse response = perform({url, std::nullopt}, options);
    return {response.status, std::move(response.body)};
}

ConditionalResponse httpGetConditional(const ConditionalRequest& request, const HttpOptions& options) {
    return perform(request, options);
}

tripkit::HttpLoader curlLoader(HttpOptions options) {
    return [options = std::move(options)](const std::string& url) { return httpGet(url, options); };
}

HttpOptions weatherOptions() {
    HttpOptions options;
    options.userAgent = std::string(tripkit::WearClimate::userAgent);
    return options;
}

tripkit::HttpLoader weatherLoader() { return curlLoader(weatherOptions()); }

WeatherLoader conditionalLoader(HttpOptions options) {
    return [options = std::move(options)](const ConditionalRequest& request) {
        return httpGetConditional(request, options);
    };
}

WeatherLoader plainWeatherLoader(tripkit::HttpLoader loader) {
    return [loader = std::move(loader)](const ConditionalRequest& request) {
        tripkit::HttpResponse response = loader(request.url);
        ConditionalResponse out;
        out.status = response.status;
        out.body = std::move(response.body);
        return out;
    };
}

std::optional<std::int64_t> httpDateSeconds(std::string_view text) {
    const std::string held(text);
    const time_t seconds = curl_getdate(held.c_str(), nullptr);
    if (seconds == -1) return std::nullopt;
    return static_cast<std::int64_t>(seconds);
}

}  // namespace roamwise::app
