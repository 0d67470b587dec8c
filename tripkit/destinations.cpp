#include "tripkit/destinations.h"

#include <algorithm>

#include "tripkit/json_fields.h"
#include "tripkit/resources.h"

namespace tripkit {

std::vector<std::optional<std::string>> Destination::searchFields(bool spanish) const {
    std::vector<std::optional<std::string>> fields = {code, name, country, region};
    if (spanish && es) fields.emplace_back(es->name);
    return fields;
}

const std::string& Destination::displayName(bool spanish) const {
    return spanish && es ? es->name : name;
}

const std::string& Destination::displayBlurb(bool spanish) const {
    return spanish && es ? es->blurb : blurb;
}

bool Destination::hasCategory(std::string_view category) const {
    return std::find(categories.begin(), categories.end(), category) != categories.end();
}

const std::vector<std::string>& Destination::categoryNames() {
    static const std::vector<std::string> names = {
        "beaches", "islands", "cities", "outdoors", "theme parks",
        "family",  "food",    "culture", "skiing",
    };
    return names;
}

const std::vector<std::string>& Destination::regionNames() {
    static const std::vector<std::string> names = {
        "United States", "Canada", "Mexico", "Caribbean", "Central America", "South America",
        "Europe",        "Asia",   "Oceania", "Africa",   "Middle East",
    };
    return names;
}

template <>
struct json::Fields<Destination::Translation> {
    using T = Destination::Translation;
    static constexpr auto list =
        std::tuple{json::field("name", &T::name), json::field("blurb", &T::blurb)};
};

template <>
struct json::Fields<Destination> {
    using T = Destination;
    static constexpr auto list = std::tuple{
        json::field("id", &T::code), json::field("name", &T::name),
        json::field("region", &T::region), json::field("country", &T::country),
        json::field("domestic", &T::domestic), json::field("fareCode", &T::fareCode),
        json::field("advisory", &T::advisory), json::field("categories", &T::categories),
        json::field("blurb", &T::blurb), json::field("countryCode", &T::countryCode),
        json::field("lat", &T::lat, json::asDouble), json::field("lon", &T::lon, json::asDouble),
        // A point needs both halves; one alone is a broken record, not a place
        // without a position.
        json::rule([](const json::Value& v, T& d) {
            if (d.lat.has_value() != d.lon.has_value()) {
                v.fail(d.lat ? "lat without lon" : "lon without lat");
            }
        }),
        json::field("es", &T::es)};
};

TRIPKIT_JSON_CODEC(Destination::Translation)

TRIPKIT_JSON_CODEC(Destination)

const Destinations& Destinations::shipped() {
    static const Destinations catalog =
        resources::decodeShipped<Destinations>(resources::destinations, "destinations.json");
    return catalog;
}

const Destination* Destinations::find(std::string_view code) const {
    auto it = byCode.find(std::string(code));
    return it == byCode.end() ? nullptr : &it->second;
}

void decode(const json::Value& v, Destinations& out) {
    out = Destinations{};
    v.forEach([&](const json::Value& element) {
        Destination d = element.as<Destination>();
        if (out.byCode.count(d.code) != 0) element.fail("destination id " + d.code + " appears twice");
        out.byCode.emplace(d.code, d);
        out.list.push_back(std::move(d));
    });
}

}  // namespace tripkit
