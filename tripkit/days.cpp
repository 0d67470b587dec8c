#include "tripkit/days.h"

#include <charconv>
#include <ctime>
#include <ostream>

#include <date/tz.h>
#include <fmt/format.h>

#include "tripkit/json_fields.h"

namespace tripkit {

// Civil-calendar conversions on 400-year eras of 146097 days, with March as
// the first month of the internal year so the leap day falls at its end.
Day Day::fromCivil(std::int64_t year, int month, int day) {
    const std::int64_t y = year - (month <= 2 ? 1 : 0);
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const std::int64_t yoe = y - era * 400;                                      // [0, 399]
    const std::int64_t mp = month > 2 ? month - 3 : month + 9;                   // March = 0
    const std::int64_t doy = (153 * mp + 2) / 5 + day - 1;                       // [0, 365]
    const std::int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;              // [0, 146096]
    return Day{era * 146097 + doe - 719468};
}

CivilDate Day::civil() const {
    const std::int64_t z = count + 719468;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const std::int64_t doe = z - era * 146097;
    const std::int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const std::int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const std::int64_t mp = (5 * doy + 2) / 153;
    const int d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    const int m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    return CivilDate{yoe + era * 400 + (m <= 2 ? 1 : 0), m, d};
}

int Day::weekday() const { return static_cast<int>(((count % 7) + 11) % 7 + 1); }

Day Day::today() {
    std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return fromCivil(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
}

std::optional<Day> Day::at(std::int64_t unixSeconds, const std::string& zone) {
    try {
        const date::time_zone* tz = zone.empty() ? date::current_zone() : date::locate_zone(zone);
        auto local = tz->to_local(date::sys_seconds{std::chrono::seconds{unixSeconds}});
        auto days = date::floor<date::days>(local);
        return Day{days.time_since_epoch().count()};
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::optional<Day> Day::parse(std::string_view text) {
    text = text.substr(0, 10);
    std::int64_t parts[3] = {0, 0, 0};
    int found = 0;
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t end = text.find('-', start);
        if (end == std::string_view::npos) end = text.size();
        std::string_view piece = text.substr(start, end - start);
        if (!piece.empty()) {
            if (piece.front() == '+') piece.remove_prefix(1);
            std::int64_t value = 0;
            auto [ptr, ec] = std::from_chars(piece.data(), piece.data() + piece.size(), value);
            // A piece that is not wholly an integer is dropped, not rejected.
            if (!piece.empty() && ec == std::errc() && ptr == piece.data() + piece.size()) {
                if (found == 3) return std::nullopt;
                parts[found++] = value;
            }
        }
        start = end + 1;
    }
    if (found != 3) return std::nullopt;
    if (parts[1] < 1 || parts[1] > 12 || parts[2] < 1 || parts[2] > 31) return std::nullopt;
    if (parts[0] > 9999) return std::nullopt;  // text() could not write it back
    return fromCivil(parts[0], static_cast<int>(parts[1]), static_cast<int>(parts[2]));
}

std::string Day::text() const {
    CivilDate c = civil();
    return fmt::format("{:04d}-{:02d}-{:02d}", c.year, c.month, c.day);
}

YearMonth YearMonth::of(Day d) {
    CivilDate c = d.civil();
    return YearMonth{c.year, c.month};
}

YearMonth YearMonth::plusMonths(std::int64_t n) const {
    const std::int64_t total = year * 12 + (month - 1) + n;
    const std::int64_t newYear = total / 12;
    return YearMonth{newYear, static_cast<int>(total - newYear * 12 + 1)};
}

std::vector<Day> YearMonth::days() const {
    std::vector<Day> out;
    const Day first = firstDay();
    for (int i = 0; i < 31; ++i) {
        Day d = first + i;
        if (d.month() != month) break;
        out.push_back(d);
    }
    return out;
}

std::string YearMonth::text() const { return fmt::format("{:04d}-{:02d}", year, month); }

std::ostream& operator<<(std::ostream& out, const Day& d) { return out << d.text(); }
std::ostream& operator<<(std::ostream& out, const YearMonth& m) { return out << m.text(); }

void decode(const json::Value& v, Day& out) {
    std::string_view text = v.stringView();
    auto day = Day::parse(text);
    if (!day) v.fail("not a date: " + std::string(text));
    out = *day;
}

void decode(const json::Value& v, DayRange& out) {
    out = DayRange(v.get<Day>("first"), v.get<Day>("last"));
}

template <>
struct json::Fields<YearMonth> {
    static constexpr auto list =
        std::tuple{json::field("year", &YearMonth::year),
                   json::field("month", &YearMonth::month, [](const json::Value& v, int month) {
                       if (month < 1 || month > 12)
                           v.fail("month out of range: " + std::to_string(month));
                   })};
};

TRIPKIT_JSON_CODEC(YearMonth)

json::Json encode(const Day& d) { return d.text(); }

json::Json encode(const DayRange& r) {
    json::Json out = json::Json::object();
    out["first"] = r.first.text();
    out["last"] = r.last.text();
    return out;
}

}  // namespace tripkit
