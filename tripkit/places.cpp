#include "tripkit/places.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "tripkit/json_fields.h"
#include "tripkit/resources.h"

namespace tripkit {

double distanceMiles(double lat1, double lon1, double lat2, double lon2) {
    constexpr double radians = 0.017453292519943295;
    const double p1 = lat1 * radians;
    const double p2 = lat2 * radians;
    const double dp = (lat2 - lat1) * radians;
    const double dl = (lon2 - lon1) * radians;
    const double h = std::sin(dp / 2) * std::sin(dp / 2) +
                     std::cos(p1) * std::cos(p2) * std::sin(dl / 2) * std::sin(dl / 2);
    return 7917.6 * std::asin(std::min(1.0, std::sqrt(h)));
}

std::vector<std::optional<std::string>> Airport::searchFields() const {
    return {code, city, state, name};
}

template <>
struct json::Fields<Airport> {
    using T = Airport;
    static constexpr auto list = std::tuple{json::field("code", &T::code),
                                            json::field("city", &T::city),
                                            json::field("state", &T::state),
                                            json::field("name", &T::name),
                                            json::field("lat", &T::lat, json::asDouble),
                                            json::field("lon", &T::lon, json::asDouble)};
};

TRIPKIT_JSON_CODEC(Airport)

const Airports& Airports::shipped() {
    static const Airports catalog =
        resources::decodeShipped<Airports>(resources::airports, "airports.json");
    return catalog;
}

Airports Airports::fromList(std::vector<Airport> list) {
    Airports out;
    for (const Airport& a : list) {
        if (!out.byCode.emplace(a.code, a).second) {
            throw std::invalid_argument("airport code " + a.code + " appears twice");
        }
    }
    out.list = std::move(list);
    return out;
}

const Airport* Airports::find(std::string_view code) const {
    auto it = byCode.find(std::string(code));
    return it == byCode.end() ? nullptr : &it->second;
}

std::vector<Airport> Airports::nearby(const std::string& code, double withinMiles,
                                      int limit) const {
    const Airport* origin = find(code);
    if (origin == nullptr || limit <= 0) return {};
    struct Near {
        double miles;
        const Airport* airport;
    };
    std::vector<Near> near;
    for (const Airport& a : list) {
        if (a.code == origin->code) continue;
        const double miles = distanceMiles(*origin, a);
        if (miles <= withinMiles) near.push_back({miles, &a});
    }
    // Stable, so airports at the same distance keep file order.
    std::stable_sort(near.begin(), near.end(),
                     [](const Near& x, const Near& y) { return x.miles < y.miles; });
    if (near.size() > static_cast<std::size_t>(limit)) near.resize(static_cast<std::size_t>(limit));
    std::vector<Airport> out;
    out.reserve(near.size());
    for (const Near& n : near) out.push_back(*n.airport);
    return out;
}

void decode(const json::Value& v, Airports& out) {
    out = Airports{};
    v.forEach([&](const json::Value& element) {
        Airport a = element.as<Airport>();
        if (out.byCode.count(a.code) != 0) element.fail("airport code " + a.code + " appears twice");
        out.byCode.emplace(a.code, a);
        out.list.push_back(std::move(a));
    });
}

}  // namespace tripkit
