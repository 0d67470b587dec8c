// One theme-park stay priced part by part through the park-guide interface:
// what the `park price` command shows and the planner totals for every
// check-in day, the same for Walt Disney World and Universal Orlando.
#pragma once

#include <optional>
#include <vector>

#include "tripkit/days.h"
#include "tripkit/park_guide.h"
#include "tripkit/party.h"
#include "tripkit/trip_search.h"

namespace tripkit {

// Every part in whole dollars as the guide prices it, for the whole party.
struct StayPrice {
    Day checkIn;
    Day checkOut;
    std::optional<ParkGuide::HotelStay> hotel;  // nothing: no price for these nights
    ParkGuide::TicketTotals tickets;            // tickets and hopper (or park-to-park)
    double lightningLane = 0;
    bool express = false;  // Universal Express Unlimited comes with the hotel
    double transport = 0;
    double food = 0;
    bool busy = false;  // a day of the stay, check-out included, is busy

    // A night past the hotel prices the guide publishes.
    bool hotelEstimated() const { return hotel && hotel->estimated; }
    // A park day past the ticket prices the guide publishes; Lightning Lane
    // is priced on the same days.
    bool ticketsEstimated() const { return tickets.estimated; }
    bool estimated() const { return hotelEstimated() || ticketsEstimated(); }
    // Nothing when the hotel has no price: a total without it would mislead.
    std::optional<double> total() const;
    friend bool operator==(const StayPrice&, const StayPrice&) = default;
};

// The stay from `checkIn` for `search.nights` nights at `resort`, with
// `search.parkDays` park days from the check-in day.
StayPrice priceStay(const ParkGuide& guide, const ParkResort& resort, const TripSearch& search,
                    Day checkIn);

struct ResortStay {
    ParkResort resort;
    StayPrice price;
};

// The stay at every resort of the guide that `search.resorts` allows, in the
// guide's order.
std::vector<ResortStay> priceStays(const ParkGuide& guide, const TripSearch& search, Day checkIn);

// The stay from `checkIn` at each of `resorts` (the guide's own), in their
// order: what `priceStay` gives for each, with the parts that do not depend
// on the hotel priced once.
std::vector<StayPrice> priceStays(const ParkGuide& guide, const std::vector<ParkResort>& resorts,
                                  const TripSearch& search, Day checkIn);

}  // namespace tripkit
