// The sample advisories feed, in the State Department service's own format.
#include <algorithm>
#include <array>
#include <map>

#include <fmt/format.h>

#include "feedgen/feed.h"
#include "feedgen/random.h"
#include "tripkit/destinations.h"

namespace roamwise::feedgen {

namespace {

// Levels change now and then, not every night: each country keeps its level
// for a period of this many days, the periods of countries staggered.
constexpr std::int64_t kLevelPeriod = 120;

constexpr std::array<std::string_view, 5> kWording = {"", "Exercise Normal Precautions",
                                                      "Exercise Increased Caution",
                                                      "Reconsider Travel", "Do Not Travel"};

struct Country {
    std::string code;
    std::map<std::string, int> names;  // country name -> places using it
    std::vector<std::string> order;    // names as first met
};

std::string slug(std::string_view name) {
    std::string out;
    for (char c : name) {
        if (c == ' ') {
            out += '-';
        } else if (c >= 'A' && c <= 'Z') {
            out += static_cast<char>(c - 'A' + 'a');
        } else if ((c >= 'a' && c <= 'z') || static_cast<unsigned char>(c) >= 0x80) {
            out += c;
        }
    }
    return out;
}

}  // namespace

std::string advisoriesFile(const Options& options) {
    // One advisory per code, named after the country most of its places
    // are in (France rather than Guadeloupe), in catalog order.
    std::vector<Country> countries;
    for (const tripkit::Destination& d : tripkit::Destinations::shipped().list) {
        if (d.domestic || !d.advisory) continue;
        auto it = std::find_if(countries.begin(), countries.end(),
                               [&](const Country& c) { return c.code == *d.advisory; });
        if (it == countries.end()) {
            countries.push_back({*d.advisory, {}, {}});
            it = countries.end() - 1;
        }
        if (it->names[d.country]++ == 0) it->order.push_back(d.country);
    }

    std::string out = "[";
    bool first = true;
    for (const Country& c : countries) {
        std::string name = c.order.front();
        for (const std::string& n : c.order) {
            if (c.names.at(n) > c.names.at(name)) name = n;
        }
        const Key key{options.seed, codeKey("ADV"), codeKey(c.code)};
        const std::int64_t phase =
            static_cast<std::int64_t>(key.hash(Purpose::advisory, 0) % kLevelPeriod);
        std::int64_t period = (options.today.count + phase) / kLevelPeriod;
        if ((options.today.count + phase) % kLevelPeriod < 0) --period;
        const double u = key.uniform(Purpose::advisory, period);
        const int level = u < 0.55 ? 1 : u < 0.85 ? 2 : u < 0.96 ? 3 : 4;
        const tripkit::Day updated{period * kLevelPeriod - phase};
        const std::string title = fmt::format("{} - Level {}: {} (sample data)", name, level,
                                              kWording[static_cast<std::size_t>(level)]);
        const std::string link = fmt::format(
            "https://travel.state.gov/content/travel/en/traveladvisories/traveladvisories/"
            "{}-travel-advisory.html#roamwise-sample-data",
            slug(name));
        const std::string stamp = updated.text() + "T00:00:00-05:00";
        out += first ? "\n" : ",\n";
        first = false;
        fmt::format_to(
            std::back_inserter(out),
            "  {{\n    \"Title\": \"{}\",\n    \"Link\": \"{}\",\n    \"Category\": [\"{}\"],\n"
            "    \"Summary\": \"<p>Sample data made up by Roamwise for trying it offline; "
            "not a U.S. State Department advisory.</p>\",\n"
            "    \"Published\": \"{}\",\n    \"Updated\": \"{}\"\n  }}",
            title, link, c.code, stamp, stamp);
    }
    out += first ? "]\n" : "\n]\n";
    return out;
}

}  // namespace roamwise::feedgen
