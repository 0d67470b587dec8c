// roamwise-cli holidays: the U.S. federal holidays of one year with the day
// each is observed and the long weekend it makes.
#include <fmt/format.h>

#include "cli/commands.h"
#include "cli/table.h"
#include "tripkit/holidays.h"

namespace roamwise::cli {

using namespace tripkit;

void addHolidaysCommand(CLI::App& root, Io& io) {
    struct Options {
        std::optional<int> year;
        bool json = false;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = root.add_subcommand(
        "holidays", "The federal holidays of a year, observed days and days off");
    addWholeOption(*command, "YEAR", options->year, "Four-digit year (e.g. 2027)", {1000, 9999})
        ->required();
    command->add_flag("--json", options->json, "Print JSON instead of a table");
    command->callback([options, &io] {
        const std::vector<HolidayWindow> windows = Holidays::windows(*options->year);
        if (options->json) {
            printJson(io.out, json::array(windows));
            io.status = kOk;
            return;
        }
        io.out << "Federal holidays " << *options->year << "\n";
        Table table;
        table.columns = {{"Holiday", Table::Align::left, 27},
                         {"Date", Table::Align::left, 14},
                         {"Observed", Table::Align::left, 14, 2},
                         {"Days off", Table::Align::left, 0, 2}};
        for (const HolidayWindow& w : windows) {
            const std::int64_t days = w.days.length();
            std::string off = dayWithWeekday(w.days.first);
            if (days > 1) off += " to " + dayWithWeekday(w.days.last);
            off += fmt::format(" ({} {})", days, days == 1 ? "day" : "days");
            table.add({std::string(displayName(w.holiday)), dayWithWeekday(w.date),
                       dayWithWeekday(w.observed), off});
        }
        table.print(io.out);
        io.status = kOk;
    });
}

}  // namespace roamwise::cli
