#include "feedgen/prices.h"

#include <algorithm>
#include <cmath>

#include "tripkit/holidays.h"

namespace roamwise::feedgen {

using tripkit::Day;

namespace {

// Mid-month level of fares through the year: cheap January, spring break,
// dear summer, quiet autumn, dear December.
constexpr std::array<double, 12> kPlainSeason = {0.86, 0.90, 1.05, 0.98, 1.00, 1.14,
                                                 1.16, 1.02, 0.86, 0.92, 0.92, 1.08};
// Added for ski places and for beaches and islands.
constexpr std::array<double, 12> kSkiExtra = {0.15, 0.18, 0.12, 0, 0, 0, 0, 0, 0, 0, 0, 0.12};
constexpr std::array<double, 12> kSunExtra = {0.10, 0.14, 0.14, 0.06, 0, 0, 0, 0, 0, 0, 0, 0.08};

// Outbound and return weekdays, 1 = Sunday: Fridays and Sundays are dear,
// Tuesdays and Wednesdays cheap.
constexpr std::array<double, 8> kOutWeekday = {0, 1.06, 1.00, 0.90, 0.91, 1.04, 1.10, 0.95};
constexpr std::array<double, 8> kBackWeekday = {0, 1.07, 1.03, 0.94, 0.94, 0.98, 1.03, 0.95};

// Days ahead -> factor: last-minute fares are dear, two to four months out
// is cheapest, the far end a little dearer again.
struct Knot {
    int ahead;
    double factor;
};
constexpr std::array<Knot, 10> kAdvance = {{{0, 1.55},
                                            {7, 1.30},
                                            {14, 1.15},
                                            {21, 1.06},
                                            {35, 1.00},
                                            {60, 0.95},
                                            {120, 0.96},
                                            {200, 1.00},
                                            {300, 1.05},
                                            {Night::kSpan, 1.07}}};

double seasonAt(Day d, const std::array<double, 12>& table, const std::array<double, 12>* extra) {
    const tripkit::CivilDate c = d.civil();
    const auto at = [&](int monthIndex) {
        const auto i = static_cast<std::size_t>((monthIndex + 12) % 12);
        return table[i] + (extra ? (*extra)[i] : 0.0);
    };
    const int m = c.month - 1;
    if (c.day < 16) {
        const double w = static_cast<double>(c.day + 15) / 31.0;
        return at(m - 1) + (at(m) - at(m - 1)) * w;
    }
    const double w = static_cast<double>(c.day - 16) / 31.0;
    return at(m) + (at(m + 1) - at(m)) * w;
}

double holidayFactor(tripkit::FederalHoliday h) {
    using tripkit::FederalHoliday;
    switch (h) {
        case FederalHoliday::thanksgiving:
        case FederalHoliday::christmas:
            return 1.35;
        case FederalHoliday::newYearsDay:
            return 1.28;
        case FederalHoliday::memorialDay:
        case FederalHoliday::independenceDay:
        case FederalHoliday::laborDay:
            return 1.22;
        default:
            return 1.12;
    }
}

// The share of a route's mean fare that its cheapest fresh cell of the
// night tends to have; history prices are that share of the route's base,
// so today's calendar keeps about the model's own level.
constexpr double kCheapestShare = 0.65;

}  // namespace

Night Night::make(Day today, std::uint64_t seed) {
    Night n;
    n.today = today;
    n.seed = seed;
    for (auto& s : n.season) s.resize(kSpan);
    n.holiday.assign(kSpan, 1.0);
    n.weekday.resize(kSpan);
    n.advance.resize(kSpan);
    for (int a = 0; a < kSpan; ++a) {
        const Day d = today + a;
        const auto i = static_cast<std::size_t>(a);
        n.season[0][i] = seasonAt(d, kPlainSeason, nullptr);
        n.season[1][i] = seasonAt(d, kPlainSeason, &kSkiExtra);
        n.season[2][i] = seasonAt(d, kPlainSeason, &kSunExtra);
        n.weekday[i] = d.weekday();
        std::size_t k = 1;
        while (kAdvance[k].ahead < a) ++k;
        const Knot lo = kAdvance[k - 1], hi = kAdvance[k];
        n.advance[i] = lo.factor + (hi.factor - lo.factor) * (a - lo.ahead) / (hi.ahead - lo.ahead);
        const tripkit::CivilDate c = d.civil();
        // The weeks around Christmas and New Year are peak whatever the
        // holiday windows say.
        if ((c.month == 12 && c.day >= 19) || (c.month == 1 && c.day <= 3)) n.holiday[i] = 1.3;
    }
    for (const tripkit::HolidayWindow& w : tripkit::Holidays::windows(today, today + kSpan)) {
        for (Day d = w.days.first - 2; d <= w.days.last + 1; d += 1) {
            const std::int64_t a = d - today;
            if (a < 0 || a >= kSpan) continue;
            auto& f = n.holiday[static_cast<std::size_t>(a)];
            f = std::max(f, holidayFactor(w.holiday));
        }
    }
    return n;
}

double baseRoundTrip(double miles, bool domestic) {
    return domestic ? 130 + 0.115 * miles : 220 + 0.125 * miles;
}

double stopsFactor(int stops) {
    switch (stops) {
        case 0:
            return 1.0;
        case 1:
            return 0.83;
        default:
            return 0.74;
    }
}

Route makeRoute(const Night& night, const tripkit::Airport& origin,
                const tripkit::Destination& place, double miles) {
    Route r;
    r.place = &place;
    r.key = Key{night.seed, codeKey(origin.code), codeKey(place.code)};
    r.miles = miles;
    const double popularity = 0.88 + 0.27 * r.key.uniform(Purpose::route, 0);
    r.base = baseRoundTrip(miles, place.domestic) * popularity;
    if (place.hasCategory("skiing")) {
        r.season = Season::ski;
    } else if (place.hasCategory("beaches") || place.hasCategory("islands")) {
        r.season = Season::sun;
    }
    const bool near = place.region == "Canada" || place.region == "Mexico" ||
                      place.region == "Caribbean" || place.region == "Central America";
    r.reach = place.domestic ? Reach::domestic : near ? Reach::near : Reach::far;
    r.phase = static_cast<std::int64_t>(r.key.hash(Purpose::route, 1) % 997);
    r.carriers = carriersFor(origin, place, miles);
    return r;
}

double historyPrice(const Route& route, std::int64_t night) {
    if (route.key.uniform(Purpose::gap, night) < 0.05) return 0;
    const double market = 1 + 0.10 * route.key.smooth(Purpose::marketSlow, night, 41, route.phase) +
                          0.05 * route.key.smooth(Purpose::marketFast, night, 9, route.phase) +
                          0.02 * route.key.bell(Purpose::market, night);
    return std::max(29.0, std::round(route.base * kCheapestShare * market));
}

std::vector<Cell> calendarCells(const Night& night, const Route& route, int& best) {
    const std::int64_t today = night.today.count;
    const double missing = route.reach == Reach::domestic ? 0.04
                           : route.reach == Reach::near   ? 0.07
                                                          : 0.12;
    const auto& season = night.season[static_cast<std::size_t>(route.season)];
    std::vector<Cell> cells;
    cells.reserve(Night::kHorizon);
    best = -1;
    for (int a = 0; a < Night::kHorizon; ++a) {
        const std::int64_t t = today + a;
        const Key& key = route.key;
        if (key.uniform(Purpose::cellMissing, t) < missing) continue;
        Cell cell;
        cell.ahead = a;
        const int weekday = night.weekday[static_cast<std::size_t>(a)];
        const std::uint64_t lengthDraw = key.hash(Purpose::tripLength, t);
        const double u = static_cast<double>(lengthDraw >> 11) * 0x1.0p-53;
        const int pick = static_cast<int>(lengthDraw & 0xff);
        if (u < 0.02) {
            cell.nights = -1;
        } else if (route.reach != Reach::far && weekday >= 5 && u < 0.5) {
            // Thursday to Saturday: a weekend away, back on Sunday or Monday.
            cell.nights = 8 - weekday + (pick % 2);
        } else if (route.reach == Reach::domestic) {
            cell.nights = 3 + pick % 5;
        } else if (route.reach == Reach::near) {
            cell.nights = 4 + pick % 5;
        } else {
            cell.nights = 7 + pick % 8;
        }
        const auto out = static_cast<std::size_t>(a);
        double factor =
            season[out] * night.advance[out] * kOutWeekday[static_cast<std::size_t>(weekday)];
        double holiday = night.holiday[out];
        if (cell.nights >= 0) {
            const auto back = static_cast<std::size_t>(a + cell.nights);
            factor *= kBackWeekday[static_cast<std::size_t>(night.weekday[back])];
            holiday = std::max(holiday, night.holiday[back]);
        }
        // A one-way ticket on these routes costs about what a round trip does.
        factor *= holiday;
        double cheapest = 0;
        for (std::size_t c = 0; c < route.carriers.size(); ++c) {
            const RouteCarrier& carrier = route.carriers[c];
            const double noise = 1 + 0.06 * key.bell(Purpose::cell, t, c) +
                                 0.025 * key.bell(Purpose::cellNight, t,
                                                  (c << 32) ^ static_cast<std::uint64_t>(today));
            const double p =
                route.base * factor * carrier.priceFactor * stopsFactor(carrier.stops) * noise;
            if (c == 0 || p < cheapest) {
                cheapest = p;
                cell.carrier = static_cast<int>(c);
            }
        }
        cell.price = cheapest;
        const double s = key.uniform(Purpose::seen, t, static_cast<std::uint64_t>(today));
        const int spread =
            static_cast<int>(key.hash(Purpose::seen, t, ~static_cast<std::uint64_t>(today)) % 4);
        if (s < 0.02) {
            cell.seenAgo = -1;
        } else if (s < 0.62) {
            cell.seenAgo = 0;
        } else if (s < 0.86) {
            cell.seenAgo = 1 + spread % 3;
        } else if (s < 0.95) {
            cell.seenAgo = 4 + spread;
        } else {
            cell.seenAgo = 8 + spread;
        }
        if (cell.seenAgo <= 3 &&
            (best < 0 || cell.price < cells[static_cast<std::size_t>(best)].price)) {
            best = static_cast<int>(cells.size());
        }
        cells.push_back(cell);
    }
    const double tonight = historyPrice(route, today);
    const double reference = best >= 0 ? cells[static_cast<std::size_t>(best)].price : 0;
    // On a night the search found nothing the calendar keeps the level of
    // the nearest night before that it did.
    double target = tonight;
    for (std::int64_t back = 1; target == 0 && back < 30; ++back)
        target = historyPrice(route, today - back);
    const double scale = reference > 0 && target > 0 ? target / reference : 1.0;
    for (Cell& cell : cells) cell.price = std::max(19.0, std::round(cell.price * scale));
    if (best >= 0 && target > 0) cells[static_cast<std::size_t>(best)].price = target;
    return cells;
}

std::vector<OrlandoOption> orlandoOptions(const Night& night, const Route& route, int ahead,
                                          bool toOrlando, int optionsPerDay) {
    std::vector<OrlandoOption> out;
    const std::int64_t t = night.today.count + ahead;
    const Key& key = route.key;
    const std::uint64_t direction = toOrlando ? 1 : 2;
    if (key.uniform(Purpose::orlandoDay, t, direction) < 0.07) return out;

    // Each carrier sells its fewest-stop itinerary; a network carrier with a
    // nonstop also sells a connection through another hub.
    struct Candidate {
        int carrier;
        int stops;
    };
    std::vector<Candidate> candidates;
    for (std::size_t c = 0; c < route.carriers.size(); ++c) {
        const RouteCarrier& carrier = route.carriers[c];
        candidates.push_back({static_cast<int>(c), carrier.stops});
        if (!carrier.lowCost && carrier.stops == 0) candidates.push_back({static_cast<int>(c), 1});
    }
    const std::uint64_t count = optionsPerDay > 0
                                    ? static_cast<std::uint64_t>(optionsPerDay)
                                    : 2 + key.hash(Purpose::orlandoDay, t, direction + 8) % 4;
    // A shuffle drawn from hashes, so one day's choice needs no other day.
    for (std::size_t i = candidates.size(); i > 1; --i) {
        const std::size_t j = key.hash(Purpose::orlandoOption, t, direction * 1000 + i) % i;
        std::swap(candidates[i - 1], candidates[j]);
    }
    const auto a = static_cast<std::size_t>(ahead);
    const int weekday = night.weekday[a];
    const double day = night.season[static_cast<std::size_t>(route.season)][a] * night.advance[a] *
                       night.holiday[a] *
                       (toOrlando ? kOutWeekday : kBackWeekday)[static_cast<std::size_t>(weekday)];
    for (std::uint64_t i = 0; i < count; ++i) {
        const Candidate& pick = candidates[i % candidates.size()];
        const RouteCarrier& carrier = route.carriers[static_cast<std::size_t>(pick.carrier)];
        const std::uint64_t extra = direction * 100000 + i;
        const double noise = 1 + 0.07 * key.bell(Purpose::orlandoOption, t, extra);
        OrlandoOption o;
        o.carrier = pick.carrier;
        o.stops = pick.stops;
        o.price = std::max(29.0, std::round(route.base * 0.55 * day * carrier.priceFactor *
                                            stopsFactor(pick.stops) * noise));
        const double s = key.uniform(Purpose::seen, t, extra);
        const int spread = static_cast<int>(key.hash(Purpose::seen, t, extra + 7) % 5);
        o.seenAgo = s < 0.75 ? 0 : s < 0.93 ? 1 + spread : 8 + spread;
        out.push_back(o);
    }
    return out;
}

}  // namespace roamwise::feedgen
