// roamwise-cli forecast days: the forecast days of a MET Norway response,
// grouped by the place's own calendar day.
#include <fmt/format.h>

#include "cli/commands.h"
#include "cli/table.h"
#include "cli/wear_place.h"
#include "tripkit/wear.h"
#include "tripkit/wear_forecast.h"

namespace roamwise::cli {

using namespace tripkit;

namespace {

void printDays(std::ostream& out, const WearPlace& place, const std::map<Day, WearDay>& days) {
    out << shown(place.name) << " (" << shown(place.timeZone) << ")\n";
    using A = Table::Align;
    Table table;
    table.columns = {{"Day", A::left, 14},  {"High", A::right, 5}, {"Low", A::right, 5},
                     {"Rain", A::right, 5}, {"Snow", A::right, 5}, {"Humidity", A::right, 8},
                     {"Wind", A::right, 5}, {"UV", A::right, 4}};
    for (const auto& [day, d] : days) {
        table.add({dayWithWeekday(day), fmt::format("{:.1f}", d.high), fmt::format("{:.1f}", d.low),
                   fmt::format("{:.1f}", d.rain), fmt::format("{:.1f}", d.snow),
                   fmt::format("{:.0f}", d.humidity), fmt::format("{:.1f}", d.wind),
                   fmt::format("{:.1f}", d.uv)});
    }
    table.print(out);
    out << WearForecast::credit << "\n";
}

void addDays(CLI::App& forecast, Io& io) {
    struct Options {
        std::string file;
        std::string place;
        bool json = false;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = forecast.add_subcommand(
        "days", "The forecast days of a MET Norway locationforecast response");
    command->add_option("FORECAST", options->file, "The response (JSON)")->required();
    command->add_option("--place", options->place, "Place name, alias or destination code")
        ->required();
    command->add_flag("--json", options->json, "Print JSON instead of a table");
    command->callback([options, &io] {
        const WearPlace& place = resolveWearPlace(options->place);
        const std::optional<std::string> bytes = readFile(options->file);
        if (!bytes) throw std::runtime_error("no file " + options->file);
        const auto doc = json::decodeDocument<WearForecast::Doc>(*bytes, options->file);
        const std::map<Day, WearDay> days = WearForecast::days(doc, place.timeZone);
        if (options->json) {
            json::Json out = json::Json::array();
            for (const auto& [day, d] : days) out.push_back(encode(d));
            printJson(io.out, out);
        } else {
            printDays(io.out, place, days);
        }
        io.status = kOk;
    });
}

}  // namespace

void addForecastCommand(CLI::App& root, Io& io) {
    CLI::App* forecast = root.add_subcommand("forecast", "Forecast days from MET Norway");
    forecast->require_subcommand(1);
    addDays(*forecast, io);
}

}  // namespace roamwise::cli
