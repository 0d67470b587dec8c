// The data host: which base addresses to try and how one file is fetched
// from them, the state of the fare feed, and the freshness rules of fares.
#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tripkit/days.h"

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

// What the deals screen is told about the fare feed.
struct FeedStatus {
    enum class Kind { offline, loaded, unavailable, failed };
    Kind kind = Kind::loaded;
    Day savedDay;  // offline only: the "updated" day of the saved copy

    // Why an empty deals list is empty.
    struct Empty {
        enum class Kind { offlineTooOld, noneRecent };
        Kind kind = Kind::noneRecent;
        Day day;  // offlineTooOld only
        friend bool operator==(const Empty&, const Empty&) = default;
    };

    static FeedStatus offline(Day saved) { return FeedStatus{Kind::offline, saved}; }
    static FeedStatus loaded() { return FeedStatus{Kind::loaded, Day{}}; }
    static FeedStatus unavailable() { return FeedStatus{Kind::unavailable, Day{}}; }
    static FeedStatus failed() { return FeedStatus{Kind::failed, Day{}}; }

    static FeedStatus decide(bool mainMissing, bool mainFailed, std::optional<Day> saved, int deals,
                             Day today);
    static std::optional<Empty> emptyReason(const FeedStatus& status, int dealsBeforeFilters);

    friend bool operator==(const FeedStatus&, const FeedStatus&) = default;
};

// How old a fare may be, in whole days.
struct Freshness {
    static constexpr int freshDays = 3;     // older is stale (greyed)
    static constexpr int usableDays = 7;    // older is too old to show
    static constexpr int horizonDays = 330; // departures further ahead are not listed

    static bool isStale(std::optional<Day> seen, Day today) {
        return seen && today - *seen > freshDays;
    }
    static bool isTooOld(std::optional<Day> seen, Day today) {
        return seen && today - *seen > usableDays;
    }
    static bool isUsable(std::optional<Day> seen, Day depart, Day today) {
        return !isTooOld(seen, today) && depart >= today && depart - today <= horizonDays;
    }
    static std::int64_t age(std::optional<Day> seen, Day today) {
        return seen ? std::max<std::int64_t>(today - *seen, 0) : 0;
    }
};

}  // namespace tripkit
