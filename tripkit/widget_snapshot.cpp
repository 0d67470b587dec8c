#include "tripkit/widget_snapshot.h"

#include "tripkit/freshness.h"

namespace tripkit {

WidgetSnapshot::Showing WidgetSnapshot::showing(Day today) const {
    const std::int64_t age = today - updated;
    if (age <= Freshness::freshDays) return Showing::current;
    if (age <= Freshness::usableDays) return Showing::dated;
    return Showing::expired;
}

std::optional<Day> WidgetSnapshot::cappedDay(const std::optional<std::string>& text, Day notAfter) {
    if (!text) return std::nullopt;
    const std::optional<Day> day = Day::parse(*text);
    if (!day) return std::nullopt;
    return *day > notAfter ? notAfter : *day;
}

std::string_view WidgetSnapshot::text(Showing s) {
    switch (s) {
        case Showing::current: return "current";
        case Showing::dated: return "dated";
        case Showing::expired: return "expired";
    }
    return "expired";
}

void decode(const json::Value& v, WidgetSnapshot::Item& out) {
    out.title = v.get<std::string>("title");
    out.origin = v.get<std::string>("origin");
    out.price = v.get<double>("price");
    out.target = v.getOptional<double>("target");
    out.depart = v.get<Day>("depart");
    out.returnDay = v.getOptional<Day>("returnDay");
}

void decode(const json::Value& v, WidgetSnapshot& out) {
    out.updated = v.get<Day>("updated");
    out.homeAirports = v.get<std::vector<std::string>>("homeAirports");
    out.bestDeal = v.getOptional<WidgetSnapshot::Item>("bestDeal");
    out.watched = v.get<std::vector<WidgetSnapshot::Item>>("watched");
}

json::Json encode(const WidgetSnapshot::Item& item) {
    json::Json out = json::Json::object();
    out["title"] = item.title;
    out["origin"] = item.origin;
    out["price"] = json::number(item.price);
    json::putOptional(out, "target", item.target);
    out["depart"] = encode(item.depart);
    json::putOptional(out, "returnDay", item.returnDay);
    return out;
}

json::Json encode(const WidgetSnapshot& s) {
    json::Json out = json::Json::object();
    out["updated"] = encode(s.updated);
    out["homeAirports"] = json::array(s.homeAirports);
    json::putOptional(out, "bestDeal", s.bestDeal);
    out["watched"] = json::array(s.watched);
    return out;
}

}  // namespace tripkit
