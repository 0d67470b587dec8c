// The Universal Orlando price sheet ("universal-guide.json"). Universal
// publishes only "from" prices, the same on every date: one nightly rate per
// hotel, one-day prices per park and two three-day tickets, and the airport
// ride is estimated from rideshare, car-service and rental-car ranges.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tripkit/days.h"
#include "tripkit/json.h"
#include "tripkit/park_guide.h"
#include "tripkit/party.h"

namespace tripkit {

struct UniversalGuide final : ParkGuide {
    static constexpr std::string_view studiosPark = "Universal Studios Florida";
    static constexpr std::string_view epicUniversePark = "Universal Epic Universe";

    // The prices hold from `from` to `to`, both counted.
    struct Coverage {
        Day from;
        Day to;
        friend bool operator==(const Coverage&, const Coverage&) = default;
    };
    struct Taxes {
        double tickets = 0;  // fraction added to ticket prices
        double hotel = 0;    // fraction added to room prices
        friend bool operator==(const Taxes&, const Taxes&) = default;
    };
    // A hotel; it plays the part of a `ParkResort` in Universal trips.
    struct Hotel {
        std::string id;
        std::string name;
        Tier tier = Tier::primeValue;
        double from = 0;  // per room per night, before tax
        std::string room;
        std::string roomEs;
        std::string getAround;
        std::string getAroundEs;
        std::vector<std::string> benefits;
        // As a resort: its "from" rate is both its low and high, parking is
        // not in the guide.
        ParkResort resort() const;
        friend bool operator==(const Hotel&, const Hotel&) = default;
    };
    struct ParkPrice {
        std::string park;
        double price = 0;  // per person per day
        friend bool operator==(const ParkPrice&, const ParkPrice&) = default;
    };
    struct Published {
        double published = 0;
        friend bool operator==(const Published&, const Published&) = default;
    };
    struct Tickets {
        std::vector<ParkPrice> oneDay;
        // A day each at Epic Universe, Universal Studios and Islands of Adventure.
        Published threeDayOneParkEach;
        // The same with park-to-park hops between Studios and Islands.
        Published threeDayParkToPark;
        friend bool operator==(const Tickets&, const Tickets&) = default;
    };
    // Described, not priced: its fare is not published.
    struct Shuttle {
        std::string name;
        std::string phone;
        bool published = false;
        friend bool operator==(const Shuttle&, const Shuttle&) = default;
    };
    struct Transport {
        Shuttle shuttle;
        Span rideshare;
        Span rideshareXL;
        Span carService;
        Span rentalPerDay;
        friend bool operator==(const Transport&, const Transport&) = default;
    };
    // Per guest: a base price and the park-to-park add-on.
    struct GuestTicket {
        double base = 0;
        double parkToPark = 0;
        friend bool operator==(const GuestTicket&, const GuestTicket&) = default;
    };

    std::string asOf;
    Coverage coverage;
    std::vector<Source> sources;
    Taxes taxes;
    std::vector<Hotel> hotels;
    Tickets tickets;
    std::vector<std::string> express;  // ids of the hotels whose guests get Express Unlimited
    Transport transport;

    // The guide compiled into the library ("universal-guide.json"), decoded once.
    static const UniversalGuide& shipped();

    const Hotel* hotelWithId(std::string_view id) const;
    // The one-day price of a park; 0 for a park the guide does not list.
    double oneDayPrice(std::string_view park) const;
    // Three park days with Epic Universe: the 3-day ticket. Otherwise one
    // Epic Universe day (when wanted) and Studios days. Park-to-park has a
    // published price only with the 3-day ticket; elsewhere it adds nothing.
    GuestTicket guestTicket(int parkDays, bool withEpicUniverse, bool parkToPark) const;
    std::optional<HotelStay> hotelStay(const Hotel& hotel, Day checkIn, int nights,
                                       int rooms) const;
    // 1 and 2 January, 20 to 31 December and the federal-holiday periods.
    static bool busyDate(Day day);

    // Whether each covered day is busy (at most `maxDays` from
    // `coverage.from`); the rates are one per hotel, so need no table.
    struct Days {
        static constexpr std::int64_t maxDays = 11 * 366;
        Day first;
        std::vector<bool> busy;
    };
    static Days buildDays(const UniversalGuide& guide);
    const Days& days() const;

    std::vector<ParkResort> parkResorts() const override;
    // No seasons: every day sits in the middle.
    double seasonLevel(Day) const override { return 0.5; }
    // Children of 3 and over pay the adult price; taxes added. Estimated
    // when a park day lies outside the coverage.
    TicketTotals ticketTotals(int parkDays, const Party& party, Day firstParkDay, bool hopper,
                              bool withEpicUniverse) const override;
    // Lightning Lane is Disney's.
    double lightningLaneTotal(const LightningLaneChoice&, int, Day, const Party&) const override {
        return 0;
    }
    bool expressIncluded(const ParkResort& resort) const override;
    double transportTotal(TransportChoice choice, const Party& party, int nights,
                          const ParkResort& resort) const override;
    // The hotel's "from" rate on nights within the coverage.
    std::optional<double> nightlyRate(const ParkResort& resort, Day night) const override;
    std::optional<HotelStay> hotelStay(const ParkResort& resort, Day checkIn, int nights,
                                       int rooms) const override;
    bool isBusy(Day day) const override;
    // The coverage, check-out day included.
    std::optional<DayRange> coveredDays() const override {
        return DayRange(coverage.from, coverage.to);
    }
    // No seasons: one name for every date.
    SeasonName seasonName(Day) const override { return {"Year-round", "Todo el año"}; }
    double hotelTaxRate(const ParkResort&) const override { return taxes.hotel; }
    bool fromPrices() const override { return true; }

    bool operator==(const UniversalGuide&) const = default;

private:
    friend // Also checks that prices are not negative, hotel rates are above 0, the
// coverage does not run backwards, the park-to-park ticket costs at least
// the 3-day one, and every Express hotel is one of the guide's.
void decode(const json::Value& v, UniversalGuide& out);
    GuideTables<Days> m_days;
};

void decode(const json::Value& v, UniversalGuide::Coverage& out);
void decode(const json::Value& v, UniversalGuide::Taxes& out);
void decode(const json::Value& v, UniversalGuide::Hotel& out);
void decode(const json::Value& v, UniversalGuide::ParkPrice& out);
void decode(const json::Value& v, UniversalGuide::Published& out);
void decode(const json::Value& v, UniversalGuide::Tickets& out);
void decode(const json::Value& v, UniversalGuide::Shuttle& out);
void decode(const json::Value& v, UniversalGuide::Transport& out);
// Also checks that prices are not negative, hotel rates are above 0, the
// coverage does not run backwards, the park-to-park ticket costs at least
// the 3-day one, and every Express hotel is one of the guide's.
void decode(const json::Value& v, UniversalGuide& out);

json::Json encode(const UniversalGuide::Coverage& c);
json::Json encode(const UniversalGuide::Taxes& t);
json::Json encode(const UniversalGuide::Hotel& h);
json::Json encode(const UniversalGuide::ParkPrice& p);
json::Json encode(const UniversalGuide::Published& p);
json::Json encode(const UniversalGuide::Tickets& t);
json::Json encode(const UniversalGuide::Shuttle& s);
json::Json encode(const UniversalGuide::Transport& t);
json::Json encode(const UniversalGuide& g);

}  // namespace tripkit
