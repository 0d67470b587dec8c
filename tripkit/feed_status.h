// What the deals screen is told about the state of the fare feed.
#pragma once

#include <optional>
#include <string>

#include "tripkit/days.h"

namespace tripkit {

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

    static constexpr const char* unavailableText = "No nightly fares for this airport yet";
    static constexpr const char* failedText =
        "Couldn’t load today’s fares. Check your connection and try again.";
    static constexpr const char* offlineDetail = "Using the last copy";

    // The deals screen's text for this state; nothing when loaded.
    // Offline: "Offline: showing fares saved 2026-11-22. Pull to refresh."
    std::optional<std::string> message() const;
    // Settings' line: "Using the last copy" when offline; nothing otherwise.
    std::optional<std::string> detail() const;

    friend bool operator==(const FeedStatus&, const FeedStatus&) = default;
};

}  // namespace tripkit
