// The application's configuration: the data host and the partner programme
// keys. Each setting comes from the environment variable of its name when
// that is set, else from the value built in with the CMake cache variable of
// the same name.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "tripkit/feed_hosts.h"
#include "tripkit/links.h"

namespace tripkit {

struct Config {
    // The data host's own base address, always tried after a configured one.
    static constexpr std::string_view defaultDataURL = "https://roamwise.github.io/roamwise-data/";

    // Gives the value of an environment variable, or null when it is not set
    // (std::getenv fits; tests pass their own).
    using Environment = std::function<const char*(const char* name)>;

    // The setting `name`: the environment's value, else the built-in one.
    // Empty values and unfilled "$(...)" build variables count as not set.
    static std::optional<std::string> setting(const char* name, const Environment& environment);

    static FeedHosts feedHosts(const Environment& environment);
    // The advisories service: RWAdvisoriesURL when it is an https address
    // (a mirror, or a test host), else the State Department's own.
    static std::string advisoriesURL(const Environment& environment);
    // The weather services' bases, without a trailing "/": RWPowerURL (NASA
    // POWER) and RWForecastURL (MET Norway) when they are https addresses
    // (a mirror, or a test host), else the services' own.
    static std::string powerURL(const Environment& environment);
    static std::string forecastURL(const Environment& environment);
    static PartnerConfig partners(const Environment& environment);
};

}  // namespace tripkit
