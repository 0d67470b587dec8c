// Calendar days, spans of days and calendar months: whole numbers in the
// proleptic Gregorian calendar, never times, so a day read from a feed means
// the same day on every machine. Only `Day::today` looks at a time zone.
#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tripkit/json.h"

namespace tripkit {

struct CivilDate {
    std::int64_t year = 1970;
    int month = 1;
    int day = 1;
};

// One calendar day: days since 1970-01-01 (day 0; earlier days are negative).
//   Day d = Day::fromCivil(2026, 3, 7);   d.text() == "2026-03-07"
//   d + 1 == Day::fromCivil(2026, 3, 8);  d - Day::fromCivil(2026, 3, 1) == 6
struct Day {
    std::int64_t count = 0;

    static Day fromCivil(std::int64_t year, int month, int day);
    CivilDate civil() const;
    std::int64_t year() const { return civil().year; }
    int month() const { return civil().month; }
    int dayOfMonth() const { return civil().day; }

    // 1 = Sunday ... 7 = Saturday.
    int weekday() const;

    // The day of the current instant in the user's time zone.
    static Day today();
    // The day of `unixSeconds` in the time zone `zone` (an IANA name; the
    // user's own zone when empty). Nothing when the zone is unknown.
    static std::optional<Day> at(std::int64_t unixSeconds, const std::string& zone = "");
    // Midnight UTC of this day, in seconds since 1970-01-01 00:00 UTC.
    double unixSeconds() const { return static_cast<double>(count) * 86400.0; }

    // Reads the first ten characters as year-month-day; lenient on purpose
    // (a time part after the date is ignored, 2026-02-30 is 2026-03-02).
    static std::optional<Day> parse(std::string_view text);
    std::string text() const;  // "%04d-%02d-%02d"

    friend Day operator+(Day d, std::int64_t n) { return Day{d.count + n}; }
    friend Day operator-(Day d, std::int64_t n) { return Day{d.count - n}; }
    friend std::int64_t operator-(Day a, Day b) { return a.count - b.count; }
    Day& operator+=(std::int64_t n) {
        count += n;
        return *this;
    }
    friend auto operator<=>(const Day&, const Day&) = default;
};

// An inclusive span of days.
struct DayRange {
    Day first;
    Day last;

    DayRange() = default;
    // Either order: the smaller day becomes `first`.
    DayRange(Day a, Day b) : first(a < b ? a : b), last(a < b ? b : a) {}

    bool contains(Day d) const { return first <= d && d <= last; }
    std::int64_t length() const { return last - first + 1; }  // in days
    friend bool operator==(const DayRange&, const DayRange&) = default;
};

// A calendar month; ordered and identified by year × 100 + month.
struct YearMonth {
    std::int64_t year = 1970;
    int month = 1;

    static YearMonth of(Day d);
    std::int64_t key() const { return year * 100 + month; }
    YearMonth plusMonths(std::int64_t n) const;
    Day firstDay() const { return Day::fromCivil(year, month, 1); }
    std::vector<Day> days() const;  // the 28 to 31 days of the month, in order
    std::string text() const;       // "2026-03"

    friend bool operator==(const YearMonth& a, const YearMonth& b) { return a.key() == b.key(); }
    friend auto operator<=>(const YearMonth& a, const YearMonth& b) { return a.key() <=> b.key(); }
};

std::ostream& operator<<(std::ostream& out, const Day& d);
std::ostream& operator<<(std::ostream& out, const YearMonth& m);

void decode(const json::Value& v, Day& out);
void decode(const json::Value& v, DayRange& out);
void decode(const json::Value& v, YearMonth& out);
json::Json encode(const Day& d);
json::Json encode(const DayRange& r);
json::Json encode(const YearMonth& m);

}  // namespace tripkit

template <>
struct std::hash<tripkit::Day> {
    std::size_t operator()(const tripkit::Day& d) const noexcept {
        return std::hash<std::int64_t>{}(d.count);
    }
};
template <>
struct std::hash<tripkit::YearMonth> {
    std::size_t operator()(const tripkit::YearMonth& m) const noexcept {
        return std::hash<std::int64_t>{}(m.key());
    }
};
