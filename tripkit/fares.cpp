#include "tripkit/fares.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "tripkit/json_fast.h"
#include "tripkit/json_fields.h"

namespace tripkit {

std::string Deal::id() const { return destination + "-" + depart.text() + "-" + airline; }

bool Deal::isStale(Day today) const { return Freshness::isStale(seen, today); }

bool FareFilter::allows(const std::string& airline, int stops) const {
    if (!onlyAirlines.empty() && !onlyAirlines.contains(airline)) return false;
    if (avoidAirlines.contains(airline)) return false;
    return !(nonstopOnly && stops > 0);
}

std::optional<FareCalibration::Adjustment> FareCalibration::at(Day day) const {
    auto it = byDay.find(day);
    if (it == byDay.end()) return std::nullopt;
    return it->second;
}

const std::vector<Airline>& Airline::names() {
    static const std::vector<Airline> table = {
        {"AA", "American"},        {"AC", "Air Canada"},
        {"AS", "Alaska"},          {"WS", "WestJet"},
        {"B6", "JetBlue"},         {"BA", "British Airways"},
        {"DL", "Delta"},           {"VS", "Virgin Atlantic"},
        {"F9", "Frontier"},        {"LH", "Lufthansa"},
        {"G4", "Allegiant"},       {"AF", "Air France"},
        {"HA", "Hawaiian"},        {"KL", "KLM"},
        {"MX", "Breeze"},          {"IB", "Iberia"},
        {"NK", "Spirit"},          {"EI", "Aer Lingus"},
        {"SY", "Sun Country"},     {"FI", "Icelandair"},
        {"UA", "United"},          {"TP", "TAP Air Portugal"},
        {"WN", "Southwest"},       {"JL", "Japan Airlines"},
        {"XP", "Avelo"},           {"NH", "ANA"},
        {"AM", "Aeroméxico"},      {"CM", "Copa"},
        {"QF", "Qantas"},          {"NZ", "Air New Zealand"},
        {"SQ", "Singapore Airlines"},
    };
    return table;
}

std::optional<std::string> Airline::nameFor(const std::string& code) {
    for (const Airline& a : names()) {
        if (a.code == code) return a.name;
    }
    return std::nullopt;
}

std::string Airline::display(const std::string& code) { return nameFor(code).value_or(code); }

std::vector<Deal> Fares::deals(const std::vector<FareBook>& books, Day today) {
    struct Entry {
        Deal deal;
        bool fresh;
    };
    std::vector<Entry> chosen;
    std::unordered_map<std::string, std::size_t> byDestination;

    for (const FareBook& book : books) {
        const std::optional<Day> updated = book.updatedDay();
        for (const Deal& original : book.deals) {
            Deal deal = original;
            if (!deal.origin) deal.origin = book.origin;
            const std::optional<Day> observed = deal.seen ? deal.seen : updated;
            if (Freshness::isTooOld(observed, today) || (observed && *observed > today)) continue;
            deal.seen = observed;
            if (deal.depart < today || deal.depart - today > Freshness::horizonDays) continue;
            const bool fresh = !Freshness::isStale(observed, today);

            auto [it, inserted] = byDestination.try_emplace(deal.destination, chosen.size());
            if (inserted) {
                chosen.push_back({std::move(deal), fresh});
                continue;
            }
            Entry& entry = chosen[it->second];
            const bool replace = entry.fresh != fresh ? fresh : deal.price < entry.deal.price;
            if (replace) entry = {std::move(deal), fresh};
        }
    }

    std::vector<Deal> out;
    out.reserve(chosen.size());
    for (Entry& e : chosen) out.push_back(std::move(e.deal));
    std::sort(out.begin(), out.end(), [](const Deal& a, const Deal& b) {
        if (a.price != b.price) return a.price < b.price;
        return a.destination < b.destination;
    });
    return out;
}

double Fares::typicalOneWay(const Airport& from, const Airport& orlando, double demand) {
    const double base = 70 + 0.12 * distanceMiles(from, orlando);
    return std::round((demand * 0.45 + 0.85) * std::max(base, 120.0) * 0.5);
}

namespace {
FareQuote quoteFrom(const FareBook* book, const QuoteRequest& r) {
    const FareOption* best = nullptr;
    if (book) {
        const FareBook::DayFares& fares =
            r.leg == QuoteRequest::Leg::toOrlando ? book->toOrlando : book->fromOrlando;
        const std::optional<Day> updated = book->updatedDay();
        if (auto it = fares.find(r.day.text()); it != fares.end()) {
            for (const FareOption& option : it->second) {
                if (!r.filter.allows(option.airline, option.stops)) continue;
                const std::optional<Day> observed = option.seen ? option.seen : updated;
                if (r.today && observed &&
                    (Freshness::isTooOld(observed, *r.today) || *observed > *r.today)) {
                    continue;
                }
                if (!best || option.price < best->price) best = &option;
            }
        }
    }
    FareQuote quote;
    quote.day = r.day;
    if (best) {
        quote.price = best->price;
        quote.airline = best->airline;
        quote.stops = best->stops;
        quote.link = best->link;
        quote.seen = best->seen;
        return quote;
    }
    quote.estimated = true;
    quote.price = Fares::typicalOneWay(r.home, r.orlando, r.demand);
    if (auto adjustment = r.calibration.at(r.day)) {
        quote.price = std::round(quote.price * adjustment->factor);
        quote.spread = adjustment->spread;
    }
    return quote;
}
}  // namespace

FareQuote Fares::quote(const FareBook& book, const QuoteRequest& request) {
    return quoteFrom(&book, request);
}

FareQuote Fares::quote(const QuoteRequest& request) { return quoteFrom(nullptr, request); }

int Fares::seenAfter(const FareBook& book, Day today) {
    const std::optional<Day> updated = book.updatedDay();
    auto future = [&](const std::optional<Day>& seen) {
        const std::optional<Day> observed = seen ? seen : updated;
        return observed && *observed > today;
    };
    int count = 0;
    for (const Deal& d : book.deals) count += future(d.seen) ? 1 : 0;
    for (const auto* fares : {&book.toOrlando, &book.fromOrlando}) {
        for (const auto& [day, options] : *fares) {
            for (const FareOption& o : options) count += future(o.seen) ? 1 : 0;
        }
    }
    return count;
}

std::vector<std::string> Fares::airlines(const FareBook* book) {
    std::set<std::string> codes;
    if (book) {
        for (const auto* fares : {&book->toOrlando, &book->fromOrlando}) {
            for (const auto& [day, options] : *fares) {
                for (const FareOption& o : options) codes.insert(o.airline);
            }
        }
    }
    return {codes.begin(), codes.end()};
}

template <>
struct json::Fields<FareOption> {
    using T = FareOption;
    static constexpr auto list =
        std::tuple{json::field("airline", &T::airline), json::field("price", &T::price),
                   json::field("stops", &T::stops), json::field("link", &T::link),
                   json::field("seen", &T::seen)};
};

template <>
struct json::Fields<Deal> {
    using T = Deal;
    static constexpr auto list = std::tuple{json::field("destination", &T::destination),
                                            json::field("city", &T::city),
                                            json::field("country", &T::country),
                                            json::field("advisory", &T::advisory),
                                            json::field("price", &T::price),
                                            json::field("depart", &T::depart),
                                            json::field("return", &T::returnDay),
                                            json::field("airline", &T::airline),
                                            json::field("stops", &T::stops),
                                            json::field("link", &T::link),
                                            json::field("origin", &T::origin),
                                            json::field("seen", &T::seen)};
};

template <>
struct json::Fields<FareFilter> {
    using T = FareFilter;
    static constexpr auto list = std::tuple{json::field("onlyAirlines", &T::onlyAirlines),
                                            json::field("avoidAirlines", &T::avoidAirlines),
                                            json::field("nonstopOnly", &T::nonstopOnly)};
};

TRIPKIT_JSON_CODEC(FareOption)

TRIPKIT_JSON_CODEC(Deal)

namespace {
bool isPossiblePrice(double price) { return std::isfinite(price) && price > 0; }

bool isPossible(const FareOption& o) { return isPossiblePrice(o.price) && o.stops >= 0; }

bool isPossible(const Deal& d) {
    return isPossiblePrice(d.price) && d.stops >= 0 && (!d.returnDay || *d.returnDay >= d.depart);
}

FareBook::DayFares decodeDayFares(const json::Value& v, int& impossible) {
    FareBook::DayFares out;
    v.forEachMember([&](std::string_view day, const json::Value& options) {
        std::vector<FareOption>& kept = out[std::string(day)];
        options.forEach([&](const json::Value& element) {
            FareOption option = element.as<FareOption>();
            if (isPossible(option)) {
                kept.push_back(std::move(option));
            } else {
                ++impossible;
            }
        });
    });
    return out;
}

json::Json encodeDayFares(const FareBook::DayFares& fares) {
    json::Json out = json::Json::object();
    for (const auto& [day, options] : fares) out[day] = json::array(options);
    return out;
}
}  // namespace

// Hand-written: impossible fares are skipped and counted, not refused.
void decode(const json::Value& v, FareBook& out) {
    out.origin = v.get<std::string>("origin");
    out.updated = v.get<std::string>("updated");
    out.impossible = 0;
    out.toOrlando = decodeDayFares(v.field("toOrlando"), out.impossible);
    out.fromOrlando = decodeDayFares(v.field("fromOrlando"), out.impossible);
    out.deals.clear();
    v.field("deals").forEach([&](const json::Value& element) {
        Deal deal = element.as<Deal>();
        if (isPossible(deal)) {
            out.deals.push_back(std::move(deal));
        } else {
            ++out.impossible;
        }
    });
}

namespace {

namespace ondemand = simdjson::ondemand;

// One fare kept when a real one could look like it, else counted.
template <class T>
bool readPossible(ondemand::value value, std::vector<T>& kept, int& impossible) {
    T record;
    if (!json::fast::readFields(value, record)) return false;
    if (isPossible(record)) {
        kept.push_back(std::move(record));
    } else {
        ++impossible;
    }
    return true;
}

bool readDayFaresFast(ondemand::value value, FareBook::DayFares& out, int& impossible) {
    ondemand::object days;
    if (value.get_object().get(days) != simdjson::SUCCESS) return false;
    for (auto dayResult : days) {
        ondemand::field day;
        std::string_view text;
        ondemand::array options;
        if (std::move(dayResult).get(day) != simdjson::SUCCESS ||
            day.unescaped_key().get(text) != simdjson::SUCCESS ||
            day.value().get_array().get(options) != simdjson::SUCCESS) {
            return false;
        }
        std::vector<FareOption>& kept = out[std::string(text)];
        for (auto element : options) {
            ondemand::value v;
            if (element.get(v) != simdjson::SUCCESS || !readPossible(v, kept, impossible)) return false;
        }
    }
    return true;
}

bool readDealsFast(ondemand::value value, std::vector<Deal>& out, int& impossible) {
    ondemand::array deals;
    std::size_t count = 0;
    if (value.get_array().get(deals) != simdjson::SUCCESS ||
        deals.count_elements().get(count) != simdjson::SUCCESS) {
        return false;
    }
    out.reserve(count);  // a large file's deals are not held twice while the vector grows
    for (auto element : deals) {
        ondemand::value v;
        if (element.get(v) != simdjson::SUCCESS || !readPossible(v, out, impossible)) return false;
    }
    return true;
}

}  // namespace

// The nightly job writes the five keys in this order and nothing else; any
// other document is left to the DOM decoder (see json::ReadsFast).
std::optional<FareBook> FareBook::readFast(const char* data, std::size_t size) {
    json::fast::ThreadParser parser;
    ondemand::document doc;
    ondemand::object root;
    if (!json::fast::start(parser.get(), data, size, doc, root)) return std::nullopt;
    static constexpr std::string_view kKeys[] = {"origin", "updated", "toOrlando", "fromOrlando",
                                                 "deals"};
    FareBook out;
    std::size_t next = 0;
    for (auto result : root) {
        ondemand::field field;
        std::string_view key;
        if (next == std::size(kKeys) || std::move(result).get(field) != simdjson::SUCCESS ||
            field.unescaped_key().get(key) != simdjson::SUCCESS || key != kKeys[next]) {
            return std::nullopt;
        }
        ondemand::value& value = field.value();
        bool ok = false;
        switch (next++) {
            case 0: ok = json::fast::read(value, out.origin); break;
            case 1: ok = json::fast::read(value, out.updated); break;
            case 2: ok = readDayFaresFast(value, out.toOrlando, out.impossible); break;
            case 3: ok = readDayFaresFast(value, out.fromOrlando, out.impossible); break;
            default: ok = readDealsFast(value, out.deals, out.impossible); break;
        }
        if (!ok) return std::nullopt;
    }
    if (next != std::size(kKeys) || !json::fast::atEnd(doc)) return std::nullopt;
    return out;
}

TRIPKIT_JSON_CODEC(FareFilter)

json::Json encode(const FareBook& b) {
    json::Json out = json::Json::object();
    out["origin"] = b.origin;
    out["updated"] = b.updated;
    out["toOrlando"] = encodeDayFares(b.toOrlando);
    out["fromOrlando"] = encodeDayFares(b.fromOrlando);
    out["deals"] = json::array(b.deals);
    return out;
}

}  // namespace tripkit
