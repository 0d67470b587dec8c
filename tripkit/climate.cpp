#include "tripkit/climate.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "tripkit/hashing.h"
#include "tripkit/json_fields.h"
#include "tripkit/resources.h"

namespace tripkit {

std::string Climate::Place::stationLabel() const {
    return fmt::format("{} ({:.0f} km away)", stationName, distanceKm);
}

const Climate& Climate::shipped() {
    static const Climate catalog =
        resources::decodeShipped<Climate>(resources::climate, "climate.json");
    return catalog;
}

const Climate::Place* Climate::find(std::string_view code) const {
    auto it = places.find(std::string(code));
    return it == places.end() ? nullptr : &it->second;
}

const std::string& Climate::periodOf(const Place& place) const {
    return place.period ? *place.period : period;
}

bool Climate::usesBeachBand(const Destination& place) {
    return place.hasCategory("beaches") || place.hasCategory("islands");
}

double Climate::comfort(const MonthlyClimate& month, bool beachBand) {
    const double low = beachBand ? beachLowF : otherLowF;
    const double high = beachBand ? beachHighF : otherHighF;
    double outside = 0;
    if (month.high < low) {
        outside = low - month.high;
    } else if (month.high > high) {
        outside = month.high - high;
    }
    double rainPenalty = 0;
    if (month.rain >= wetInches) rainPenalty = 0.15;
    if (month.rain >= veryWetInches) rainPenalty = 0.3;
    return std::clamp(1 - 0.04 * outside - rainPenalty, 0.0, 1.0);
}

double Climate::comfort(const MonthlyClimate& month, const Destination& place) {
    return comfort(month, usesBeachBand(place));
}

template <>
struct json::Fields<MonthlyClimate> {
    using T = MonthlyClimate;
    static constexpr auto list =
        std::tuple{json::field("month", &T::month), json::field("high", &T::high),
                   json::field("low", &T::low), json::field("rain", &T::rain)};
    static void check(const json::Value& v, T& m) {
        if (m.month < 1 || m.month > 12) v.field("month").fail("a month is 1 to 12");
        if (!(m.low < m.high)) v.fail("the low is not below the high");
        if (m.rain < 0) v.field("rain").fail("rain below zero");
    }
};

template <>
struct json::Fields<Climate::Source> {
    using T = Climate::Source;
    static constexpr auto list = std::tuple{
        json::field("name", &T::name), json::field("url", &T::url), json::field("note", &T::note)};
};

template <>
struct json::Fields<Climate::Place> {
    using T = Climate::Place;
    static constexpr auto list = std::tuple{json::field("name", &T::name),
                                            json::field("station", &T::station),
                                            json::field("stationName", &T::stationName),
                                            json::field("distanceKm", &T::distanceKm),
                                            json::field("period", &T::period),
                                            json::field("months", &T::months)};
    static void check(const json::Value& v, T& p) {
        const json::Value months = v.field("months");
        if (p.months.size() != 12) months.fail("expected twelve months");
        for (std::size_t i = 0; i < p.months.size(); ++i) {
            if (p.months[i].month != static_cast<int>(i) + 1) {
                months.fail("month " + std::to_string(p.months[i].month) + " out of order");
            }
        }
        if (p.distanceKm < 0) v.field("distanceKm").fail("a distance below zero");
    }
};

TRIPKIT_JSON_CODEC(MonthlyClimate)

TRIPKIT_JSON_DECODER(Climate::Source)

TRIPKIT_JSON_DECODER(Climate::Place)

// Hand-written: the places are an object keyed by airport code.
void decode(const json::Value& v, Climate& out) {
    out = Climate{};
    out.asOf = v.get<std::string>("asOf");
    out.period = v.get<std::string>("period");
    out.source = v.get<Climate::Source>("source");
    v.field("places").forEachMember([&](std::string_view code, const json::Value& place) {
        out.places.emplace(std::string(code), place.as<Climate::Place>());
    });
}

std::vector<BestTime::Pick> BestTime::picks(const std::array<std::optional<double>, 12>& comfort,
                                            const std::array<std::optional<double>, 12>& price) {
    double min = 0, max = 0;
    bool anyPrice = false;
    for (const auto& p : price) {
        if (!p) continue;
        min = anyPrice ? std::min(min, *p) : *p;
        max = anyPrice ? std::max(max, *p) : *p;
        anyPrice = true;
    }
    std::vector<Pick> out;
    for (int i = 0; i < 12; ++i) {
        const auto& c = comfort[static_cast<std::size_t>(i)];
        const auto& p = price[static_cast<std::size_t>(i)];
        if (!c && !p) continue;
        std::optional<double> cheapness;
        if (p) cheapness = min < max ? 1 - (*p - min) / (max - min) : 1.0;
        const double score = c && cheapness ? 0.6 * *c + 0.4 * *cheapness : c ? *c : *cheapness;
        out.push_back({i + 1, c, p, score});
    }
    // Stable: on equal scores the earlier month stays first.
    std::stable_sort(out.begin(), out.end(),
                     [](const Pick& a, const Pick& b) { return a.score > b.score; });
    return out;
}

std::vector<BestTime::Pick> BestTime::picks(
    const Destination& place, const Climate::Place* climate,
    const std::vector<std::pair<YearMonth, RoundTrip>>& months) {
    std::array<std::optional<double>, 12> comfort{};
    std::array<std::optional<double>, 12> price{};
    if (climate) {
        for (const MonthlyClimate& m : climate->months) {
            comfort[static_cast<std::size_t>(m.month - 1)] = Climate::comfort(m, place);
        }
    }
    for (const auto& [month, trip] : months) {
        // The calendar covers under a year, so a month number comes once; if it
        // ever came twice the cheaper trip would stand for it.
        auto& slot = price[static_cast<std::size_t>(month.month - 1)];
        if (!slot || trip.price < *slot) slot = trip.price;
    }
    return picks(comfort, price);
}

}  // namespace tripkit

std::size_t std::hash<tripkit::MonthlyClimate>::operator()(
    const tripkit::MonthlyClimate& m) const noexcept {
    return tripkit::hashOf(m.month, m.high, m.low, m.rain);
}
