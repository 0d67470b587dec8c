// Who travels on a theme-park trip and what they ask for: the party and its
// counts, resort classes and resorts, which resorts a search takes, the
// acceptable dates and the food allowance.
#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tripkit/days.h"
#include "tripkit/fares.h"
#include "tripkit/json.h"
#include "tripkit/links.h"

namespace tripkit {

// a + b, or std::overflow_error: counts of people and days never wrap.
int checkedSum(int a, int b);

// Money, rates and fractions read from a guide or a search: a number of 0
// or more (a negative price is a typo, never a discount).
double readAmount(const json::Value& v, std::string_view key);
// A price that must be above 0.
double readPositiveAmount(const json::Value& v, std::string_view key);

// Who travels. Every count is the adults plus the children that pass its
// age test (ages in whole years at the time of the trip).
struct Party {
    int adults = 2;
    std::vector<int> childAges;

    // Disney's adult ticket and the Mears adult fare: adults and children of
    // 10 and over.
    int adultPriced() const;
    // Disney's child ticket and the Mears child fare: children aged 3 to 9.
    int childPriced() const;
    // Universal has no child price: adults and children of 3 and over.
    int universalTicketed() const;
    // Plane, rideshare and car seats: adults and children of 2 and over.
    int seats() const;
    // Under 2: fly on a lap.
    int lapBabies() const;
    // Under 3: no park ticket and no Lightning Lane.
    int freeInParks() const;
    // Standard rooms sleep four, plus a baby under 3.
    int rooms() const;

    // A flight search's passengers: adults with children of 12 and over,
    // children aged 2 to 11, infants under 2.
    Links::Passengers passengers() const;

    // Adults plus the children whose age passes `test`.
    int count(const std::function<bool(int age)>& test) const;
    friend bool operator==(const Party&, const Party&) = default;
};

// The flight search of one planner leg (a one-way search for the whole
// party): the fare's own link when Links::fareLink accepts it, otherwise a
// search built from the leg.
std::string flightSearch(const FareQuote& leg, std::string_view from, std::string_view to,
                         const Party& party, std::string_view base, std::string_view marker);

// Resort classes: the first three Disney's, the last two Universal's.
enum class Tier { value, moderate, deluxe, primeValue, signature };

const std::vector<Tier>& allTiers();               // in the order above
std::string_view caseName(Tier t);                 // "primeValue" (JSON form)
std::string_view label(Tier t);                    // "Prime Value"
std::optional<Tier> tierFromCaseName(std::string_view name);

// One bookable hotel of a price guide.
struct ParkResort {
    std::string id;
    std::string name;
    Tier tier = Tier::value;
    std::string room;  // the standard room quoted
    std::string roomEs;
    double low = 0;   // nightly rate in the cheapest season, before tax
    double high = 0;  // nightly rate in the dearest season, before tax
    std::string getAround;
    std::string getAroundEs;
    double parking = 0;  // overnight parking per night, 0 when free
    std::vector<std::string> benefits;
    friend bool operator==(const ParkResort&, const ParkResort&) = default;
};

// Which hotels a search takes: the cheapest of some classes, or only some
// hotels. {"cheapest":{"tiers":[...]}} or {"only":{"ids":[...]}}.
struct ResortChoice {
    enum class Kind { cheapest, only };
    Kind kind = Kind::cheapest;
    std::vector<Tier> tiers;       // cheapest
    std::vector<std::string> ids;  // only

    bool allows(const ParkResort& resort) const;
    friend bool operator==(const ResortChoice&, const ResortChoice&) = default;
};

// The check-in dates a search accepts. A stay is its check-in day through
// its check-out day, both counted (the traveller is there on both).
//  - `earliest`, `latest`: bounds on the check-in day; absent is no bound.
//  - `months`, `checkInWeekdays`: the check-in day's month and weekday
//    (1 = Sunday); empty allows all.
//  - `only`: when not empty, every day of the stay lies in one of the ranges.
//  - `avoid`: no day of the stay lies in any of the ranges.
//  - `avoidHolidays`: no day of the stay is a busy date of the guide.
struct DateWindow {
    std::optional<Day> earliest;
    std::optional<Day> latest;
    std::set<int> months;
    std::set<int> checkInWeekdays;
    std::vector<DayRange> only;
    std::vector<DayRange> avoid;
    bool avoidHolidays = false;

    // The date limits alone (everything but `avoidHolidays`).
    bool withinLimits(Day checkIn, int nights) const;
    // The date limits and, with `avoidHolidays`, no busy day in the stay.
    bool allows(Day checkIn, int nights, const std::function<bool(Day)>& isBusy) const;
    friend bool operator==(const DateWindow&, const DateWindow&) = default;
};

// Whether any day from check-in to check-out (both counted) is busy.
bool touchesBusyDate(Day checkIn, int nights, const std::function<bool(Day)>& isBusy);

// Dollars per person per day. Adults' and children's meals are priced the
// way Disney prices them: the adult budget from age 10, the child budget
// from 3 to 9, children under 3 eat free.
struct FoodBudget {
    double perAdult = 0;
    double perChild = 0;

    // Every day of the stay counts, arrival and departure days included:
    // nights + 1 days. Rounded to whole dollars.
    double total(const Party& party, int nights) const;
    friend bool operator==(const FoodBudget&, const FoodBudget&) = default;
};

void decode(const json::Value& v, Party& out);
void decode(const json::Value& v, Tier& out);
void decode(const json::Value& v, ParkResort& out);
void decode(const json::Value& v, ResortChoice& out);
void decode(const json::Value& v, DateWindow& out);
void decode(const json::Value& v, FoodBudget& out);
json::Json encode(const Party& p);
json::Json encode(Tier t);
json::Json encode(const ParkResort& r);
json::Json encode(const ResortChoice& c);
json::Json encode(const DateWindow& w);
json::Json encode(const FoodBudget& f);

}  // namespace tripkit
