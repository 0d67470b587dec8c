#include "tripkit/checklist.h"

#include <algorithm>
#include <cctype>

#include "tripkit/hashing.h"
#include "tripkit/json_fields.h"

namespace tripkit {

template <>
struct json::Fields<PackingItem> {
    static constexpr auto list =
        std::tuple{json::field("id", &PackingItem::id), json::field("title", &PackingItem::title),
                   json::field("packed", &PackingItem::packed)};
};

TRIPKIT_JSON_CODEC(PackingItem)

template <>
struct json::Fields<TripDate> {
    static constexpr auto list = std::tuple{json::field("destination", &TripDate::destination),
                                            json::field("depart", &TripDate::depart),
                                            json::field("reminded", &TripDate::reminded)};
};

TRIPKIT_JSON_CODEC(TripDate)

std::string TripDate::title(const std::string& place) { return reminderTitle + place; }

std::string TripDate::body() const {
    return "Your trip is on " + depart.text() +
           ". Make sure your passport is valid, and check the State Department’s current "
           "processing times if you need a new one.";
}

std::string Packing::idFor(const std::string& title) {
    std::string id;
    bool gap = false;
    for (char c : title) {
        const auto u = static_cast<unsigned char>(c);
        if (std::isalnum(u)) {
            if (gap && !id.empty()) id += '-';
            id += static_cast<char>(std::tolower(u));
            gap = false;
        } else {
            gap = true;
        }
    }
    return id;
}

std::vector<PackingItem> Packing::newList(const Destination& place) {
    std::vector<std::string> titles;
    auto add = [&](std::initializer_list<const char*> items) {
        for (const char* title : items) {
            if (std::find(titles.begin(), titles.end(), title) == titles.end()) {
                titles.emplace_back(title);
            }
        }
    };
    if (place.domestic) {
        add({"Photo ID (REAL ID or passport)"});
    } else {
        add({"Passport", "Power adapter"});
    }
    add({"Phone charger", "Medicines"});
    if (place.hasCategory("beaches") || place.hasCategory("islands")) {
        add({"Swimsuit", "Sunscreen", "Sunglasses", "Sandals"});
    }
    if (place.hasCategory("outdoors"))
        add({"Hiking shoes", "Rain jacket", "Refillable water bottle"});
    if (place.hasCategory("theme parks")) add({"Comfortable walking shoes", "Portable battery"});
    if (place.hasCategory("cities")) add({"Comfortable walking shoes", "Day bag"});
    if (place.hasCategory("family")) add({"Snacks for the trip"});

    std::vector<PackingItem> items;
    items.reserve(titles.size());
    for (std::string& title : titles) {
        std::string id = idFor(title);
        items.push_back({std::move(id), std::move(title), false});
    }
    return items;
}

EntryBasics EntryBasics::of(const Destination& destination) {
    return {destination.domestic ? Document::photoId : Document::passport, destination.name};
}

std::string EntryBasics::text() const {
    if (document == Document::photoId) {
        return "For U.S. citizens: no passport needed. To fly, bring a REAL ID–compliant license "
               "or another ID the TSA accepts (a passport works).";
    }
    return "U.S. citizens need a passport book to fly to " + place +
           ". A passport card isn’t accepted for international flights.";
}

std::optional<std::string> EntryBasics::note() const {
    if (document == Document::photoId) return std::nullopt;
    return std::string(
        "Visas, how long your passport must still be valid, and other entry rules can change. "
        "Check them on the State Department’s page before you book.");
}

std::vector<EntryBasics::Link> EntryBasics::links() const {
    if (document == Document::photoId) return {};
    return {
        {"Apply for or renew a passport",
         "https://travel.state.gov/content/travel/en/passports.html"},
        {"Current passport processing times",
         "https://travel.state.gov/content/travel/en/passports/how-apply/processing-times.html"},
    };
}

const char* EntryBasics::summary() const {
    return document == Document::photoId ? Packing::homeSummary : Packing::abroadSummary;
}

const char* name(EntryBasics::Document document) {
    return document == EntryBasics::Document::photoId ? "photoId" : "passport";
}

json::Json encode(EntryBasics::Document document) {
    return name(document);
}

}  // namespace tripkit

std::size_t std::hash<tripkit::PackingItem>::operator()(
    const tripkit::PackingItem& item) const noexcept {
    return tripkit::hashOf(item.id, item.title, item.packed);
}
