#include "tripkit/fares.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "tripkit/json_fast.h"
#include "tripkit/json_fields.h"
#include "tripkit/json_windows.h"

namespace tripkit {

std::string Deal::id() const {
    return destination + "-" + depart.text() + "-" + airline;
}

bool Deal::isStale(Day today) const {
    return Freshness::isStale(seen, today);
}

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
        {"AA", "American"},
        {"AC", "Air Canada"},
        {"AS", "Alaska"},
        {"WS", "WestJet"},
        {"B6", "JetBlue"},
        {"BA", "British Airways"},
        {"DL", "Delta"},
        {"VS", "Virgin Atlantic"},
        {"F9", "Frontier"},
        {"LH", "Lufthansa"},
        {"G4", "Allegiant"},
        {"AF", "Air France"},
        {"HA", "Hawaiian"},
        {"KL", "KLM"},
        {"MX", "Breeze"},
        {"IB", "Iberia"},
        {"NK", "Spirit"},
        {"EI", "Aer Lingus"},
        {"SY", "Sun Country"},
        {"FI", "Icelandair"},
        {"UA", "United"},
        {"TP", "TAP Air Portugal"},
        {"WN", "Southwest"},
        {"JL", "Japan Airlines"},
        {"XP", "Avelo"},
        {"NH", "ANA"},
        {"AM", "Aeroméxico"},
        {"CM", "Copa"},
        {"QF", "Qantas"},
        {"NZ", "Air New Zealand"},
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

std::string Airline::display(const std::string& code) {
    return nameFor(code).value_or(code);
}

namespace {

// Whether a fare was seen after `today`, by its own day or its book's.
bool seenAfterDay(const std::optional<Day>& seen, const std::optional<Day>& updated, Day today) {
    const std::optional<Day> observed = seen ? seen : updated;
    return observed && *observed > today;
}

// The merge's choice of one deal a destination, as deals are offered in
// order: the books' order, then each file's. Fresh beats cheap; on a tie the
// deal offered first stays, so choosing within each book first and then
// across the books' choices chooses the same.
struct DealChoice {
    explicit DealChoice(Day day) : today(day) {}

    Day today;
    std::vector<Deal> kept;
    std::vector<bool> fresh;  // of each kept deal
    std::unordered_map<std::string, std::size_t> byDestination;

    // False when the merge leaves the deal out whatever else is offered.
    bool offer(Deal&& deal, const std::string& origin, const std::optional<Day>& updated) {
        const std::optional<Day> observed = deal.seen ? deal.seen : updated;
        if (Freshness::isTooOld(observed, today) || (observed && *observed > today)) return false;
        if (deal.depart < today || deal.depart - today > Freshness::horizonDays) return false;
        const bool isFresh = !Freshness::isStale(observed, today);
        if (!deal.origin) deal.origin = origin;
        deal.seen = observed;
        auto [it, inserted] = byDestination.try_emplace(deal.destination, kept.size());
        const std::size_t at = it->second;
        if (inserted) {
            kept.push_back(std::move(deal));
            fresh.push_back(isFresh);
        } else if (fresh[at] != isFresh ? isFresh : deal.price < kept[at].price) {
            kept[at] = std::move(deal);
            fresh[at] = isFresh;
        }
        return true;
    }
};

// `Books` const: the chosen deals are copied; else they are moved out and
// each book's deals freed once offered.
template <class Books>
std::vector<Deal> mergeDeals(Books& books, Day today) {
    DealChoice choice(today);
    for (auto& book : books) {
        const std::optional<Day> updated = book.updatedDay();
        for (auto& deal : book.deals) choice.offer(Deal(std::move(deal)), book.origin, updated);
        if constexpr (!std::is_const_v<Books>) book.deals = {};
    }
    std::vector<Deal> all = std::move(choice.kept);
    std::sort(all.begin(), all.end(), [](const Deal& a, const Deal& b) {
        if (a.price != b.price) return a.price < b.price;
        return a.destination < b.destination;
    });
    return all;
}

}  // namespace

std::vector<Deal> Fares::deals(const std::vector<FareBook>& books, Day today) {
    return mergeDeals(books, today);
}

std::vector<Deal> Fares::deals(std::vector<FareBook>&& books, Day today) {
    return mergeDeals(books, today);
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

FareQuote Fares::quote(const QuoteRequest& request) {
    return quoteFrom(nullptr, request);
}

int Fares::seenAfter(const FareBook& book, Day today) {
    const std::optional<Day> updated = book.updatedDay();
    int count = book.seenLater;
    for (const Deal& d : book.deals) count += seenAfterDay(d.seen, updated, today) ? 1 : 0;
    for (const auto* fares : {&book.toOrlando, &book.fromOrlando}) {
        for (const auto& [day, options] : *fares) {
            for (const FareOption& o : options)
                count += seenAfterDay(o.seen, updated, today) ? 1 : 0;
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
bool isPossiblePrice(double price) {
    return std::isfinite(price) && price > 0;
}

bool isPossible(const FareOption& o) {
    return isPossiblePrice(o.price) && o.stops >= 0;
}

bool isPossible(const Deal& d) {
    return isPossiblePrice(d.price) && d.stops >= 0 && (!d.returnDay || *d.returnDay >= d.depart);
}

// Where a read puts each possible fare: all of them into the book, or, with
// needs, only what they ask for, counting the fares left out that were seen
// after their day (they would have been reported).
struct FareSink {
    FareBook& book;
    const std::optional<FareNeeds>& needs;
    DealChoice choice;
    std::optional<std::optional<Day>> updated;  // the book's, once read

    FareSink(FareBook& b, const std::optional<FareNeeds>& n)
        : book(b), needs(n), choice(n ? n->today : Day{}) {}

    bool keepsOrlando() const { return !needs || needs->orlando; }
    bool keepsAllDeals() const { return !needs; }

    // Read once the book's "updated" has been read (it comes first).
    const std::optional<Day>& bookDay() {
        if (!updated) updated = book.updatedDay();
        return *updated;
    }
    void dropped(const std::optional<Day>& seen) {
        if (seenAfterDay(seen, bookDay(), needs->today)) ++book.seenLater;
    }
    // `day` is null when the day fares are not kept.
    void option(std::vector<FareOption>* day, FareOption&& o) {
        if (day) {
            day->push_back(std::move(o));
        } else {
            dropped(o.seen);
        }
    }
    void deal(Deal&& d) {
        if (!needs) {
            book.deals.push_back(std::move(d));
            return;
        }
        const std::optional<Day> seen = d.seen;
        if (!needs->deals || !choice.offer(std::move(d), book.origin, bookDay())) dropped(seen);
    }
    void finish() {
        if (needs) book.deals = std::move(choice.kept);
    }
};

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

void narrow(FareBook& book, const FareNeeds& needs) {
    const std::optional<FareNeeds> given = needs;
    FareSink sink(book, given);
    if (!needs.orlando) {
        for (FareBook::DayFares* fares : {&book.toOrlando, &book.fromOrlando}) {
            for (auto& [day, options] : *fares) {
                for (FareOption& o : options) sink.option(nullptr, std::move(o));
            }
            fares->clear();
        }
    }
    std::vector<Deal> deals = std::move(book.deals);
    book.deals.clear();
    for (Deal& d : deals) sink.deal(std::move(d));
    sink.finish();
}

// Hand-written: impossible fares are skipped and counted, not refused.
void decode(const json::Value& v, FareBook& out) {
    out.origin = v.get<std::string>("origin");
    out.updated = v.get<std::string>("updated");
    out.impossible = 0;
    out.seenLater = 0;
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

// One fare handed to `keep` when a real one could look like it, else counted.
template <class T, class Keep>
bool readPossible(ondemand::value value, int& impossible, Keep&& keep) {
    T record;
    if (!json::fast::readFields(value, record)) return false;
    if (isPossible(record)) {
        keep(std::move(record));
    } else {
        ++impossible;
    }
    return true;
}

bool readDayFaresFast(ondemand::value value, FareBook::DayFares& out, FareSink& sink) {
    ondemand::object days;
    if (value.get_object().get(days) != simdjson::SUCCESS) return false;
    for (auto dayResult : days) {
        ondemand::field day;
        std::string_view text;
        ondemand::array options;
        std::size_t count = 0;
        if (std::move(dayResult).get(day) != simdjson::SUCCESS ||
            day.unescaped_key().get(text) != simdjson::SUCCESS ||
            day.value().get_array().get(options) != simdjson::SUCCESS ||
            options.count_elements().get(count) != simdjson::SUCCESS) {
            return false;
        }
        std::vector<FareOption>* kept = nullptr;
        if (sink.keepsOrlando()) {
            kept = &out[std::string(text)];
            kept->reserve(kept->size() + count);
        }
        for (auto element : options) {
            ondemand::value v;
            if (element.get(v) != simdjson::SUCCESS ||
                !readPossible<FareOption>(v, sink.book.impossible,
                                          [&](FareOption&& o) { sink.option(kept, std::move(o)); }))
                return false;
        }
    }
    return true;
}

// `reserve`: the deals are the whole array, counted first so that a large
// file's deals are not held twice while the vector grows.
bool readDealsFast(ondemand::value value, FareSink& sink, bool reserve) {
    ondemand::array deals;
    std::size_t count = 0;
    reserve = reserve && sink.keepsAllDeals();
    if (value.get_array().get(deals) != simdjson::SUCCESS ||
        (reserve && deals.count_elements().get(count) != simdjson::SUCCESS)) {
        return false;
    }
    if (reserve) sink.book.deals.reserve(sink.book.deals.size() + count);
    for (auto element : deals) {
        ondemand::value v;
        if (element.get(v) != simdjson::SUCCESS ||
            !readPossible<Deal>(v, sink.book.impossible,
                                [&](Deal&& d) { sink.deal(std::move(d)); })) {
            return false;
        }
    }
    return true;
}

// The nightly job writes the five keys in this order and nothing else; any
// other document is left to the DOM decoder (see json::ReadsFast). Keys are
// compared as written, as the windows' scan does.
constexpr std::string_view kFareKeys[] = {"origin", "updated", "toOrlando", "fromOrlando", "deals"};

// The value of key `index`, or a window of it (`whole` false).
bool readFareKey(std::size_t index, ondemand::value value, FareSink& sink, bool whole) {
    FareBook& out = sink.book;
    switch (index) {
        case 0:
            return json::fast::read(value, out.origin);
        case 1:
            return json::fast::read(value, out.updated);
        case 2:
            return readDayFaresFast(value, out.toOrlando, sink);
        case 3:
            return readDayFaresFast(value, out.fromOrlando, sink);
        default:
            return readDealsFast(value, sink, whole);
    }
}

// A file no larger than one window, read as one document.
std::optional<FareBook> readWholeFareFile(const char* data, std::size_t size,
                                          const std::optional<FareNeeds>& needs) {
    json::fast::ThreadParser parser;
    ondemand::document doc;
    ondemand::object root;
    if (!json::fast::start(parser.get(), data, size, doc, root)) return std::nullopt;
    FareBook out;
    FareSink sink(out, needs);
    std::size_t next = 0;
    for (auto result : root) {
        ondemand::field field;
        if (next == std::size(kFareKeys) || std::move(result).get(field) != simdjson::SUCCESS ||
            !field.key().unsafe_is_equal(kFareKeys[next]) ||
            !readFareKey(next, field.value(), sink, true)) {
            return std::nullopt;
        }
        ++next;
    }
    if (next != std::size(kFareKeys) || !json::fast::atEnd(doc)) return std::nullopt;
    sink.finish();
    return out;
}

}  // namespace

// A larger file's Orlando fares and deals are read a window at a time, so
// that its index is never held whole.
std::optional<FareBook> FareBook::readFast(const char* data, std::size_t size,
                                           std::size_t windowBytes, bool giveBack,
                                           const std::optional<FareNeeds>& needs) {
    if (size <= windowBytes) return readWholeFareFile(data, size, needs);
    namespace fast = json::fast;
    const std::optional<fast::Children> root = fast::childrenOf({data, size});
    if (!root || root->open != '{' || root->items.size() != std::size(kFareKeys) ||
        !fast::isBlank(root->rest)) {
        return std::nullopt;
    }
    FareBook out;
    FareSink sink(out, needs);
    fast::GiveBack pages{giveBack ? data : nullptr};
    for (std::size_t i = 0; i < std::size(kFareKeys); ++i) {
        const std::optional<std::string_view> value =
            fast::memberValue(root->items[i], kFareKeys[i]);
        if (!value) return std::nullopt;
        const auto readKey = [&](ondemand::value v) { return readFareKey(i, v, sink, false); };
        bool ok = false;
        if (i < 2) {
            // A window of the one value: an array of it.
            ok = fast::forEachWindow(fast::Children{'[', {*value}, {}}, windowBytes,
                                     [&](ondemand::value v) { return fast::readOnly(v, readKey); });
        } else {
            const std::optional<fast::Children> children = fast::childrenOf(*value);
            if (!children || children->open != (i == 4 ? '[' : '{') ||
                !fast::isBlank(children->rest)) {
                return std::nullopt;
            }
            if (i == 4 && sink.keepsAllDeals()) out.deals.reserve(children->items.size());
            ok = fast::forEachWindow(*children, windowBytes, readKey, &pages);
        }
        if (!ok) return std::nullopt;
    }
    sink.finish();
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
