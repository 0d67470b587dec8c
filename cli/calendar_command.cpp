// roamwise-cli calendar: the cheapest round trip to one destination for each
// departure day, or for each month, merged across the home airports.
#include <fmt/format.h>

#include "cli/commands.h"
#include "cli/table.h"
#include "tripkit/calendars.h"
#include "tripkit/destinations.h"
#include "tripkit/fares.h"
#include "tripkit/freshness.h"

namespace roamwise::cli {

using namespace tripkit;

namespace {

std::string placeName(const std::string& code) {
    const Destination* place = Destinations::shipped().find(code);
    return place ? place->name + " (" + code + ")" : code;
}

// The trips table; with months, a first column names each row's month.
Table tripTable(bool months) {
    using A = Table::Align;
    Table table;
    if (months) table.columns.push_back({"Month", A::left, 8});
    table.columns.insert(table.columns.end(),
                         {{"Depart", A::left, 14, 2}, {"Return", A::left, 14, 2},
                          {"Nights", A::right, 6, 2}, {"Price", A::right, 9, 2},
                          {"Airline", A::left, 18, 2}, {"Stops", A::right, 5},
                          {"From", A::left, 4, 2}, {"Age", A::right, 4}, {""}});
    return table;
}

std::vector<std::string> cells(const RoundTrip& t, Day today) {
    const auto nights = t.nights();
    return {dayWithWeekday(t.depart), t.returnDay ? dayWithWeekday(*t.returnDay) : "one way",
            nights ? std::to_string(*nights) : "-", money(t.price), Airline::display(t.airline),
            t.stops == 0 ? std::string("non") : std::to_string(t.stops), t.origin,
            fmt::format("{}d", Freshness::age(t.seen, today)), t.isStale(today) ? "*" : ""};
}

void printStaleNote(std::ostream& out, bool anyStale) {
    if (anyStale) out << "* a fare seen over " << Freshness::freshDays << " days ago\n";
}

void printDays(std::ostream& out, const std::string& to, const std::vector<RoundTrip>& trips,
               Day today) {
    out << "Day-by-day prices for " << shown(placeName(to))
        << ": the cheapest round trip found leaving each day, per person\n";
    Table table = tripTable(false);
    bool anyStale = false;
    for (const RoundTrip& t : trips) {
        anyStale = anyStale || t.isStale(today);
        table.add(cells(t, today));
    }
    table.print(out);
    printStaleNote(out, anyStale);
}

void printMonths(std::ostream& out, const std::string& to,
                 const std::vector<std::pair<YearMonth, RoundTrip>>& months, Day today) {
    out << "Cheapest round trip each month to " << shown(placeName(to)) << ", per person\n";
    Table table = tripTable(true);
    bool anyStale = false;
    for (const auto& [month, t] : months) {
        anyStale = anyStale || t.isStale(today);
        std::vector<std::string> row = cells(t, today);
        row.insert(row.begin(), month.text());
        table.add(std::move(row));
    }
    table.print(out);
    printStaleNote(out, anyStale);
}

}  // namespace

void addCalendarCommand(CLI::App& root, Io& io) {
    struct Options {
        std::string destination;
        bool months = false;
        DataOptions data;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = root.add_subcommand(
        "calendar", "Cheapest round trip to one destination for each departure day or month");
    command->add_option("DEST", options->destination, "Destination code (e.g. LIS)")->required();
    command->add_flag("--months", options->months, "The cheapest trip of each month instead");
    addDataOptions(*command, options->data);
    command->callback([options, &io] {
        const std::string to = parseDestinationCode(options->destination);
        const Day today = resolveToday(options->data.today);
        const std::optional<FareCalendar> calendar = loadFareCalendar(options->data, io.err);
        if (!calendar) {
            io.status = kNoData;
            return;
        }
        if (options->months) {
            const auto months = calendar->months(to, today);
            if (options->data.json) {
                json::Json out = json::Json::array();
                for (const auto& [month, trip] : months) {
                    json::Json entry = json::Json::object();
                    entry["month"] = encode(month);
                    entry["trip"] = tripJson(trip, today);
                    out.push_back(std::move(entry));
                }
                printJson(io.out, out);
            } else if (months.empty()) {
                io.out << "No fares to " << to << " leaving in the next " << Freshness::horizonDays
                       << " days were seen recently enough to show.\n";
            } else {
                printMonths(io.out, to, months, today);
            }
        } else {
            const auto trips = calendar->trips(to, today);
            if (options->data.json) {
                json::Json out = json::Json::array();
                for (const RoundTrip& trip : trips) out.push_back(tripJson(trip, today));
                printJson(io.out, out);
            } else if (trips.empty()) {
                io.out << "No fares to " << to << " leaving in the next " << Freshness::horizonDays
                       << " days were seen recently enough to show.\n";
            } else {
                printDays(io.out, to, trips, today);
            }
        }
        io.status = kOk;
    });
}

}  // namespace roamwise::cli
