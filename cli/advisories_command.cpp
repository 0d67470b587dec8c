// roamwise-cli advisories: the State Department's advisory levels joined with
// the destination catalog, and the Safe & Fun list for a safety setting.
#include <fmt/format.h>

#include "cli/commands.h"
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
    out << fmt::format("{:<5} {:<5} {:<24} {:<28} {:<10}  {}\n", "Code", "Level", "Country",
                       "Advice", "Updated", "Places");
    for (const auto& [code, a] : advisories) {
        std::string places;
        for (const Destination* d : Advisories::destinations(a, catalog)) {
            places += (places.empty() ? "" : ", ") + d->name;
        }
        out << fmt::format("{:<5} {:<5} {:<24} {:<28} {:<10}  {}\n", a.code, a.level, a.country,
                           Advisories::levelText(a.level), a.updated.empty() ? "-" : a.updated,
                           places.empty() ? "-" : places);
    }
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
    for (const Destination& d : kept) {
        std::string level = "Domestic";
        if (const Advisory* a = Advisories::of(d, advisories)) {
            level = fmt::format("Level {}: {}", a->level, Advisories::levelText(a->level));
        }
        out << fmt::format("{:<5} {:<26} {:<24} {}\n", d.code, d.name, d.country, level);
    }
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
    command->add_option("--max-level", options->maxLevel,
                        "List the places Safe & Fun keeps: abroad only levels up to 1 or 2")
        ->check(CLI::IsMember({1, 2}));
    command->add_flag("--json", options->json, "Print JSON instead of a table");
    command->callback([options, &io] {
        std::optional<std::string> bytes = readFile(options->file);
        if (!bytes) {
            io.err << "roamwise-cli: no file " << options->file << "\n";
            io.status = kNoData;
            return;
        }
        std::map<std::string, Advisory> advisories;
        try {
            Advisories::Feed feed = Advisories::read(*bytes, options->file);
            reportImpossible(io.err, options->file, feed.impossible, "advisories");
            advisories = std::move(feed.byCode);
        } catch (const json::DecodeError& e) {
            io.err << "roamwise-cli: not an advisories feed: " << e.what() << "\n";
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
