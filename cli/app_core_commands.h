// The commands that need the application core (Qt, D-Bus, libcurl), run in
// process by roamwise-cli-app and by the tests.
#pragma once

#include "cli/commands.h"

namespace roamwise::cli {

void addWatchCommand(CLI::App& root, Io& io);
void addRefreshCommand(CLI::App& root, Io& io);
void addStatusCommand(CLI::App& root, Io& io);
void addWidgetCommand(CLI::App& root, Io& io);
LiveWear liveWear(const tripkit::WearAsk& ask, Io& io);

AppCoreCommands appCoreCommands();

// Runs one command line with every command in process.
int run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace roamwise::cli
