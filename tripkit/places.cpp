#include "tripkit/places.h"

#include <algorithm>
#include <cmath>

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

void decode(const json::Value& v, Airport& out) {
    out.code = v.get<std::string>("code");
    out.city = v.get<std::string>("city");
    out.state = v.get<std::string>("state");
    out.name = v.get<std::string>("name");
    out.lat = v.get<double>("lat");
    out.lon = v.get<double>("lon");
}

json::Json encode(const Airport& a) {
    json::Json out = json::Json::object();
    out["code"] = a.code;
    out["city"] = a.city;
    out["state"] = a.state;
    out["name"] = a.name;
    out["lat"] = a.lat;
    out["lon"] = a.lon;
    return out;
}

}  // namespace tripkit
