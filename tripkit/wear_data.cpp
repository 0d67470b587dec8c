#include "tripkit/wear_data.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

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

void decode(const json::Value& v, WearDay& out) {
    out.day = v.get<Day>("day");
    out.high = v.get<double>("high");
    out.low = v.get<double>("low");
    out.rain = v.get<double>("rain");
    out.snow = v.get<double>("snow");
    out.humidity = v.get<double>("humidity");
    out.wind = v.get<double>("wind");
    out.uv = v.get<double>("uv");
    out.hotDay = v.get<double>("hotDay");
    out.coldNight = v.get<double>("coldNight");
    const json::Value source = v.field("source");
    const std::string name = source.string();
    if (name == "typical") {
        out.source = WearDay::Source::typical;
    } else if (name == "forecast") {
        out.source = WearDay::Source::forecast;
    } else {
        source.fail("expected \"typical\" or \"forecast\"");
    }
}

json::Json encode(const WearDay& d) {
    json::Json out = json::Json::object();
    out["day"] = encode(d.day);
    out["high"] = json::number(d.high);
    out["low"] = json::number(d.low);
    out["rain"] = json::number(d.rain);
    out["snow"] = json::number(d.snow);
    out["humidity"] = json::number(d.humidity);
    out["wind"] = json::number(d.wind);
    out["uv"] = json::number(d.uv);
    out["hotDay"] = json::number(d.hotDay);
    out["coldNight"] = json::number(d.coldNight);
    out["source"] = std::string(caseName(d.source));
    return out;
}

void decode(const json::Value& v, WearMonth& out) {
    out.high = v.get<double>("high");
    out.low = v.get<double>("low");
    out.hotDay = v.get<double>("hotDay");
    out.coldNight = v.get<double>("coldNight");
    out.rain = v.get<double>("rain");
    out.snow = v.get<double>("snow");
    out.humidity = v.get<double>("humidity");
    out.wind = v.get<double>("wind");
    out.uv = v.get<double>("uv");
}

json::Json encode(const WearMonth& m) {
    json::Json out = json::Json::object();
    out["high"] = json::number(m.high);
    out["low"] = json::number(m.low);
    out["hotDay"] = json::number(m.hotDay);
    out["coldNight"] = json::number(m.coldNight);
    out["rain"] = json::number(m.rain);
    out["snow"] = json::number(m.snow);
    out["humidity"] = json::number(m.humidity);
    out["wind"] = json::number(m.wind);
    out["uv"] = json::number(m.uv);
    return out;
}

void decode(const json::Value& v, WearPlace& out) {
    out.name = v.get<std::string>("name");
    out.region = v.get<std::string>("region");
    out.country = v.get<std::string>("country");
    out.alias = v.getOptional<std::string>("alias");
    out.elevation = v.get<double>("elevation");
    out.lat = v.get<double>("lat");
    out.lon = v.get<double>("lon");
    out.timeZone = v.get<std::string>("timeZone");
    const json::Value months = v.field("months");
    out.months = months.asVector<WearMonth>();
    if (out.months.size() != 12) months.fail("expected twelve months");
}

json::Json encode(const WearPlace& p) {
    json::Json out = json::Json::object();
    out["name"] = p.name;
    out["region"] = p.region;
    out["country"] = p.country;
    json::putOptional(out, "alias", p.alias);
    out["elevation"] = json::number(p.elevation);
    out["lat"] = json::number(p.lat);
    out["lon"] = json::number(p.lon);
    out["timeZone"] = p.timeZone;
    out["months"] = json::array(p.months);
    return out;
}

void decode(const json::Value& v, WearClimate::File::Source& out) {
    out.name = v.get<std::string>("name");
    out.url = v.get<std::string>("url");
    out.credit = v.get<std::string>("credit");
}

void decode(const json::Value& v, WearClimate::File& out) {
    out.asOf = v.get<std::string>("asOf");
    out.period = v.get<std::string>("period");
    out.source = v.get<WearClimate::File::Source>("source");
    out.places = v.get<std::vector<WearPlace>>("places");
}

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

void decode(const json::Value& v, WearClimate::Daily::Geometry& out) {
    out.coordinates = v.get<std::vector<double>>("coordinates");
    if (out.coordinates.size() < 2) v.field("coordinates").fail("expected longitude and latitude");
}

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

void decode(const json::Value& v, WearClimate::Daily& out) {
    out.geometry = v.get<WearClimate::Daily::Geometry>("geometry");
    out.properties = v.get<WearClimate::Daily::Props>("properties");
}

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
