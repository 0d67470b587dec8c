#include "app/weather.h"

#include <limits>

#include <QDateTime>
#include <QFileInfo>

#include <fmt/format.h>

#include "tripkit/places.h"
#include "tripkit/wear_forecast.h"

namespace roamwise::app {

using namespace tripkit;

namespace {

constexpr int kMonths = 12;
constexpr const char* kExpires = "Expires";
constexpr const char* kLastModified = "Last-Modified";

std::string fetchBody(const WeatherInput& input, const std::string& url) {
    ConditionalResponse response = input.loader({url, std::nullopt});
    if (response.status != 200) {
        throw FetchError(FetchError::Kind::badServerResponse, url, fmt::format("HTTP {}", response.status));
    }
    return std::move(response.body);
}

std::optional<std::vector<WearMonth>> cachedMonths(const Cache& cache, const std::string& name) {
    std::optional<std::vector<WearMonth>> months = cache.decoded<std::vector<WearMonth>>(name);
    if (months && months->size() != kMonths) return std::nullopt;
    return months;
}

// The caching headers kept beside a cached forecast, one "Name: value" a line.
struct SavedHeaders {
    std::optional<std::string> expires;
    std::optional<std::string> lastModified;
};

SavedHeaders readHeaders(const Cache& cache, const std::string& name) {
    SavedHeaders out;
    std::optional<simdjson::padded_string> bytes;
    try {
        bytes = cache.read(name);
    } catch (const std::exception&) {
        return out;
    }
    if (!bytes) return out;
    const std::string text(bytes->data(), bytes->size());
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        const std::string line = text.substr(start, end - start);
        start = end + 1;
        const auto colon = line.find(": ");
        if (colon == std::string::npos) continue;
        const std::string key = line.substr(0, colon);
        std::string value = line.substr(colon + 2);
        if (key == kExpires) out.expires = std::move(value);
        if (key == kLastModified) out.lastModified = std::move(value);
    }
    return out;
}

void writeHeaders(const Cache& cache, const std::string& name, const SavedHeaders& headers) {
    std::string text;
    // Header values are one line; anything else would not read back.
    const auto put = [&](const char* key, const std::optional<std::string>& value) {
        if (value && value->find('\n') == std::string::npos) text += std::string(key) + ": " + *value + "\n";
    };
    put(kExpires, headers.expires);
    put(kLastModified, headers.lastModified);
    cache.write(name, text);
}

bool beforeExpiry(const SavedHeaders& headers, std::int64_t now) {
    if (!headers.expires) return false;
    const std::optional<std::int64_t> expires = httpDateSeconds(*headers.expires);
    return expires && now < *expires;
}

std::map<Day, WearDay> daysOf(const Cache& cache, const std::string& name, const std::string& timeZone) {
    std::optional<WearForecast::Doc> doc = cache.decoded<WearForecast::Doc>(name);
    if (!doc) throw std::runtime_error(name + " does not decode");
    return WearForecast::days(*doc, timeZone);
}

}  // namespace

WeatherInput WeatherInput::standard(const Cache& cache, const Config::Environment& environment,
                                    std::int64_t nowSeconds, Day today) {
    WeatherInput input;
    input.loader = conditionalLoader(weatherOptions());
    input.powerURL = Config::powerURL(environment);
    input.forecastURL = Config::forecastURL(environment);
    input.cache = cache;
    input.nowSeconds = nowSeconds;
    input.today = today;
    return input;
}

std::string TypicalWeather::credit() const {
    if (origin == Origin::shipped) return WearClimate::File::shipped().source.credit;
    return std::string(WearClimate::credit);
}

std::string TypicalWeather::cacheName(double lat, double lon) {
    return "typical-" + WearClimate::cacheKey(lat, lon) + ".json";
}

std::string_view caseName(TypicalWeather::Origin origin) {
    switch (origin) {
        case TypicalWeather::Origin::fetched: return "fetched";
        case TypicalWeather::Origin::cached: return "cached";
        case TypicalWeather::Origin::kept: return "kept";
        case TypicalWeather::Origin::shipped: return "shipped";
        case TypicalWeather::Origin::none: return "none";
    }
    return "none";
}

std::string ForecastWeather::cacheName(double lat, double lon) {
    return fmt::format("forecast-{:.4f}_{:.4f}.json", lat, lon);
}

std::string ForecastWeather::headersName(double lat, double lon) {
    return fmt::format("forecast-{:.4f}_{:.4f}.http", lat, lon);
}

std::string_view caseName(ForecastWeather::Origin origin) {
    switch (origin) {
        case ForecastWeather::Origin::fetched: return "fetched";
        case ForecastWeather::Origin::notModified: return "notModified";
        case ForecastWeather::Origin::cached: return "cached";
        case ForecastWeather::Origin::skipped: return "skipped";
        case ForecastWeather::Origin::none: return "none";
    }
    return "none";
}

const WearPlace* nearestShippedPlace(double lat, double lon) {
    const WearPlace* nearest = nullptr;
    double best = std::numeric_limits<double>::infinity();
    for (const WearPlace& place : WearClimate::File::shipped().places) {
        const double miles = distanceMiles(lat, lon, place.lat, place.lon);
        if (miles < best && place.months.size() == kMonths) {
            best = miles;
            nearest = &place;
        }
    }
    return best <= TypicalWeather::shippedReachMiles ? nearest : nullptr;
}

TypicalWeather typicalWeather(double lat, double lon, std::optional<double> cityElevation,
                              const WeatherInput& input) {
    TypicalWeather out;
    const std::string name = TypicalWeather::cacheName(lat, lon);
    const std::optional<std::vector<WearMonth>> cached = cachedMonths(input.cache, name);
    if (cached) {
        const qint64 written = QFileInfo(input.cache.path(name)).lastModified().toSecsSinceEpoch();
        if (input.nowSeconds - written < TypicalWeather::cacheLifetimeSeconds) {
            out.months = *cached;
            out.origin = TypicalWeather::Origin::cached;
            return out;
        }
    }
    try {
        out.months = WearClimate::monthly(lat, lon, cityElevation, [&](const std::string& path) {
            return fetchBody(input, input.powerURL + path);
        });
        out.origin = TypicalWeather::Origin::fetched;
        try {
            input.cache.write(name, json::array(out.months).dump() + "\n");
        } catch (const std::exception& e) {
            out.problem = e.what();  // shown now all the same; fetched again next time
        }
        return out;
    } catch (const std::exception& e) {
        out.problem = e.what();
    }
    if (cached) {
        out.months = *cached;
        out.origin = TypicalWeather::Origin::kept;
    } else if (const WearPlace* place = nearestShippedPlace(lat, lon)) {
        out.months = place->months;
        out.origin = TypicalWeather::Origin::shipped;
    } else {
        out.months.clear();
        out.origin = TypicalWeather::Origin::none;
    }
    return out;
}

ForecastWeather forecastWeather(double lat, double lon, const std::string& timeZone,
                                const WeatherInput& input) {
    ForecastWeather out;
    const std::string name = ForecastWeather::cacheName(lat, lon);
    const std::string headersName = ForecastWeather::headersName(lat, lon);
    const bool haveCopy = QFileInfo::exists(input.cache.path(name));
    SavedHeaders saved = haveCopy ? readHeaders(input.cache, headersName) : SavedHeaders{};
    try {
        if (haveCopy && beforeExpiry(saved, input.nowSeconds)) {
            try {
                out.days = daysOf(input.cache, name, timeZone);
                out.origin = ForecastWeather::Origin::cached;
                return out;
            } catch (const std::exception&) {
                saved = {};  // an unreadable copy: ask afresh, unconditionally
            }
        }
        const std::string url = input.forecastURL + WearForecast::path(lat, lon);
        ConditionalResponse response = input.loader({url, saved.lastModified});
        if (response.status == 304 && saved.lastModified) {
            if (response.expires) saved.expires = response.expires;
            if (response.lastModified) saved.lastModified = response.lastModified;
            out.days = daysOf(input.cache, name, timeZone);
            writeHeaders(input.cache, headersName, saved);
            out.origin = ForecastWeather::Origin::notModified;
            return out;
        }
        if (response.status != 200) {
            throw FetchError(FetchError::Kind::badServerResponse, url, fmt::format("HTTP {}", response.status));
        }
        const auto doc = json::decodeDocument<WearForecast::Doc>(response.body, "MET Norway forecast");
        out.days = WearForecast::days(doc, timeZone);
        // Only an answer that decoded replaces the copy.
        input.cache.write(name, response.body);
        writeHeaders(input.cache, headersName, {response.expires, response.lastModified});
        out.origin = ForecastWeather::Origin::fetched;
    } catch (const std::exception& e) {
        out.days.clear();
        out.origin = ForecastWeather::Origin::none;
        out.problem = e.what();
    }
    return out;
}

WearOutcome wearGuide(const WearAsk& ask, const WeatherInput& input) {
    WearOutcome out;
    out.ask = ask;
    const WearPlace& place = ask.place;
    TypicalWeather typical = typicalWeather(place.lat, place.lon, place.elevation, input);
    if (typical.origin == TypicalWeather::Origin::none && place.months.size() == kMonths) {
        // A place of the shipped file that the search by distance missed.
        typical.months = place.months;
        typical.origin = TypicalWeather::Origin::shipped;
    }
    if (!typical.problem.empty()) out.problems.push_back("typical weather: " + typical.problem);
    out.typical = typical.origin;

    const DayRange range(ask.first, ask.last);
    ForecastWeather forecast;
    forecast.origin = ForecastWeather::Origin::skipped;
    if (range.last >= input.today && range.first <= input.today + ForecastWeather::reachDays) {
        forecast = forecastWeather(place.lat, place.lon, place.timeZone, input);
        if (!forecast.problem.empty()) out.problems.push_back("forecast: " + forecast.problem);
    }
    out.forecast = forecast.origin;

    if (typical.months.size() != kMonths && forecast.days.empty()) return out;  // nothing to stand on
    std::vector<WearDay> days;
    if (typical.months.size() == kMonths) {
        days = WhatToWear::planDays(range.first, range.last, typical.months, forecast.days);
    } else {
        // No typical months at all: only the days the forecast covers.
        for (const auto& [day, weather] : forecast.days) {
            if (day >= range.first && day <= range.last) days.push_back(weather);
        }
    }
    out.guide = WhatToWear::guide(
        WearRequest::make(std::move(days), ask.activities, ask.laundry, place.country, ask.modest), ask.unit);
    out.guide.typicalFromNormals = typical.origin == TypicalWeather::Origin::shipped;
    if (out.guide.usesTypical) out.credits.push_back(typical.credit());
    if (out.guide.usesForecast) out.credits.push_back(std::string(WearForecast::credit));
    return out;
}

}  // namespace roamwise::app
