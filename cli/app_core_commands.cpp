// The application core's commands run in process, and `wear --live`'s
// fetch through the application's weather code and cache.
#include "cli/app_core_commands.h"

#include <cstdlib>

#include <QDateTime>

#include "app/app_model.h"
#include "app/weather.h"
#include "cli/cli.h"
#include "cli/table.h"
#include "tripkit/config.h"

namespace roamwise::cli {

using namespace tripkit;

LiveWear liveWear(const WearAsk& ask, Io& io) {
    const Config::Environment environment = [](const char* name) { return std::getenv(name); };
    const app::WeatherInput input =
        app::WeatherInput::standard(app::Cache{app::Folders::standard().cache}, environment,
                                    QDateTime::currentSecsSinceEpoch(), Day::today());
    app::WearOutcome outcome = app::wearGuide(ask, input);
    for (const std::string& problem : outcome.problems) {
        io.err << "roamwise-cli: " << shown(problem) << "\n";
    }
    io.err << "roamwise-cli: typical weather " << app::caseName(outcome.typical) << ", forecast "
           << app::caseName(outcome.forecast) << "\n";
    return {std::move(outcome.guide), std::move(outcome.credits)};
}

AppCoreCommands appCoreCommands() {
    return {addWatchCommand, addRefreshCommand, addStatusCommand, addWidgetCommand, liveWear};
}

int run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    return run(args, out, err, allCommands(appCoreCommands()));
}

}  // namespace roamwise::cli
