#include "tripkit/disney_guide.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "tripkit/resources.h"

namespace tripkit {

std::string LightningLaneChoice::label() const {
    switch (kind) {
        case Kind::none: return "No Lightning Lane";
        case Kind::multiPass: return "Multi Pass every park day";
        case Kind::singlePasses: return "Single Pass rides";
        case Kind::multiPassAndSingles: return "Multi Pass + Single Pass rides";
        case Kind::premier: return "Premier Pass days: " + std::to_string(days);
    }
    return "";
}

const std::vector<TransportChoice>& allTransportChoices() {
    static const std::vector<TransportChoice> choices = {
        TransportChoice::mearsStandard, TransportChoice::mearsExpress, TransportChoice::rideshare,
        TransportChoice::carService,    TransportChoice::rentalCar,    TransportChoice::ownCar,
    };
    return choices;
}

std::string_view caseName(TransportChoice c) {
    switch (c) {
        case TransportChoice::mearsStandard: return "mearsStandard";
        case TransportChoice::mearsExpress: return "mearsExpress";
        case TransportChoice::rideshare: return "rideshare";
        case TransportChoice::carService: return "carService";
        case TransportChoice::rentalCar: return "rentalCar";
        case TransportChoice::ownCar: return "ownCar";
    }
    return "";
}

std::string_view label(TransportChoice c) {
    switch (c) {
        case TransportChoice::mearsStandard: return "Mears Connect shuttle";
        case TransportChoice::mearsExpress: return "Mears Connect Express";
        case TransportChoice::rideshare: return "Rideshare";
        case TransportChoice::carService: return "Private car service";
        case TransportChoice::rentalCar: return "Rental car";
        case TransportChoice::ownCar: return "Drive my own car";
    }
    return "";
}

std::optional<TransportChoice> transportChoiceFromCaseName(std::string_view name) {
    for (TransportChoice c : allTransportChoices()) {
        if (caseName(c) == name) return c;
    }
    return std::nullopt;
}

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

double DisneyGuide::seasonLevel(Day day) const {
    // Seasons are ranked by their first rate; a season without rates has no
    // place in that ranking.
    std::optional<double> lowest;
    std::optional<double> highest;
    for (const Season& s : calendar) {
        if (s.rates.empty()) continue;
        lowest = std::min(lowest.value_or(s.rates[0]), s.rates[0]);
        highest = std::max(highest.value_or(s.rates[0]), s.rates[0]);
    }
    const Season* season = seasonOf(day);
    if (!season || season->rates.empty() || !lowest || !(*lowest < *highest)) return 0.5;
    return std::clamp((season->rates[0] - *lowest) / (*highest - *lowest), 0.0, 1.0);
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
    if (n == 0) return {};
    if (tickets.child.size() < static_cast<std::size_t>(n)) {
        throw std::logic_error("Disney guide: fewer child ticket rows than adult rows");
    }
    const double level = meanLevel(*this, firstParkDay, n);
    const int adults = party.adultPriced();
    const int children = party.childPriced();
    const std::size_t row = static_cast<std::size_t>(n) - 1;

    TicketTotals out;
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
    const Season* season = seasonOf(night);
    if (!season) return std::nullopt;
    const ParkResort* base = resortNamed(baseResort);
    if (!base) throw std::logic_error("Disney guide: no base resort named " + baseResort);
    // Where the season sits between the base resort's cheapest and dearest
    // rates says how far the resort's own scale has moved from its low ratio
    // towards its high one.
    const double first = season->rates.empty() ? 0 : season->rates[0];
    const double t = base->high > base->low
                         ? std::clamp((first - base->low) / (base->high - base->low), 0.0, 1.0)
                         : 0;
    const double lowRatio = resort.low / base->low;
    const double highRatio = resort.high / base->high;
    return std::round(season->baseRate(night) * (lowRatio + t * (highRatio - lowRatio)));
}

std::optional<ParkGuide::HotelStay> DisneyGuide::hotelStay(const ParkResort& resort, Day checkIn,
                                                          int nights, int rooms) const {
    HotelStay stay;
    double sum = 0;
    for (int i = 0; i < nights; ++i) {
        const Day night = checkIn + i;
        const std::optional<double> rate = nightlyRate(resort, night);
        if (!rate) return std::nullopt;
        sum += *rate;
        if (seasonOf(night)->estimated || night > coverage.hotelsPublishedThrough) {
            stay.estimated = true;
        }
    }
    stay.total = sum * rooms;
    return stay;
}

// --- decoding and encoding ---

void decode(const json::Value& v, LightningLaneChoice& out) {
    auto [name, fields] = v.caseKeyed();
    if (!fields.isObject()) fields.fail("expected an object");
    using Kind = LightningLaneChoice::Kind;
    if (name == "none") {
        out = LightningLaneChoice::none();
    } else if (name == "multiPass") {
        out = LightningLaneChoice::multiPass(fields.get<int>("_0"));
    } else if (name == "singlePasses") {
        out = LightningLaneChoice::singlePasses();
    } else if (name == "multiPassAndSingles") {
        out = LightningLaneChoice::multiPassAndSingles(fields.get<int>("_0"));
    } else if (name == "premier") {
        out = {Kind::premier, fields.get<int>("days")};
    } else {
        fields.fail("not a Lightning Lane choice: " + name);
    }
}

void decode(const json::Value& v, TransportChoice& out) {
    auto choice = transportChoiceFromCaseName(v.stringView());
    if (!choice) v.fail("not a transport choice: " + v.string());
    out = *choice;
}

void decode(const json::Value& v, DisneyGuide::Coverage& out) {
    out.from = v.get<Day>("from");
    out.hotelsPublishedThrough = v.get<Day>("hotelsPublishedThrough");
    out.ticketsPublishedThrough = v.get<Day>("ticketsPublishedThrough");
}

void decode(const json::Value& v, DisneyGuide::Source& out) {
    out.name = v.get<std::string>("name");
    out.nameEs = v.get<std::string>("nameEs");
    out.url = v.get<std::string>("url");
}

void decode(const json::Value& v, DisneyGuide::Season& out) {
    out.from = v.get<Day>("from");
    out.to = v.get<Day>("to");
    out.season = v.get<std::string>("season");
    out.seasonEs = v.get<std::string>("seasonEs");
    out.rates = v.get<std::vector<double>>("rates");
    out.estimated = v.get<bool>("estimated");
}

void decode(const json::Value& v, DisneyGuide::TicketRow& out) {
    out.days = v.get<int>("days");
    out.low = v.get<double>("low");
    out.high = v.get<double>("high");
}

void decode(const json::Value& v, DisneyGuide::HopperRow& out) {
    out.fromDays = v.get<int>("fromDays");
    out.low = v.get<double>("low");
    out.high = v.get<double>("high");
}

void decode(const json::Value& v, DisneyGuide::Tickets& out) {
    out.adult = v.get<std::vector<DisneyGuide::TicketRow>>("adult");
    out.child = v.get<std::vector<DisneyGuide::TicketRow>>("child");
    out.hopper = v.get<std::vector<DisneyGuide::HopperRow>>("hopper");
}

void decode(const json::Value& v, DisneyGuide::Span& out) {
    out.low = v.get<double>("low");
    out.high = v.get<double>("high");
}

void decode(const json::Value& v, DisneyGuide::ParkPrice& out) {
    out.park = v.get<std::string>("park");
    out.low = v.get<double>("low");
    out.high = v.get<double>("high");
}

void decode(const json::Value& v, DisneyGuide::LightningLane& out) {
    out.taxRate = v.get<double>("taxRate");
    out.multiPass = v.get<DisneyGuide::Span>("multiPass");
    out.singlePass = v.get<std::vector<DisneyGuide::ParkPrice>>("singlePass");
    out.premierPass = v.get<std::vector<DisneyGuide::ParkPrice>>("premierPass");
}

void decode(const json::Value& v, DisneyGuide::Mears& out) {
    out.adult = v.get<double>("adult");
    out.child = v.get<double>("child");
}

void decode(const json::Value& v, DisneyGuide::MearsExpress& out) {
    out.roundTripUpTo4 = v.get<double>("roundTripUpTo4");
    out.perExtraPerson = v.get<double>("perExtraPerson");
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

    // Every other resort is priced against the base resort's rates, and every
    // adult ticket needs its child ticket: a guide without them cannot price.
    const ParkResort* base = out.resortNamed(out.baseResort);
    if (!base) v.field("baseResort").fail("no resort named " + out.baseResort);
    if (!(base->low > 0 && base->high > 0)) {
        v.field("baseResort").fail("the base resort needs rates above 0");
    }
    if (out.tickets.child.size() < out.tickets.adult.size()) {
        v.field("tickets").field("child").fail("expected a row for every adult row");
    }
}

json::Json encode(const LightningLaneChoice& c) {
    using Kind = LightningLaneChoice::Kind;
    json::Json fields = json::Json::object();
    std::string name;
    switch (c.kind) {
        case Kind::none: name = "none"; break;
        case Kind::multiPass: name = "multiPass"; fields["_0"] = c.days; break;
        case Kind::singlePasses: name = "singlePasses"; break;
        case Kind::multiPassAndSingles: name = "multiPassAndSingles"; fields["_0"] = c.days; break;
        case Kind::premier: name = "premier"; fields["days"] = c.days; break;
    }
    json::Json out = json::Json::object();
    out[name] = std::move(fields);
    return out;
}

json::Json encode(TransportChoice c) { return std::string(caseName(c)); }

json::Json encode(const DisneyGuide::Coverage& c) {
    json::Json out = json::Json::object();
    out["from"] = encode(c.from);
    out["hotelsPublishedThrough"] = encode(c.hotelsPublishedThrough);
    out["ticketsPublishedThrough"] = encode(c.ticketsPublishedThrough);
    return out;
}

json::Json encode(const DisneyGuide::Source& s) {
    json::Json out = json::Json::object();
    out["name"] = s.name;
    out["nameEs"] = s.nameEs;
    out["url"] = s.url;
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

json::Json encode(const DisneyGuide::Span& s) {
    json::Json out = json::Json::object();
    out["low"] = json::number(s.low);
    out["high"] = json::number(s.high);
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
