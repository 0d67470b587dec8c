// roamwise-cli climate reduce: twelve months of typical weather from a NASA
// POWER daily point response (and its UV climatology).
#include <fmt/format.h>

#include "cli/commands.h"
#include "cli/table.h"
#include "tripkit/wear_data.h"

namespace roamwise::cli {

using namespace tripkit;

namespace {

std::string readOrThrow(const std::string& path) {
    const std::optional<std::string> bytes = readFile(path);
    if (!bytes) throw std::runtime_error("no file " + path);
    return *bytes;
}

void printMonths(std::ostream& out, const std::vector<WearMonth>& months) {
    static const char* names[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                  "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    using A = Table::Align;
    Table table;
    table.columns = {{"Month", A::left, 5},    {"High", A::right, 6},     {"Low", A::right, 6},
                     {"HotDay", A::right, 7},  {"ColdNight", A::right, 9}, {"Rain", A::right, 5},
                     {"Snow", A::right, 5},    {"Humidity", A::right, 8}, {"Wind", A::right, 6},
                     {"UV", A::right, 4}};
    for (std::size_t m = 0; m < months.size(); ++m) {
        const WearMonth& v = months[m];
        table.add({names[m], fmt::format("{:.1f}", v.high), fmt::format("{:.1f}", v.low),
                   fmt::format("{:.1f}", v.hotDay), fmt::format("{:.1f}", v.coldNight),
                   fmt::format("{:.2f}", v.rain), fmt::format("{:.2f}", v.snow),
                   fmt::format("{:.0f}", v.humidity), fmt::format("{:.1f}", v.wind),
                   fmt::format("{:.1f}", v.uv)});
    }
    table.print(out);
    out << "°C, km/h, humidity in percent, rain and snow as the share of days.\n";
}

void addReduce(CLI::App& climate, Io& io) {
    struct Options {
        std::string daily;
        std::string uv;
        std::optional<double> elevation;
        bool json = false;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = climate.add_subcommand(
        "reduce", "Twelve months of typical weather from a NASA POWER daily point response");
    command->add_option("DAILY", options->daily, "The daily point response (JSON)")->required();
    command->add_option("--uv", options->uv,
                        "A climatology point response with ALLSKY_SFC_UV_INDEX_12");
    // Below sea level is real (the Dead Sea shore is about -430 m).
    addNumberOption(*command, "--elevation", options->elevation, "The city's height in metres",
                    {-500, 9000});
    command->add_flag("--json", options->json, "Print JSON instead of a table");
    command->callback([options, &io] {
        const auto daily =
            json::decodeDocument<WearClimate::Daily>(readOrThrow(options->daily), options->daily);
        WearClimate::UvClimatology uv;
        if (!options->uv.empty()) {
            uv = json::decodeDocument<WearClimate::UvClimatology>(readOrThrow(options->uv),
                                                                  options->uv);
        }
        std::vector<WearMonth> months;
        try {
            months = WearClimate::reduce(daily, uv, options->elevation);
        } catch (const WearClimate::Failure& e) {
            throw std::runtime_error(options->daily + ": " + e.what());
        }
        if (options->json) {
            printJson(io.out, json::array(months));
        } else {
            printMonths(io.out, months);
        }
        io.status = kOk;
    });
}

}  // namespace

void addClimateCommand(CLI::App& root, Io& io) {
    CLI::App* climate = root.add_subcommand("climate", "Typical weather from NASA POWER data");
    climate->require_subcommand(1);
    addReduce(*climate, io);
}

}  // namespace roamwise::cli
