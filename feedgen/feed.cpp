#include "feedgen/feed.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <stdexcept>

#include <fmt/format.h>

#include "feedgen/prices.h"
#include "tripkit/destinations.h"
#include "tripkit/places.h"

namespace roamwise::feedgen {

using tripkit::Airport;
using tripkit::Day;
using tripkit::Destination;

namespace {

// Closer places are not flown to (nobody flies from Newark to JFK).
constexpr double kMinMiles = 120;

struct Places {
    std::vector<Destination> synthetic;
    std::vector<const Destination*> all;  // catalog order, then the made-up ones
};

std::string syntheticCode(int i) {
    std::string code = "Q";
    if (i >= 26 * 26) code += static_cast<char>('A' + (i / (26 * 26)) % 26);
    code += static_cast<char>('A' + (i / 26) % 26);
    code += static_cast<char>('A' + i % 26);
    return code;
}

Places places(const Options& options) {
    Places p;
    const auto& catalog = tripkit::Destinations::shipped().list;
    p.synthetic.reserve(static_cast<std::size_t>(std::max(options.extraDestinations, 0)));
    const Key key{options.seed, codeKey("SYN"), 0};
    for (int i = 0; i < options.extraDestinations; ++i) {
        Destination d;
        d.code = syntheticCode(i);
        d.fareCode = d.code;
        d.name = "Sample City " + d.code;
        d.domestic = i % 3 == 0;
        d.country = d.domestic ? "United States" : "Sampleland";
        d.region = d.domestic ? "United States" : "Europe";
        d.categories = {"cities"};
        d.lat = -35 + 95 * key.uniform(Purpose::place, i, 1);
        d.lon = -170 + 200 * key.uniform(Purpose::place, i, 2);
        p.synthetic.push_back(std::move(d));
    }
    for (const Destination& d : catalog) p.all.push_back(&d);
    for (const Destination& d : p.synthetic) p.all.push_back(&d);
    return p;
}

const Airport& airportNamed(std::string_view code) {
    const Airport* airport = tripkit::Airports::shipped().find(code);
    if (!airport)
        throw std::invalid_argument("no airport " + std::string(code) + " in the catalog");
    return *airport;
}

std::vector<Route> routesFrom(const Night& night, const Places& places, const Airport& origin) {
    std::vector<Route> routes;
    routes.reserve(places.all.size());
    for (const Destination* d : places.all) {
        if (d->fareCode == origin.code || !d->lat || !d->lon) continue;
        const double miles =
            std::round(tripkit::distanceMiles(origin.lat, origin.lon, *d->lat, *d->lon));
        if (miles < kMinMiles) continue;
        routes.push_back(makeRoute(night, origin, *d, miles));
    }
    return routes;
}

// Day texts from twelve days before today to the end of the span, made once.
struct DayTexts {
    static constexpr int kBefore = 12;
    std::vector<std::array<char, 10>> texts;
    explicit DayTexts(Day today) {
        texts.resize(kBefore + Night::kSpan);
        for (int i = 0; i < kBefore + Night::kSpan; ++i) {
            const std::string t = (today + (i - kBefore)).text();
            std::copy_n(t.begin(), 10, texts[static_cast<std::size_t>(i)].begin());
        }
    }
    // The day `offset` days from today.
    std::string_view at(int offset) const {
        const auto& t = texts[static_cast<std::size_t>(offset + kBefore)];
        return {t.data(), t.size()};
    }
};

using Out = std::back_insert_iterator<std::string>;

void putString(std::string& out, std::string_view s) {
    out += '"';
    for (char c : s) {
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (static_cast<unsigned char>(c) < 0x20) {
            fmt::format_to(Out(out), "\\u{:04x}", static_cast<int>(c));
        } else {
            out += c;
        }
    }
    out += '"';
}

void putDay(std::string& out, std::string_view day) {
    out += '"';
    out += day;
    out += '"';
}

void putPrice(std::string& out, double price) {
    fmt::format_to(Out(out), "{}", static_cast<long long>(price));
}

// Everything one airport's files are made from.
struct OriginNight {
    const Options& options;
    Night night;
    DayTexts days;
    Places where;
    const Airport& origin;
    std::vector<Route> routes;

    OriginNight(const Options& o, std::string_view code)
        : options(o),
          night(Night::make(o.today, o.seed)),
          days(o.today),
          where(places(o)),
          origin(airportNamed(code)),
          routes(routesFrom(night, where, origin)) {}
};

void writeCalendarRoute(std::string& out, const OriginNight& on, const Route& route,
                        const std::vector<Cell>& cells) {
    putString(out, route.place->code);
    out += ": {";
    bool first = true;
    for (const Cell& c : cells) {
        out += first ? "\n      " : ",\n      ";
        first = false;
        putDay(out, on.days.at(c.ahead));
        out += ": [";
        putPrice(out, c.price);
        out += ", ";
        putString(out, route.carriers[static_cast<std::size_t>(c.carrier)].code);
        fmt::format_to(Out(out), ", {}, ",
                       route.carriers[static_cast<std::size_t>(c.carrier)].stops);
        if (c.nights >= 0) {
            putDay(out, on.days.at(c.ahead + c.nights));
        } else {
            out += "null";
        }
        if (c.seenAgo >= 0) {
            out += ", ";
            putDay(out, on.days.at(-c.seenAgo));
        }
        out += ']';
    }
    out += first ? "}" : "\n    }";
}

void writeDeal(std::string& out, const OriginNight& on, const Route& route, const Cell& cell) {
    const Key& key = route.key;
    const std::int64_t today = on.options.today.count;
    const double u = key.uniform(Purpose::dealSeen, today);
    const int spread = static_cast<int>(key.hash(Purpose::dealSeen, today, 1) % 4);
    // Most deals were found tonight or lately; some are stale and a few too
    // old to show, as on a real night.
    const int seenAgo = u < 0.82   ? std::max(cell.seenAgo, 0)
                        : u < 0.94 ? 4 + spread
                                   : 8 + spread % 3;
    const RouteCarrier& carrier = route.carriers[static_cast<std::size_t>(cell.carrier)];
    out += "    {\"destination\": ";
    putString(out, route.place->code);
    out += ", \"city\": ";
    putString(out, route.place->name);
    out += ", \"country\": ";
    putString(out, route.place->country);
    out += ", \"price\": ";
    putPrice(out, cell.price);
    out += ", \"depart\": ";
    putDay(out, on.days.at(cell.ahead));
    if (cell.nights >= 0) {
        out += ", \"return\": ";
        putDay(out, on.days.at(cell.ahead + cell.nights));
    }
    out += ", \"airline\": ";
    putString(out, carrier.code);
    fmt::format_to(Out(out), ", \"stops\": {}, \"seen\": ", carrier.stops);
    putDay(out, on.days.at(-seenAgo));
    out += '}';
}

void writeOrlando(std::string& out, const OriginNight& on, const Route* orlando, bool toOrlando) {
    out += toOrlando ? "  \"toOrlando\": {" : "  \"fromOrlando\": {";
    bool firstDay = true;
    if (orlando) {
        for (int a = 0; a < Night::kHorizon; ++a) {
            const std::vector<OrlandoOption> options =
                orlandoOptions(on.night, *orlando, a, toOrlando, on.options.orlandoOptionsPerDay);
            if (options.empty()) continue;
            out += firstDay ? "\n    " : ",\n    ";
            firstDay = false;
            putDay(out, on.days.at(a));
            out += ": [";
            bool first = true;
            for (const OrlandoOption& o : options) {
                out += first ? "\n      {\"airline\": " : ",\n      {\"airline\": ";
                first = false;
                putString(out, orlando->carriers[static_cast<std::size_t>(o.carrier)].code);
                out += ", \"price\": ";
                putPrice(out, o.price);
                fmt::format_to(Out(out), ", \"stops\": {}, \"seen\": ", o.stops);
                putDay(out, on.days.at(-o.seenAgo));
                out += '}';
            }
            out += "\n    ]";
        }
    }
    out += firstDay ? "}" : "\n  }";
}

void writeFileHead(std::string& out, const OriginNight& on) {
    out += "{\n  \"origin\": ";
    putString(out, on.origin.code);
    out += ",\n  \"updated\": ";
    putDay(out, on.days.at(0));
    out += ",\n";
}

// The fare and calendar files share the priced calendars.
void writeFareAndCalendar(const OriginNight& on, std::string* fares, std::string* calendar) {
    const Route* orlando = nullptr;
    for (const Route& r : on.routes) {
        if (r.place->code == "MCO") orlando = &r;
    }
    if (fares) {
        fares->reserve(200000 + 50000 * static_cast<std::size_t>(
                                            std::max(1, on.options.orlandoOptionsPerDay)));
        writeFileHead(*fares, on);
        writeOrlando(*fares, on, orlando, true);
        *fares += ",\n";
        writeOrlando(*fares, on, orlando, false);
        *fares += ",\n  \"deals\": [";
    }
    if (calendar) {
        calendar->reserve(on.routes.size() * Night::kHorizon * 48);
        writeFileHead(*calendar, on);
        *calendar += "  \"routes\": {";
    }
    bool firstDeal = true;
    bool firstRoute = true;
    for (const Route& route : on.routes) {
        int best = -1;
        const std::vector<Cell> cells = calendarCells(on.night, route, best);
        if (fares && best >= 0 && historyPrice(route, on.options.today.count) > 0) {
            *fares += firstDeal ? "\n" : ",\n";
            firstDeal = false;
            writeDeal(*fares, on, route, cells[static_cast<std::size_t>(best)]);
        }
        if (calendar) {
            *calendar += firstRoute ? "\n    " : ",\n    ";
            firstRoute = false;
            writeCalendarRoute(*calendar, on, route, cells);
        }
    }
    if (fares) *fares += firstDeal ? "]\n}\n" : "\n  ]\n}\n";
    if (calendar) *calendar += firstRoute ? "}\n}\n" : "\n  }\n}\n";
}

std::string writeHistory(const OriginNight& on) {
    std::string out;
    out.reserve(on.routes.size() * Night::kHistoryNights * 5 + 200);
    writeFileHead(out, on);
    const std::int64_t today = on.options.today.count;
    const std::int64_t from = today - (Night::kHistoryNights - 1);
    out += "  \"from\": ";
    putDay(out, (on.options.today - (Night::kHistoryNights - 1)).text());
    out += ",\n  \"routes\": {";
    bool firstRoute = true;
    for (const Route& route : on.routes) {
        out += firstRoute ? "\n    " : ",\n    ";
        firstRoute = false;
        putString(out, route.place->code);
        out += ": [";
        for (std::int64_t n = from; n <= today; ++n) {
            if (n != from) out += ", ";
            const double price = historyPrice(route, n);
            if (price > 0) {
                putPrice(out, price);
            } else {
                out += "null";
            }
        }
        out += ']';
    }
    out += firstRoute ? "}\n}\n" : "\n  }\n}\n";
    return out;
}

}  // namespace

std::string fareFile(const Options& options, std::string_view airport) {
    const OriginNight on(options, airport);
    std::string out;
    writeFareAndCalendar(on, &out, nullptr);
    return out;
}

std::string calendarFile(const Options& options, std::string_view airport) {
    const OriginNight on(options, airport);
    std::string out;
    writeFareAndCalendar(on, nullptr, &out);
    return out;
}

std::string historyFile(const Options& options, std::string_view airport) {
    return writeHistory(OriginNight(options, airport));
}

Files generate(const Options& options) {
    Files files;
    for (const std::string& code : options.airports) {
        const OriginNight on(options, code);
        std::string fares, calendar;
        writeFareAndCalendar(on, &fares, &calendar);
        files["flights/" + code + ".json"] = std::move(fares);
        files["calendars/" + code + ".json"] = std::move(calendar);
        files["history/" + code + ".json"] = writeHistory(on);
    }
    files["advisories.json"] = advisoriesFile(options);
    return files;
}

std::optional<std::string> generateFile(const Options& options, std::string_view path) {
    if (path == "advisories.json") return advisoriesFile(options);
    const std::size_t slash = path.find('/');
    if (slash == std::string_view::npos || !path.ends_with(".json")) return std::nullopt;
    const std::string_view folder = path.substr(0, slash);
    const std::string code(path.substr(slash + 1, path.size() - slash - 1 - 5));
    if (std::find(options.airports.begin(), options.airports.end(), code) ==
        options.airports.end()) {
        return std::nullopt;
    }
    if (folder == "flights") return fareFile(options, code);
    if (folder == "calendars") return calendarFile(options, code);
    if (folder == "history") return historyFile(options, code);
    return std::nullopt;
}

const std::vector<std::string>& busiestAirports() {
    static const std::vector<std::string> codes = {"ATL", "DFW", "DEN", "ORD", "LAX", "JFK", "CLT",
                                                   "LAS", "MCO", "MIA", "PHX", "SEA", "SFO", "EWR",
                                                   "IAH", "BOS", "FLL", "MSP", "LGA", "DTW"};
    return codes;
}

}  // namespace roamwise::feedgen
