#include "tripkit/stay_pricing.h"

namespace tripkit {

std::optional<double> StayPrice::total() const {
    if (!hotel) return std::nullopt;
    return hotel->total + tickets.tickets + tickets.hopper + lightningLane + transport + food;
}

StayPrice priceStay(const ParkGuide& guide, const ParkResort& resort, const TripSearch& search,
                    Day checkIn) {
    const Party& party = search.party;
    StayPrice s;
    s.checkIn = checkIn;
    s.checkOut = checkIn + search.nights;
    s.hotel = guide.hotelStay(resort, checkIn, search.nights, party.rooms());
    s.tickets = guide.ticketTotals(search.parkDays, party, checkIn, search.parkHopper,
                                   search.epicUniverse.value_or(false));
    s.lightningLane =
        guide.lightningLaneTotal(search.lightningLane, search.parkDays, checkIn, party);
    s.express = guide.expressIncluded(resort);
    s.transport = guide.transportTotal(search.transport, party, search.nights, resort);
    s.food = search.food ? search.food->total(party, search.nights) : 0;
    s.busy = touchesBusyDate(checkIn, search.nights, [&](Day d) { return guide.isBusy(d); });
    return s;
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
