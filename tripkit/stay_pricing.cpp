#include "tripkit/stay_pricing.h"

namespace tripkit {

std::optional<double> StayPrice::total() const {
    if (!hotel) return std::nullopt;
    return hotel->total + tickets.tickets + tickets.hopper + lightningLane + transport + food;
}

namespace {

// The parts every hotel of one check-in shares.
StayPrice sharedParts(const ParkGuide& guide, const TripSearch& search, Day checkIn) {
    const Party& party = search.party;
    StayPrice s;
    s.checkIn = checkIn;
    s.checkOut = checkIn + search.nights;
    s.tickets = guide.ticketTotals(search.parkDays, party, checkIn, search.parkHopper,
                                   search.epicUniverse.value_or(false));
    s.lightningLane =
        guide.lightningLaneTotal(search.lightningLane, search.parkDays, checkIn, party);
    s.food = search.food ? search.food->total(party, search.nights) : 0;
    s.busy = touchesBusyDate(checkIn, search.nights, [&](Day d) { return guide.isBusy(d); });
    return s;
}

void addHotel(StayPrice& s, const ParkGuide& guide, const ParkResort& resort,
              const TripSearch& search) {
    s.hotel = guide.hotelStay(resort, s.checkIn, search.nights, search.party.rooms());
    s.express = guide.expressIncluded(resort);
    s.transport = guide.transportTotal(search.transport, search.party, search.nights, resort);
}

}  // namespace

StayPrice priceStay(const ParkGuide& guide, const ParkResort& resort, const TripSearch& search,
                    Day checkIn) {
    StayPrice s = sharedParts(guide, search, checkIn);
    addHotel(s, guide, resort, search);
    return s;
}

std::vector<StayPrice> priceStays(const ParkGuide& guide, const std::vector<ParkResort>& resorts,
                                  const TripSearch& search, Day checkIn) {
    const StayPrice shared = sharedParts(guide, search, checkIn);
    std::vector<StayPrice> out(resorts.size(), shared);
    for (std::size_t i = 0; i < resorts.size(); ++i) addHotel(out[i], guide, resorts[i], search);
    return out;
}

std::vector<ResortStay> priceStays(const ParkGuide& guide, const TripSearch& search,
                                   Day checkIn) {
    std::vector<ResortStay> stays;
    for (ParkResort& resort : guide.parkResorts()) {
        if (!search.resorts.allows(resort)) continue;
        StayPrice price = priceStay(guide, resort, search, checkIn);
        stays.push_back({std::move(resort), std::move(price)});
    }
    return stays;
}

}  // namespace tripkit
