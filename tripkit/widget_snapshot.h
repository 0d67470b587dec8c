// The small record the desktop widget reads ("widget.json"): the best deal
// and the watched prices, with the day the fares were published.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tripkit/days.h"
#include "tripkit/json.h"

namespace tripkit {

struct WidgetSnapshot {
    static constexpr std::string_view fileName = "widget.json";

    struct Item {
        std::string title;  // the place's display name
        std::string origin;
        double price = 0;  // dollars per person
        std::optional<double> target;
        Day depart;
        std::optional<Day> returnDay;
        friend bool operator==(const Item&, const Item&) = default;
    };
    // How the widget treats its prices, by their age.
    enum class Showing { current, dated, expired };

    Day updated;  // the day the fares were published
    std::vector<std::string> homeAirports;  // main one first
    std::optional<Item> bestDeal;
    std::vector<Item> watched;

    // Under 4 days old: current; 4 to 7: dated; 8 or more: expired.
    Showing showing(Day today) const;

    // A day read from a text that may be absent or bad, never later than
    // `notAfter` (a file's day from the future is taken as `notAfter`).
    static std::optional<Day> cappedDay(const std::optional<std::string>& text, Day notAfter);
    static std::string_view text(Showing s);  // "current", "dated", "expired"
    friend bool operator==(const WidgetSnapshot&, const WidgetSnapshot&) = default;
};

void decode(const json::Value& v, WidgetSnapshot::Item& out);
void decode(const json::Value& v, WidgetSnapshot& out);
json::Json encode(const WidgetSnapshot::Item& item);
json::Json encode(const WidgetSnapshot& s);

}  // namespace tripkit
