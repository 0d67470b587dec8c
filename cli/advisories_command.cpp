// roamwise-cli advisories: the State Department's advisory levels joined with
// the destination catalog, and the Safe & Fun list for a safety setting.
#include <fmt/format.h>

#include "cli/commands.h"
#include "cli/table.h"
#include "tripkit/advisories.h"
#include "tripkit/destinations.h"

namespace roamwise::cli {

using namespace tripkit;

namespace {

std::string_view settingText(int maxLevel) {
    return maxLevel == 1
               ? "Abroad, only places where the U.S. State Department says to exercise normal "
                 "precautions (Level 1)."
               : "Abroad, places at Level 1 (normal precautions) or Level 2 (increased caution).";
}

json::Json advisoriesJson(const std::map<std::string, Advisory>& advisories,
                          const std::vector<Destination>& catalog) {
    json::Json out = json::Json::array();
    for (const auto& [code, a] : advisories) {
        json::Json item = json::Json::object();
        item["code"] = a.code;
        item["country"] = a.country;
        item["level"] = a.level;
        item["levelText"] = std::string(Advisories::levelText(a.level));
        item["title"] = a.title;
        item["link"] = a.link;
        item["updated"] = a.updated;
        json::Json places = json::Json::array();
        for (const Destination* d : Advisories::destinations(a, catalog)) {
            places.push_back({{"id", d->code}, {"name", d->name}});
        }
        item["destinations"] = std::move(places);
        out.push_back(std::move(item));
    }
    return out;
}

void printAdvisories(std::ostream& out, const std::map<std::string, Advisory>& advisories,
                     const std::vector<Destination>& catalog) {
    if (advisories.empty()) {
        out << "The feed has no advisories.\n";
        return;
    }
    using A = Table::Align;
    Table table;
    table.columns = {{"Code", A::left, 5},    {"Level", A::left, 5},        {"Country", A::left, 24},
                     {"Advice", A::left, 28}, {"Updated", A::left, 10}, {"Places", A::left, 0, 2}};
    for (const auto& [code, a] : advisories) {
        std::string places;
        for (const Destination* d : Advisories::destinations(a, catalog)) {
            places += (places.empty() ? "" : ", ") + d->name;
        }
        table.add({a.code, std::to_string(a.level), a.country,
                   std::string(Advisories::levelText(a.level)), a.updated.empty() ? "-" : a.updated,
                   places.empty() ? "-" : places});
    }
    table.print(out);
}

json::Json placesJson(const std::vector<Destination>& kept,
                      const std::map<std::string, Advisory>& advisories) {
    json::Json out = json::Json::array();
    for (const Destination& d : kept) {
        const Advisory* a = Advisories::of(d, advisories);
        json::Json item = json::Json::object();
        item["id"] = d.code;
        item["name"] = d.name;
        item["domestic"] = d.domestic;
        item["advisory"] = d.advisory ? json::Json(*d.advisory) : json::Json();
        item["level"] = a ? json::Json(a->level) : json::Json();
        out.push_back(std::move(item));
    }
    return out;
}

void printPlaces(std::ostream& out, const std::vector<Destination>& kept,
                 const std::map<std::string, Advisory>& advisories, int maxLevel) {
    out << settingText(maxLevel) << "\n";
    if (kept.empty()) {
        out << "Try another kind of trip or a wider safety setting.\n";
        return;
    }
    Table table;
    table.columns = {{"Code", Table::Align::left, 5},
                     {"Place", Table::Align::left, 26},
                     {"Country", Table::Align::left, 24},
                     {"Advisory"}};
    for (const Destination& d : kept) {
        std::string level = "Domestic";
        if (const Advisory* a = Advisories::of(d, advisories)) {
            level = fmt::format("Level {}: {}", a->level, Advisories::levelText(a->level));
        }
        table.add({d.code, d.name, d.country, level});
    }
    table.print(out);
}

}  // namespace

void addAdvisoriesCommand(CLI::App& root, Io& io) {
    struct Options {
        std::string file;
        std::optional<int> maxLevel;
        bool json = false;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = root.add_subcommand(
        "advisories", "State Department advisory levels of the destinations; Safe & Fun filter");
    command->add_option("--file", options->file,
                        "The advisories service's response body (a JSON array)")
        ->required();
    addWholeOption(*command, "--max-level", options->maxLevel,
                   "List the places Safe & Fun keeps: abroad only levels up to 1 or 2", {1, 2});
    command->add_flag("--json", options->json, "Print JSON instead of a table");
    command->callback([options, &io] {
        std::optional<simdjson::padded_string> bytes = FileReader::read(options->file);
        if (!bytes) {
            io.err << "roamwise-cli: no file " << shown(options->file) << "\n";
            io.status = kNoData;
            return;
        }
        std::map<std::string, Advisory> advisories;
        try {
            Advisories::Feed feed = Advisories::read(std::string_view(*bytes), options->file);
            reportImpossible(io.err, options->file, feed.impossible, "advisory", "advisories");
            advisories = std::move(feed.byCode);
        } catch (const json::DecodeError& e) {
            io.err << "roamwise-cli: not an advisories feed: " << shown(e.what()) << "\n";
            io.status = kNoData;
            return;
        }
        const std::vector<Destination>& catalog = Destinations::shipped().list;
        if (options->maxLevel) {
            const auto kept = Advisories::safeAndFun(catalog, advisories, *options->maxLevel);
            if (options->json) {
                printJson(io.out, placesJson(kept, advisories));
            } else {
                printPlaces(io.out, kept, advisories, *options->maxLevel);
            }
        } else if (options->json) {
            printJson(io.out, advisoriesJson(advisories, catalog));
        } else {
            printAdvisories(io.out, advisories, catalog);
        }
        io.status = kOk;
    });
}

}  // namespace roamwise::cli
