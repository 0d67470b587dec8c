// roamwise-cli places: the shipped airport and destination catalogs.
#include <cmath>

#include <fmt/format.h>

#include "cli/commands.h"
#include "cli/table.h"
#include "tripkit/destinations.h"
#include "tripkit/places.h"
#include "tripkit/text_search.h"

namespace roamwise::cli {

using namespace tripkit;

namespace {

std::string upper(std::string text) {
    for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

std::string joined(const std::vector<std::string>& items, const char* separator) {
    std::string out;
    for (const std::string& item : items) {
        if (!out.empty()) out += separator;
        out += item;
    }
    return out;
}

// "Theme-Parks" and "theme parks" name the same category.
std::string resolveCategory(const std::string& given) {
    std::string wanted = TextSearch::fold(given);
    for (char& c : wanted) {
        if (c == '-' || c == '_') c = ' ';
    }
    for (const std::string& name : Destination::categoryNames()) {
        if (name == wanted) return name;
    }
    throw UsageError("--category: no category \"" + shown(given) + "\"; choose one of: " +
                     joined(Destination::categoryNames(), ", "));
}

void addAirports(CLI::App& places, Io& io) {
    struct Options {
        std::string query;
        bool json = false;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command =
        places.add_subcommand("airports", "Home-airport candidates, optionally those matching a search");
    command->add_option("QUERY", options->query, "City, state, airport or code (e.g. \"san j\")");
    command->add_flag("--json", options->json, "Print JSON instead of a table");
    command->callback([options, &io] {
        std::vector<Airport> found;
        for (const Airport& a : Airports::shipped().list) {
            if (TextSearch::matches(options->query, a.searchFields())) found.push_back(a);
        }
        if (options->json) {
            printJson(io.out, json::array(found));
        } else if (found.empty()) {
            io.out << "No airport matches \"" << shown(options->query) << "\".\n";
        } else {
            Table table;
            table.columns = {{"Code", Table::Align::left, 4}, {"City", Table::Align::left, 22},
                             {"State", Table::Align::left, 5}, {"Name"}};
            for (const Airport& a : found) table.add({a.code, a.city, a.state, a.name});
            table.print(io.out);
        }
        io.status = kOk;
    });
}

void addDestinations(CLI::App& places, Io& io) {
    struct Options {
        std::string query;
        std::string category;
        bool domestic = false;
        bool abroad = false;
        bool json = false;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = places.add_subcommand(
        "destinations", "Places fares go to, by search, category, at home or abroad");
    command->add_option("QUERY", options->query, "Place, country, region or code (e.g. \"costa rica\")");
    command->add_option("--category", options->category,
                        "Only places of this category: " +
                            joined(Destination::categoryNames(), ", "));
    CLI::Option* domestic =
        command->add_flag("--domestic", options->domestic, "Only places in the United States");
    CLI::Option* abroad = command->add_flag("--abroad", options->abroad, "Only places abroad");
    domestic->excludes(abroad);
    command->add_flag("--json", options->json, "Print JSON instead of a table");
    command->callback([options, &io] {
        std::optional<std::string> category;
        if (!options->category.empty()) category = resolveCategory(options->category);
        std::vector<Destination> found;
        for (const Destination& d : Destinations::shipped().list) {
            if (options->domestic && !d.domestic) continue;
            if (options->abroad && d.domestic) continue;
            if (category && !d.hasCategory(*category)) continue;
            if (!TextSearch::matches(options->query, d.searchFields())) continue;
            found.push_back(d);
        }
        if (options->json) {
            printJson(io.out, json::array(found));
        } else if (found.empty()) {
            io.out << "No destination matches.\n";
        } else {
            Table table;
            table.columns = {{"Code", Table::Align::left, 4},     {"Name", Table::Align::left, 18},
                             {"Country", Table::Align::left, 24}, {"Region", Table::Align::left, 15},
                             {"Categories"}};
            for (const Destination& d : found) {
                table.add({d.code, d.name, d.country, d.region, joined(d.categories, ", ")});
            }
            table.print(io.out);
        }
        io.status = kOk;
    });
}

void addNearby(CLI::App& places, Io& io) {
    struct Options {
        std::string code;
        double withinMiles = 150;
        std::optional<int> limit;  // nothing: every airport within the distance
        bool json = false;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command =
        places.add_subcommand("nearby", "Other airports near one, nearest first");
    command->add_option("CODE", options->code, "Airport code (e.g. MCO)")->required();
    // Half the Earth's circumference: every airport is within it.
    addNumberOption(*command, "--within", options->withinMiles, "Greatest distance in miles",
                    {0, 12'500});
    addWholeOption(*command, "--limit", options->limit,
                   "Most airports to list (default: all within the distance)", {1});
    command->add_flag("--json", options->json, "Print JSON instead of a table");
    command->callback([options, &io] {
        const Airports& airports = Airports::shipped();
        const Airport* origin = airports.find(upper(options->code));
        if (origin == nullptr) {
            throw UsageError("no airport with the code \"" + shown(options->code) +
                             "\" in the catalog (see 'roamwise-cli places airports')");
        }
        const std::vector<Airport> near =
            airports.nearby(origin->code, options->withinMiles,
                            options->limit.value_or(std::numeric_limits<int>::max()));
        if (options->json) {
            json::Json out = json::Json::array();
            for (const Airport& a : near) {
                json::Json item = encode(a);
                item["distanceMiles"] = json::number(std::round(distanceMiles(*origin, a) * 10) / 10);
                out.push_back(std::move(item));
            }
            printJson(io.out, out);
        } else if (near.empty()) {
            io.out << fmt::format("No airport within {} miles of {}.\n", options->withinMiles,
                                  shown(origin->label()));
        } else {
            io.out << fmt::format("Within {} miles of {}:\n", options->withinMiles, shown(origin->label()));
            Table table;
            table.columns = {{"Code", Table::Align::left, 4},  {"City", Table::Align::left, 22},
                             {"State", Table::Align::left, 5}, {"Miles", Table::Align::right, 6},
                             {"Name", Table::Align::left, 0, 2}};
            for (const Airport& a : near) {
                table.add({a.code, a.city, a.state,
                           fmt::format("{:.0f}", distanceMiles(*origin, a)), a.name});
            }
            table.print(io.out);
        }
        io.status = kOk;
    });
}

}  // namespace

void addPlacesCommand(CLI::App& root, Io& io) {
    CLI::App* places =
        root.add_subcommand("places", "The shipped airport and destination catalogs");
    places->require_subcommand(1);
    addAirports(*places, io);
    addDestinations(*places, io);
    addNearby(*places, io);
}

}  // namespace roamwise::cli
