// roamwise-cli getaways: each destination's cheapest calendar trip that fits
// a kind of trip (any dates, weekends, a federal holiday's long weekend).
#include <sstream>

#include <fmt/format.h>

#include "cli/commands.h"
#include "cli/table.h"
#include "tripkit/destinations.h"
#include "tripkit/fares.h"
#include "tripkit/freshness.h"
#include "tripkit/getaways.h"
#include "tripkit/holidays.h"

namespace roamwise::cli {

using namespace tripkit;

namespace {

std::string holidayNames() {
    std::string out;
    for (FederalHoliday h : allFederalHolidays()) {
        if (!out.empty()) out += ", ";
        out += caseName(h);
    }
    return out;
}

TripTiming parseTiming(const std::string& text) {
    if (text == "anytime") return TripTiming::anytime();
    if (text == "weekends") return TripTiming::weekends();
    if (text == "any-holiday") return TripTiming::anyHoliday();
    if (auto holiday = federalHolidayFromCaseName(text)) return TripTiming::forHoliday(*holiday);
    throw UsageError("--timing: expected anytime, weekends, any-holiday or one holiday (" +
                     holidayNames() + "), not: " + text);
}

TripLength parseLength(const std::string& text) {
    if (auto length = tripLengthFromCaseName(text)) return *length;
    throw UsageError("--length: expected any, short, week or long, not: " + text);
}

std::set<std::string> parseDestinationCodes(const std::string& text) {
    std::set<std::string> codes;
    std::stringstream stream(text);
    std::string piece;
    while (std::getline(stream, piece, ',')) {
        std::string code;
        for (char c : piece) {
            if (c != ' ' && c != '\t') code += c;
        }
        if (!code.empty()) codes.insert(parseDestinationCode(code));
    }
    if (codes.empty()) throw UsageError("--to: give destination codes, e.g. LIS,CUN");
    return codes;
}

std::string describe(const TripTiming& timing, TripLength length) {
    std::string when;
    switch (timing.kind) {
        case TripTiming::Kind::anytime: when = "any dates"; break;
        case TripTiming::Kind::weekends: when = "weekends"; break;
        case TripTiming::Kind::anyHoliday: when = "any federal holiday’s long weekend"; break;
        case TripTiming::Kind::holiday:
            when = std::string(displayName(timing.holiday.value())) + " long weekend";
            break;
    }
    const auto nights = nightsRange(length);
    return when + ", " +
           (nights ? fmt::format("{} to {} nights", nights->first, nights->second)
                   : std::string("any length"));
}

void printTable(std::ostream& out, const std::vector<Getaway>& getaways, const TripTiming& timing,
                TripLength length, Day today) {
    out << "Cheapest trips that fit: " << describe(timing, length) << "\n";
    if (getaways.empty()) {
        out << "No trip in the calendars fits.\n";
        return;
    }
    using A = Table::Align;
    Table table;
    table.columns = {{"Dest", A::left, 5},      {"Place", A::left, 18},     {"Price", A::right, 9},
                     {"Depart", A::left, 14, 2}, {"Return", A::left, 14, 2}, {"Nights", A::right, 6, 2},
                     {"Airline", A::left, 18, 2}, {"Stops", A::right, 5},   {"From", A::left, 4, 2},
                     {"Age", A::right, 4},      {""}};
    bool anyStale = false;
    for (const Getaway& g : getaways) {
        const RoundTrip& t = g.trip;
        const Destination* place = Destinations::shipped().find(t.destination);
        const auto nights = t.nights();
        anyStale = anyStale || t.isStale(today);
        std::string note;
        if (g.window) {
            note = std::string(displayName(g.window->holiday)) + ": days off " +
                   dayWithWeekday(g.window->days.first) + " to " +
                   dayWithWeekday(g.window->days.last);
        }
        table.add({t.destination, place ? place->name : "", money(t.price), dayWithWeekday(t.depart),
                   t.returnDay ? dayWithWeekday(*t.returnDay) : "one way",
                   nights ? std::to_string(*nights) : "-", Airline::display(t.airline),
                   t.stops == 0 ? std::string("non") : std::to_string(t.stops), t.origin,
                   fmt::format("{}d", Freshness::age(t.seen, today)), t.isStale(today) ? "*" : ""},
                  note);
    }
    table.print(out);
    if (anyStale) out << "* a fare seen over " << Freshness::freshDays << " days ago\n";
}

}  // namespace

void addGetawaysCommand(CLI::App& root, Io& io) {
    struct Options {
        std::string timing;
        std::string length = "any";
        std::string to;
        std::optional<double> maxPrice;
        DataOptions data;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = root.add_subcommand(
        "getaways", "Each destination's cheapest trip for weekends, holidays or any dates");
    command
        ->add_option("--timing", options->timing,
                     "anytime, weekends, any-holiday or one holiday (" + holidayNames() + ")")
        ->required();
    command
        ->add_option("--length", options->length,
                     "any, short (2-4 nights), week (5-9) or long (10-60)")
        ->capture_default_str();
    command->add_option("--to", options->to, "Only these destinations (e.g. LIS,CUN)");
    addNumberOption(*command, "--max", options->maxPrice, "Highest round-trip price per person",
                    kPriceRange);
    addDataOptions(*command, options->data);
    command->callback([options, &io] {
        const TripTiming timing = parseTiming(options->timing);
        const TripLength length = parseLength(options->length);
        std::optional<std::set<std::string>> to;
        if (!options->to.empty()) to = parseDestinationCodes(options->to);
        const Day today = resolveToday(options->data.today);
        const std::optional<FareCalendar> calendar = loadFareCalendar(options->data, io.err);
        if (!calendar) {
            io.err << "roamwise-cli: Getaways need price calendars\n";
            io.status = kNoData;
            return;
        }
        const std::vector<Getaway> getaways =
            Getaways::find(*calendar, timing, length, to, options->maxPrice, today);
        if (options->data.json) {
            json::Json out = json::Json::array();
            for (const Getaway& g : getaways) {
                json::Json entry = encode(g);
                entry["trip"] = tripJson(g.trip, today);
                out.push_back(std::move(entry));
            }
            printJson(io.out, out);
        } else {
            printTable(io.out, getaways, timing, length, today);
        }
        io.status = kOk;
    });
}

}  // namespace roamwise::cli
