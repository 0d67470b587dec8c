// What the trip planner asks of a theme-park price guide, so that it prices
// a stay at Walt Disney World or Universal Orlando without knowing which,
// and the choices and price records both guides share.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tripkit/days.h"
#include "tripkit/json.h"
#include "tripkit/party.h"

namespace tripkit {

// Lightning Lane purchases. JSON is case-keyed: {"none":{}},
// {"multiPass":{"_0":3}}, {"singlePasses":{}}, {"multiPassAndSingles":{"_0":2}},
// {"premier":{"days":2}}.
struct LightningLaneChoice {
    enum class Kind { none, multiPass, singlePasses, multiPassAndSingles, premier };
    Kind kind = Kind::none;
    int days = 0;  // Multi Pass days, or Premier Pass days; unused otherwise

    static LightningLaneChoice none() { return {}; }
    static LightningLaneChoice multiPass(int days) { return {Kind::multiPass, days}; }
    static LightningLaneChoice singlePasses() { return {Kind::singlePasses, 0}; }
    static LightningLaneChoice multiPassAndSingles(int days) {
        return {Kind::multiPassAndSingles, days};
    }
    static LightningLaneChoice premier(int days) { return {Kind::premier, days}; }

    std::string label() const;  // "Multi Pass every park day", "Premier Pass days: 2", ...
    friend bool operator==(const LightningLaneChoice&, const LightningLaneChoice&) = default;
};

// The ride from the airport to the hotel. JSON: the case name as a string.
enum class TransportChoice {
    mearsStandard,
    mearsExpress,
    rideshare,
    carService,
    rentalCar,
    ownCar
};

const std::vector<TransportChoice>& allTransportChoices();  // in the order above
std::string_view caseName(TransportChoice c);
std::string_view label(TransportChoice c);  // "Mears Connect shuttle", ...
std::optional<TransportChoice> transportChoiceFromCaseName(std::string_view name);

// Whole-dollar totals for the whole party unless a guide says otherwise.
class ParkGuide {
public:
    // A price between the cheapest and the dearest dates.
    struct Span {
        double low = 0;
        double high = 0;
        double at(double level) const { return low + level * (high - low); }
        double midpoint() const { return at(0.5); }
        friend bool operator==(const Span&, const Span&) = default;
    };
    // Where a guide's prices were taken from.
    struct Source {
        std::string name;
        std::string nameEs;
        std::string url;
        friend bool operator==(const Source&, const Source&) = default;
    };
    struct TicketTotals {
        double tickets = 0;
        double hopper = 0;  // park hopper or park-to-park add-on
        // A park day the guide publishes no ticket prices for.
        bool estimated = false;
        friend bool operator==(const TicketTotals&, const TicketTotals&) = default;
    };
    struct HotelStay {
        double total = 0;        // all rooms and nights, before tax
        bool estimated = false;  // a night past the published prices
        friend bool operator==(const HotelStay&, const HotelStay&) = default;
    };
    // A season's name as trips show it.
    struct SeasonName {
        std::string name;
        std::string nameEs;
        friend bool operator==(const SeasonName&, const SeasonName&) = default;
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
    // The days the guide's hotel prices reach: a stay is priced only inside
    // them (there may be gaps); nothing when it prices no night at all.
    virtual std::optional<DayRange> coveredDays() const = 0;
    // The season of the night starting on `day`, as trips name it.
    virtual SeasonName seasonName(Day day) const = 0;
    // The tax on a stay's room total at `resort`, a fraction; one rate per
    // hotel, applied once to the whole stay.
    virtual double hotelTaxRate(const ParkResort& resort) const = 0;
    // Whether the guide publishes only "from" prices, the same every date.
    virtual bool fromPrices() const = 0;

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

// Whether each day from `first` to `last` (both counted) lies in a
// federal-holiday period, one entry a day; the same answers as
// `isInHolidayWindow`, worked out a year at a time.
std::vector<bool> holidayWindowDays(Day first, Day last);

// Per-day price tables a guide builds from its own fields the first time it
// prices, so that pricing every check-in day does not redo the rules. A copy
// of a guide starts without them (it may be changed before it prices);
// changing the fields of a guide that has already priced is not supported.
// Safe to build from several threads at once.
template <class T>
class GuideTables {
public:
    GuideTables() = default;
    GuideTables(const GuideTables&) {}
    GuideTables& operator=(const GuideTables&) {
        drop();
        return *this;
    }
    // Never part of a guide's value.
    friend bool operator==(const GuideTables&, const GuideTables&) { return true; }

    template <class Build>
    const T& get(Build&& build) const {
        if (const T* t = m_built.load(std::memory_order_acquire)) return *t;
        std::lock_guard<std::mutex> lock(*m_lock);
        if (!m_tables) {
            m_tables = std::make_unique<const T>(build());
            m_built.store(m_tables.get(), std::memory_order_release);
        }
        return *m_tables;
    }
    void drop() {
        m_built.store(nullptr, std::memory_order_release);
        m_tables.reset();
    }

private:
    mutable std::unique_ptr<const T> m_tables;
    mutable std::atomic<const T*> m_built{nullptr};
    std::unique_ptr<std::mutex> m_lock = std::make_unique<std::mutex>();
};

void decode(const json::Value& v, LightningLaneChoice& out);
void decode(const json::Value& v, TransportChoice& out);
// Also checks that `low` is at most `high`.
void decode(const json::Value& v, ParkGuide::Span& out);
void decode(const json::Value& v, ParkGuide::Source& out);
json::Json encode(const LightningLaneChoice& c);
json::Json encode(TransportChoice c);
json::Json encode(const ParkGuide::Span& s);
json::Json encode(const ParkGuide::Source& s);

}  // namespace tripkit
