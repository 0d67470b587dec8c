#include "tripkit/calendars.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <unordered_map>

#include "tripkit/freshness.h"
#include "tripkit/hashing.h"
#include "tripkit/json_fast.h"
#include "tripkit/json_fields.h"

namespace tripkit {

std::optional<std::int64_t> RoundTrip::nights() const {
    if (!returnDay) return std::nullopt;
    return *returnDay - depart;
}

bool RoundTrip::isStale(Day today) const { return Freshness::isStale(seen, today); }

namespace {

bool fitsDayCount(Day d) { return d.count > CalendarFare::noDay && d.count <= INT32_MAX; }
std::int32_t dayCount(std::optional<Day> d) {
    return d ? static_cast<std::int32_t>(d->count) : CalendarFare::noDay;
}

// The index of `name` in `table`, added at the end when new. For the few
// names of one book; the decoder and the merge use NameTable.
std::uint32_t internSmall(std::vector<std::string>& table, std::string_view name) {
    for (std::size_t i = 0; i < table.size(); ++i) {
        if (table[i] == name) return static_cast<std::uint32_t>(i);
    }
    table.emplace_back(name);
    return static_cast<std::uint32_t>(table.size() - 1);
}

struct NameHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view s) const noexcept {
        return std::hash<std::string_view>{}(s);
    }
};

// Interns names into a table with a hash index, so that a file naming many
// airlines stays linear; the last name met is checked first (a calendar
// names the same few airlines over and over).
class NameTable {
public:
    explicit NameTable(std::vector<std::string>& table) : m_table(table) {
        for (std::size_t i = 0; i < table.size(); ++i) {
            m_index.emplace(table[i], static_cast<std::uint32_t>(i));
        }
    }
    std::uint32_t intern(std::string_view name) {
        if (m_last < m_table.size() && m_table[m_last] == name) return m_last;
        auto found = m_index.find(name);
        if (found != m_index.end()) return m_last = found->second;
        m_table.emplace_back(name);
        m_last = static_cast<std::uint32_t>(m_table.size() - 1);
        m_index.emplace(m_table.back(), m_last);
        return m_last;
    }

private:
    std::vector<std::string>& m_table;
    std::unordered_map<std::string, std::uint32_t, NameHash, std::equal_to<>> m_index;
    std::uint32_t m_last = UINT32_MAX;
};

// Codes of up to seven characters as one integer (length in the top byte),
// so that the few airlines of a file are told apart without a string compare.
std::uint64_t packedCode(std::string_view s) {
    std::uint64_t key = static_cast<std::uint64_t>(s.size()) << 56;
    for (std::size_t i = 0; i < s.size(); ++i) {
        key |= static_cast<std::uint64_t>(static_cast<unsigned char>(s[i])) << (8 * i);
    }
    return key;
}

// The airline table of one decode: short codes are found in a small
// direct-mapped cache, anything else through the NameTable.
class AirlineTable {
public:
    explicit AirlineTable(std::vector<std::string>& table) : m_names(table) {}
    std::uint32_t intern(std::string_view name) {
        if (name.size() > 7) return m_names.intern(name);
        const std::uint64_t key = packedCode(name);
        Slot& slot = m_slots[(key * 0x9E3779B97F4A7C15ull) >> 56];
        if (slot.key == key) return slot.index;
        const std::uint32_t index = m_names.intern(name);
        slot = Slot{key, index};
        return index;
    }

private:
    struct Slot {
        std::uint64_t key = UINT64_MAX;  // no code packs to this: lengths are below 8
        std::uint32_t index = 0;
    };
    NameTable m_names;
    std::array<Slot, 256> m_slots{};
};

// Day::parse with the first of the month kept: a calendar's day texts come
// in runs of one month, so most only need their last two digits read.
class DayReader {
public:
    // The day's count in `out`. An out-parameter, not an optional<Day>: the
    // optional went through memory in two parts and was read back as one,
    // which stalled the hot loop on every cell.
    bool read(std::string_view text, std::int64_t& out) {
        if (text.size() == 10) {
            std::uint64_t month = 0;
            std::memcpy(&month, text.data(), 8);
            const unsigned tens = static_cast<unsigned char>(text[8]) - '0';
            const unsigned ones = static_cast<unsigned char>(text[9]) - '0';
            const unsigned dayOfMonth = tens * 10 + ones;
            if (month == m_month && tens <= 9 && ones <= 9 && dayOfMonth >= 1 && dayOfMonth <= 31) {
                out = m_monthStart + dayOfMonth - 1;
                return true;
            }
        }
        return readNewMonth(text, out);
    }

private:
    [[gnu::noinline]] bool readNewMonth(std::string_view text, std::int64_t& out) {
        if (text.size() == 10 && digit(text[8]) && digit(text[9])) {
            const int dayOfMonth = (text[8] - '0') * 10 + (text[9] - '0');
            const bool plain = std::all_of(text.begin(), text.begin() + 4, digit) &&
                               text[4] == '-' && digit(text[5]) && digit(text[6]) && text[7] == '-';
            const int monthNumber = (text[5] - '0') * 10 + (text[6] - '0');
            if (plain && monthNumber >= 1 && monthNumber <= 12) {
                const int year = (text[0] - '0') * 1000 + (text[1] - '0') * 100 +
                                 (text[2] - '0') * 10 + (text[3] - '0');
                std::memcpy(&m_month, text.data(), 8);
                m_monthStart = Day::fromCivil(year, monthNumber, 1).count;
                if (dayOfMonth < 1 || dayOfMonth > 31) return false;
                out = m_monthStart + dayOfMonth - 1;
                return true;
            }
        }
        const std::optional<Day> day = Day::parse(text);
        if (day) out = day->count;
        return day.has_value();
    }

    static bool digit(char c) { return c >= '0' && c <= '9'; }
    // The first eight bytes of the last plain day text; all-0xFF (invalid
    // UTF-8, so in no parsed text) until one is read.
    std::uint64_t m_month = UINT64_MAX;
    std::int64_t m_monthStart = 0;
};

}  // namespace

CalendarBook CalendarBook::init(std::string origin, std::string updated,
                                const std::vector<RoundTrip>& trips) {
    CalendarBook book;
    book.origin = std::move(origin);
    book.updated = std::move(updated);
    for (const RoundTrip& trip : trips) book.add(trip);
    return book;
}

void CalendarBook::add(const RoundTrip& trip) {
    auto& fares = routes[trip.destination];
    if (!fitsDayCount(trip.depart) || (trip.returnDay && !fitsDayCount(*trip.returnDay)) ||
        (trip.seen && !fitsDayCount(*trip.seen))) {
        ++skippedImpossible;
        return;
    }
    CalendarFare fare;
    fare.price = trip.price;
    fare.depart = static_cast<std::int32_t>(trip.depart.count);
    fare.back = dayCount(trip.returnDay);
    fare.seen = dayCount(trip.seen);
    fare.stops = trip.stops;
    fare.airline = internSmall(airlines, trip.airline);
    fares.push_back(fare);
}

std::vector<RoundTrip> CalendarBook::trips(std::string_view to) const {
    std::vector<RoundTrip> out;
    auto route = routes.find(to);
    if (route == routes.end()) return out;
    out.reserve(route->second.size());
    for (const CalendarFare& fare : route->second) {
        out.push_back(RoundTrip{origin, std::string(to), fare.departDay(), fare.returnDay(),
                                fare.price, airlines[fare.airline], fare.stops, fare.seenDay(),
                                std::nullopt});
    }
    return out;
}

std::size_t CalendarBook::tripCount() const {
    std::size_t n = 0;
    for (const auto& route : routes) n += route.second.size();
    return n;
}

bool operator==(const CalendarBook& a, const CalendarBook& b) {
    if (a.origin != b.origin || a.updated != b.updated || a.routes.size() != b.routes.size()) {
        return false;
    }
    for (auto i = a.routes.begin(), j = b.routes.begin(); i != a.routes.end(); ++i, ++j) {
        if (i->first != j->first || i->second.size() != j->second.size()) return false;
        for (std::size_t k = 0; k < i->second.size(); ++k) {
            const CalendarFare& x = i->second[k];
            const CalendarFare& y = j->second[k];
            if (x.price != y.price || x.depart != y.depart || x.back != y.back ||
                x.seen != y.seen || x.stops != y.stops ||
                a.airlines[x.airline] != b.airlines[y.airline]) {
                return false;
            }
        }
    }
    return true;
}

FareCalendar::FareCalendar(const std::vector<CalendarBook>& books) {
    for (const CalendarBook& book : books) add(book);
}

void FareCalendar::add(const CalendarBook& book) {
    const std::uint32_t origin = internSmall(origins, book.origin);
    NameTable names(airlines);
    std::vector<std::uint32_t> airlineOf;
    airlineOf.reserve(book.airlines.size());
    for (const std::string& name : book.airlines) airlineOf.push_back(names.intern(name));

    Row incoming;
    Row merged;
    for (const auto& [to, fares] : book.routes) {
        incoming.clear();
        for (CalendarFare fare : fares) {
            if (std::isinf(fare.price)) continue;
            fare.origin = origin;
            fare.airline = airlineOf[fare.airline];
            incoming.push_back(fare);
        }
        if (incoming.empty()) continue;
        auto byDepart = [](const CalendarFare& a, const CalendarFare& b) {
            return a.depart < b.depart;
        };
        if (!std::is_sorted(incoming.begin(), incoming.end(), byDepart)) {
            std::stable_sort(incoming.begin(), incoming.end(), byDepart);
        }
        // One fare per day, in file order: a later cell for the same day
        // replaces only at a strictly lower price.
        std::size_t kept = 0;
        for (std::size_t i = 1; i < incoming.size(); ++i) {
            if (incoming[i].depart != incoming[kept].depart) {
                incoming[++kept] = incoming[i];
            } else if (incoming[i].price < incoming[kept].price) {
                incoming[kept] = incoming[i];
            }
        }
        incoming.resize(kept + 1);

        auto row = byDestination.find(to);
        if (row == byDestination.end()) {
            byDestination.emplace(to, incoming);
            continue;
        }
        // Both in day order: the held (earlier book's) fare stays on a tie.
        const Row& held = row->second;
        merged.clear();
        merged.reserve(held.size() + incoming.size());
        std::size_t h = 0, n = 0;
        while (h < held.size() || n < incoming.size()) {
            if (n == incoming.size() || (h < held.size() && held[h].depart < incoming[n].depart)) {
                merged.push_back(held[h++]);
            } else if (h == held.size() || incoming[n].depart < held[h].depart) {
                merged.push_back(incoming[n++]);
            } else {
                merged.push_back(incoming[n].price < held[h].price ? incoming[n] : held[h]);
                ++h;
                ++n;
            }
        }
        row->second.swap(merged);
    }
}

bool FareCalendar::usable(const CalendarFare& fare, Day from) {
    if (fare.seen != CalendarFare::noDay && from.count - fare.seen > Freshness::usableDays) {
        return false;
    }
    return fare.depart >= from.count && fare.depart - from.count <= Freshness::horizonDays;
}

RoundTrip FareCalendar::roundTrip(std::string_view to, const CalendarFare& fare) const {
    return RoundTrip{origins[fare.origin], std::string(to),      fare.departDay(),
                     fare.returnDay(),     fare.price,           airlines[fare.airline],
                     fare.stops,           fare.seenDay(),       std::nullopt};
}

std::optional<RoundTrip> FareCalendar::trip(std::string_view to, Day depart) const {
    auto route = byDestination.find(to);
    if (route == byDestination.end()) return std::nullopt;
    const Row& row = route->second;
    auto at = std::lower_bound(row.begin(), row.end(), depart.count,
                               [](const CalendarFare& f, std::int64_t d) { return f.depart < d; });
    if (at == row.end() || at->depart != depart.count) return std::nullopt;
    return roundTrip(to, *at);
}

std::vector<RoundTrip> FareCalendar::trips(std::string_view to, Day from) const {
    std::vector<RoundTrip> out;
    // A row is in day order, so the result is already by departure day.
    forEachUsable(to, from, [&](const CalendarFare& fare) { out.push_back(roundTrip(to, fare)); });
    return out;
}

std::vector<RoundTrip> FareCalendar::allTrips(Day from) const {
    struct Held {
        std::int32_t depart;
        const std::string* to;
        const CalendarFare* fare;
    };
    std::vector<Held> held;
    for (const auto& entry : byDestination) {
        const std::string* to = &entry.first;  // clang 14 cannot capture a structured binding
        forEachUsable(entry.second, from,
                      [&](const CalendarFare& f) { held.push_back({f.depart, to, &f}); });
    }
    // Stable: trips leaving the same day stay in destination order.
    std::stable_sort(held.begin(), held.end(),
                     [](const Held& a, const Held& b) { return a.depart < b.depart; });
    std::vector<RoundTrip> out;
    out.reserve(held.size());
    for (const Held& h : held) out.push_back(roundTrip(*h.to, *h.fare));
    return out;
}

std::vector<std::pair<YearMonth, RoundTrip>> FareCalendar::months(std::string_view to,
                                                                  Day from) const {
    std::vector<std::pair<YearMonth, const CalendarFare*>> chosen;
    forEachUsable(to, from, [&](const CalendarFare& fare) {
        const YearMonth month = YearMonth::of(fare.departDay());
        // Fares come by departure day, so a month's fares are consecutive.
        if (chosen.empty() || chosen.back().first != month) {
            chosen.emplace_back(month, &fare);
        } else if (fare.price < chosen.back().second->price) {
            chosen.back().second = &fare;
        }
    });
    std::vector<std::pair<YearMonth, RoundTrip>> out;
    out.reserve(chosen.size());
    for (const auto& [month, fare] : chosen) out.emplace_back(month, roundTrip(to, *fare));
    return out;
}

std::optional<RoundTrip> FareCalendar::cheapest(std::string_view to, std::optional<DayRange> within,
                                                Day from, bool freshOnly) const {
    std::vector<const CalendarFare*> candidates;
    forEachUsable(to, from, [&](const CalendarFare& fare) {
        if (within && (!within->contains(fare.departDay()) ||
                       (!fare.oneWay() && !within->contains(Day{fare.back})))) {
            return;
        }
        candidates.push_back(&fare);
    });
    auto stale = [&](const CalendarFare* f) { return Freshness::isStale(f->seenDay(), from); };
    const bool anyFresh = !std::all_of(candidates.begin(), candidates.end(), stale);
    if (!anyFresh && freshOnly) return std::nullopt;
    const CalendarFare* best = nullptr;
    for (const CalendarFare* f : candidates) {
        if (anyFresh && stale(f)) continue;
        // In day order: on equal prices the earlier departure stays.
        if (!best || f->price < best->price) best = f;
    }
    if (!best) return std::nullopt;
    return roundTrip(to, *best);
}

std::optional<RoundTrip> FareCalendar::best(const std::vector<RoundTrip>& trips, Day today,
                                            bool freshOnly) {
    const bool anyFresh = std::any_of(trips.begin(), trips.end(),
                                      [&](const RoundTrip& t) { return !t.isStale(today); });
    if (!anyFresh && freshOnly) return std::nullopt;
    const RoundTrip* chosen = nullptr;
    for (const RoundTrip& t : trips) {
        if (anyFresh && t.isStale(today)) continue;
        if (!chosen || t.price < chosen->price ||
            (t.price == chosen->price && t.depart < chosen->depart)) {
            chosen = &t;
        }
    }
    if (!chosen) return std::nullopt;
    return *chosen;
}

template <>
struct json::Fields<RoundTrip> {
    using T = RoundTrip;
    static constexpr auto list =
        std::tuple{json::field("origin", &T::origin), json::field("destination", &T::destination),
                   json::field("depart", &T::depart), json::field("returnDay", &T::returnDay),
                   json::field("price", &T::price),   json::field("airline", &T::airline),
                   json::field("stops", &T::stops),   json::field("seen", &T::seen),
                   json::field("link", &T::link)};
};

TRIPKIT_JSON_CODEC(RoundTrip)

namespace {

constexpr const char* kCellShape = "expected 3 to 5 elements [price, airline, stops, back, seen], found ";

// One cell's values, their types checked; days still as text.
struct Cell {
    double price = 0;
    std::string_view airline;
    int stops = 0;
    std::optional<std::string_view> back;
    std::optional<std::string_view> seen;
};

inline Cell readCell(const json::Value& v) {
    if (!v.isArray()) v.fail("expected an array");
    const std::size_t size = v.size();
    if (size < 3 || size > 5) v.fail(kCellShape + std::to_string(size));
    Cell cell;
    int i = 0;
    v.forEach([&](const json::Value& e) {
        switch (i++) {
            case 0: cell.price = e.number(); break;
            case 1: cell.airline = e.stringView(); break;
            case 2: {
                const std::int64_t stops = e.integer();
                if (stops < INT32_MIN || stops > INT32_MAX) e.fail("integer out of range");
                cell.stops = static_cast<int>(stops);
                break;
            }
            case 3:
                if (!e.isNull()) cell.back = e.stringView();
                break;
            default:
                // Never written as null, but a null says "not seen" as well as a short array.
                if (!e.isNull()) cell.seen = e.stringView();
                break;
        }
    });
    return cell;
}

}  // namespace

void decode(const json::Value& v, CalendarBook::Entry& out) {
    const Cell cell = readCell(v);
    out.price = cell.price;
    out.airline = std::string(cell.airline);
    out.stops = cell.stops;
    out.back = cell.back ? std::optional<std::string>(*cell.back) : std::nullopt;
    out.seen = cell.seen ? std::optional<std::string>(*cell.seen) : std::nullopt;
}

namespace {

// Builds a book's grid from its cells as either reader gives them: impossible
// cells skipped and counted, names interned, days read with the month cache.
class GridBuilder {
public:
    explicit GridBuilder(CalendarBook& out)
        : m_out(out), m_updated(updatedCount(out.updated)), m_airlines(out.airlines) {
        out.routes.clear();
        out.airlines.clear();
        out.skippedImpossible = 0;
    }

    std::vector<CalendarFare>& route(std::string_view to) {
        auto found = m_out.routes.find(to);
        if (found == m_out.routes.end()) {
            found = m_out.routes.emplace(std::string(to), std::vector<CalendarFare>{}).first;
        }
        return found->second;
    }

    void add(std::vector<CalendarFare>& fares, std::string_view departText, const Cell& cell) {
        // A cell the job could not date says nothing: skip it alone.
        std::int64_t depart = 0;
        if (!m_departs.read(departText, depart)) return;
        // Days as counts, noDay for none: see DayReader::read.
        std::int64_t back = CalendarFare::noDay;
        if (cell.back && !m_backs.read(*cell.back, back)) back = CalendarFare::noDay;
        std::int64_t seen = CalendarFare::noDay;
        if (cell.seen && !m_seens.read(*cell.seen, seen)) seen = CalendarFare::noDay;
        bool impossible = !(cell.price > 0) || !std::isfinite(cell.price) || cell.stops < 0 ||
                          (back != CalendarFare::noDay && back < depart);
        if (seen == CalendarFare::noDay) {
            seen = m_updated;
        } else if (m_updated != CalendarFare::noDay && seen > m_updated) {
            impossible = true;
        }
        impossible = impossible || !fits(depart) || (back != CalendarFare::noDay && !fits(back)) ||
                     (seen != CalendarFare::noDay && !fits(seen));
        if (impossible) {
            ++m_out.skippedImpossible;
            return;
        }
        CalendarFare fare;
        fare.price = cell.price;
        fare.depart = static_cast<std::int32_t>(depart);
        fare.back = static_cast<std::int32_t>(back);
        fare.seen = static_cast<std::int32_t>(seen);
        fare.stops = cell.stops;
        fare.airline = m_airlines.intern(cell.airline);
        fares.push_back(fare);
    }

private:
    static std::int64_t updatedCount(const std::string& text) {
        const std::optional<Day> day = Day::parse(text);
        return day ? day->count : CalendarFare::noDay;
    }
    static bool fits(std::int64_t count) { return fitsDayCount(Day{count}); }

    CalendarBook& m_out;
    std::int64_t m_updated;  // noDay when the file's day does not read
    AirlineTable m_airlines;
    DayReader m_departs, m_backs, m_seens;
};

namespace ondemand = simdjson::ondemand;

// One cell through the On-Demand API; false for anything the DOM reader
// would refuse or read otherwise (a whole number written as 2.0, say).
bool readCellFast(ondemand::value value, Cell& cell) {
    ondemand::array array;
    if (value.get_array().get(array) != simdjson::SUCCESS) return false;
    int i = 0;
    for (auto element : array) {
        ondemand::value e;
        if (element.get(e) != simdjson::SUCCESS) return false;
        switch (i++) {
            case 0:
                if (!json::fast::read(e, cell.price)) return false;
                break;
            case 1:
                if (e.get_string().get(cell.airline) != simdjson::SUCCESS) return false;
                break;
            case 2: {
                std::int64_t stops = 0;
                if (e.get_int64().get(stops) != simdjson::SUCCESS) return false;
                if (stops < INT32_MIN || stops > INT32_MAX) return false;
                cell.stops = static_cast<int>(stops);
                break;
            }
            case 3:
            case 4: {
                bool null = false;
                if (e.is_null().get(null) != simdjson::SUCCESS) return false;
                if (null) break;
                std::string_view text;
                if (e.get_string().get(text) != simdjson::SUCCESS) return false;
                (i == 4 ? cell.back : cell.seen) = text;
                break;
            }
            default:
                return false;
        }
    }
    return i >= 3;
}

// Reads the routes object into the grid; false as soon as anything is unusual.
bool readRoutesFast(ondemand::value value, GridBuilder& grid) {
    ondemand::object routes;
    if (value.get_object().get(routes) != simdjson::SUCCESS) return false;
    // A route has as many days as the one before, near enough: reserving
    // that much saves most of the regrowth.
    std::size_t expected = 64;
    for (auto routeResult : routes) {
        ondemand::field route;
        std::string_view to;
        ondemand::object days;
        if (std::move(routeResult).get(route) != simdjson::SUCCESS || route.unescaped_key().get(to) != simdjson::SUCCESS ||
            route.value().get_object().get(days) != simdjson::SUCCESS) {
            return false;
        }
        std::vector<CalendarFare>& fares = grid.route(to);
        fares.reserve(fares.size() + expected);
        for (auto dayResult : days) {
            ondemand::field day;
            std::string_view depart;
            Cell cell;
            if (std::move(dayResult).get(day) != simdjson::SUCCESS || day.unescaped_key().get(depart) != simdjson::SUCCESS ||
                !readCellFast(day.value(), cell)) {
                return false;
            }
            grid.add(fares, depart, cell);
        }
        expected = std::max<std::size_t>(fares.size(), 16);
    }
    return true;
}

}  // namespace

// Hand-written: the routes become the compact grid, impossible cells skipped
// and counted.
void decode(const json::Value& v, CalendarBook& out) {
    out.origin = v.get<std::string>("origin");
    out.updated = v.get<std::string>("updated");
    GridBuilder grid(out);
    v.field("routes").forEachMember([&](std::string_view to, const json::Value& days) {
        std::vector<CalendarFare>& fares = grid.route(to);
        if (days.isObject()) fares.reserve(fares.size() + days.size());
        days.forEachMember([&](std::string_view departText, const json::Value& value) {
            grid.add(fares, departText, readCell(value));
        });
    });
}

// The nightly job writes origin, updated and routes in that order and nothing
// else; any other document (keys repeated, missing, reordered or unknown, a
// value of another type) is left to the DOM decoder, so that what is accepted
// and every error message stay exactly the DOM decoder's.
std::optional<CalendarBook> CalendarBook::readFast(const char* data, std::size_t size) {
    json::fast::ThreadParser parser;
    ondemand::document doc;
    ondemand::object root;
    if (!json::fast::start(parser.get(), data, size, doc, root)) return std::nullopt;
    CalendarBook out;
    std::optional<GridBuilder> grid;
    bool origin = false;
    bool routes = false;
    for (auto field : root) {
        std::string_view key;
        ondemand::value value;
        if (field.unescaped_key().get(key) != simdjson::SUCCESS ||
            field.value().get(value) != simdjson::SUCCESS) {
            return std::nullopt;
        }
        std::string_view text;
        if (key == "origin" && !origin && !grid) {
            if (value.get_string().get(text) != simdjson::SUCCESS) return std::nullopt;
            out.origin = text;
            origin = true;
        } else if (key == "updated" && origin && !grid) {
            if (value.get_string().get(text) != simdjson::SUCCESS) return std::nullopt;
            out.updated = text;
            grid.emplace(out);
        } else if (key == "routes" && grid && !routes) {
            if (!readRoutesFast(value, *grid)) return std::nullopt;
            routes = true;
        } else {
            return std::nullopt;
        }
    }
    if (!routes || !json::fast::atEnd(doc)) return std::nullopt;
    return out;
}

json::Json encode(const CalendarBook::Entry& e) {
    json::Json out = json::Json::array();
    out.push_back(json::number(e.price));
    out.push_back(e.airline);
    out.push_back(e.stops);
    // `back` keeps its place with a null so that `seen` stays fifth.
    out.push_back(e.back ? json::Json(*e.back) : json::Json());
    if (e.seen) out.push_back(*e.seen);
    return out;
}

json::Json encode(const CalendarBook& b) {
    json::Json out = json::Json::object();
    out["origin"] = b.origin;
    out["updated"] = b.updated;
    json::Json routes = json::Json::object();
    for (const auto& [to, fares] : b.routes) {
        json::Json days = json::Json::object();
        for (const CalendarFare& fare : fares) {
            CalendarBook::Entry entry{fare.price, b.airlines[fare.airline], fare.stops,
                                      std::nullopt, std::nullopt};
            if (!fare.oneWay()) entry.back = Day{fare.back}.text();
            if (fare.seen != CalendarFare::noDay) entry.seen = Day{fare.seen}.text();
            days[fare.departDay().text()] = encode(entry);
        }
        routes[to] = std::move(days);
    }
    out["routes"] = std::move(routes);
    return out;
}

}  // namespace tripkit

std::size_t std::hash<tripkit::RoundTrip>::operator()(const tripkit::RoundTrip& t) const noexcept {
    return tripkit::hashOf(t.origin, t.destination, t.depart, t.returnDay, t.price, t.airline,
                           t.stops, t.seen, t.link);
}
