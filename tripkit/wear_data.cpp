#include "tripkit/wear_data.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "tripkit/json_fields.h"
#include "tripkit/resources.h"
#include "tripkit/text_search.h"

namespace tripkit {

namespace {

// roundN(x) = floor(x × 10ᴺ + 0.5) ÷ 10ᴺ: halves go up, also below zero.
double roundTo(double x, int decimals) {
    const double scale = std::pow(10.0, decimals);
    return std::floor(x * scale + 0.5) / scale;
}

double mean(const std::vector<double>& values) {
    double sum = 0;
    for (double v : values) sum += v;
    return sum / static_cast<double>(values.size());
}

// The element at floor(p × (count − 1) + 0.5) of the sorted list; no
// interpolation between neighbours.
double percentile(std::vector<double> values, double p) {
    std::sort(values.begin(), values.end());
    const auto index =
        static_cast<std::size_t>(std::floor(p * static_cast<double>(values.size() - 1) + 0.5));
    return values[std::min(index, values.size() - 1)];
}

constexpr std::array<std::string_view, 12> monthKeys = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                                        "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};

// The service's fill value is −999; anything not above −998 is missing.
bool present(double value) {
    return value > -998;
}

}  // namespace

std::string_view caseName(WearDay::Source source) {
    return source == WearDay::Source::forecast ? "forecast" : "typical";
}

template <>
struct json::Fields<WearDay> {
    using T = WearDay;
    static constexpr auto list =
        std::tuple{json::field("day", &T::day),       json::field("high", &T::high),
                   json::field("low", &T::low),       json::field("rain", &T::rain),
                   json::field("snow", &T::snow),     json::field("humidity", &T::humidity),
                   json::field("wind", &T::wind),     json::field("uv", &T::uv),
                   json::field("hotDay", &T::hotDay), json::field("coldNight", &T::coldNight),
                   json::field("source", &T::source)};
};

template <>
struct json::Fields<WearMonth> {
    using T = WearMonth;
    static constexpr auto list = std::tuple{json::field("high", &T::high),
                                            json::field("low", &T::low),
                                            json::field("hotDay", &T::hotDay),
                                            json::field("coldNight", &T::coldNight),
                                            json::field("rain", &T::rain),
                                            json::field("snow", &T::snow),
                                            json::field("humidity", &T::humidity),
                                            json::field("wind", &T::wind),
                                            json::field("uv", &T::uv)};
};

template <>
struct json::Fields<WearPlace> {
    using T = WearPlace;
    static constexpr auto list =
        std::tuple{json::field("name", &T::name),
                   json::field("region", &T::region),
                   json::field("country", &T::country),
                   json::field("alias", &T::alias),
                   json::field("elevation", &T::elevation),
                   json::field("lat", &T::lat),
                   json::field("lon", &T::lon),
                   json::field("timeZone", &T::timeZone),
                   json::field("months", &T::months,
                               [](const json::Value& v, const std::vector<WearMonth>& months) {
                                   if (months.size() != 12) v.fail("expected twelve months");
                               })};
};

template <>
struct json::Fields<WearClimate::File::Source> {
    using T = WearClimate::File::Source;
    static constexpr auto list =
        std::tuple{json::field("name", &T::name), json::field("url", &T::url),
                   json::field("credit", &T::credit)};
};

template <>
struct json::Fields<WearClimate::File> {
    using T = WearClimate::File;
    static constexpr auto list =
        std::tuple{json::field("asOf", &T::asOf), json::field("period", &T::period),
                   json::field("source", &T::source), json::field("places", &T::places)};
};

template <>
struct json::Fields<WearClimate::Daily::Geometry> {
    using T = WearClimate::Daily::Geometry;
    static constexpr auto list = std::tuple{json::field(
        "coordinates", &T::coordinates, [](const json::Value& v, const std::vector<double>& c) {
            if (c.size() < 2) v.fail("expected longitude and latitude");
        })};
};

template <>
struct json::Fields<WearClimate::Daily> {
    using T = WearClimate::Daily;
    static constexpr auto list = std::tuple{json::field("geometry", &T::geometry),
                                            json::field("properties", &T::properties)};
};

void decode(const json::Value& v, WearDay::Source& out) {
    const std::string name = v.string();
    if (name == "typical") {
        out = WearDay::Source::typical;
    } else if (name == "forecast") {
        out = WearDay::Source::forecast;
    } else {
        v.fail("expected \"typical\" or \"forecast\"");
    }
}

json::Json encode(WearDay::Source source) {
    return std::string(caseName(source));
}

TRIPKIT_JSON_CODEC(WearDay)

TRIPKIT_JSON_CODEC(WearMonth)

TRIPKIT_JSON_CODEC(WearPlace)

TRIPKIT_JSON_DECODER(WearClimate::File::Source)

TRIPKIT_JSON_DECODER(WearClimate::File)

const WearClimate::File& WearClimate::File::shipped() {
    static const File file =
        resources::decodeShipped<File>(resources::wearClimate, "wear-climate.json");
    return file;
}

const WearPlace* WearClimate::File::find(std::string_view name, std::string_view country) const {
    const std::string wanted = TextSearch::fold(name);
    const std::string wantedCountry = TextSearch::fold(country);
    for (const WearPlace& place : places) {
        if (!wantedCountry.empty() && TextSearch::fold(place.country) != wantedCountry) continue;
        if (TextSearch::fold(place.name) == wanted) return &place;
        if (place.alias && TextSearch::fold(*place.alias) == wanted) return &place;
    }
    return nullptr;
}

TRIPKIT_JSON_DECODER(WearClimate::Daily::Geometry)

void decode(const json::Value& v, WearClimate::Daily::Props& out) {
    out.parameter.clear();
    v.field("parameter").forEachMember([&](std::string_view name, const json::Value& series) {
        auto& values = out.parameter[std::string(name)];
        series.forEachMember([&](std::string_view key, const json::Value& value) {
            const double number = value.number();
            if (present(number)) values.emplace(std::string(key), number);
        });
    });
}

TRIPKIT_JSON_DECODER(WearClimate::Daily)

void decode(const json::Value& v, WearClimate::UvClimatology& out) {
    out.months = {};
    const json::Value parameter = v.field("properties").field("parameter");
    const auto series = parameter.find("ALLSKY_SFC_UV_INDEX_12");
    if (!series) return;  // no value from the service: UV 0
    for (std::size_t m = 0; m < monthKeys.size(); ++m) {
        const auto value = series->getOptional<double>(monthKeys[m]);
        if (value && present(*value)) out.months[m] = *value;
    }
}

WearClimate::Failure::Failure(Kind kind, const std::string& message)
    : std::runtime_error(message), kind(kind) {}

std::string WearClimate::dailyPath(double lat, double lon, int fromYear, int toYear) {
    return fmt::format(
        "/api/temporal/daily/point?parameters=T2M_MAX,T2M_MIN,PRECTOTCORR,RH2M,WS10M&community=AG"
        "&longitude={:.2f}&latitude={:.2f}&start={}0101&end={}1231&format=JSON&time-standard=LST",
        lon, lat, fromYear, toYear);
}

std::string WearClimate::uvPath(double lat, double lon) {
    return fmt::format(
        "/api/temporal/climatology/point?parameters=ALLSKY_SFC_UV_INDEX_12&community=AG"
        "&longitude={:.2f}&latitude={:.2f}&format=JSON",
        lon, lat);
}

std::string WearClimate::cacheKey(double lat, double lon) {
    return fmt::format("{:.2f}_{:.2f}", lat, lon);
}

double WearClimate::elevationOffset(const Daily& daily, std::optional<double> cityElevation) {
    if (!cityElevation || daily.geometry.coordinates.size() < 3) return 0;
    const double offset = (daily.geometry.coordinates[2] - *cityElevation) * 0.0065;
    return std::clamp(offset, -8.0, 8.0);
}

std::vector<WearMonth> WearClimate::reduce(const Daily& daily, const UvClimatology& uv,
                                           std::optional<double> cityElevation) {
    struct Lists {
        std::vector<double> maxima, minima, humidity, wind;
        int precipitationDays = 0;
        int wet = 0;
        int snow = 0;
    };
    std::array<Lists, 12> months;
    static const std::map<std::string, double> none;
    const auto series = [&](const char* name) -> const std::map<std::string, double>& {
        auto it = daily.properties.parameter.find(name);
        return it == daily.properties.parameter.end() ? none : it->second;
    };
    const auto& maxima = series("T2M_MAX");
    const auto& minima = series("T2M_MIN");
    const auto& precipitation = series("PRECTOTCORR");
    const auto& humidity = series("RH2M");
    const auto& wind = series("WS10M");
    const auto valueAt = [](const std::map<std::string, double>& values,
                            const std::string& key) -> std::optional<double> {
        auto it = values.find(key);
        if (it == values.end()) return std::nullopt;
        return it->second;
    };

    for (const auto& [key, high] : maxima) {
        if (key.size() != 8) continue;  // hourly keys and the like are not days
        const int month = (key[4] - '0') * 10 + (key[5] - '0');
        if (month < 1 || month > 12) continue;
        const std::optional<double> low = valueAt(minima, key);
        if (!low) continue;  // a day without both temperatures is skipped whole
        Lists& lists = months[static_cast<std::size_t>(month - 1)];
        lists.maxima.push_back(high);
        lists.minima.push_back(*low);
        if (const auto mm = valueAt(precipitation, key)) {
            ++lists.precipitationDays;
            if (*mm >= 1.0) {
                ++lists.wet;
                if ((high + *low) * 0.5 <= 1.0) ++lists.snow;
            }
        }
        if (const auto rh = valueAt(humidity, key)) lists.humidity.push_back(*rh);
        if (const auto ws = valueAt(wind, key)) lists.wind.push_back(*ws);
    }

    const double offset = elevationOffset(daily, cityElevation);
    std::vector<WearMonth> out;
    out.reserve(12);
    for (std::size_t m = 0; m < 12; ++m) {
        const Lists& lists = months[m];
        if (lists.maxima.empty()) {
            throw Failure(Failure::Kind::incomplete,
                          fmt::format("no day with both temperatures in {}", monthKeys[m]));
        }
        if (lists.precipitationDays == 0) {
            throw Failure(Failure::Kind::incomplete,
                          fmt::format("no day with precipitation in {}", monthKeys[m]));
        }
        WearMonth month;
        month.high = roundTo(offset + mean(lists.maxima), 1);
        month.low = roundTo(offset + mean(lists.minima), 1);
        month.hotDay = roundTo(offset + percentile(lists.maxima, 0.9), 1);
        month.coldNight = roundTo(offset + percentile(lists.minima, 0.1), 1);
        const double days = lists.precipitationDays;
        month.rain = roundTo(lists.wet / days, 2);
        month.snow = roundTo(lists.snow / days, 2);
        month.humidity = lists.humidity.empty() ? 0 : std::floor(mean(lists.humidity) + 0.5);
        month.wind = lists.wind.empty() ? 0 : roundTo(mean(lists.wind) * 3.6, 1);
        month.uv = roundTo(uv.months[m].value_or(0), 1);
        out.push_back(month);
    }
    return out;
}

std::vector<WearMonth> WearClimate::monthly(double lat, double lon,
                                            std::optional<double> cityElevation,
                                            const Fetch& fetch) {
    std::string dailyBody;
    std::string uvBody;
    try {
        dailyBody = fetch(dailyPath(lat, lon));
        uvBody = fetch(uvPath(lat, lon));
    } catch (const std::exception& e) {
        throw Failure(Failure::Kind::network, e.what());
    }
    Daily daily;
    UvClimatology uv;
    try {
        daily = json::decodeDocument<Daily>(dailyBody, "NASA POWER daily " + cacheKey(lat, lon));
        uv = json::decodeDocument<UvClimatology>(uvBody,
                                                 "NASA POWER climatology " + cacheKey(lat, lon));
    } catch (const json::DecodeError& e) {
        throw Failure(Failure::Kind::decoding, e.what());
    }
    return reduce(daily, uv, cityElevation);
}

}  // namespace tripkit
