#include "tripkit/wear_forecast.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

#include <date/tz.h>
#include <fmt/format.h>

#include "tripkit/json_fields.h"

namespace tripkit {

namespace {

std::optional<int> digits(std::string_view text, std::size_t at, std::size_t count) {
    if (at + count > text.size()) return std::nullopt;
    int value = 0;
    const char* first = text.data() + at;
    auto [ptr, ec] = std::from_chars(first, first + count, value);
    if (ec != std::errc() || ptr != first + count) return std::nullopt;
    return value;
}

double mean(const std::vector<double>& values) {
    double sum = 0;
    for (double v : values) sum += v;
    return sum / static_cast<double>(values.size());
}

}  // namespace

std::optional<std::int64_t> parseInstant(std::string_view text) {
    // YYYY-MM-DDThh:mm:ss, then Z, ±hh:mm or nothing (read as UTC).
    if (text.size() < 19 || text[4] != '-' || text[7] != '-' ||
        (text[10] != 'T' && text[10] != ' ') || text[13] != ':' || text[16] != ':') {
        return std::nullopt;
    }
    const auto year = digits(text, 0, 4);
    const auto month = digits(text, 5, 2);
    const auto day = digits(text, 8, 2);
    const auto hour = digits(text, 11, 2);
    const auto minute = digits(text, 14, 2);
    const auto second = digits(text, 17, 2);
    if (!year || !month || !day || !hour || !minute || !second || *month < 1 || *month > 12 ||
        *day < 1 || *day > 31 || *hour > 23 || *minute > 59 || *second > 60) {
        return std::nullopt;
    }
    std::size_t at = 19;
    if (at < text.size() && text[at] == '.') {  // fractions of a second are dropped
        ++at;
        while (at < text.size() && text[at] >= '0' && text[at] <= '9') ++at;
    }
    std::int64_t offsetSeconds = 0;
    const std::string_view zone = text.substr(at);
    if (zone == "Z" || zone.empty()) {
        offsetSeconds = 0;
    } else if (zone.size() == 6 && (zone[0] == '+' || zone[0] == '-') && zone[3] == ':') {
        const auto oh = digits(zone, 1, 2);
        const auto om = digits(zone, 4, 2);
        if (!oh || !om) return std::nullopt;
        offsetSeconds = (*oh * 3600 + *om * 60) * (zone[0] == '-' ? -1 : 1);
    } else {
        return std::nullopt;
    }
    const Day d = Day::fromCivil(*year, *month, *day);
    return d.count * 86400 + *hour * 3600 + *minute * 60 + *second - offsetSeconds;
}

void decode(const json::Value& v, WearForecast::Doc::StepData::Instant& out) {
    const json::Value details = v.field("details");
    out.airTemperature = details.getOptional<double>("air_temperature");
    out.windSpeed = details.getOptional<double>("wind_speed");
    out.relativeHumidity = details.getOptional<double>("relative_humidity");
    out.uvClearSky = details.getOptional<double>("ultraviolet_index_clear_sky");
}

void decode(const json::Value& v, WearForecast::Doc::StepData::Next& out) {
    out = {};
    const auto details = v.find("details");
    if (!details) return;
    out.precipitationAmount = details->getOptional<double>("precipitation_amount");
    out.airTemperatureMax = details->getOptional<double>("air_temperature_max");
    out.airTemperatureMin = details->getOptional<double>("air_temperature_min");
}

template <>
struct json::Fields<WearForecast::Doc::StepData> {
    using T = WearForecast::Doc::StepData;
    static constexpr auto list =
        std::tuple{json::field("instant", &T::instant), json::field("next_1_hours", &T::next1Hours),
                   json::field("next_6_hours", &T::next6Hours)};
};

template <>
struct json::Fields<WearForecast::Doc::Props> {
    static constexpr auto list =
        std::tuple{json::field("timeseries", &WearForecast::Doc::Props::timeseries)};
};

template <>
struct json::Fields<WearForecast::Doc> {
    static constexpr auto list =
        std::tuple{json::field("properties", &WearForecast::Doc::properties)};
};

TRIPKIT_JSON_DECODER(WearForecast::Doc::StepData)

void decode(const json::Value& v, WearForecast::Doc::Step& out) {
    const json::Value time = v.field("time");
    out.time = time.string();
    const auto seconds = parseInstant(out.time);
    if (!seconds) time.fail("expected an ISO 8601 instant");
    out.unixSeconds = *seconds;
    out.data = v.get<WearForecast::Doc::StepData>("data");
}

TRIPKIT_JSON_DECODER(WearForecast::Doc::Props)

TRIPKIT_JSON_DECODER(WearForecast::Doc)

std::string WearForecast::path(double lat, double lon) {
    return fmt::format("/weatherapi/locationforecast/2.0/complete?lat={:.4f}&lon={:.4f}", lat, lon);
}

double WearForecast::rainChance(double totalMm) {
    if (totalMm >= 3.0) return 0.9;
    if (totalMm >= 1.0) return 0.7;
    if (totalMm >= 0.3) return 0.4;
    return 0.1;
}

std::map<Day, WearDay> WearForecast::days(const Doc& doc, const std::string& timeZone) {
    const date::time_zone* zone = nullptr;
    try {
        zone = date::locate_zone(timeZone);
    } catch (const std::exception&) {
        throw std::invalid_argument("unknown time zone \"" + timeZone + "\"");
    }

    struct Samples {
        std::vector<double> temperatures, wind, humidity;
        std::optional<double> uv;
        double precipitation = 0;
    };
    std::map<Day, Samples> byDay;
    for (const Doc::Step& step : doc.properties.timeseries) {
        const auto local =
            zone->to_local(date::sys_seconds{std::chrono::seconds{step.unixSeconds}});
        const Day day{date::floor<date::days>(local).time_since_epoch().count()};
        Samples& s = byDay[day];
        const Doc::StepData::Instant& instant = step.data.instant;
        if (instant.airTemperature) s.temperatures.push_back(*instant.airTemperature);
        if (instant.windSpeed) s.wind.push_back(*instant.windSpeed * 3.6);
        if (instant.relativeHumidity) s.humidity.push_back(*instant.relativeHumidity);
        if (instant.uvClearSky)
            s.uv = std::max(s.uv.value_or(*instant.uvClearSky), *instant.uvClearSky);
        // Hourly steps carry both periods; the six-hour one only counts where
        // the series has thinned out to six-hour steps, so no hour is summed twice.
        if (step.data.next1Hours && step.data.next1Hours->precipitationAmount) {
            s.precipitation += *step.data.next1Hours->precipitationAmount;
        } else if (step.data.next6Hours && step.data.next6Hours->precipitationAmount) {
            s.precipitation += *step.data.next6Hours->precipitationAmount;
        }
    }

    std::map<Day, WearDay> out;
    for (const auto& [day, s] : byDay) {
        if (s.temperatures.size() <= 3) continue;  // too few samples to say what the day is like
        WearDay d;
        d.day = day;
        d.high = *std::max_element(s.temperatures.begin(), s.temperatures.end());
        d.low = *std::min_element(s.temperatures.begin(), s.temperatures.end());
        d.hotDay = d.high;
        d.coldNight = d.low;
        d.humidity = s.humidity.empty() ? 60 : mean(s.humidity);
        d.wind = s.wind.empty() ? 0 : mean(s.wind);
        d.uv = s.uv.value_or(0);
        d.rain = rainChance(s.precipitation);
        d.snow = s.precipitation >= 0.3 && (d.high + d.low) * 0.5 <= 1.0 ? d.rain : 0;
        d.source = WearDay::Source::forecast;
        out.emplace(day, d);
    }
    return out;
}

}  // namespace tripkit
