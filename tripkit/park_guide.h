// What the trip planner asks of a theme-park price guide, so that it prices
// a stay at Walt Disney World or Universal Orlando without knowing which.
#pragma once

#include <optional>
#include <vector>

#include "tripkit/days.h"
#include "tripkit/party.h"

namespace tripkit {

struct LightningLaneChoice;   // tripkit/disney_guide.h
enum class TransportChoice;   // tripkit/disney_guide.h

// Whole-dollar totals for the whole party unless a guide says otherwise.
class ParkGuide {
public:
    struct TicketTotals {
        double tickets = 0;
        double hopper = 0;  // park hopper or park-to-park add-on
        friend bool operator==(const TicketTotals&, const TicketTotals&) = default;
    };
    struct HotelStay {
        double total = 0;        // all rooms and nights, before tax
        bool estimated = false;  // a night past the published prices
        friend bool operator==(const HotelStay&, const HotelStay&) = default;
    };

    virtual ~ParkGuide() = default;

    // The guide's hotels, in its order.
    virtual std::vector<ParkResort> parkResorts() const = 0;
    // How dear a day is, 0 (cheapest) to 1 (dearest); also the flights' demand.
    virtual double seasonLevel(Day day) const = 0;
    virtual TicketTotals ticketTotals(int parkDays, const Party& party, Day firstParkDay,
                                      bool hopper, bool epicUniverse) const = 0;
    // Ride passes bought on top of the tickets, with tax.
    virtual double lightningLaneTotal(const LightningLaneChoice& choice, int parkDays,
                                      Day firstParkDay, const Party& party) const = 0;
    // Whether the hotel's guests ride with Universal Express Unlimited.
    virtual bool expressIncluded(const ParkResort& resort) const = 0;
    // Airport to hotel and back.
    virtual double transportTotal(TransportChoice choice, const Party& party, int nights,
                                  const ParkResort& resort) const = 0;
    // One room for the night starting on `night`; nothing without a price.
    virtual std::optional<double> nightlyRate(const ParkResort& resort, Day night) const = 0;
    // Nothing when any night has no price.
    virtual std::optional<HotelStay> hotelStay(const ParkResort& resort, Day checkIn, int nights,
                                               int rooms) const = 0;
    // A holiday or big-event day ("Skip holidays and big events").
    virtual bool isBusy(Day day) const = 0;

protected:
    ParkGuide() = default;
    ParkGuide(const ParkGuide&) = default;
    ParkGuide(ParkGuide&&) = default;
    ParkGuide& operator=(const ParkGuide&) = default;
    ParkGuide& operator=(ParkGuide&&) = default;

private:
    // Lets the guides default their equality without making two guides of
    // different parks compare equal through this interface.
    friend struct DisneyGuide;
    friend struct UniversalGuide;
    bool operator==(const ParkGuide&) const = default;
};

// Whether a federal-holiday period (its observed day and the days around it
// that people travel) contains `day`.
bool isInHolidayWindow(Day day);

}  // namespace tripkit
