// roamwise-cli wear: what to wear and pack for a place and dates, from its
// typical weather and, for near days, a forecast response; with --live both
// are fetched by the application core (app_core_commands.cpp).
#include <sstream>

#include <fmt/format.h>

#include "cli/commands.h"
#include "cli/table.h"
#include "cli/wear_place.h"
#include "tripkit/destinations.h"
#include "tripkit/wear.h"
#include "tripkit/wear_forecast.h"

namespace roamwise::cli {

using namespace tripkit;

namespace {

std::set<WearActivity> parseActivities(const std::string& text) {
    std::set<WearActivity> out;
    std::stringstream stream(text);
    std::string piece;
    while (std::getline(stream, piece, ',')) {
        piece.erase(0, piece.find_first_not_of(' '));
        piece.erase(piece.find_last_not_of(' ') + 1);
        if (piece.empty()) continue;
        const auto activity = wearActivityFromCaseName(piece);
        if (!activity) {
            std::string names;
            for (WearActivity a : allWearActivities()) {
                names += (names.empty() ? "" : ", ") + std::string(caseName(a));
            }
            throw UsageError("--activities: no activity \"" + piece + "\"; choose from: " + names);
        }
        out.insert(*activity);
    }
    return out;
}

// The forecast days of a response file, or none (said on `err`) when it
// cannot be read: the guide then stands on typical days alone.
std::map<Day, WearDay> forecastDays(const std::string& path, const WearPlace& place,
                                    std::ostream& err) {
    try {
        const std::optional<std::string> bytes = readFile(path);
        if (!bytes) throw std::runtime_error("no file " + path);
        const auto doc = json::decodeDocument<WearForecast::Doc>(*bytes, path);
        return WearForecast::days(doc, place.timeZone);
    } catch (const std::exception& e) {
        err << "roamwise-cli: forecast left out: " << e.what() << "\n";
        return {};
    }
}

void printGuide(std::ostream& out, const WearPlace& place, const WearGuide& g, TempUnit unit) {
    out << place.name << ", " << place.country << "\n";
    for (const std::string& note : g.summary) out << "  " << note << "\n";
    out << "  " << g.daytime << "\n  " << g.evening << "\n\nDays\n";
    for (const WearGuide::DayLine& line : g.days) {
        out << fmt::format("  {}  {:<9} {}  {}\n", dayWithWeekday(line.day.day),
                           caseName(line.day.source), rangeText(line.day.low, line.day.high, unit),
                           line.summary);
    }
    out << fmt::format("\nPacking list (counts for {} {})\n", g.planDays,
                       g.planDays == 1 ? "day" : "days");
    for (PackItem::Section section : allPackSections()) {
        bool first = true;
        for (const PackItem& item : g.packing) {
            if (item.section != section) continue;
            if (first) out << title(section) << "\n";
            first = false;
            out << fmt::format("  {:>2} × {}: {}", item.count, item.name, item.note);
            if (item.shop) out << " [shop: " << *item.shop << "]";
            out << "\n";
        }
    }
    out << "\n"
        << WhatToWear::sourceLine(g) << "\n";
}

}  // namespace

const WearPlace& resolveWearPlace(const std::string& text) {
    const auto& file = WearClimate::File::shipped();
    std::string code;
    for (char c : text) code += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (const Destination* d = Destinations::shipped().find(code)) {
        if (const WearPlace* p = file.find(d->name, d->countryCode.value_or(""))) return *p;
    }
    if (const WearPlace* p = file.find(text)) return *p;
    throw UsageError("no place \"" + text +
                     "\" with typical weather (name, alias or destination code)");
}

void addWearCommand(CLI::App& root, Io& io, const LiveWearSource& live) {
    struct Options {
        std::string place;
        std::string from;
        std::string to;
        std::string activities;
        bool laundry = false;
        bool modest = false;
        std::string unit = "f";
        std::string forecast;
        bool live = false;
        bool json = false;
        bool exportText = false;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = root.add_subcommand("wear", "What to wear and pack for a place and dates");
    command->add_option("PLACE", options->place, "Place name, alias or destination code")
        ->required();
    command->add_option("--from", options->from, "First day (YYYY-MM-DD)")
        ->required()
        ->check(dayValidator());
    command->add_option("--to", options->to, "Last day (YYYY-MM-DD)")
        ->required()
        ->check(dayValidator());
    command->add_option(
        "--activities", options->activities,
        "Comma-separated: cityWalking, beach, hiking, themeParks, dinnerOut, business");
    command->add_flag("--laundry", options->laundry, "You will wash clothes on the trip");
    command->add_flag("--modest", options->modest, "Local custom favours modest dress");
    command->add_option("--unit", options->unit, "Temperature unit: f or c")
        ->capture_default_str()
        ->check(CLI::IsMember({"f", "c"}));
    command->add_option("--forecast", options->forecast,
                        "A MET Norway locationforecast response for the place");
    CLI::Option* forecastFile = command->get_option("--forecast");
    command
        ->add_flag("--live", options->live,
                   "Fetch typical weather (NASA POWER) and the forecast (MET Norway) through the "
                   "application's cache; the shipped values when they cannot be had")
        ->excludes(forecastFile);
    CLI::Option* json = command->add_flag("--json", options->json, "Print JSON");
    CLI::Option* exported =
        command->add_flag("--export", options->exportText, "Print the packing list as plain text");
    json->excludes(exported);
    command->callback([options, &io, live] {
        const WearPlace& place = resolveWearPlace(options->place);
        const std::set<WearActivity> activities = parseActivities(options->activities);
        const TempUnit unit = options->unit == "c" ? TempUnit::celsius : TempUnit::fahrenheit;
        const Day from = *Day::parse(options->from);
        const Day to = *Day::parse(options->to);
        WearGuide guide;
        std::vector<std::string> credits;
        if (options->live) {
            LiveWear outcome = live(
                WearAsk{place, from, to, activities, options->laundry, options->modest, unit}, io);
            guide = std::move(outcome.guide);
            credits = std::move(outcome.credits);
        } else {
            std::map<Day, WearDay> forecast;
            if (!options->forecast.empty()) forecast = forecastDays(options->forecast, place, io.err);
            const std::vector<WearDay> days = WhatToWear::planDays(from, to, place.months, forecast);
            guide = WhatToWear::guide(
                WearRequest::make(days, activities, options->laundry, place.country, options->modest),
                unit);
            guide.typicalFromNormals = true;  // the shipped file's months
        }
        if (options->json) {
            printJson(io.out, encode(guide));
        } else if (options->exportText) {
            const DayRange range(from, to);
            io.out << WhatToWear::exportText(guide, "Packing list: " + place.name + ", " +
                                                        range.first.text() + " to " +
                                                        range.last.text())
                   << "\n";
        } else {
            printGuide(io.out, place, guide, unit);
            for (const std::string& credit : credits) io.out << credit << "\n";
        }
        io.status = kOk;
    });
}

}  // namespace roamwise::cli
