// roamwise-cli history: the cheapest price found each night to one
// destination over the last 90 days, merged across the home airports.
#include <fmt/format.h>

#include "cli/commands.h"
#include "cli/table.h"
#include "tripkit/price_history.h"

namespace roamwise::cli {

using namespace tripkit;

void addHistoryCommand(CLI::App& root, Io& io) {
    struct Options {
        std::string destination;
        DataOptions data;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = root.add_subcommand(
        "history", "Cheapest price each night to one destination for the last 90 days");
    command->add_option("DEST", options->destination, "Destination code (e.g. LIS)")->required();
    addDataOptions(*command, options->data);
    command->callback([options, &io] {
        const std::string to = parseDestinationCode(options->destination);
        const Day today = resolveToday(options->data.today);
        const std::optional<FareHistory> history = loadFareHistory(options->data, today, io.err);
        if (!history) {
            io.status = kNoData;
            return;
        }
        const std::vector<NightPrice> nights = history->nights(to, today);
        if (options->data.json) {
            printJson(io.out, json::array(nights));
        } else if (nights.empty()) {
            io.out << "No prices to " << to << " in the last " << FareHistory::windowDays
                   << " days.\n";
        } else {
            io.out << "Cheapest price each night for the last " << FareHistory::windowDays
                   << " days to " << to << "\n";
            Table table;
            table.titles = false;
            table.columns = {{"Night"}, {"Price", Table::Align::right, 8, 2}};
            for (const NightPrice& n : nights) table.add({n.day.text(), money(n.price)});
            table.print(io.out);
        }
        io.status = kOk;
    });
}

}  // namespace roamwise::cli
