// The wear guide's weather: a place's twelve typical months (NASA POWER,
// reduced and cached, else the shipped values) and its forecast days (MET
// Norway, cached and fetched again only after its Expires, conditionally).
// Plain blocking functions: the model runs them on its worker pool, the CLI
// directly.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "app/http_loader.h"
#include "app/storage.h"
#include "tripkit/config.h"
#include "tripkit/days.h"
#include "tripkit/wear.h"
#include "tripkit/wear_data.h"

namespace roamwise::app {

struct WeatherInput {
    WeatherLoader loader;     // every request; the application's carries the weather user agent
    std::string powerURL;     // NASA POWER base, no trailing "/"
    std::string forecastURL;  // MET Norway base, no trailing "/"
    Cache cache;
    std::int64_t nowSeconds = 0;  // the clock: cache ages and Expires
    tripkit::Day today;           // which trip days a forecast can reach

    // The application's services and loader over `cache`, at `nowSeconds`.
    static WeatherInput standard(const Cache& cache, const tripkit::Config::Environment& environment,
                                 std::int64_t nowSeconds, tripkit::Day today);
};

struct TypicalWeather {
    // Twenty fixed years of daily data only change when the service
    // reprocesses them, which it does rarely: half a year is plenty.
    static constexpr std::int64_t cacheLifetimeSeconds = 182 * 86400;
    // A shipped place this close stands in for a place that cannot be fetched
    // (about the size of the service's grid cell, which is what it averages).
    static constexpr double shippedReachMiles = 60;

    enum class Origin {
        fetched,  // from the service now (and cached)
        cached,   // the cached copy, younger than its lifetime
        kept,     // the fetch failed; an older cached copy
        shipped,  // the fetch failed; the shipped file's nearest place
        none,     // the fetch failed and nothing stands in
    };

    std::vector<tripkit::WearMonth> months;  // twelve, January first; empty with `none`
    Origin origin = Origin::none;
    std::string problem;  // why the fetch failed, when it was tried and did

    // The credit line of where the months came from.
    std::string credit() const;

    // "typical-" + the place's key ("%.2f_%.2f") + ".json": the twelve months as JSON.
    static std::string cacheName(double lat, double lon);
};
std::string_view caseName(TypicalWeather::Origin origin);

struct ForecastWeather {
    // The forecast reaches about ten days; trips further out ask nothing.
    static constexpr std::int64_t reachDays = 10;

    enum class Origin {
        fetched,      // a full answer now
        notModified,  // 304: the cached answer is still current
        cached,       // before its Expires: not asked at all
        skipped,      // no trip day within reach
        none,         // the request failed or the answer did not decode
    };

    std::map<tripkit::Day, tripkit::WearDay> days;
    Origin origin = Origin::none;
    std::string problem;

    // "forecast-" + "%.4f_%.4f" + ".json", the answer byte for byte, and its
    // "Expires" and "Last-Modified" headers beside it in ".http".
    static std::string cacheName(double lat, double lon);
    static std::string headersName(double lat, double lon);
};
std::string_view caseName(ForecastWeather::Origin origin);

// The shipped place nearest to the point within TypicalWeather::shippedReachMiles.
const tripkit::WearPlace* nearestShippedPlace(double lat, double lon);

// The twelve months of a point: the cached copy while it is fresh, else
// fetched and reduced (cached only when it reduced), else the older cached
// copy, else the nearest shipped place's.
TypicalWeather typicalWeather(double lat, double lon, std::optional<double> cityElevation,
                              const WeatherInput& input);

// The forecast days of a point, grouped by the local day of `timeZone`.
// Nothing is asked before the cached answer's Expires; after it the request
// carries If-Modified-Since and a 304 keeps the cached answer. A failed or
// unreadable answer gives no days.
ForecastWeather forecastWeather(double lat, double lon, const std::string& timeZone,
                                const WeatherInput& input);

using tripkit::WearAsk;

struct WearOutcome {
    WearAsk ask;
    tripkit::WearGuide guide;
    // The typical weather's credit, then the forecast's when forecast days were used.
    std::vector<std::string> credits;
    TypicalWeather::Origin typical = TypicalWeather::Origin::none;
    ForecastWeather::Origin forecast = ForecastWeather::Origin::none;
    std::vector<std::string> problems;  // fetches that failed, for the log
};

// The guide of `ask`: typical months of the place (its shipped ones when
// nothing better can be had), forecast days where the forecast reaches.
WearOutcome wearGuide(const WearAsk& ask, const WeatherInput& input);

}  // namespace roamwise::app
