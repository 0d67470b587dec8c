#include "tripkit/price_history.h"

#include <algorithm>
#include <cmath>

#include "tripkit/freshness.h"
#include "tripkit/json_fields.h"

namespace tripkit {

std::vector<NightPrice> HistoryBook::nights(std::string_view to) const {
    std::vector<NightPrice> out;
    auto route = routes.find(std::string(to));
    if (route == routes.end()) return out;
    const auto& series = route->second;
    for (std::size_t i = 0; i < series.size(); ++i) {
        if (!series[i] || !(*series[i] > 0)) continue;
        out.push_back({from + static_cast<std::int64_t>(i), *series[i]});
    }
    return out;
}

FareHistory::FareHistory(const std::vector<HistoryBook>& books, std::optional<Day> today) {
    for (const HistoryBook& book : books) {
        // A file more than a week old says nothing about today's prices.
        if (today && *today - book.updated > Freshness::usableDays) continue;
        for (const auto& route : book.routes) {
            const std::vector<NightPrice> nights = book.nights(route.first);
            if (nights.empty()) continue;
            auto& byDay = prices[route.first];
            for (const NightPrice& night : nights) {
                auto [slot, inserted] = byDay.try_emplace(night.day, night.price);
                // Strictly lower only: on a tie the earlier (main) airport stays.
                if (!inserted && night.price < slot->second) slot->second = night.price;
            }
        }
    }
}

std::vector<NightPrice> FareHistory::nights(std::string_view to, Day today) const {
    std::vector<NightPrice> out;
    auto route = prices.find(std::string(to));
    if (route == prices.end()) return out;
    // The map is ordered by day, so the window is one contiguous range.
    auto first = route->second.upper_bound(today - windowDays);
    auto last = route->second.upper_bound(today);
    for (auto it = first; it != last; ++it) out.push_back({it->first, it->second});
    return out;
}

std::optional<PriceCheck> FareHistory::check(double price, std::string_view to, Day today) const {
    return PriceCheck::judge(price, nights(to, today), today);
}

double PriceCheck::percentile(const std::vector<double>& s, double q) {
    if (s.empty()) return 0;
    const double pos = q * static_cast<double>(s.size() - 1);
    const auto i = static_cast<std::size_t>(std::floor(pos));
    const std::size_t j = std::min(i + 1, s.size() - 1);
    return s[i] + (pos - static_cast<double>(i)) * (s[j] - s[i]);
}

std::optional<PriceCheck> PriceCheck::judge(double price, const std::vector<NightPrice>& history,
                                            Day today) {
    std::vector<double> sorted;
    sorted.reserve(history.size());
    for (const NightPrice& n : history) sorted.push_back(n.price);
    std::sort(sorted.begin(), sorted.end());
    if (!(price > 0) || sorted.size() < static_cast<std::size_t>(minNights)) return std::nullopt;

    PriceCheck c;
    c.price = price;
    c.nights = static_cast<int>(sorted.size());
    Day earliest = history.front().day;
    for (const NightPrice& n : history) earliest = std::min(earliest, n.day);
    c.days = static_cast<int>(today - earliest + 1);
    c.low = percentile(sorted, 0.25);
    c.typical = percentile(sorted, 0.50);
    c.high = percentile(sorted, 0.75);
    if (price <= c.low) {
        c.verdict = Verdict::low;
    } else if (price > c.high) {
        c.verdict = Verdict::high;
    } else {
        c.verdict = Verdict::typical;
    }
    const auto cheaper = std::lower_bound(sorted.begin(), sorted.end(), price) - sorted.begin();
    c.cheaperShare = static_cast<double>(cheaper) / c.nights;

    // How far back the price has not been beaten: the newest cheaper night.
    std::optional<Day> newestCheaper;
    for (const NightPrice& n : history) {
        if (n.price < price && (!newestCheaper || n.day > *newestCheaper)) newestCheaper = n.day;
    }
    const std::int64_t run = newestCheaper ? today - *newestCheaper - 1 : c.days;
    if (run >= minRunDays) c.lowestInDays = static_cast<int>(run);
    return c;
}

std::string_view PriceCheck::text(Verdict v) {
    switch (v) {
        case Verdict::low: return "low";
        case Verdict::typical: return "typical";
        case Verdict::high: return "high";
    }
    return "typical";
}

std::optional<PriceCheck::Verdict> PriceCheck::verdictNamed(std::string_view text) {
    for (Verdict v : {Verdict::low, Verdict::typical, Verdict::high}) {
        if (PriceCheck::text(v) == text) return v;
    }
    return std::nullopt;
}

// Hand-written: a night is a price or null, impossible prices counted.
void decode(const json::Value& v, HistoryBook& out) {
    out.origin = v.get<std::string>("origin");
    out.updated = v.get<Day>("updated");
    out.from = v.get<Day>("from");
    out.routes.clear();
    out.impossible = 0;
    v.field("routes").forEachMember([&](std::string_view to, const json::Value& series) {
        auto& values = out.routes[std::string(to)];
        values.reserve(series.size());
        series.forEach([&](const json::Value& night) {
            if (night.isNull()) {
                values.emplace_back();
                return;
            }
            const double price = night.number();
            if (std::isfinite(price) && price > 0) {
                values.emplace_back(price);
            } else {
                values.emplace_back();
                ++out.impossible;
            }
        });
    });
}

template <>
struct json::Fields<NightPrice> {
    static constexpr auto list =
        std::tuple{json::field("day", &NightPrice::day), json::field("price", &NightPrice::price)};
};

template <>
struct json::Fields<PriceCheck> {
    using T = PriceCheck;
    static constexpr auto list =
        std::tuple{json::field("price", &T::price),
                   json::field("verdict", &T::verdict),
                   json::field("nights", &T::nights),
                   json::field("days", &T::days),
                   json::field("low", &T::low),
                   json::field("typical", &T::typical),
                   json::field("high", &T::high),
                   json::field("cheaperShare", &T::cheaperShare, json::asDouble),
                   json::field("lowestInDays", &T::lowestInDays)};
};

void decode(const json::Value& v, PriceCheck::Verdict& out) {
    auto named = PriceCheck::verdictNamed(v.stringView());
    if (!named) v.fail("unknown verdict: " + v.string());
    out = *named;
}

json::Json encode(PriceCheck::Verdict verdict) {
    return std::string(PriceCheck::text(verdict));
}

TRIPKIT_JSON_CODEC(NightPrice)

TRIPKIT_JSON_CODEC(PriceCheck)

json::Json encode(const HistoryBook& b) {
    json::Json out = json::Json::object();
    out["origin"] = b.origin;
    out["updated"] = encode(b.updated);
    out["from"] = encode(b.from);
    json::Json routes = json::Json::object();
    for (const auto& [to, series] : b.routes) {
        json::Json values = json::Json::array();
        for (const auto& price : series) values.push_back(price ? json::number(*price) : json::Json());
        routes[to] = std::move(values);
    }
    out["routes"] = std::move(routes);
    return out;
}

}  // namespace tripkit
