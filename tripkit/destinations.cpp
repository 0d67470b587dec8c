#include "tripkit/destinations.h"

#include <algorithm>

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

void decode(const json::Value& v, Destination::Translation& out) {
    out.name = v.get<std::string>("name");
    out.blurb = v.get<std::string>("blurb");
}

void decode(const json::Value& v, Destination& out) {
    out.code = v.get<std::string>("id");
    out.name = v.get<std::string>("name");
    out.region = v.get<std::string>("region");
    out.country = v.get<std::string>("country");
    out.domestic = v.get<bool>("domestic");
    out.fareCode = v.get<std::string>("fareCode");
    out.advisory = v.getOptional<std::string>("advisory");
    out.categories = v.get<std::vector<std::string>>("categories");
    out.blurb = v.get<std::string>("blurb");
    out.countryCode = v.getOptional<std::string>("countryCode");
    out.lat = v.getOptional<double>("lat");
    out.lon = v.getOptional<double>("lon");
    // A point needs both halves; one alone is a broken record, not a place
    // without a position.
    if (out.lat.has_value() != out.lon.has_value()) {
        v.fail(out.lat ? "lat without lon" : "lon without lat");
    }
    out.es = v.getOptional<Destination::Translation>("es");
}

json::Json encode(const Destination::Translation& t) {
    json::Json out = json::Json::object();
    out["name"] = t.name;
    out["blurb"] = t.blurb;
    return out;
}

json::Json encode(const Destination& d) {
    json::Json out = json::Json::object();
    out["id"] = d.code;
    out["name"] = d.name;
    out["region"] = d.region;
    out["country"] = d.country;
    out["domestic"] = d.domestic;
    out["fareCode"] = d.fareCode;
    json::putOptional(out, "advisory", d.advisory);
    out["categories"] = json::array(d.categories);
    out["blurb"] = d.blurb;
    json::putOptional(out, "countryCode", d.countryCode);
    if (d.lat) out["lat"] = *d.lat;
    if (d.lon) out["lon"] = *d.lon;
    if (d.es) out["es"] = encode(*d.es);
    return out;
}

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
