// The nightly fare files (one per origin airport), the deals merged across
// the user's home airports, and one-way quotes for the theme-park planner.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tripkit/days.h"
#include "tripkit/freshness.h"
#include "tripkit/json.h"
#include "tripkit/json_windows.h"
#include "tripkit/places.h"

namespace tripkit {

// One priced one-way choice on one day.
struct FareOption {
    std::string airline;
    double price = 0;
    int stops = 0;
    std::optional<std::string> link;
    std::optional<Day> seen;
    friend bool operator==(const FareOption&, const FareOption&) = default;
};

// The cheapest round trip found from one origin to one destination.
struct Deal {
    std::string destination;
    std::string city;
    std::string country;
    std::optional<std::string> advisory;
    double price = 0;
    Day depart;
    std::optional<Day> returnDay;  // "return" in JSON
    std::string airline;
    int stops = 0;
    std::optional<std::string> link;
    std::optional<std::string> origin;  // filled in by the merge
    std::optional<Day> seen;            // filled in by the merge

    // destination-depart-airline, e.g. LIS-2026-05-14-TP
    std::string id() const;
    bool isStale(Day today) const;
    friend bool operator==(const Deal&, const Deal&) = default;
};

// What a command needs of a fare file, so that a large one is not held whole:
// the day fares to and from Orlando (the planner), the deals (the deals list),
// or both. Every fare is still read and checked either way.
struct FareNeeds {
    Day today;
    bool orlando = true;
    // Only the deals the merge for `today` may choose (see Fares::deals): one a
    // destination, none it would leave out.
    bool deals = true;
};

// One fare file: "flights/CODE.json" on the data host.
struct FareBook {
    using DayFares = std::map<std::string, std::vector<FareOption>>;  // day text -> options

    std::string origin;
    std::string updated;  // day text, kept as written
    DayFares toOrlando;
    DayFares fromOrlando;
    std::vector<Deal> deals;
    // Fares left out while decoding because no real fare looks like them: a
    // price that is not a positive number, negative stops, a return before
    // the departure. Not part of the file.
    int impossible = 0;
    // Fares a narrowed read (FareNeeds) left out that were seen after its day,
    // for Fares::seenAfter. Not part of the file.
    int seenLater = 0;

    std::optional<Day> updatedDay() const { return Day::parse(updated); }
    friend bool operator==(const FareBook&, const FareBook&) = default;

    // A whole fare file read with simdjson's On-Demand API, or nothing for any
    // file but a plainly written one (see json::ReadsFast). Its large parts
    // are read a window of at most `windowBytes` at a time; with `giveBack`
    // the bytes are the caller's own, and the pages read are given back to
    // the system as it goes (see json::fast::GiveBack). With `needs`, the
    // book holds what narrow() would leave of the whole one.
    static std::optional<FareBook> readFast(const char* data, std::size_t size,
                                            std::size_t windowBytes = json::fast::kWindowBytes,
                                            bool giveBack = false,
                                            const std::optional<FareNeeds>& needs = std::nullopt);
};

// The user's airline and stop preferences.
struct FareFilter {
    std::set<std::string> onlyAirlines;
    std::set<std::string> avoidAirlines;
    bool nonstopOnly = false;

    bool allows(const std::string& airline, int stops) const;
    friend bool operator==(const FareFilter&, const FareFilter&) = default;
};

// What one leg costs on one day.
struct FareQuote {
    Day day;
    double price = 0;
    std::optional<std::string> airline;
    std::optional<int> stops;
    std::optional<std::string> link;
    bool estimated = false;  // no real fare matched: a typical-fare estimate
    std::optional<Day> seen;
    double spread = 0;  // uncertainty band of an estimate, dollars; 0 for a real fare
    friend bool operator==(const FareQuote&, const FareQuote&) = default;
};

// Scales typical-fare estimates to the fares found on nearby dates. The
// planner builds it; the default has no factor for any day.
struct FareCalibration {
    struct Adjustment {
        double factor = 1;
        double spread = 0;  // dollars
    };
    std::map<Day, Adjustment> byDay;

    std::optional<Adjustment> at(Day day) const;
};

// What a one-way quote for the planner depends on besides the fare file.
// The planner keeps one and changes the leg, day and demand per quote.
struct QuoteRequest {
    enum class Leg { toOrlando, fromOrlando };
    Leg leg = Leg::toOrlando;
    Day day;
    double demand = 0;  // the day's season level, 0 to 1
    FareFilter filter;
    Airport home;
    Airport orlando;
    std::optional<Day> today;  // without it, fares of any age count
    FareCalibration calibration;
};

struct Airline {
    std::string code;
    std::string name;

    static const std::vector<Airline>& names();  // the fixed table, in its order
    static std::optional<std::string> nameFor(const std::string& code);
    // The display name, or the code itself when the table has none.
    static std::string display(const std::string& code);
};

struct Fares {
    // The deals of the home airports' books (main airport first), merged:
    // one per destination, fresh beats cheap, ties go to the earlier book.
    static std::vector<Deal> deals(const std::vector<FareBook>& books, Day today);
    // The same, moving the deals out of books the caller is done with.
    static std::vector<Deal> deals(std::vector<FareBook>&& books, Day today);

    // The cheapest usable fare of the book on the request's day and leg, or
    // a typical-fare estimate when none is left; without a book, always the
    // estimate.
    static FareQuote quote(const FareBook& book, const QuoteRequest& request);
    static FareQuote quote(const QuoteRequest& request);

    static double typicalOneWay(const Airport& from, const Airport& orlando, double demand);

    // How many of the book's fares were seen after `today`: no search can
    // have seen them, so the merge and the quotes leave them out. A narrowed
    // book counts the ones it left out too.
    static int seenAfter(const FareBook& book, Day today);

    // The distinct airline codes of a book's Orlando options, sorted.
    static std::vector<std::string> airlines(const FareBook* book);
};

// Leaves only what `needs` asks for; Fares::deals over narrowed books gives
// what it gives over the whole ones.
void narrow(FareBook& book, const FareNeeds& needs);

void decode(const json::Value& v, FareOption& out);
void decode(const json::Value& v, Deal& out);
void decode(const json::Value& v, FareBook& out);
void decode(const json::Value& v, FareFilter& out);
json::Json encode(const FareOption& o);
json::Json encode(const Deal& d);
json::Json encode(const FareBook& b);
json::Json encode(const FareFilter& f);

}  // namespace tripkit
