#include "tripkit/widget_snapshot.h"

#include "tripkit/freshness.h"
#include "tripkit/json_fields.h"

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
        case Showing::current:
            return "current";
        case Showing::dated:
            return "dated";
        case Showing::expired:
            return "expired";
    }
    return "expired";
}

template <>
struct json::Fields<WidgetSnapshot::Item> {
    using T = WidgetSnapshot::Item;
    static constexpr auto list =
        std::tuple{json::field("title", &T::title),   json::field("origin", &T::origin),
                   json::field("price", &T::price),   json::field("target", &T::target),
                   json::field("depart", &T::depart), json::field("returnDay", &T::returnDay)};
};

template <>
struct json::Fields<WidgetSnapshot> {
    using T = WidgetSnapshot;
    static constexpr auto list = std::tuple{
        json::field("updated", &T::updated), json::field("homeAirports", &T::homeAirports),
        json::field("bestDeal", &T::bestDeal), json::field("watched", &T::watched)};
};

TRIPKIT_JSON_CODEC(WidgetSnapshot::Item)
TRIPKIT_JSON_CODEC(WidgetSnapshot)

}  // namespace tripkit
