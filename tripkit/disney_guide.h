// The Walt Disney World price sheet ("disney-guide.json"): resort seasons and
// nightly rates, park tickets, park hopper, Lightning Lane and the rides from
// the airport, and the rules that price one stay from it.
#pragma once

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

struct DisneyGuide final : ParkGuide {
    struct Coverage {
        Day from;
        Day hotelsPublishedThrough;
        Day ticketsPublishedThrough;
        friend bool operator==(const Coverage&, const Coverage&) = default;
    };
    // Where the prices were taken from.
    struct Source {
        std::string name;
        std::string nameEs;
        std::string url;
        friend bool operator==(const Source&, const Source&) = default;
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
    // A price between the cheapest and the dearest dates.
    struct Span {
        double low = 0;
        double high = 0;
        double at(double level) const { return low + level * (high - low); }
        double midpoint() const { return at(0.5); }
        friend bool operator==(const Span&, const Span&) = default;
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
    bool isBusy(Day day) const override { return busyDate(day, busyEvents); }

    bool operator==(const DisneyGuide&) const = default;
};

void decode(const json::Value& v, LightningLaneChoice& out);
void decode(const json::Value& v, TransportChoice& out);
void decode(const json::Value& v, DisneyGuide::Coverage& out);
void decode(const json::Value& v, DisneyGuide::Source& out);
void decode(const json::Value& v, DisneyGuide::Season& out);
void decode(const json::Value& v, DisneyGuide::TicketRow& out);
void decode(const json::Value& v, DisneyGuide::HopperRow& out);
void decode(const json::Value& v, DisneyGuide::Tickets& out);
void decode(const json::Value& v, DisneyGuide::Span& out);
void decode(const json::Value& v, DisneyGuide::ParkPrice& out);
void decode(const json::Value& v, DisneyGuide::LightningLane& out);
void decode(const json::Value& v, DisneyGuide::Mears& out);
void decode(const json::Value& v, DisneyGuide::MearsExpress& out);
void decode(const json::Value& v, DisneyGuide::Transport& out);
// Also checks what pricing relies on: `baseResort` names a resort with
// positive rates, and the child tickets have a row for every adult row.
void decode(const json::Value& v, DisneyGuide& out);

json::Json encode(const LightningLaneChoice& c);
json::Json encode(TransportChoice c);
json::Json encode(const DisneyGuide::Coverage& c);
json::Json encode(const DisneyGuide::Source& s);
json::Json encode(const DisneyGuide::Season& s);
json::Json encode(const DisneyGuide::TicketRow& r);
json::Json encode(const DisneyGuide::HopperRow& r);
json::Json encode(const DisneyGuide::Tickets& t);
json::Json encode(const DisneyGuide::Span& s);
json::Json encode(const DisneyGuide::ParkPrice& p);
json::Json encode(const DisneyGuide::LightningLane& l);
json::Json encode(const DisneyGuide::Mears& m);
json::Json encode(const DisneyGuide::MearsExpress& m);
json::Json encode(const DisneyGuide::Transport& t);
json::Json encode(const DisneyGuide& g);

}  // namespace tripkit
