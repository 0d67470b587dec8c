// roamwise-cli forecast days: the forecast days of a MET Norway response,
// grouped by the place's own calendar day.
#include <fmt/format.h>

#include "cli/commands.h"
#include "cli/wear_place.h"
#include "tripkit/wear.h"
#include "tripkit/wear_forecast.h"

namespace roamwise::cli {

using namespace tripkit;

namespace {

void printDays(std::ostream& out, const WearPlace& place, const std::map<Day, WearDay>& days) {
    out << place.name << " (" << place.timeZone << ")\n";
    out << fmt::format("{:<14} {:>5} {:>5} {:>5} {:>5} {:>8} {:>5} {:>4}\n", "Day", "High", "Low",
                       "Rain", "Snow", "Humidity", "Wind", "UV");
    for (const auto& [day, d] : days) {
        out << fmt::format(
            "{:<14} {:>5.1f} {:>5.1f} {:>5.1f} {:>5.1f} {:>8.0f} {:>5.1f} {:>4.1f}\n",
            dayWithWeekday(day), d.high, d.low, d.rain, d.snow, d.humidity, d.wind, d.uv);
    }
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
