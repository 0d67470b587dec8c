// One theme-park stay priced part by part through the park-guide interface,
// the way the planner and `park price` price every resort a search allows.
#pragma once

#include <cstddef>

#include "fuzz/fuzz_support.h"
#include "tripkit/disney_guide.h"
#include "tripkit/park_guide.h"
#include "tripkit/trip_search.h"

namespace roamwise::fuzz {

// A family of six with a lap baby, Premier Pass and a date window: every
// part of the pricing has something to do.
inline const tripkit::TripSearch& familySearch() {
    static const tripkit::TripSearch search = tripkit::json::decodeDocument<tripkit::TripSearch>(
        R"({"origin":"JFK","party":{"adults":2,"childAges":[10,9,2,1]},"nights":4,)"
        R"("parkDays":3,"resorts":{"cheapest":{"tiers":["value","moderate","deluxe",)"
        R"("primeValue","signature"]}},"parkHopper":true,"lightningLane":{"premier":{"days":2}},)"
        R"("epicUniverse":true,"transport":"rideshare","food":{"perAdult":60,"perChild":30},)"
        R"("window":{"months":[],"checkInWeekdays":[],"only":[],"avoid":[],"avoidHolidays":true},"fares":{"onlyAirlines":[],"avoidAirlines":[],)"
        R"("nonstopOnly":false}})",
        "fuzz-search");
    return search;
}

inline void priceStays(const tripkit::ParkGuide& guide, const tripkit::TripSearch& search,
                       tripkit::Day checkIn) {
    using namespace tripkit;
    const Party& party = search.party;
    const int rooms = party.rooms();
    (void)guide.seasonLevel(checkIn);
    (void)search.window.allows(checkIn, search.nights, [&](Day d) { return guide.isBusy(d); });
    for (const ParkResort& resort : guide.parkResorts()) {
        if (!search.resorts.allows(resort)) continue;
        (void)guide.hotelStay(resort, checkIn, search.nights, rooms);
        (void)guide.nightlyRate(resort, checkIn);
        (void)guide.ticketTotals(search.parkDays, party, checkIn, search.parkHopper,
                                 search.epicUniverse.value_or(false));
        (void)guide.lightningLaneTotal(search.lightningLane, search.parkDays, checkIn, party);
        (void)guide.expressIncluded(resort);
        (void)guide.transportTotal(search.transport, party, search.nights, resort);
        if (search.food) (void)search.food->total(party, search.nights);
        (void)touchesBusyDate(checkIn, search.nights, [&](Day d) { return guide.isBusy(d); });
    }
}

// Every Lightning Lane purchase and every ride from the airport, priced for
// the family at one resort of the guide.
inline void priceChoices(const tripkit::ParkGuide& guide, tripkit::Day checkIn) {
    using namespace tripkit;
    const Party& party = familySearch().party;
    const std::vector<ParkResort> resorts = guide.parkResorts();
    if (resorts.empty()) return;
    for (const LightningLaneChoice& choice :
         {LightningLaneChoice::none(), LightningLaneChoice::multiPass(2),
          LightningLaneChoice::singlePasses(), LightningLaneChoice::multiPassAndSingles(1),
          LightningLaneChoice::premier(3)}) {
        (void)choice.label();
        (void)guide.lightningLaneTotal(choice, 3, checkIn, party);
    }
    for (TransportChoice transport : allTransportChoices()) {
        (void)guide.transportTotal(transport, party, 4, resorts.front());
    }
    for (int parkDays : {1, 5, 12}) {
        for (bool hopper : {false, true}) (void)guide.ticketTotals(parkDays, party, checkIn, hopper, hopper);
    }
}

}  // namespace roamwise::fuzz
