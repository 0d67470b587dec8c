// The list of commands, shared by roamwise-cli and roamwise-cli-app so that
// both show the same --help.
#include "cli/commands.h"

namespace roamwise::cli {

std::vector<CommandAdder> allCommands(const AppCoreCommands& core) {
    const LiveWearSource live = core.liveWear;
    return {
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
        core.watch,
        addChecklistCommand,
        addBestTimeCommand,
        [live](CLI::App& root, Io& io) { addWearCommand(root, io, live); },
        addClimateCommand,
        addForecastCommand,
        core.refresh,
        core.status,
        core.widget,
    };
}

}  // namespace roamwise::cli
