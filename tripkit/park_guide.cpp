#include "tripkit/park_guide.h"

#include <algorithm>

#include "tripkit/holidays.h"
#include "tripkit/json_fields.h"

namespace tripkit {

bool isInHolidayWindow(Day day) {
    // A window can begin in the year before its holiday (New Year's Day on a
    // Saturday is observed on 31 December), so the next days' years count too.
    for (const HolidayWindow& w : Holidays::windows(day, day + 7)) {
        if (w.days.contains(day)) return true;
    }
    return false;
}

std::vector<bool> holidayWindowDays(Day first, Day last) {
    std::vector<bool> out(last >= first ? static_cast<std::size_t>(last - first + 1) : 0, false);
    if (out.empty()) return out;
    for (std::int64_t year = first.year(); year <= (last + 7).year(); ++year) {
        for (const HolidayWindow& w : Holidays::windows(year)) {
            const Day from = std::max(w.days.first, first);
            const Day to = std::min(w.days.last, last);
            for (Day d = from; d <= to; d += 1) {
                // The years isInHolidayWindow looks at for `d`, and no others.
                if (d.year() <= year && year <= (d + 7).year()) {
                    out[static_cast<std::size_t>(d - first)] = true;
                }
            }
        }
    }
    return out;
}

std::string LightningLaneChoice::label() const {
    switch (kind) {
        case Kind::none: return "No Lightning Lane";
        case Kind::multiPass: return "Multi Pass every park day";
        case Kind::singlePasses: return "Single Pass rides";
        case Kind::multiPassAndSingles: return "Multi Pass + Single Pass rides";
        case Kind::premier: return "Premier Pass days: " + std::to_string(days);
    }
    return "";
}

const std::vector<TransportChoice>& allTransportChoices() {
    static const std::vector<TransportChoice> choices = {
        TransportChoice::mearsStandard, TransportChoice::mearsExpress, TransportChoice::rideshare,
        TransportChoice::carService,    TransportChoice::rentalCar,    TransportChoice::ownCar,
    };
    return choices;
}

std::string_view caseName(TransportChoice c) {
    switch (c) {
        case TransportChoice::mearsStandard: return "mearsStandard";
        case TransportChoice::mearsExpress: return "mearsExpress";
        case TransportChoice::rideshare: return "rideshare";
        case TransportChoice::carService: return "carService";
        case TransportChoice::rentalCar: return "rentalCar";
        case TransportChoice::ownCar: return "ownCar";
    }
    return "";
}

std::string_view label(TransportChoice c) {
    switch (c) {
        case TransportChoice::mearsStandard: return "Mears Connect shuttle";
        case TransportChoice::mearsExpress: return "Mears Connect Express";
        case TransportChoice::rideshare: return "Rideshare";
        case TransportChoice::carService: return "Private car service";
        case TransportChoice::rentalCar: return "Rental car";
        case TransportChoice::ownCar: return "Drive my own car";
    }
    return "";
}

std::optional<TransportChoice> transportChoiceFromCaseName(std::string_view name) {
    for (TransportChoice c : allTransportChoices()) {
        if (caseName(c) == name) return c;
    }
    return std::nullopt;
}

// --- decoding and encoding ---

void decode(const json::Value& v, LightningLaneChoice& out) {
    auto [name, fields] = v.caseKeyed();
    if (!fields.isObject()) fields.fail("expected an object");
    using Kind = LightningLaneChoice::Kind;
    if (name == "none") {
        out = LightningLaneChoice::none();
    } else if (name == "multiPass") {
        out = LightningLaneChoice::multiPass(fields.get<int>("_0"));
    } else if (name == "singlePasses") {
        out = LightningLaneChoice::singlePasses();
    } else if (name == "multiPassAndSingles") {
        out = LightningLaneChoice::multiPassAndSingles(fields.get<int>("_0"));
    } else if (name == "premier") {
        out = {Kind::premier, fields.get<int>("days")};
    } else {
        fields.fail("not a Lightning Lane choice: " + name);
    }
    if (out.days < 0) {
        fields.field(name == "premier" ? "days" : "_0").fail("expected a count of 0 or more");
    }
}

void decode(const json::Value& v, TransportChoice& out) {
    auto choice = transportChoiceFromCaseName(v.stringView());
    if (!choice) v.fail("not a transport choice: " + v.string());
    out = *choice;
}

template <>
struct json::Fields<ParkGuide::Span> {
    using T = ParkGuide::Span;
    static constexpr auto list = std::tuple{json::field("low", &T::low, json::amount),
                                            json::field("high", &T::high, json::amount)};
    static void check(const json::Value& v, T& s) {
        if (s.high < s.low) v.fail("low is above high");
    }
};

template <>
struct json::Fields<ParkGuide::Source> {
    using T = ParkGuide::Source;
    static constexpr auto list =
        std::tuple{json::field("name", &T::name), json::field("nameEs", &T::nameEs),
                   json::field("url", &T::url)};
};

TRIPKIT_JSON_CODEC(ParkGuide::Span)

TRIPKIT_JSON_CODEC(ParkGuide::Source)

json::Json encode(const LightningLaneChoice& c) {
    using Kind = LightningLaneChoice::Kind;
    json::Json fields = json::Json::object();
    std::string name;
    switch (c.kind) {
        case Kind::none: name = "none"; break;
        case Kind::multiPass: name = "multiPass"; fields["_0"] = c.days; break;
        case Kind::singlePasses: name = "singlePasses"; break;
        case Kind::multiPassAndSingles: name = "multiPassAndSingles"; fields["_0"] = c.days; break;
        case Kind::premier: name = "premier"; fields["days"] = c.days; break;
    }
    json::Json out = json::Json::object();
    out[name] = std::move(fields);
    return out;
}

json::Json encode(TransportChoice c) { return std::string(caseName(c)); }

}  // namespace tripkit
