#include "tripkit/feed_status.h"

namespace tripkit {

FeedStatus FeedStatus::decide(bool mainMissing, bool mainFailed, std::optional<Day> saved,
                              int deals, Day today) {
    if (mainMissing && deals == 0) return unavailable();
    if (!mainFailed) return loaded();
    if (!saved) return deals > 0 ? loaded() : failed();
    return *saved >= today ? loaded() : offline(*saved);
}

std::optional<FeedStatus::Empty> FeedStatus::emptyReason(const FeedStatus& status,
                                                          int dealsBeforeFilters) {
    if (dealsBeforeFilters > 0) return std::nullopt;
    switch (status.kind) {
        case Kind::offline: return Empty{Empty::Kind::offlineTooOld, status.savedDay};
        case Kind::loaded: return Empty{Empty::Kind::noneRecent, Day{}};
        case Kind::unavailable:
        case Kind::failed: return std::nullopt;
    }
    return std::nullopt;
}

std::optional<std::string> FeedStatus::message() const {
    switch (kind) {
        case Kind::loaded: return std::nullopt;
        case Kind::unavailable: return std::string(unavailableText);
        case Kind::failed: return std::string(failedText);
        case Kind::offline: return "Offline: showing fares saved " + savedDay.text() + ". Pull to refresh.";
    }
    return std::nullopt;
}

std::optional<std::string> FeedStatus::detail() const {
    if (kind == Kind::offline) return std::string(offlineDetail);
    return std::nullopt;
}

}  // namespace tripkit
