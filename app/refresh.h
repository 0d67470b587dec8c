// One refresh of every fetched file, as a plain blocking function: the model
// runs it on a worker thread and applies the outcome on the main thread; the
// CLI runs it directly. The cache is written only with bytes that decoded,
// so a failed or broken download leaves the last good copy byte for byte.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "app/app_model.h"
#include "app/storage.h"
#include "tripkit/advisories.h"
#include "tripkit/calendars.h"
#include "tripkit/disney_guide.h"
#include "tripkit/events.h"
#include "tripkit/fares.h"
#include "tripkit/feed_hosts.h"
#include "tripkit/feed_status.h"
#include "tripkit/price_history.h"
#include "tripkit/universal_guide.h"

namespace roamwise::app {

// The three nightly files of one home airport, each when it could be had.
struct HomeBooks {
    std::string code;
    std::optional<tripkit::FareBook> fares;
    std::optional<tripkit::CalendarBook> calendar;
    std::optional<tripkit::HistoryBook> history;
};

// The fare side of the model: the books and what is derived from them.
struct FaresData {
    std::vector<HomeBooks> homes;  // in home-airport order
    // Sample data for today stand in for the live files: asked for, or the
    // live feed cannot be had (no live or saved fares of the main airport).
    bool sample = false;
    tripkit::FeedStatus status;  // of the live feed, also while the sample shows
    std::vector<tripkit::Deal> deals;
    tripkit::FareCalendar calendar;
    tripkit::FareHistory history;
};

// The books of `homes` from the cache alone, as the model shows them at start
// and `roamwise-cli status` reports them: the status is what it would be
// if the host could not be reached now.
FaresData loadCachedFares(const Cache& cache, const std::vector<std::string>& homes,
                          tripkit::Day today, bool sampleRequested);

// The books of `homes` made by the sample generator for `today`; airports
// it does not know are left out.
std::vector<HomeBooks> sampleBooks(const std::vector<std::string>& homes, tripkit::Day today);

// Derives deals, calendar and history from data.homes.
void mergeBooks(FaresData& data, tripkit::Day today);

struct RefreshInput {
    std::vector<std::string> homes;
    tripkit::FeedHosts hosts;
    tripkit::HttpLoader loader;
    std::string advisoriesURL;
    Cache cache;
    tripkit::Day today;
    bool sampleRequested = false;
    bool guides = true;  // also the guides and the events calendar
    std::function<void(const std::string& line)> progress;
};

struct RefreshOutcome {
    FaresData fares;
    RefreshReport report;
    // The advisories in use after the refresh (fetched, else cached).
    std::optional<std::map<std::string, tripkit::Advisory>> advisories;
    bool advisoriesFetched = false;
    // Guides fetched now that decoded (nothing: keep what is loaded).
    std::optional<tripkit::EventCalendar> events;
    std::optional<tripkit::DisneyGuide> guide;
    std::optional<tripkit::UniversalGuide> universal;
    std::optional<std::string> answeringHost;  // base address of the last 200
};

RefreshOutcome runRefresh(const RefreshInput& input);

// The load state the screens show for a fare feed status.
Load loadOf(const tripkit::FeedStatus& status);

// The advisories in the cache; nothing when missing or undecodable.
std::optional<std::map<std::string, tripkit::Advisory>> cachedAdvisories(const Cache& cache);

}  // namespace roamwise::app
