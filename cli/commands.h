// Every subcommand of roamwise-cli, one source file each.
#pragma once

#include "cli/arguments.h"
#include "cli/common.h"

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
void addWatchCommand(CLI::App& root, Io& io);
void addChecklistCommand(CLI::App& root, Io& io);
void addBestTimeCommand(CLI::App& root, Io& io);
void addWearCommand(CLI::App& root, Io& io);
void addClimateCommand(CLI::App& root, Io& io);
void addForecastCommand(CLI::App& root, Io& io);
void addRefreshCommand(CLI::App& root, Io& io);
void addStatusCommand(CLI::App& root, Io& io);
void addWidgetCommand(CLI::App& root, Io& io);

// In the order `--help` lists them.
inline const std::vector<CommandAdder>& allCommands() {
    static const std::vector<CommandAdder> adders = {
        addDealsCommand,
        addPlacesCommand,
        addPriceCheckCommand,
        addHistoryCommand,
        addAdvisoriesCommand,
        addCalendarCommand,
        addGetawaysCommand,
        addHolidaysCommand,
        addParkCommand,
        addPlanCommand,
        addFeedCommand,
        addWatchCommand,
        addChecklistCommand,
        addBestTimeCommand,
        addWearCommand,
        addClimateCommand,
        addForecastCommand,
        addRefreshCommand,
        addStatusCommand,
        addWidgetCommand,
    };
    return adders;
}

}  // namespace roamwise::cli
