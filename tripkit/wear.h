// What to wear: the days of a trip (typical or forecast), the weather notes,
// what to wear by day and by evening, and the packing list with its counts.
// Pure logic: °C, km/h, percent and chances inside; units only in texts.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tripkit/days.h"
#include "tripkit/hashing.h"
#include "tripkit/json.h"
#include "tripkit/wear_data.h"

namespace tripkit {

enum class WearActivity { cityWalking, beach, hiking, themeParks, dinnerOut, business };

const std::vector<WearActivity>& allWearActivities();  // in the order above
std::string_view caseName(WearActivity a);             // "cityWalking"
std::optional<WearActivity> wearActivityFromCaseName(std::string_view name);
std::string_view label(WearActivity a);  // "City walking"
std::string_view icon(WearActivity a);   // "figure.walk"

// The band of a feels-like temperature, coldest first.
enum class TempBand { frigid = 0, freezing, cold, cool, mild, warm, hot };

TempBand tempBand(double celsius);  // NaN is frigid
std::string_view label(TempBand b);
std::string_view daytimePhrase(TempBand b);
std::string_view eveningPhrase(TempBand b);

enum class TempUnit { fahrenheit, celsius };

std::string_view caseName(TempUnit u);
std::optional<TempUnit> tempUnitFromCaseName(std::string_view name);
std::string temperatureText(double celsius, TempUnit unit);       // "68°F"
std::string rangeText(double lowC, double highC, TempUnit unit);  // "55–68°F"
std::string differenceText(double differenceC, TempUnit unit);    // "18°F"
std::string windText(double kmh, TempUnit unit);                  // "12 mph"

// What a person asks the What to wear guide for: a place, the days and how
// they travel.
struct WearAsk {
    WearPlace place;
    Day first;
    Day last;
    std::set<WearActivity> activities;
    bool laundry = false;
    bool modest = false;
    TempUnit unit = TempUnit::fahrenheit;
};

struct WearRequest {
    std::vector<WearDay> days;  // by day
    std::set<WearActivity> activities;
    bool laundry = false;
    std::string country;  // two-letter code, upper case
    bool modest = false;

    // Sorts the days and upper-cases the country.
    static WearRequest make(std::vector<WearDay> days, std::set<WearActivity> activities,
                            bool laundry, std::string_view country, bool modest);
    bool has(WearActivity a) const { return activities.count(a) != 0; }
    friend bool operator==(const WearRequest&, const WearRequest&) = default;
};

struct PackItem {
    enum class Section { clothes, layers, underwear, footwear, accessories, extras };

    std::string id;  // stable: duplicates and ticked items are found by it
    Section section = Section::clothes;
    std::string name;
    int count = 1;
    std::string note;
    std::optional<std::string> shop;  // a shopping search phrase
    friend bool operator==(const PackItem&, const PackItem&) = default;
};

const std::vector<PackItem::Section>& allPackSections();  // in section order
std::string_view caseName(PackItem::Section s);           // "clothes"
std::string_view title(PackItem::Section s);              // "Clothes"

json::Json encode(const PackItem& item);

struct WearGuide {
    struct DayLine {
        WearDay day;
        TempBand dayBand = TempBand::frigid;    // of the feels-high
        TempBand nightBand = TempBand::frigid;  // of the feels-low
        std::string summary;                    // "Warm day, cool night; strong sun"
        friend bool operator==(const DayLine&, const DayLine&) = default;
    };

    std::vector<std::string> summary;  // the weather notes
    std::string daytime;
    std::string evening;
    std::vector<DayLine> days;
    std::vector<PackItem> packing;  // in the order added
    bool usesForecast = false;
    bool usesTypical = false;
    // The typical days come from the shipped climate normals rather than
    // twenty years of NASA POWER daily data; the source line says which.
    bool typicalFromNormals = false;
    int planDays = 0;
    friend bool operator==(const WearGuide&, const WearGuide&) = default;
};

json::Json encode(const WearGuide::DayLine& line);
json::Json encode(const WearGuide& guide);

struct WhatToWear {
    static constexpr std::int64_t maxPlanDays = 61;
    static constexpr std::string_view forecastSourceLine =
        "Forecast days come from MET Norway; the rest is typical weather for the dates, not a "
        "forecast.";
    static constexpr std::string_view typicalSourceLine =
        "Typical weather for these dates (NASA POWER averages), not a forecast.";
    static constexpr std::string_view normalsSourceLine =
        "Typical weather for these dates (published climate normals), not a forecast.";
    // The line that says where the guide's weather comes from.
    static std::string_view sourceLine(const WearGuide& guide);

    // The typical day for `day` blended from the twelve months (January first).
    static WearDay typicalDay(const std::vector<WearMonth>& months, Day day);

    // One day per date from the earlier to the later of `a` and `b`, at most
    // 61; a forecast day where the map has one, a typical day otherwise.
    static std::vector<WearDay> planDays(Day a, Day b, const std::vector<WearMonth>& months,
                                         const std::map<Day, WearDay>& forecast);

    static WearGuide::DayLine dayLine(const WearDay& day);

    static WearGuide guide(const WearRequest& request, TempUnit unit);

    // The packing list as plain text: the title underlined, the sections with
    // "[x] " for the ticked ids, the local dress notes when there are any, and
    // the line that says where the weather came from.
    static std::string exportText(const WearGuide& guide, std::string_view title,
                                  const std::set<std::string>& ticked = {},
                                  const std::vector<std::string>& dressNotes = {});
};

}  // namespace tripkit

template <>
struct std::hash<tripkit::WearRequest> {
    std::size_t operator()(const tripkit::WearRequest& r) const noexcept {
        std::size_t seed = tripkit::hashOf(r.laundry, r.country, r.modest);
        for (const auto& d : r.days) seed = tripkit::hashOf(seed, d);
        for (auto a : r.activities) seed = tripkit::hashOf(seed, static_cast<int>(a));
        return seed;
    }
};
template <>
struct std::hash<tripkit::PackItem> {
    std::size_t operator()(const tripkit::PackItem& i) const noexcept {
        return tripkit::hashOf(i.id, static_cast<int>(i.section), i.name, i.count, i.note,
                               i.shop.value_or(std::string()), i.shop.has_value());
    }
};
