// The Walt Disney World price sheet ("disney-guide.json"): resort seasons and
// nightly rates, park tickets, park hopper, Lightning Lane and the rides from
// the airport, and the rules that price one stay from it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tripkit/days.h"
#include "tripkit/events.h"
#include "tripkit/json.h"
#include "tripkit/park_guide.h"
#include "tripkit/party.h"

namespace tripkit {

struct DisneyGuide final : ParkGuide {
    // The guide has no hotel tax: 6.5% Florida and Orange County sales tax
    // plus Orange County's 6% tourist development tax, one rate for every
    // resort, added to each stay's room total.
    static constexpr double hotelTax = 0.125;

    struct Coverage {
        Day from;
        Day hotelsPublishedThrough;
        Day ticketsPublishedThrough;
        friend bool operator==(const Coverage&, const Coverage&) = default;
    };
    // The base resort's nightly rates from `from` to `to` (both counted).
    struct Season {
        Day from;
        Day to;
        std::string season;
        std::string seasonEs;
        // One rate: every night. Two: Sunday to Thursday, then Friday and
        // Saturday. Three: Monday to Wednesday, Sunday and Thursday, Friday
        // and Saturday. Four or more: the first every night.
        std::vector<double> rates;
        bool estimated = false;  // carried forward from last year
        // The base resort's rate of the night starting on `night`.
        double baseRate(Day night) const;
        friend bool operator==(const Season&, const Season&) = default;
    };
    struct TicketRow {
        int days = 0;
        double low = 0;
        double high = 0;
        double at(double level) const { return low + level * (high - low); }
        friend bool operator==(const TicketRow&, const TicketRow&) = default;
    };
    // Add-on per person for the whole ticket, from `fromDays` park days on.
    struct HopperRow {
        int fromDays = 0;
        double low = 0;
        double high = 0;
        double at(double level) const { return low + level * (high - low); }
        friend bool operator==(const HopperRow&, const HopperRow&) = default;
    };
    struct Tickets {
        std::vector<TicketRow> adult;
        std::vector<TicketRow> child;
        std::vector<HopperRow> hopper;
        friend bool operator==(const Tickets&, const Tickets&) = default;
    };
    struct ParkPrice {
        std::string park;
        double low = 0;
        double high = 0;
        double at(double level) const { return low + level * (high - low); }
        friend bool operator==(const ParkPrice&, const ParkPrice&) = default;
    };
    struct LightningLane {
        double taxRate = 0;
        Span multiPass;                     // per person per park day
        std::vector<ParkPrice> singlePass;  // per person per ride
        std::vector<ParkPrice> premierPass; // per person per day, one row per park
        friend bool operator==(const LightningLane&, const LightningLane&) = default;
    };
    struct Mears {
        double adult = 0;  // one way, per person
        double child = 0;
        friend bool operator==(const Mears&, const Mears&) = default;
    };
    struct MearsExpress {
        double roundTripUpTo4 = 0;
        double perExtraPerson = 0;  // round trip
        friend bool operator==(const MearsExpress&, const MearsExpress&) = default;
    };
    struct Transport {
        Mears mearsStandard;
        MearsExpress mearsExpress;
        Span rideshare;    // one way, standard car
        Span rideshareXL;  // one way, large car
        Span carService;   // one way
        Span rentalPerDay;
        friend bool operator==(const Transport&, const Transport&) = default;
    };

    std::string asOf;
    Coverage coverage;
    std::vector<Source> sources;
    std::string baseResort;  // `name` of the resort whose rates `calendar` lists
    std::vector<Season> calendar;
    std::vector<ParkResort> resorts;
    Tickets tickets;
    LightningLane lightningLane;
    Transport transport;

    // Busy events of the Disney events calendar. Not part of the guide's
    // file: whoever loads the events calendar hands its busy spans over.
    std::vector<DayRange> busyEvents;

    // The guide compiled into the library ("disney-guide.json"), decoded
    // once, with the busy events of the shipped events calendar.
    static const DisneyGuide& shipped();
    // The spans of a calendar's busy events, in its order.
    static std::vector<DayRange> busySpans(const EventCalendar& events);

    // The first season, in file order, that holds `day`.
    const Season* seasonOf(Day day) const;
    const ParkResort* resortNamed(std::string_view name) const;
    const ParkResort* resortWithId(std::string_view id) const;
    // A federal-holiday period or a busy event.
    static bool busyDate(Day day, const std::vector<DayRange>& busyEvents);

    // The pricing rules worked out one by one for a day, as the per-day
    // tables are built; the operations below answer the same from the
    // tables within their days.
    double seasonLevelByRule(Day day) const;
    std::optional<double> nightlyRateByRule(const ParkResort& resort, Day night) const;
    // A night priced from a season carried forward from last year, or
    // outside `coverage.from` to `coverage.hotelsPublishedThrough`.
    bool nightEstimatedByRule(Day night) const;

    // The ParkGuide operations. A stay is estimated as the coverage says:
    // the hotel when a night is estimated (above); tickets, hopper and
    // Lightning Lane when a park day lies outside `coverage.from` to
    // `coverage.ticketsPublishedThrough`.
    std::vector<ParkResort> parkResorts() const override { return resorts; }
    double seasonLevel(Day day) const override;
    // Tickets are priced at the mean level of their park days; `epicUniverse`
    // means nothing at Disney.
    TicketTotals ticketTotals(int parkDays, const Party& party, Day firstParkDay, bool hopper,
                              bool epicUniverse) const override;
    double lightningLaneTotal(const LightningLaneChoice& choice, int parkDays, Day firstParkDay,
                              const Party& party) const override;
    bool expressIncluded(const ParkResort&) const override { return false; }
    double transportTotal(TransportChoice choice, const Party& party, int nights,
                          const ParkResort& resort) const override;
    std::optional<double> nightlyRate(const ParkResort& resort, Day night) const override;
    std::optional<HotelStay> hotelStay(const ParkResort& resort, Day checkIn, int nights,
                                       int rooms) const override;
    bool isBusy(Day day) const override;
    // The seasons' span.
    std::optional<DayRange> coveredDays() const override;
    // Empty names for a night no season holds.
    SeasonName seasonName(Day day) const override;
    double hotelTaxRate(const ParkResort&) const override { return hotelTax; }
    bool fromPrices() const override { return false; }

    // Per day from the first covered day to the last season's end (at most
    // `maxDays`): season level, holiday-period membership, whether the
    // night's hotel price is estimated, and each resort's nightly rate.
    struct Days {
        static constexpr std::int64_t maxDays = 11 * 366;
        static constexpr std::size_t maxResorts = 200;
        Day first;
        std::size_t count = 0;
        std::vector<double> level;
        std::vector<bool> holiday;
        std::vector<bool> nightEstimated;
        std::vector<bool> hasSeason;
        // rates[resort * count + day], guide's resort order; unset without a season.
        std::vector<double> rates;

        // The index of `day`, or nothing outside the tables.
        std::optional<std::size_t> at(Day day) const {
            if (day < first || day - first >= static_cast<std::int64_t>(count)) return std::nullopt;
            return static_cast<std::size_t>(day - first);
        }
    };
    static Days buildDays(const DisneyGuide& guide);
    const Days& days() const;

    bool operator==(const DisneyGuide&) const = default;

private:
    friend void decode(const json::Value& v, DisneyGuide& out);
    // Which resort's row of the rate tables prices `resort`.
    std::optional<std::size_t> rateRow(const ParkResort& resort) const;
    GuideTables<Days> m_days;
};

void decode(const json::Value& v, DisneyGuide::Coverage& out);
void decode(const json::Value& v, DisneyGuide::Season& out);
void decode(const json::Value& v, DisneyGuide::TicketRow& out);
void decode(const json::Value& v, DisneyGuide::HopperRow& out);
void decode(const json::Value& v, DisneyGuide::Tickets& out);
void decode(const json::Value& v, DisneyGuide::ParkPrice& out);
void decode(const json::Value& v, DisneyGuide::LightningLane& out);
void decode(const json::Value& v, DisneyGuide::Mears& out);
void decode(const json::Value& v, DisneyGuide::MearsExpress& out);
void decode(const json::Value& v, DisneyGuide::Transport& out);
// Also checks what pricing relies on: `baseResort` names a resort, and the
// child tickets have a row for every adult row. Prices are never negative,
// a season has at least one rate and every rate and resort rate is above 0,
// and no span (coverage, season, low to high) runs backwards.
void decode(const json::Value& v, DisneyGuide& out);

json::Json encode(const DisneyGuide::Coverage& c);
json::Json encode(const DisneyGuide::Season& s);
json::Json encode(const DisneyGuide::TicketRow& r);
json::Json encode(const DisneyGuide::HopperRow& r);
json::Json encode(const DisneyGuide::Tickets& t);
json::Json encode(const DisneyGuide::ParkPrice& p);
json::Json encode(const DisneyGuide::LightningLane& l);
json::Json encode(const DisneyGuide::Mears& m);
json::Json encode(const DisneyGuide::MearsExpress& m);
json::Json encode(const DisneyGuide::Transport& t);
json::Json encode(const DisneyGuide& g);

}  // namespace tripkit
