#include "tripkit/disney_guide.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

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

void decode(const json::Value& v, DisneyGuide::Coverage& out) {
    out.from = v.get<Day>("from");
    out.hotelsPublishedThrough = v.get<Day>("hotelsPublishedThrough");
    out.ticketsPublishedThrough = v.get<Day>("ticketsPublishedThrough");
    for (const char* key : {"hotelsPublishedThrough", "ticketsPublishedThrough"}) {
        if (v.get<Day>(key) < out.from) v.field(key).fail("is before from");
    }
}

void decode(const json::Value& v, DisneyGuide::Season& out) {
    out.from = v.get<Day>("from");
    out.to = v.get<Day>("to");
    out.season = v.get<std::string>("season");
    out.seasonEs = v.get<std::string>("seasonEs");
    const json::Value rates = v.field("rates");
    out.rates.clear();
    // A night without a rate would price at $0.
    rates.forEach([&](const json::Value& rate) {
        const double r = rate.as<double>();
        if (!(r > 0)) rate.fail("expected a price above 0");
        out.rates.push_back(r);
    });
    if (out.rates.empty()) rates.fail("expected at least one rate");
    out.estimated = v.get<bool>("estimated");
    if (out.to < out.from) v.fail("from " + out.from.text() + " is after to " + out.to.text());
}

namespace {

// A price at the cheapest and the dearest dates, the dearest not below.
template <class Row>
void readLowHigh(const json::Value& v, Row& out) {
    out.low = readAmount(v, "low");
    out.high = readAmount(v, "high");
    if (out.high < out.low) v.fail("low is above high");
}

}  // namespace

void decode(const json::Value& v, DisneyGuide::TicketRow& out) {
    out.days = v.get<int>("days");
    if (out.days < 1) v.field("days").fail("expected 1 or more");
    readLowHigh(v, out);
}

void decode(const json::Value& v, DisneyGuide::HopperRow& out) {
    out.fromDays = v.get<int>("fromDays");
    if (out.fromDays < 0) v.field("fromDays").fail("expected a count of 0 or more");
    readLowHigh(v, out);
}

void decode(const json::Value& v, DisneyGuide::Tickets& out) {
    out.adult = v.get<std::vector<DisneyGuide::TicketRow>>("adult");
    out.child = v.get<std::vector<DisneyGuide::TicketRow>>("child");
    out.hopper = v.get<std::vector<DisneyGuide::HopperRow>>("hopper");
}

void decode(const json::Value& v, DisneyGuide::ParkPrice& out) {
    out.park = v.get<std::string>("park");
    readLowHigh(v, out);
}

void decode(const json::Value& v, DisneyGuide::LightningLane& out) {
    out.taxRate = readAmount(v, "taxRate");
    out.multiPass = v.get<DisneyGuide::Span>("multiPass");
    out.singlePass = v.get<std::vector<DisneyGuide::ParkPrice>>("singlePass");
    out.premierPass = v.get<std::vector<DisneyGuide::ParkPrice>>("premierPass");
}

void decode(const json::Value& v, DisneyGuide::Mears& out) {
    out.adult = readAmount(v, "adult");
    out.child = readAmount(v, "child");
}

void decode(const json::Value& v, DisneyGuide::MearsExpress& out) {
    out.roundTripUpTo4 = readAmount(v, "roundTripUpTo4");
    out.perExtraPerson = readAmount(v, "perExtraPerson");
}

void decode(const json::Value& v, DisneyGuide::Transport& out) {
    out.mearsStandard = v.get<DisneyGuide::Mears>("mearsStandard");
    out.mearsExpress = v.get<DisneyGuide::MearsExpress>("mearsExpress");
    out.rideshare = v.get<DisneyGuide::Span>("rideshare");
    out.rideshareXL = v.get<DisneyGuide::Span>("rideshareXL");
    out.carService = v.get<DisneyGuide::Span>("carService");
    out.rentalPerDay = v.get<DisneyGuide::Span>("rentalPerDay");
}

void decode(const json::Value& v, DisneyGuide& out) {
    out.asOf = v.get<std::string>("asOf");
    out.coverage = v.get<DisneyGuide::Coverage>("coverage");
    out.sources = v.get<std::vector<DisneyGuide::Source>>("sources");
    out.baseResort = v.get<std::string>("baseResort");
    out.calendar = v.get<std::vector<DisneyGuide::Season>>("calendar");
    out.resorts = v.get<std::vector<ParkResort>>("resorts");
    out.tickets = v.get<DisneyGuide::Tickets>("tickets");
    out.lightningLane = v.get<DisneyGuide::LightningLane>("lightningLane");
    out.transport = v.get<DisneyGuide::Transport>("transport");
    out.busyEvents.clear();
    out.m_days.drop();

    // Every other resort is priced against the base resort's rates, and every
    // adult ticket needs its child ticket: a guide without them cannot price.
    const ParkResort* base = out.resortNamed(out.baseResort);
    if (!base) v.field("baseResort").fail("no resort named " + out.baseResort);
    if (out.tickets.child.size() < out.tickets.adult.size()) {
        v.field("tickets").field("child").fail("expected a row for every adult row");
    }
}

json::Json encode(const DisneyGuide::Coverage& c) {
    json::Json out = json::Json::object();
    out["from"] = encode(c.from);
    out["hotelsPublishedThrough"] = encode(c.hotelsPublishedThrough);
    out["ticketsPublishedThrough"] = encode(c.ticketsPublishedThrough);
    return out;
}

json::Json encode(const DisneyGuide::Season& s) {
    json::Json out = json::Json::object();
    out["from"] = encode(s.from);
    out["to"] = encode(s.to);
    out["season"] = s.season;
    out["seasonEs"] = s.seasonEs;
    out["rates"] = json::array(s.rates);
    out["estimated"] = s.estimated;
    return out;
}

json::Json encode(const DisneyGuide::TicketRow& r) {
    json::Json out = json::Json::object();
    out["days"] = r.days;
    out["low"] = json::number(r.low);
    out["high"] = json::number(r.high);
    return out;
}

json::Json encode(const DisneyGuide::HopperRow& r) {
    json::Json out = json::Json::object();
    out["fromDays"] = r.fromDays;
    out["low"] = json::number(r.low);
    out["high"] = json::number(r.high);
    return out;
}

json::Json encode(const DisneyGuide::Tickets& t) {
    json::Json out = json::Json::object();
    out["adult"] = json::array(t.adult);
    out["child"] = json::array(t.child);
    out["hopper"] = json::array(t.hopper);
    return out;
}

json::Json encode(const DisneyGuide::ParkPrice& p) {
    json::Json out = json::Json::object();
    out["park"] = p.park;
    out["low"] = json::number(p.low);
    out["high"] = json::number(p.high);
    return out;
}

json::Json encode(const DisneyGuide::LightningLane& l) {
    json::Json out = json::Json::object();
    out["taxRate"] = json::number(l.taxRate);
    out["multiPass"] = encode(l.multiPass);
    out["singlePass"] = json::array(l.singlePass);
    out["premierPass"] = json::array(l.premierPass);
    return out;
}

json::Json encode(const DisneyGuide::Mears& m) {
    json::Json out = json::Json::object();
    out["adult"] = json::number(m.adult);
    out["child"] = json::number(m.child);
    return out;
}

json::Json encode(const DisneyGuide::MearsExpress& m) {
    json::Json out = json::Json::object();
    out["roundTripUpTo4"] = json::number(m.roundTripUpTo4);
    out["perExtraPerson"] = json::number(m.perExtraPerson);
    return out;
}

json::Json encode(const DisneyGuide::Transport& t) {
    json::Json out = json::Json::object();
    out["mearsStandard"] = encode(t.mearsStandard);
    out["mearsExpress"] = encode(t.mearsExpress);
    out["rideshare"] = encode(t.rideshare);
    out["rideshareXL"] = encode(t.rideshareXL);
    out["carService"] = encode(t.carService);
    out["rentalPerDay"] = encode(t.rentalPerDay);
    return out;
}

json::Json encode(const DisneyGuide& g) {
    json::Json out = json::Json::object();
    out["asOf"] = g.asOf;
    out["coverage"] = encode(g.coverage);
    out["sources"] = json::array(g.sources);
    out["baseResort"] = g.baseResort;
    out["calendar"] = json::array(g.calendar);
    out["resorts"] = json::array(g.resorts);
    out["tickets"] = encode(g.tickets);
    out["lightningLane"] = encode(g.lightningLane);
    out["transport"] = encode(g.transport);
    return out;
}

}  // namespace tripkit
