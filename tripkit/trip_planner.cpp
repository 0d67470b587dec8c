#include "tripkit/trip_planner.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "tripkit/fare_calibration.h"
#include "tripkit/stay_pricing.h"

namespace tripkit {

double TripQuote::amount(Part part) const {
    switch (part) {
        case Part::flights:
            return flights;
        case Part::hotel:
            return hotel;
        case Part::tickets:
            return tickets;
        case Part::hopper:
            return hopper;
        case Part::lightningLane:
        case Part::express:
            return ridePasses;
        case Part::transport:
            return transport;
        case Part::food:
            return food;
    }
    return 0;
}

double TripQuote::total() const {
    return flights + hotel + tickets + hopper + ridePasses + transport + food;
}

std::string_view caseName(TripQuote::Part part) {
    switch (part) {
        case TripQuote::Part::flights:
            return "flights";
        case TripQuote::Part::hotel:
            return "hotel";
        case TripQuote::Part::tickets:
            return "tickets";
        case TripQuote::Part::hopper:
            return "hopper";
        case TripQuote::Part::lightningLane:
            return "lightningLane";
        case TripQuote::Part::express:
            return "express";
        case TripQuote::Part::transport:
            return "transport";
        case TripQuote::Part::food:
            return "food";
    }
    return "";
}

std::vector<TripQuote::Part> tripParts(bool fromPrices) {
    using P = TripQuote::Part;
    return {
        P::flights,   P::hotel, P::tickets, P::hopper, fromPrices ? P::express : P::lightningLane,
        P::transport, P::food};
}

bool TripPlanner::cheaper(const TripQuote& a, const TripQuote& b) {
    const double ta = a.total();
    const double tb = b.total();
    if (ta != tb) return ta < tb;
    return a.checkIn < b.checkIn;
}

namespace {

// Found-fare trips first; a typical-fare trip moves ahead of each found-fare
// trip it is clearly cheaper than. Both groups are already cheapest first,
// so one merge keeps each group's own order.
std::vector<TripQuote> ordered(std::vector<TripQuote> found, std::vector<TripQuote> typical) {
    std::sort(found.begin(), found.end(), TripPlanner::cheaper);
    std::sort(typical.begin(), typical.end(), TripPlanner::cheaper);
    std::vector<TripQuote> out;
    out.reserve(found.size() + typical.size());
    auto f = found.begin();
    auto t = typical.begin();
    while (f != found.end() || t != typical.end()) {
        const bool takeTypical =
            f == found.end() || (t != typical.end() &&
                                 t->total() < f->total() * (1 - TripPlanner::clearlyCheaperShare));
        out.push_back(std::move(takeTypical ? *t++ : *f++));
    }
    return out;
}

std::vector<MonthSummary> monthsOf(const std::vector<TripQuote>& trips) {
    std::map<std::int64_t, MonthSummary> byMonth;
    for (const TripQuote& trip : trips) {
        const YearMonth ym = YearMonth::of(trip.checkIn);
        MonthSummary& m = byMonth[ym.key()];
        m.year = ym.year;
        m.month = ym.month;
        m.trips.push_back(trip);
    }
    std::vector<MonthSummary> out;
    out.reserve(byMonth.size());
    for (auto& [key, m] : byMonth) {
        std::sort(m.trips.begin(), m.trips.end(), TripPlanner::cheaper);
        double sum = 0;
        for (const TripQuote& t : m.trips) sum += t.total();
        m.average = sum / static_cast<double>(m.trips.size());
        out.push_back(std::move(m));
    }
    return out;
}

}  // namespace

TripSearchResult TripPlanner::plan(const TripSearch& search, const ParkGuide& guide,
                                   const PlanInputs& inputs) {
    TripSearchResult result;
    const std::optional<DayRange> covered = guide.coveredDays();
    if (!covered) return result;
    Day first = std::max(inputs.today + firstCheckInAfterToday, covered->first);
    Day last = covered->last;
    if (inputs.checkIns) {
        first = std::max(first, inputs.checkIns->first);
        last = std::min(last, inputs.checkIns->last);
    }
    if (last < first) return result;

    std::vector<ParkResort> resorts = guide.parkResorts();
    std::erase_if(resorts, [&](const ParkResort& r) { return !search.resorts.allows(r); });
    std::vector<double> taxRates;
    for (const ParkResort& r : resorts) taxRates.push_back(guide.hotelTaxRate(r));

    const auto demand = [&guide](Day d) { return guide.seasonLevel(d); };
    QuoteRequest request;
    request.filter = search.fares;
    request.home = inputs.home;
    request.orlando = inputs.orlando;
    request.today = inputs.today;
    if (inputs.book) {
        request.calibration =
            FareCalibrations::make(*inputs.book, search.fares, inputs.home, inputs.orlando, demand,
                                   DayRange(first, last + search.nights), inputs.today);
    }
    auto quoteLeg = [&](QuoteRequest::Leg leg, Day day) {
        request.leg = leg;
        request.day = day;
        request.demand = demand(day);
        FareQuote q = inputs.book ? Fares::quote(*inputs.book, request) : Fares::quote(request);
        // An estimate no found fare scaled still says how unsure it is.
        if (q.estimated && !request.calibration.at(day)) {
            q.spread = std::round(q.price * FareCalibrations::typicalSpread);
        }
        return q;
    };

    const auto isBusy = [&guide](Day d) { return guide.isBusy(d); };
    const int seats = search.party.seats();
    std::vector<TripQuote> found;
    std::vector<TripQuote> typical;
    for (Day checkIn = first; checkIn <= last; checkIn += 1) {
        if (!search.window.withinLimits(checkIn, search.nights) ||
            (search.window.avoidHolidays && touchesBusyDate(checkIn, search.nights, isBusy))) {
            ++result.leftOut;
            continue;
        }
        const std::vector<StayPrice> stays = priceStays(guide, resorts, search, checkIn);
        std::optional<std::size_t> best;
        double bestHotel = 0;
        double bestTotal = 0;
        for (std::size_t i = 0; i < stays.size(); ++i) {
            const StayPrice& s = stays[i];
            if (!s.hotel) continue;
            const double hotel = std::round(s.hotel->total * (1 + taxRates[i]));
            const double total = *s.total() - s.hotel->total + hotel;
            if (!best || total < bestTotal) {
                best = i;
                bestHotel = hotel;
                bestTotal = total;
            }
        }
        if (!best) continue;  // no hotel price for these nights
        const StayPrice& stay = stays[*best];

        TripQuote trip;
        trip.checkIn = checkIn;
        trip.checkOut = stay.checkOut;
        trip.resort = resorts[*best];
        ParkGuide::SeasonName season = guide.seasonName(checkIn);
        trip.season = std::move(season.name);
        trip.seasonEs = std::move(season.nameEs);
        trip.outbound = quoteLeg(QuoteRequest::Leg::toOrlando, checkIn);
        trip.inbound = quoteLeg(QuoteRequest::Leg::fromOrlando, stay.checkOut);
        trip.flights = (trip.outbound.price + trip.inbound.price) * seats;
        trip.flightsSpread = (trip.outbound.spread + trip.inbound.spread) * seats;
        trip.hotel = bestHotel;
        trip.tickets = stay.tickets.tickets;
        trip.hopper = stay.tickets.hopper;
        trip.ridePasses = stay.lightningLane;
        trip.expressIncluded = stay.express;
        trip.transport = stay.transport;
        trip.food = stay.food;
        trip.travelers = seats;
        trip.estimated = !trip.foundFlights() || stay.estimated();
        trip.fromPrices = guide.fromPrices();
        if (inputs.applyBudget && search.maxTotal && trip.total() > *search.maxTotal) {
            ++result.overBudget;
            continue;
        }
        (trip.foundFlights() ? found : typical).push_back(std::move(trip));
    }
    result.trips = ordered(std::move(found), std::move(typical));
    result.months = monthsOf(result.trips);
    return result;
}

TripSearch TripPlanner::defaultSearch(const std::string& origin) {
    TripSearch s;
    s.origin = origin;
    s.party = Party{2, {8, 5}};
    s.nights = 5;
    s.parkDays = 4;
    s.resorts.kind = ResortChoice::Kind::cheapest;
    s.resorts.tiers = {Tier::value, Tier::moderate, Tier::primeValue};
    s.parkHopper = false;
    s.lightningLane = LightningLaneChoice::none();
    s.epicUniverse = true;  // Universal only: the park most first visits are for
    s.transport = TransportChoice::rideshare;
    s.food = FoodBudget{70, 35};
    return s;
}

}  // namespace tripkit
