// The places fares go to, and the shipped catalog of them.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tripkit/json.h"

namespace tripkit {

struct Destination {
    // The Spanish texts of a place.
    struct Translation {
        std::string name;
        std::string blurb;
        friend bool operator==(const Translation&, const Translation&) = default;
    };

    std::string code;  // "id": IATA code of the destination airport
    std::string name;  // display name (city)
    std::string region;
    std::string country;
    bool domestic = false;
    std::string fareCode;                 // airport code of the place's fares
    std::optional<std::string> advisory;  // State Department advisory code, abroad
    std::vector<std::string> categories;
    std::string blurb;
    std::optional<std::string> countryCode;  // ISO 3166 two-letter code
    std::optional<double> lat;
    std::optional<double> lon;
    std::optional<Translation> es;

    // The texts a search field matches against: code, name, country, region,
    // and in Spanish also the Spanish name.
    std::vector<std::optional<std::string>> searchFields(bool spanish = false) const;
    const std::string& displayName(bool spanish) const;
    const std::string& displayBlurb(bool spanish) const;
    bool hasCategory(std::string_view category) const;

    // The vocabulary of `categories` and `region`.
    static const std::vector<std::string>& categoryNames();
    static const std::vector<std::string>& regionNames();

    friend bool operator==(const Destination&, const Destination&) = default;
};

void decode(const json::Value& v, Destination::Translation& out);
void decode(const json::Value& v, Destination& out);
json::Json encode(const Destination::Translation& t);
json::Json encode(const Destination& d);

// The destination catalog: the list in file order and the same places by code.
struct Destinations {
    std::vector<Destination> list;
    std::map<std::string, Destination> byCode;

    // The catalog compiled into the library ("destinations.json"), decoded once.
    static const Destinations& shipped();

    const Destination* find(std::string_view code) const;
};

// A JSON array of destinations; a repeated id fails at the repeating element.
void decode(const json::Value& v, Destinations& out);

}  // namespace tripkit
