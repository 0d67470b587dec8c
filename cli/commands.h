// Every subcommand of roamwise-cli, one source file each.
#pragma once

#include "cli/arguments.h"
#include "cli/common.h"
#include "tripkit/wear.h"
#include "tripkit/wear_data.h"

namespace roamwise::cli {

void addDealsCommand(CLI::App& root, Io& io);
void addPlacesCommand(CLI::App& root, Io& io);
void addPriceCheckCommand(CLI::App& root, Io& io);
void addHistoryCommand(CLI::App& root, Io& io);
void addAdvisoriesCommand(CLI::App& root, Io& io);
void addCalendarCommand(CLI::App& root, Io& io);
void addGetawaysCommand(CLI::App& root, Io& io);
void addHolidaysCommand(CLI::App& root, Io& io);
void addParkCommand(CLI::App& root, Io& io);
void addPlanCommand(CLI::App& root, Io& io);
void addFeedCommand(CLI::App& root, Io& io);
void addChecklistCommand(CLI::App& root, Io& io);
void addBestTimeCommand(CLI::App& root, Io& io);
void addClimateCommand(CLI::App& root, Io& io);
void addForecastCommand(CLI::App& root, Io& io);

// `wear --live`: the guide from fetched weather, with the credits to print.
struct LiveWear {
    tripkit::WearGuide guide;
    std::vector<std::string> credits;
};
using LiveWearSource = std::function<LiveWear(const tripkit::WearAsk&, Io&)>;
void addWearCommand(CLI::App& root, Io& io, const LiveWearSource& live);

// The one-line descriptions of the application core's commands, the same in
// both binaries' --help.
namespace appCoreHelp {
inline constexpr const char* watch = "Price watches: add, list, check, remove";
inline constexpr const char* refresh =
    "Fetch the home airports' fares, calendars and histories, the advisories and the guides "
    "into the application's cache";
inline constexpr const char* status =
    "The fare feed's state as the application would show it from its cache, and the cached "
    "files (fetches nothing)";
inline constexpr const char* widget = "The widget's snapshot: the best deal and the watched prices";
}  // namespace appCoreHelp

// The commands that need the application core (Qt, D-Bus, libcurl). The
// roamwise-cli-app binary runs them in process; roamwise-cli hands them over
// to it (handOverToAppCore), so that the other commands start without
// loading Qt.
struct AppCoreCommands {
    CommandAdder watch;
    CommandAdder refresh;
    CommandAdder status;
    CommandAdder widget;
    LiveWearSource liveWear;
};

// Every command, in the order `--help` lists them.
std::vector<CommandAdder> allCommands(const AppCoreCommands& core);

// What roamwise-cli registers for the application core's commands: each
// takes its whole command line (its --help included) to roamwise-cli-app.
AppCoreCommands handOverToAppCore();

}  // namespace roamwise::cli
