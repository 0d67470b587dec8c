// Nightly price history per origin, merged across the home airports, and the
// judgement of one price against the last 90 nights of it.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tripkit/days.h"
#include "tripkit/json.h"

namespace tripkit {

// The cheapest price found on one night.
struct NightPrice {
    Day day;
    double price = 0;
    friend bool operator==(const NightPrice&, const NightPrice&) = default;
};

// One history file: "history/CODE.json" on the data host.
struct HistoryBook {
    std::string origin;
    Day updated;  // the night the file was published
    Day from;     // the night of element 0 of every series
    // destination code -> one price per night from `from` on; nothing where
    // no fare was found that night
    std::map<std::string, std::vector<std::optional<double>>> routes;
    // Prices read as "no fare that night" while decoding because they are
    // not positive numbers. Not part of the file.
    int impossible = 0;

    // The series of one destination as dated prices; null, zero and negative
    // values are left out. Empty for an unknown destination.
    std::vector<NightPrice> nights(std::string_view to) const;
    friend bool operator==(const HistoryBook&, const HistoryBook&) = default;
};

// How one price compares with the nightly prices seen before.
struct PriceCheck {
    enum class Verdict { low, typical, high };
    static constexpr int minNights = 21;    // fewer: no verdict yet
    static constexpr int minRunDays = 14;   // shorter "lowest in" runs are not worth saying

    double price = 0;
    Verdict verdict = Verdict::typical;
    int nights = 0;  // nights of data used
    int days = 0;    // earliest night with data to today, both counted
    double low = 0;      // 25th percentile
    double typical = 0;  // median
    double high = 0;     // 75th percentile
    double cheaperShare = 0;  // share of nights strictly below `price`
    std::optional<int> lowestInDays;

    // Nothing for a price that is not positive or fewer than 21 nights.
    static std::optional<PriceCheck> judge(double price, const std::vector<NightPrice>& history,
                                           Day today);
    // Linear interpolation between closest ranks; 0 for no values.
    static double percentile(const std::vector<double>& sortedAscending, double q);

    static std::string_view text(Verdict v);  // "low", "typical", "high"
    static std::optional<Verdict> verdictNamed(std::string_view text);
    friend bool operator==(const PriceCheck&, const PriceCheck&) = default;
};

// Destination -> night -> the cheapest price from any merged home airport.
struct FareHistory {
    static constexpr int windowDays = 90;

    std::map<std::string, std::map<Day, double>> prices;

    FareHistory() = default;
    // Merges the books in order (main airport first). With `today`, a book
    // published more than a week before it is left out.
    FareHistory(const std::vector<HistoryBook>& books, std::optional<Day> today);

    bool isEmpty() const { return prices.empty(); }
    // The nights d with today - 90 < d <= today, ascending.
    std::vector<NightPrice> nights(std::string_view to, Day today) const;
    std::optional<PriceCheck> check(double price, std::string_view to, Day today) const;
    friend bool operator==(const FareHistory&, const FareHistory&) = default;
};

void decode(const json::Value& v, HistoryBook& out);
void decode(const json::Value& v, NightPrice& out);
void decode(const json::Value& v, PriceCheck& out);
void decode(const json::Value& v, PriceCheck::Verdict& out);
json::Json encode(const HistoryBook& b);
json::Json encode(const NightPrice& n);
json::Json encode(const PriceCheck& c);
json::Json encode(PriceCheck::Verdict verdict);

}  // namespace tripkit
