#include "tripkit/party.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <stdexcept>

#include "tripkit/json_fields.h"

namespace tripkit {

int checkedSum(int a, int b) {
    int sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) throw std::overflow_error("count overflow");
    return sum;
}

double readAmount(const json::Value& v, std::string_view key) {
    const json::Value field = v.field(key);
    const double x = field.as<double>();
    if (!(x >= 0) || !std::isfinite(x)) field.fail("expected an amount of 0 or more");
    return x;
}

double readPositiveAmount(const json::Value& v, std::string_view key) {
    const json::Value field = v.field(key);
    const double x = field.as<double>();
    if (!(x > 0) || !std::isfinite(x)) field.fail("expected a price above 0");
    return x;
}

int Party::count(const std::function<bool(int age)>& test) const {
    int n = adults;
    for (int age : childAges) {
        if (test(age)) n = checkedSum(n, 1);
    }
    return n;
}

int Party::adultPriced() const {
    return count([](int age) { return age >= 10; });
}

int Party::childPriced() const {
    return count([](int age) { return age >= 3 && age <= 9; }) - adults;
}

int Party::universalTicketed() const {
    return count([](int age) { return age >= 3; });
}

int Party::seats() const {
    return count([](int age) { return age >= 2; });
}

int Party::lapBabies() const {
    return count([](int age) { return age < 2; }) - adults;
}

int Party::freeInParks() const {
    return count([](int age) { return age < 3; }) - adults;
}

int Party::rooms() const {
    // A baby under 3 sleeps in the room of the four.
    const int sleepers = count([](int age) { return age >= 3; });
    return std::max(1, sleepers / 4 + (sleepers % 4 != 0 ? 1 : 0));
}

Links::Passengers Party::passengers() const {
    Links::Passengers p;
    p.adults = count([](int age) { return age >= 12; });
    p.children = count([](int age) { return age >= 2 && age <= 11; }) - adults;
    p.infants = lapBabies();
    return p;
}

std::string flightSearch(const FareQuote& leg, std::string_view from, std::string_view to,
                         const Party& party, std::string_view base, std::string_view marker) {
    if (leg.link) {
        if (auto link = Links::fareLink(*leg.link, base, marker)) return *link;
    }
    return Links::flightSearch(base, from, leg.day, to, std::nullopt, party.passengers(), marker);
}

const std::vector<Tier>& allTiers() {
    static const std::vector<Tier> tiers = {Tier::value, Tier::moderate, Tier::deluxe,
                                            Tier::primeValue, Tier::signature};
    return tiers;
}

std::string_view caseName(Tier t) {
    switch (t) {
        case Tier::value: return "value";
        case Tier::moderate: return "moderate";
        case Tier::deluxe: return "deluxe";
        case Tier::primeValue: return "primeValue";
        case Tier::signature: return "signature";
    }
    return "";
}

std::string_view label(Tier t) {
    switch (t) {
        case Tier::value: return "Value";
        case Tier::moderate: return "Moderate";
        case Tier::deluxe: return "Deluxe";
        case Tier::primeValue: return "Prime Value";
        case Tier::signature: return "Signature Collection";
    }
    return "";
}

std::optional<Tier> tierFromCaseName(std::string_view name) {
    for (Tier t : allTiers()) {
        if (caseName(t) == name) return t;
    }
    return std::nullopt;
}

bool ResortChoice::allows(const ParkResort& resort) const {
    switch (kind) {
        case Kind::cheapest:
            return std::find(tiers.begin(), tiers.end(), resort.tier) != tiers.end();
        case Kind::only: return std::find(ids.begin(), ids.end(), resort.id) != ids.end();
    }
    return false;
}

bool DateWindow::withinLimits(Day checkIn, int nights) const {
    const Day checkOut = checkIn + nights;
    if (earliest && checkIn < *earliest) return false;
    if (latest && checkIn > *latest) return false;
    if (!months.empty() && !months.contains(checkIn.month())) return false;
    if (!checkInWeekdays.empty() && !checkInWeekdays.contains(checkIn.weekday())) return false;
    for (Day d = checkIn; d <= checkOut; d += 1) {
        auto inRange = [d](const DayRange& r) { return r.contains(d); };
        if (!only.empty() && std::none_of(only.begin(), only.end(), inRange)) return false;
        if (std::any_of(avoid.begin(), avoid.end(), inRange)) return false;
    }
    return true;
}

bool DateWindow::allows(Day checkIn, int nights, const std::function<bool(Day)>& isBusy) const {
    if (!withinLimits(checkIn, nights)) return false;
    return !(avoidHolidays && touchesBusyDate(checkIn, nights, isBusy));
}

bool touchesBusyDate(Day checkIn, int nights, const std::function<bool(Day)>& isBusy) {
    for (Day d = checkIn; d <= checkIn + nights; d += 1) {
        if (isBusy(d)) return true;
    }
    return false;
}

double FoodBudget::total(const Party& party, int nights) const {
    const int days = checkedSum(nights, 1);
    return std::round((perAdult * party.adultPriced() + perChild * party.childPriced()) * days);
}

template <>
struct json::Fields<Party> {
    static constexpr auto list = std::tuple{
        json::field("adults", &Party::adults, json::AtLeast{0, "expected a count of 0 or more"}),
        json::field("childAges", &Party::childAges,
                    json::each(json::AtLeast{0, "expected an age of 0 or more"}))};
    // Every count of the party is a sum of these; none may wrap.
    static void check(const json::Value& v, Party& p) {
        if (p.childAges.size() > static_cast<std::size_t>(INT_MAX - p.adults)) {
            v.field("childAges").fail("too many travellers to count");
        }
    }
};

template <>
struct json::Fields<ParkResort> {
    using T = ParkResort;
    static constexpr auto list = std::tuple{json::field("id", &T::id),
                                            json::field("name", &T::name),
                                            json::field("tier", &T::tier),
                                            json::field("room", &T::room),
                                            json::field("roomEs", &T::roomEs),
                                            json::field("low", &T::low, json::price),
                                            json::field("high", &T::high, json::price),
                                            json::rule([](const json::Value& v, T& r) {
                                                if (r.high < r.low) v.fail("low is above high");
                                            }),
                                            json::field("getAround", &T::getAround),
                                            json::field("getAroundEs", &T::getAroundEs),
                                            json::field("parking", &T::parking, json::amount),
                                            json::field("benefits", &T::benefits)};
};

template <>
struct json::Fields<DateWindow> {
    using T = DateWindow;
    static constexpr auto list = std::tuple{
        json::field("earliest", &T::earliest),
        json::field("latest", &T::latest),
        json::field("months", &T::months, json::each(json::Between{1, 12, "expected 1 to 12"})),
        json::field("checkInWeekdays", &T::checkInWeekdays,
                    json::each(json::Between{1, 7, "expected 1 to 7"})),
        json::field("only", &T::only),
        json::field("avoid", &T::avoid),
        json::field("avoidHolidays", &T::avoidHolidays)};
    static void check(const json::Value& v, T& w) {
        if (w.earliest && w.latest && *w.latest < *w.earliest) {
            v.field("latest").fail("is before earliest");
        }
    }
};

template <>
struct json::Fields<FoodBudget> {
    static constexpr auto list =
        std::tuple{json::field("perAdult", &FoodBudget::perAdult, json::amount),
                   json::field("perChild", &FoodBudget::perChild, json::amount)};
};

TRIPKIT_JSON_CODEC(Party)

void decode(const json::Value& v, Tier& out) {
    auto tier = tierFromCaseName(v.stringView());
    if (!tier) v.fail("not a resort class: " + v.string());
    out = *tier;
}

TRIPKIT_JSON_CODEC(ParkResort)

void decode(const json::Value& v, ResortChoice& out) {
    auto [name, fields] = v.caseKeyed();
    out = ResortChoice{};
    if (name == "cheapest") {
        out.kind = ResortChoice::Kind::cheapest;
        out.tiers = fields.get<std::vector<Tier>>("tiers");
    } else if (name == "only") {
        out.kind = ResortChoice::Kind::only;
        out.ids = fields.get<std::vector<std::string>>("ids");
    } else {
        fields.fail("not a resort choice: " + name);
    }
}

TRIPKIT_JSON_CODEC(DateWindow)

TRIPKIT_JSON_CODEC(FoodBudget)

json::Json encode(Tier t) { return std::string(caseName(t)); }

json::Json encode(const ResortChoice& c) {
    json::Json out = json::Json::object();
    json::Json fields = json::Json::object();
    switch (c.kind) {
        case ResortChoice::Kind::cheapest:
            fields["tiers"] = json::array(c.tiers);
            out["cheapest"] = std::move(fields);
            break;
        case ResortChoice::Kind::only:
            fields["ids"] = json::array(c.ids);
            out["only"] = std::move(fields);
            break;
    }
    return out;
}

}  // namespace tripkit
