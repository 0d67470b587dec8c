#include "tripkit/config.h"

#include <cstring>

#include "tripkit/advisories.h"
#include "tripkit/config_defaults.h"
#include "tripkit/wear_data.h"
#include "tripkit/wear_forecast.h"

namespace tripkit {

namespace {
bool isSet(const char* text) {
    return text != nullptr && text[0] != '\0' && std::strncmp(text, "$(", 2) != 0;
}

// Request paths start with "/", so the base must not end with one.
std::string serviceBase(std::optional<std::string> configured, std::string_view builtIn) {
    std::string base = configured && isHttpsUrl(*configured) ? *configured : std::string(builtIn);
    while (base.ends_with('/')) base.pop_back();
    return base;
}
}  // namespace

std::optional<std::string> Config::setting(const char* name, const Environment& environment) {
    if (const char* text = environment(name); isSet(text)) return std::string(text);
    for (const auto& [key, value] : builtin::settings) {
        if (std::strcmp(key, name) == 0 && isSet(value)) return std::string(value);
    }
    return std::nullopt;
}

FeedHosts Config::feedHosts(const Environment& environment) {
    return FeedHosts::make(setting("RWDataURL", environment), std::string(defaultDataURL));
}

std::string Config::advisoriesURL(const Environment& environment) {
    std::optional<std::string> configured = setting("RWAdvisoriesURL", environment);
    if (configured && isHttpsUrl(*configured)) return *configured;
    return std::string(Advisories::serviceURL);
}

std::string Config::powerURL(const Environment& environment) {
    return serviceBase(setting("RWPowerURL", environment), WearClimate::host);
}

std::string Config::forecastURL(const Environment& environment) {
    return serviceBase(setting("RWForecastURL", environment), WearForecast::host);
}

PartnerConfig Config::partners(const Environment& environment) {
    // Keeps the strings alive while PartnerConfig::read looks at them.
    std::string held;
    return PartnerConfig::read([&](const char* name) -> const char* {
        std::optional<std::string> value = setting(name, environment);
        if (!value) return nullptr;
        held = std::move(*value);
        return held.c_str();
    });
}

}  // namespace tripkit
