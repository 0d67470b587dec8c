#include "tripkit/alerts.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include <fmt/format.h>

#include "tripkit/universal_guide.h"

namespace tripkit {

bool Watch::Disney::isUniversal(const ParkGuide* universal) const {
    const ResortChoice& choice = search.resorts;
    if (choice.kind == ResortChoice::Kind::cheapest) {
        return !choice.tiers.empty() &&
               std::all_of(choice.tiers.begin(), choice.tiers.end(),
                           [](Tier t) { return t == Tier::primeValue || t == Tier::signature; });
    }
    const std::vector<ParkResort> hotels =
        (universal ? *universal : static_cast<const ParkGuide&>(UniversalGuide::shipped()))
            .parkResorts();
    return !choice.ids.empty() &&
           std::all_of(choice.ids.begin(), choice.ids.end(), [&](const std::string& id) {
               return std::any_of(hotels.begin(), hotels.end(),
                                  [&](const ParkResort& h) { return h.id == id; });
           });
}

std::string Watch::name() const {
    if (const auto* route = std::get_if<Route>(&kind)) return route->place;
    const auto& trip = std::get<Disney>(kind);
    return std::string(trip.isUniversal() ? "Universal Orlando" : "Walt Disney World") +
           " trip checking in " + trip.window.first.text();
}

bool Watch::hasPassed(Day today) const {
    if (const auto* route = std::get_if<Route>(&kind)) return route->window && route->window->last < today;
    return std::get<Disney>(kind).window.last < today;
}

std::string Watch::makeID(std::uint64_t high, std::uint64_t low) {
    high = (high & ~0xF000ULL) | 0x4000ULL;                           // version 4
    low = (low & ~(0x3ULL << 62)) | (0x2ULL << 62);                   // RFC 4122 variant
    return fmt::format("{:08X}-{:04X}-{:04X}-{:04X}-{:012X}", high >> 32, (high >> 16) & 0xFFFF,
                       high & 0xFFFF, low >> 48, low & 0xFFFFFFFFFFFFULL);
}

bool Watch::isID(std::string_view text) {
    if (text.size() != 36) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
        if (dash ? text[i] != '-' : !std::isxdigit(static_cast<unsigned char>(text[i]))) return false;
    }
    return true;
}

namespace {

// "$1,234": alerts speak in whole dollars.
std::string wholeDollars(double dollars) {
    const auto whole = static_cast<long long>(std::round(std::abs(dollars)));
    const std::string digits = std::to_string(whole);
    // Appended rather than inserted: GCC 12 warns (-Wrestrict) on the insert.
    std::string out = dollars < 0 ? "-$" : "$";
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0) out += ',';
        out += digits[i];
    }
    return out;
}

}  // namespace

AlertNotification AlertNotification::of(const Watch& watch, const WatchAlert& alert, Day today) {
    AlertNotification n;
    n.title = (alert.reason == WatchAlert::Reason::dropped ? "Price drop: " : "Under your price: ") +
              watch.name();
    const std::string was = alert.previous ? " (was " + wholeDollars(*alert.previous) + ")" : "";
    if (std::holds_alternative<Watch::Disney>(watch.kind)) {
        n.body = "About " + wholeDollars(alert.price) + " for the whole trip" + was +
                 ". Estimates; check before booking.";
    } else {
        n.body = wholeDollars(alert.price) + " round trip, the cheapest found in recent searches" +
                 was + "." + " Prices change quickly.";
    }
    n.identifier = "watch-" + watch.id + "-" + today.text();
    n.userInfo[watchKey] = watch.id;
    return n;
}

std::optional<double> Alerts::routePrice(const Watch::Route& route, const FareCalendar& calendar,
                                         Day today) {
    // Fresh only: an alert must not announce a price that is likely gone.
    std::optional<RoundTrip> best = calendar.cheapest(route.code, route.window, today, true);
    if (!best || (best->seen && *best->seen > today)) return std::nullopt;
    return best->price;
}

std::optional<WatchAlert> Alerts::check(Watch& watch, std::optional<double> price, Day today) {
    if (!price) return std::nullopt;
    const bool repeated = watch.lastAlerted && *price >= *watch.lastAlerted - repeatMargin;
    std::optional<WatchAlert> alert;
    if (!repeated) {
        if (watch.target) {
            if (*price <= *watch.target) {
                alert = WatchAlert{watch.id, *price, watch.lastPrice, WatchAlert::Reason::reachedTarget};
            }
        } else if (watch.lastPrice && *watch.lastPrice - *price >= minDrop) {
            alert = WatchAlert{watch.id, *price, watch.lastPrice, WatchAlert::Reason::dropped};
        }
    }
    watch.lastPrice = price;
    watch.lastChecked = today;
    if (alert) watch.lastAlerted = price;
    return alert;
}

Alerts::TripPricer Alerts::tripPricer(const ParkGuide& disney, const ParkGuide& universal,
                                      PlanInputs inputs) {
    return [&disney, &universal, inputs](const Watch::Disney& trip,
                                         Day today) -> std::optional<double> {
        PlanInputs in = inputs;
        in.today = today;
        const Day chosen = trip.window.first;
        in.checkIns = DayRange(chosen - tripDaysAround, chosen + tripDaysAround);
        in.applyBudget = false;
        const ParkGuide& guide = trip.isUniversal(&universal) ? universal : disney;
        const TripSearchResult result = TripPlanner::plan(trip.search, guide, in);
        std::optional<double> lowest;
        for (const TripQuote& t : result.trips) {
            if (!lowest || t.total() < *lowest) lowest = t.total();
        }
        return lowest;
    };
}

std::vector<WatchAlert> Alerts::checkAll(std::vector<Watch>& watches, const FareCalendar& calendar,
                                         const TripPricer& trips, Day today) {
    std::vector<WatchAlert> out;
    for (Watch& watch : watches) {
        std::optional<double> price;
        if (const auto* route = std::get_if<Watch::Route>(&watch.kind)) {
            price = routePrice(*route, calendar, today);
        } else if (trips) {
            price = trips(std::get<Watch::Disney>(watch.kind), today);
        }
        if (auto alert = check(watch, price, today)) out.push_back(std::move(*alert));
    }
    return out;
}

std::string_view reasonText(WatchAlert::Reason reason) {
    return reason == WatchAlert::Reason::reachedTarget ? "reachedTarget" : "dropped";
}

namespace {

std::optional<double> priceOrFail(const json::Value& v, std::string_view key) {
    auto found = v.find(key);
    if (!found) return std::nullopt;
    const double price = found->number();
    if (!std::isfinite(price) || price < 0) found->fail("expected a price of 0 or more");
    return price;
}

std::string idOrFail(const json::Value& v, std::string_view key) {
    const json::Value field = v.field(key);
    std::string id = field.string();
    if (!Watch::isID(id)) field.fail("expected a UUID");
    for (char& c : id) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return id;
}

}  // namespace

void decode(const json::Value& v, Watch& out) {
    out.id = idOrFail(v, "id");
    auto [name, fields] = v.field("kind").caseKeyed();
    if (name == "route") {
        Watch::Route route;
        route.code = fields.get<std::string>("code");
        route.place = fields.get<std::string>("place");
        route.window = fields.getOptional<DayRange>("window");
        out.kind = std::move(route);
    } else if (name == "disney") {
        out.kind = Watch::Disney{fields.get<TripSearch>("search"), fields.get<DayRange>("window")};
    } else {
        fields.fail("not a kind of watch: " + name);
    }
    out.target = priceOrFail(v, "target");
    out.created = v.get<Day>("created");
    out.lastPrice = priceOrFail(v, "lastPrice");
    out.lastAlerted = priceOrFail(v, "lastAlerted");
    out.lastChecked = v.getOptional<Day>("lastChecked");
}

void decode(const json::Value& v, WatchAlert& out) {
    out.watchID = idOrFail(v, "watchID");
    out.price = v.get<double>("price");
    out.previous = v.getOptional<double>("previous");
    const json::Value reason = v.field("reason");
    if (reason.stringView() == "reachedTarget") {
        out.reason = WatchAlert::Reason::reachedTarget;
    } else if (reason.stringView() == "dropped") {
        out.reason = WatchAlert::Reason::dropped;
    } else {
        reason.fail("not an alert reason: " + reason.string());
    }
}

json::Json encode(const Watch& w) {
    json::Json kind = json::Json::object();
    if (const auto* route = std::get_if<Watch::Route>(&w.kind)) {
        json::Json fields = json::Json::object();
        fields["code"] = route->code;
        fields["place"] = route->place;
        json::putOptional(fields, "window", route->window);
        kind["route"] = std::move(fields);
    } else {
        const auto& trip = std::get<Watch::Disney>(w.kind);
        json::Json fields = json::Json::object();
        fields["search"] = encode(trip.search);
        fields["window"] = encode(trip.window);
        kind["disney"] = std::move(fields);
    }
    json::Json out = json::Json::object();
    out["id"] = w.id;
    out["kind"] = std::move(kind);
    json::putOptional(out, "target", w.target);
    out["created"] = encode(w.created);
    json::putOptional(out, "lastPrice", w.lastPrice);
    json::putOptional(out, "lastAlerted", w.lastAlerted);
    json::putOptional(out, "lastChecked", w.lastChecked);
    return out;
}

json::Json encode(const WatchAlert& a) {
    json::Json out = json::Json::object();
    out["watchID"] = a.watchID;
    out["price"] = json::number(a.price);
    json::putOptional(out, "previous", a.previous);
    out["reason"] = std::string(reasonText(a.reason));
    return out;
}

}  // namespace tripkit
