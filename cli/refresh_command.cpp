// roamwise-cli refresh / status: the desktop application's refresh of the
// home airports' files, the advisories and the guides, into the same cache
// folder; and what that cache holds, without fetching anything.
#include <cstdlib>

#include "app/http_loader.h"
#include "app/refresh.h"
#include "cli/app_core_commands.h"
#include "cli/table.h"
#include "tripkit/config.h"

namespace roamwise::cli {

using namespace tripkit;

namespace {

const Config::Environment kEnvironment = [](const char* name) { return std::getenv(name); };

json::Json optionalText(const std::optional<std::string>& text) {
    return text ? json::Json(*text) : json::Json(nullptr);
}

struct HomeOptions {
    std::string homes;
    std::string today;
    bool json = false;
};

void addHomeOptions(CLI::App& command, HomeOptions& options) {
    command.add_option("--home", options.homes, "Home airports, main one first (e.g. JFK,EWR)")->required();
    command.add_option("--today", options.today, "Day to run for (YYYY-MM-DD; default: today)")
        ->check(dayValidator());
    command.add_flag("--json", options.json, "Print JSON");
}

}  // namespace

void addRefreshCommand(CLI::App& root, Io& io) {
    auto options = std::make_shared<HomeOptions>();
    CLI::App* command = root.add_subcommand("refresh", appCoreHelp::refresh);
    addHomeOptions(*command, *options);
    command->callback([options, &io] {
        app::RefreshInput input;
        input.homes = parseHomeCodes(options->homes);
        input.hosts = Config::feedHosts(kEnvironment);
        input.loader = app::curlLoader();
        input.advisoriesURL = Config::advisoriesURL(kEnvironment);
        input.cache.folder = app::Folders::standard().cache;
        input.today = resolveToday(options->today);
        input.progress = [&io](const std::string& line) { io.err << line << "\n"; };
        const app::RefreshOutcome outcome = app::runRefresh(input);
        const app::RefreshReport& report = outcome.report;

        if (options->json) {
            json::Json files = json::Json::array();
            for (const app::FileReport& file : report.files) {
                json::Json entry = json::Json::object();
                entry["name"] = file.name;
                entry["status"] = std::string(app::caseName(file.status));
                entry["host"] = optionalText(file.host);
                files.push_back(std::move(entry));
            }
            json::Json out = json::Json::object();
            out["fares"] = std::string(app::caseName(report.fares));
            out["message"] = optionalText(report.message);
            out["advisories"] = std::string(app::caseName(report.advisories));
            out["files"] = std::move(files);
            printJson(io.out, out);
        } else {
            io.out << "Fares: " << app::caseName(report.fares);
            if (report.message) io.out << " (" << shown(*report.message) << ")";
            io.out << "\nAdvisories: " << app::caseName(report.advisories) << "\n";
            if (outcome.fares.sample) io.out << "Showing sample data for " << input.today.text() << "\n";
        }
        io.status = report.fares == app::Load::loaded ? 0 : 1;
    });
}

void addStatusCommand(CLI::App& root, Io& io) {
    auto options = std::make_shared<HomeOptions>();
    CLI::App* command = root.add_subcommand("status", appCoreHelp::status);
    addHomeOptions(*command, *options);
    command->callback([options, &io] {
        app::Cache cache{app::Folders::standard().cache};
        const Day today = resolveToday(options->today);
        const app::FaresData data = app::loadCachedFares(cache, parseHomeCodes(options->homes), today, false);
        const std::vector<app::CacheEntry> entries = cache.entries();
        const std::string load(app::caseName(app::loadOf(data.status)));
        if (options->json) {
            json::Json files = json::Json::array();
            for (const app::CacheEntry& entry : entries) {
                json::Json file = json::Json::object();
                file["name"] = entry.name;
                file["bytes"] = entry.bytes;
                file["modified"] = entry.modified;
                files.push_back(std::move(file));
            }
            json::Json out = json::Json::object();
            out["fares"] = load;
            out["message"] = optionalText(data.status.message());
            out["sample"] = data.sample;
            out["cache"] = std::move(files);
            printJson(io.out, out);
        } else {
            io.out << "Fares: " << load;
            if (auto message = data.status.message()) io.out << " (" << shown(*message) << ")";
            io.out << "\n";
            if (data.sample) io.out << "No saved fares of the main airport: sample data would show\n";
            Table table;
            table.columns = {{"FILE"}, {"BYTES", Table::Align::right}, {"MODIFIED (UTC)", Table::Align::left, 0, 2}};
            for (const app::CacheEntry& entry : entries) {
                table.add({entry.name, std::to_string(entry.bytes), entry.modified});
            }
            table.print(io.out);
        }
        io.status = 0;
    });
}

}  // namespace roamwise::cli
