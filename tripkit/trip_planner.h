// The theme-park trip planner: every allowed check-in date of a trip search
// priced as a whole trip (flights from the main home airport, hotel with its
// tax, tickets, ride passes, the ride from the airport, food), the fitting
// trips ranked and summed up by month. The same for Walt Disney World and
// Universal Orlando: it prices through the park-guide interface.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tripkit/days.h"
#include "tripkit/fares.h"
#include "tripkit/park_guide.h"
#include "tripkit/places.h"
#include "tripkit/trip_search.h"

namespace tripkit {

// One priced trip. Money in dollars for the whole party; the guide's parts
// are whole dollars as it rounds them.
struct TripQuote {
    // The parts of a trip, for display and sharing. Lightning Lane is
    // Disney's ride pass, Express Universal's: a trip has one of the two.
    enum class Part { flights, hotel, tickets, hopper, lightningLane, express, transport, food };

    Day checkIn;
    Day checkOut;
    ParkResort resort;
    std::string season;
    std::string seasonEs;
    FareQuote outbound;  // home to Orlando on `checkIn`, per seat
    FareQuote inbound;   // back on `checkOut`, per seat
    double flights = 0;  // both legs times the party's seats
    double hotel = 0;    // every room and night, with the hotel tax
    double tickets = 0;
    double hopper = 0;             // park hopper, or Universal's park-to-park
    double ridePasses = 0;         // Lightning Lane; at Universal none are bought
    bool expressIncluded = false;  // Universal Express Unlimited comes with the hotel
    double transport = 0;
    double food = 0;
    int travelers = 0;       // seats on the plane
    bool estimated = false;  // a typical fare, or a hotel night or park day past the guide's prices
    bool fromPrices = false;   // the guide publishes only "from" prices (Universal)
    double flightsSpread = 0;  // how far estimated flights may be off, dollars, whole party

    // Both legs are fares found in the nightly file.
    bool foundFlights() const { return !outbound.estimated && !inbound.estimated; }
    double amount(Part part) const;
    double total() const;  // the sum of the parts
    friend bool operator==(const TripQuote&, const TripQuote&) = default;
};

std::string_view caseName(TripQuote::Part part);  // "flights", "lightningLane", ...
// The parts of a trip in the order they are shown: Lightning Lane at Disney,
// Express at Universal.
std::vector<TripQuote::Part> tripParts(bool fromPrices);

// The fitting trips checking in in one month.
struct MonthSummary {
    std::int64_t year = 0;
    int month = 0;
    double average = 0;            // mean total of the month's trips
    std::vector<TripQuote> trips;  // cheapest first: the first is the month's best

    double cheapest() const { return trips.empty() ? 0 : trips.front().total(); }
    // How far the best trip is below the average date.
    double below() const { return average - cheapest(); }
};

struct TripSearchResult {
    std::vector<TripQuote> trips;      // the fitting trips, in the planner's order
    std::vector<MonthSummary> months;  // each month with a fitting trip, in calendar order
    int leftOut = 0;     // check-in days outside the search's date limits or busy dates
    int overBudget = 0;  // trips whose total is above the budget
};

// What a plan depends on besides the search and the guide.
struct PlanInputs {
    const FareBook* book = nullptr;  // the main home airport's fares; none: every leg estimated
    Airport home;                    // the main home airport
    Airport orlando;                 // MCO
    Day today;
    // Only these check-in days (a watch looks around its stay); absent: every
    // day the guide prices.
    std::optional<DayRange> checkIns;
    // Whether trips over the search's budget are dropped.
    bool applyBudget = true;
};

struct TripPlanner {
    // The first check-in day offered is tomorrow: today's flights are gone.
    static constexpr int firstCheckInAfterToday = 1;
    // A date with typical fares goes ahead of dates with found fares only
    // when its total is more than this share below theirs: an estimate a
    // little cheaper is within its own uncertainty.
    static constexpr double clearlyCheaperShare = 0.10;

    // Each allowed check-in day, up to the end of the guide's prices, as one
    // trip at the cheapest hotel the search allows. Candidate days are
    // counted in `leftOut` when they fail the search's date limits or, with
    // "Skip holidays and big events", when the stay touches a busy date of
    // the guide; days without a hotel price are skipped without counting.
    // Found-fare trips come first, cheapest first, unless a typical-fare
    // trip is clearly cheaper; equal totals keep the earlier check-in.
    static TripSearchResult plan(const TripSearch& search, const ParkGuide& guide,
                                 const PlanInputs& inputs);

    // The trip search a new user is offered: two adults with children of 8
    // and 5, five nights with four park days at the cheapest value or
    // moderate (Disney) or prime-value (Universal) hotel, no extras, a
    // rideshare from the airport, a modest food budget, any date.
    static TripSearch defaultSearch(const std::string& origin);

    // Cheapest first; equal totals: the earlier check-in.
    static bool cheaper(const TripQuote& a, const TripQuote& b);
};

}  // namespace tripkit
