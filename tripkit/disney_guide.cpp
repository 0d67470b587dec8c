#include "tripkit/disney_guide.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "tripkit/json_fields.h"
#include "tripkit/resources.h"

namespace tripkit {

const DisneyGuide& DisneyGuide::shipped() {
    static const DisneyGuide guide = [] {
        DisneyGuide g =
            resources::decodeShipped<DisneyGuide>(resources::disneyGuide, "disney-guide.json");
        g.busyEvents = busySpans(EventCalendar::shipped());
        return g;
    }();
    return guide;
}

std::vector<DayRange> DisneyGuide::busySpans(const EventCalendar& events) {
    std::vector<DayRange> spans;
    for (const Event& e : events.events) {
        if (e.busy) spans.push_back(e.days());
    }
    return spans;
}

double DisneyGuide::Season::baseRate(Day night) const {
    const int weekday = night.weekday();  // 1 = Sunday
    const bool weekend = weekday == 6 || weekday == 7;
    switch (rates.size()) {
        case 0: return 0;
        case 1: return rates[0];
        case 2: return weekend ? rates[1] : rates[0];
        case 3:
            if (weekend) return rates[2];
            return weekday == 1 || weekday == 5 ? rates[1] : rates[0];
        default: return rates[0];
    }
}

const DisneyGuide::Season* DisneyGuide::seasonOf(Day day) const {
    for (const Season& s : calendar) {
        if (s.from <= day && day <= s.to) return &s;
    }
    return nullptr;
}

std::optional<DayRange> DisneyGuide::coveredDays() const {
    if (calendar.empty()) return std::nullopt;
    DayRange span(calendar.front().from, calendar.front().to);
    for (const Season& s : calendar) {
        span.first = std::min(span.first, s.from);
        span.last = std::max(span.last, s.to);
    }
    return span;
}

ParkGuide::SeasonName DisneyGuide::seasonName(Day day) const {
    const Season* season = seasonOf(day);
    if (!season) return {};
    return {season->season, season->seasonEs};
}

const ParkResort* DisneyGuide::resortNamed(std::string_view name) const {
    for (const ParkResort& r : resorts) {
        if (r.name == name) return &r;
    }
    return nullptr;
}

const ParkResort* DisneyGuide::resortWithId(std::string_view id) const {
    for (const ParkResort& r : resorts) {
        if (r.id == id) return &r;
    }
    return nullptr;
}

bool DisneyGuide::busyDate(Day day, const std::vector<DayRange>& busyEvents) {
    if (isInHolidayWindow(day)) return true;
    return std::any_of(busyEvents.begin(), busyEvents.end(),
                       [day](const DayRange& r) { return r.contains(day); });
}

namespace {

// Seasons are ranked by their first rate; a season without rates has no
// place in that ranking.
struct LevelBounds {
    std::optional<double> lowest;
    std::optional<double> highest;
};

LevelBounds levelBounds(const std::vector<DisneyGuide::Season>& calendar) {
    LevelBounds b;
    for (const DisneyGuide::Season& s : calendar) {
        if (s.rates.empty()) continue;
        b.lowest = std::min(b.lowest.value_or(s.rates[0]), s.rates[0]);
        b.highest = std::max(b.highest.value_or(s.rates[0]), s.rates[0]);
    }
    return b;
}

double levelOf(const DisneyGuide::Season* season, const LevelBounds& b) {
    if (!season || season->rates.empty() || !b.lowest || !(*b.lowest < *b.highest)) return 0.5;
    return std::clamp((season->rates[0] - *b.lowest) / (*b.highest - *b.lowest), 0.0, 1.0);
}

// Where the season sits between the base resort's cheapest and dearest
// rates says how far the resort's own scale has moved from its low ratio
// towards its high one.
double resortScale(const ParkResort& resort, const ParkResort& base,
                   const DisneyGuide::Season& season) {
    const double first = season.rates.empty() ? 0 : season.rates[0];
    const double t = base.high > base.low
                         ? std::clamp((first - base.low) / (base.high - base.low), 0.0, 1.0)
                         : 0;
    const double lowRatio = resort.low / base.low;
    const double highRatio = resort.high / base.high;
    return lowRatio + t * (highRatio - lowRatio);
}

const ParkResort& baseOf(const DisneyGuide& guide) {
    const ParkResort* base = guide.resortNamed(guide.baseResort);
    if (!base) throw std::logic_error("Disney guide: no base resort named " + guide.baseResort);
    return *base;
}

}  // namespace

double DisneyGuide::seasonLevelByRule(Day day) const {
    return levelOf(seasonOf(day), levelBounds(calendar));
}

std::optional<double> DisneyGuide::nightlyRateByRule(const ParkResort& resort, Day night) const {
    const Season* season = seasonOf(night);
    if (!season) return std::nullopt;
    return std::round(season->baseRate(night) * resortScale(resort, baseOf(*this), *season));
}

bool DisneyGuide::nightEstimatedByRule(Day night) const {
    const Season* season = seasonOf(night);
    return (season && season->estimated) || night < coverage.from ||
           night > coverage.hotelsPublishedThrough;
}

DisneyGuide::Days DisneyGuide::buildDays(const DisneyGuide& guide) {
    Days t;
    t.first = guide.coverage.from;
    Day last = guide.coverage.from;
    for (const Season& s : guide.calendar) {
        t.first = std::min(t.first, s.from);
        last = std::max(last, s.to);
    }
    last = std::min(last, t.first + (Days::maxDays - 1));
    t.count = static_cast<std::size_t>(last - t.first + 1);
    const std::size_t n = t.count;

    // The first season in file order wins a day: fill from the last season
    // back so that earlier ones overwrite.
    std::vector<const Season*> seasonOfDay(n, nullptr);
    for (auto s = guide.calendar.rbegin(); s != guide.calendar.rend(); ++s) {
        const Day from = std::max(s->from, t.first);
        const Day to = std::min(s->to, last);
        for (Day d = from; d <= to; d += 1) {
            seasonOfDay[static_cast<std::size_t>(d - t.first)] = &*s;
        }
    }

    const LevelBounds bounds = levelBounds(guide.calendar);
    t.level.resize(n);
    t.hasSeason.resize(n);
    t.nightEstimated.resize(n);
    for (std::size_t i = 0; i < n; ++i) {
        const Day day = t.first + static_cast<std::int64_t>(i);
        const Season* season = seasonOfDay[i];
        t.level[i] = levelOf(season, bounds);
        t.hasSeason[i] = season != nullptr;
        t.nightEstimated[i] = (season && season->estimated) || day < guide.coverage.from ||
                              day > guide.coverage.hotelsPublishedThrough;
    }
    t.holiday = holidayWindowDays(t.first, last);

    // Without rate tables every lookup falls back to the rules: when there is
    // no base resort (the rules say why) or a file lists more resorts than
    // any park has, where the tables could take more memory than the file.
    const ParkResort* base = guide.resortNamed(guide.baseResort);
    if (!base || guide.resorts.size() > Days::maxResorts) return t;
    t.rates.assign(guide.resorts.size() * n, 0);
    std::vector<double> scale(guide.calendar.size());
    for (std::size_t r = 0; r < guide.resorts.size(); ++r) {
        for (std::size_t s = 0; s < guide.calendar.size(); ++s) {
            scale[s] = resortScale(guide.resorts[r], *base, guide.calendar[s]);
        }
        double* row = t.rates.data() + r * n;
        for (std::size_t i = 0; i < n; ++i) {
            const Season* season = seasonOfDay[i];
            if (!season) continue;
            const auto s = static_cast<std::size_t>(season - guide.calendar.data());
            const Day night = t.first + static_cast<std::int64_t>(i);
            row[i] = std::round(season->baseRate(night) * scale[s]);
        }
    }
    return t;
}

const DisneyGuide::Days& DisneyGuide::days() const {
    return m_days.get([this] { return buildDays(*this); });
}

std::optional<std::size_t> DisneyGuide::rateRow(const ParkResort& resort) const {
    // The rules read only a resort's own low and high rates (and the base
    // resort's): any resort of the guide with the same two prices alike.
    if (days().rates.empty() || !resortNamed(baseResort)) return std::nullopt;
    for (std::size_t r = 0; r < resorts.size(); ++r) {
        if (resorts[r].low == resort.low && resorts[r].high == resort.high) return r;
    }
    return std::nullopt;
}

bool DisneyGuide::isBusy(Day day) const {
    if (const auto i = days().at(day)) {
        if (days().holiday[*i]) return true;
        return std::any_of(busyEvents.begin(), busyEvents.end(),
                           [day](const DayRange& r) { return r.contains(day); });
    }
    return busyDate(day, busyEvents);
}

double DisneyGuide::seasonLevel(Day day) const {
    if (const auto i = days().at(day)) return days().level[*i];
    return seasonLevelByRule(day);
}

namespace {

double meanLevel(const DisneyGuide& guide, Day first, int days) {
    double sum = 0;
    for (int i = 0; i < days; ++i) sum += guide.seasonLevel(first + i);
    return days > 0 ? sum / days : 0.5;
}

// The mean of the rows' prices at `level`; 0 for no rows.
double meanPrice(const std::vector<DisneyGuide::ParkPrice>& rows, double level) {
    double sum = 0;
    for (const auto& row : rows) sum += row.at(level);
    return sum / static_cast<double>(std::max<std::size_t>(rows.size(), 1));
}

}  // namespace

ParkGuide::TicketTotals DisneyGuide::ticketTotals(int parkDays, const Party& party,
                                                  Day firstParkDay, bool hopper, bool) const {
    // Rows are taken by position: row n is the n-day ticket, and longer stays
    // are priced with the last row.
    const int n = static_cast<int>(std::min<std::size_t>(
        tickets.adult.size(), static_cast<std::size_t>(std::max(parkDays, 1))));
    TicketTotals out;
    const Day lastParkDay = firstParkDay + (std::max(parkDays, 1) - 1);
    out.estimated =
        firstParkDay < coverage.from || lastParkDay > coverage.ticketsPublishedThrough;
    if (n == 0) return out;
    if (tickets.child.size() < static_cast<std::size_t>(n)) {
        throw std::logic_error("Disney guide: fewer child ticket rows than adult rows");
    }
    const double level = meanLevel(*this, firstParkDay, n);
    const int adults = party.adultPriced();
    const int children = party.childPriced();
    const std::size_t row = static_cast<std::size_t>(n) - 1;

    out.tickets = std::round(tickets.adult[row].at(level) * adults +
                             tickets.child[row].at(level) * children);
    if (hopper) {
        for (auto it = tickets.hopper.rbegin(); it != tickets.hopper.rend(); ++it) {
            if (it->fromDays <= n) {
                out.hopper = std::round(it->at(level) * checkedSum(adults, children));
                break;
            }
        }
    }
    return out;
}

double DisneyGuide::lightningLaneTotal(const LightningLaneChoice& choice, int parkDays,
                                       Day firstParkDay, const Party& party) const {
    const int people = checkedSum(party.adultPriced(), party.childPriced());
    const int days = std::max(parkDays, 1);
    const double withTax = 1 + lightningLane.taxRate;

    // The Multi Pass is priced once, at the stay's mean level; Single and
    // Premier Passes day by day, at each day's own level.
    auto multiPass = [&](int k) {
        return lightningLane.multiPass.at(meanLevel(*this, firstParkDay, days)) * k;
    };
    auto singles = [&] {
        double sum = 0;
        for (int i = 0; i < days; ++i) {
            sum += meanPrice(lightningLane.singlePass, seasonLevel(firstParkDay + i));
        }
        return sum;
    };

    switch (choice.kind) {
        case LightningLaneChoice::Kind::none: return 0;
        case LightningLaneChoice::Kind::multiPass:
            return std::round(withTax * multiPass(choice.days) * people);
        case LightningLaneChoice::Kind::multiPassAndSingles:
            return std::round(withTax * (singles() + multiPass(choice.days)) * people);
        case LightningLaneChoice::Kind::singlePasses:
            return std::round(withTax * singles() * people);
        case LightningLaneChoice::Kind::premier: {
            const int premierDays = std::max(0, std::min(choice.days, days));
            double sum = 0;
            for (int i = 0; i < premierDays; ++i) {
                sum += meanPrice(lightningLane.premierPass, seasonLevel(firstParkDay + i));
            }
            return std::round(withTax * sum * people);
        }
    }
    return 0;
}

double DisneyGuide::transportTotal(TransportChoice choice, const Party& party, int nights,
                                   const ParkResort& resort) const {
    const int seated = party.seats();
    const int vehicles = seated < 7 ? 1 : 2;
    switch (choice) {
        case TransportChoice::mearsStandard: {
            // Children under 3 ride free; the fare is kept to the cent.
            const Mears& fare = transport.mearsStandard;
            return std::round(2 * (fare.adult * party.adultPriced() +
                                   fare.child * party.childPriced()) * 100) / 100;
        }
        case TransportChoice::mearsExpress:
            return transport.mearsExpress.roundTripUpTo4 +
                   transport.mearsExpress.perExtraPerson * std::max(0, seated - 4);
        case TransportChoice::rideshare: {
            const Span& car = seated < 5 ? transport.rideshare : transport.rideshareXL;
            return std::round(2 * car.midpoint() * vehicles);
        }
        case TransportChoice::carService:
            return std::round(2 * transport.carService.midpoint() * vehicles);
        case TransportChoice::rentalCar:
            return std::round(resort.parking * nights +
                              transport.rentalPerDay.midpoint() * checkedSum(nights, 1));
        case TransportChoice::ownCar: return resort.parking * nights;
    }
    return 0;
}

std::optional<double> DisneyGuide::nightlyRate(const ParkResort& resort, Day night) const {
    const auto i = days().at(night);
    const auto row = i ? rateRow(resort) : std::nullopt;
    if (!row) return nightlyRateByRule(resort, night);
    if (!days().hasSeason[*i]) return std::nullopt;
    return days().rates[*row * days().count + *i];
}

std::optional<ParkGuide::HotelStay> DisneyGuide::hotelStay(const ParkResort& resort, Day checkIn,
                                                          int nights, int rooms) const {
    const Days& t = days();
    const auto row = rateRow(resort);
    HotelStay stay;
    double sum = 0;
    for (int i = 0; i < nights; ++i) {
        const Day night = checkIn + i;
        const auto at = row ? t.at(night) : std::nullopt;
        if (at) {
            if (!t.hasSeason[*at]) return std::nullopt;
            sum += t.rates[*row * t.count + *at];
            if (t.nightEstimated[*at]) stay.estimated = true;
            continue;
        }
        const std::optional<double> rate = nightlyRateByRule(resort, night);
        if (!rate) return std::nullopt;
        sum += *rate;
        if (nightEstimatedByRule(night)) stay.estimated = true;
    }
    stay.total = sum * rooms;
    return stay;
}

// --- decoding and encoding ---

namespace {

// A price at the cheapest and the dearest dates, the dearest not below.
template <class Row>
void checkLowHigh(const json::Value& v, const Row& r) {
    if (r.high < r.low) v.fail("low is above high");
}

}  // namespace

template <>
struct json::Fields<DisneyGuide::Coverage> {
    using T = DisneyGuide::Coverage;
    static constexpr auto list =
        std::tuple{json::field("from", &T::from),
                   json::field("hotelsPublishedThrough", &T::hotelsPublishedThrough),
                   json::field("ticketsPublishedThrough", &T::ticketsPublishedThrough)};
    static void check(const json::Value& v, T& c) {
        for (const char* key : {"hotelsPublishedThrough", "ticketsPublishedThrough"}) {
            if (v.get<Day>(key) < c.from) v.field(key).fail("is before from");
        }
    }
};

template <>
struct json::Fields<DisneyGuide::Season> {
    using T = DisneyGuide::Season;
    static constexpr auto list = std::tuple{
        json::field("from", &T::from), json::field("to", &T::to), json::field("season", &T::season),
        json::field("seasonEs", &T::seasonEs),
        // A night without a rate would price at $0.
        json::field("rates", &T::rates,
                    json::each(json::price,
                               [](const json::Value& v, const std::vector<double>& rates) {
                                   if (rates.empty()) v.fail("expected at least one rate");
                               })),
        json::field("estimated", &T::estimated)};
    static void check(const json::Value& v, T& s) {
        if (s.to < s.from) v.fail("from " + s.from.text() + " is after to " + s.to.text());
    }
};

template <>
struct json::Fields<DisneyGuide::TicketRow> {
    using T = DisneyGuide::TicketRow;
    static constexpr auto list = std::tuple{
        json::field("days", &T::days, json::AtLeast{1, "expected 1 or more"}),
        json::field("low", &T::low, json::amount), json::field("high", &T::high, json::amount)};
    static void check(const json::Value& v, T& r) { checkLowHigh(v, r); }
};

template <>
struct json::Fields<DisneyGuide::HopperRow> {
    using T = DisneyGuide::HopperRow;
    static constexpr auto list = std::tuple{
        json::field("fromDays", &T::fromDays, json::AtLeast{0, "expected a count of 0 or more"}),
        json::field("low", &T::low, json::amount), json::field("high", &T::high, json::amount)};
    static void check(const json::Value& v, T& r) { checkLowHigh(v, r); }
};

template <>
struct json::Fields<DisneyGuide::Tickets> {
    using T = DisneyGuide::Tickets;
    static constexpr auto list =
        std::tuple{json::field("adult", &T::adult), json::field("child", &T::child),
                   json::field("hopper", &T::hopper)};
};

template <>
struct json::Fields<DisneyGuide::ParkPrice> {
    using T = DisneyGuide::ParkPrice;
    static constexpr auto list =
        std::tuple{json::field("park", &T::park), json::field("low", &T::low, json::amount),
                   json::field("high", &T::high, json::amount)};
    static void check(const json::Value& v, T& p) { checkLowHigh(v, p); }
};

template <>
struct json::Fields<DisneyGuide::LightningLane> {
    using T = DisneyGuide::LightningLane;
    static constexpr auto list = std::tuple{
        json::field("taxRate", &T::taxRate, json::amount), json::field("multiPass", &T::multiPass),
        json::field("singlePass", &T::singlePass), json::field("premierPass", &T::premierPass)};
};

template <>
struct json::Fields<DisneyGuide::Mears> {
    using T = DisneyGuide::Mears;
    static constexpr auto list = std::tuple{json::field("adult", &T::adult, json::amount),
                                            json::field("child", &T::child, json::amount)};
};

template <>
struct json::Fields<DisneyGuide::MearsExpress> {
    using T = DisneyGuide::MearsExpress;
    static constexpr auto list =
        std::tuple{json::field("roundTripUpTo4", &T::roundTripUpTo4, json::amount),
                   json::field("perExtraPerson", &T::perExtraPerson, json::amount)};
};

template <>
struct json::Fields<DisneyGuide::Transport> {
    using T = DisneyGuide::Transport;
    static constexpr auto list = std::tuple{json::field("mearsStandard", &T::mearsStandard),
                                            json::field("mearsExpress", &T::mearsExpress),
                                            json::field("rideshare", &T::rideshare),
                                            json::field("rideshareXL", &T::rideshareXL),
                                            json::field("carService", &T::carService),
                                            json::field("rentalPerDay", &T::rentalPerDay)};
};

template <>
struct json::Fields<DisneyGuide> {
    using T = DisneyGuide;
    static constexpr auto list = std::tuple{
        json::field("asOf", &T::asOf),          json::field("coverage", &T::coverage),
        json::field("sources", &T::sources),    json::field("baseResort", &T::baseResort),
        json::field("calendar", &T::calendar),  json::field("resorts", &T::resorts),
        json::field("tickets", &T::tickets),    json::field("lightningLane", &T::lightningLane),
        json::field("transport", &T::transport)};
    // Every other resort is priced against the base resort's rates, and every
    // adult ticket needs its child ticket: a guide without them cannot price.
    static void check(const json::Value& v, T& g) {
        const ParkResort* base = g.resortNamed(g.baseResort);
        if (!base) v.field("baseResort").fail("no resort named " + g.baseResort);
        if (g.tickets.child.size() < g.tickets.adult.size()) {
            v.field("tickets").field("child").fail("expected a row for every adult row");
        }
    }
};

TRIPKIT_JSON_CODEC(DisneyGuide::Coverage)
TRIPKIT_JSON_CODEC(DisneyGuide::Season)
TRIPKIT_JSON_CODEC(DisneyGuide::TicketRow)
TRIPKIT_JSON_CODEC(DisneyGuide::HopperRow)
TRIPKIT_JSON_CODEC(DisneyGuide::Tickets)
TRIPKIT_JSON_CODEC(DisneyGuide::ParkPrice)
TRIPKIT_JSON_CODEC(DisneyGuide::LightningLane)
TRIPKIT_JSON_CODEC(DisneyGuide::Mears)
TRIPKIT_JSON_CODEC(DisneyGuide::MearsExpress)
TRIPKIT_JSON_CODEC(DisneyGuide::Transport)

void decode(const json::Value& v, DisneyGuide& out) {
    // The derived state is rebuilt from the new fields.
    out.busyEvents.clear();
    out.m_days.drop();
    json::decodeFields(v, out);
}

TRIPKIT_JSON_ENCODER(DisneyGuide)

}  // namespace tripkit
