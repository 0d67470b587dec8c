// The MET Norway locationforecast 2.0 "complete" product turned into forecast
// days for the wear guide.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tripkit/days.h"
#include "tripkit/json.h"
#include "tripkit/wear_data.h"

namespace tripkit {

struct WearForecast {
    static constexpr std::string_view host = "https://api.met.no";
    static constexpr std::string_view credit =
        "Forecast: MET Norway (https://api.met.no), CC BY 4.0";

    // The response, only the parts we read.
    struct Doc {
        struct StepData {
            struct Instant {
                std::optional<double> airTemperature;    // °C
                std::optional<double> windSpeed;         // m/s
                std::optional<double> relativeHumidity;  // %
                std::optional<double> uvClearSky;        // ultraviolet_index_clear_sky
            };
            // A forward period ("next_1_hours", "next_6_hours").
            struct Next {
                std::optional<double> precipitationAmount;  // mm
                std::optional<double> airTemperatureMax;    // six-hour periods only
                std::optional<double> airTemperatureMin;
            };
            Instant instant;
            std::optional<Next> next1Hours;
            std::optional<Next> next6Hours;
        };
        struct Step {
            std::string time;              // ISO 8601 instant, as sent
            std::int64_t unixSeconds = 0;  // the same instant
            StepData data;
        };
        struct Props {
            std::vector<Step> timeseries;
        };
        Props properties;
    };

    // "/weatherapi/locationforecast/2.0/complete?lat=…&lon=…" with four decimals.
    static std::string path(double lat, double lon);

    // The steps grouped by their calendar day in `timeZone` (an IANA name),
    // one forecast day per local day with more than three temperatures.
    // Throws std::invalid_argument for an unknown zone.
    static std::map<Day, WearDay> days(const Doc& doc, const std::string& timeZone);

    // The rain chance of a day's precipitation total (mm).
    static double rainChance(double totalMm);
};

// Reads "2022-08-02T16:00:00Z" (or with a ±hh:mm offset) as seconds since
// 1970-01-01 UTC; nothing when it is not such an instant.
std::optional<std::int64_t> parseInstant(std::string_view text);

void decode(const json::Value& v, WearForecast::Doc::StepData::Instant& out);
void decode(const json::Value& v, WearForecast::Doc::StepData::Next& out);
void decode(const json::Value& v, WearForecast::Doc::StepData& out);
void decode(const json::Value& v, WearForecast::Doc::Step& out);
void decode(const json::Value& v, WearForecast::Doc::Props& out);
void decode(const json::Value& v, WearForecast::Doc& out);

}  // namespace tripkit
