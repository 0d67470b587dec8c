// roamwise-cli watch: the user's price watches ("watches.json"): add, list,
// remove, and check them against the nightly files as the app does after a
// refresh, printing each alert as its notification reads.
#include <strings.h>

#include <algorithm>
#include <random>

#include <fmt/format.h>

#include "app/app_model.h"
#include "app/storage.h"
#include "cli/arguments.h"
#include "cli/app_core_commands.h"
#include "cli/park_data.h"
#include "cli/table.h"
#include "tripkit/alerts.h"
#include "tripkit/destinations.h"
#include "tripkit/file_reader.h"
#include "tripkit/file_writer.h"

namespace roamwise::cli {

using namespace tripkit;

namespace {

// A missing file is an empty list; one that does not decode stops the
// command and is left exactly as it is.
// The file given, else the one the desktop application uses.
std::string watchesPath(const std::string& given) {
    if (!given.empty()) return given;
    return (app::Folders::standard().store + "/" + app::UserFiles::watches).toStdString();
}

std::vector<Watch> readWatches(const std::string& given) {
    const std::string path = watchesPath(given);
    std::optional<simdjson::padded_string> bytes = FileReader::read(path);
    if (!bytes) return {};
    return json::decodePadded<std::vector<Watch>>(std::move(*bytes), path);
}

void writeWatches(const std::string& given, const std::vector<Watch>& watches) {
    app::saveFile(QString::fromStdString(watchesPath(given)), json::array(watches).dump(2) + "\n");
}

std::string newID() {
    std::random_device random;
    auto bits = [&] { return (std::uint64_t{random()} << 32) | random(); };
    const std::uint64_t high = bits();
    return Watch::makeID(high, bits());
}

// "2026-12-01..2026-12-10"
DayRange parseWindow(const std::string& text) {
    const auto dots = text.find("..");
    auto day = [&](const std::string& part) {
        auto d = Day::parse(part);
        if (!d || d->text() != part) throw UsageError("--window: not a date (YYYY-MM-DD): " + part);
        return *d;
    };
    if (dots == std::string::npos) throw UsageError("--window: give FIRST..LAST, e.g. 2026-12-01..2026-12-10");
    const Day first = day(text.substr(0, dots));
    const Day last = day(text.substr(dots + 2));
    if (last < first) throw UsageError("--window: " + text + " ends before it begins");
    return DayRange(first, last);
}

std::string priceText(const std::optional<double>& price) { return price ? money(*price) : "-"; }

void printList(std::ostream& out, const std::vector<Watch>& watches, Day today) {
    if (watches.empty()) {
        out << "No watches.\n";
        return;
    }
    Table table;
    table.columns = {{"ID"},
                     {"WATCHING", Table::Align::left, 0, 2},
                     {"TARGET", Table::Align::right, 0, 2},
                     {"LAST", Table::Align::right, 0, 2},
                     {"CHECKED", Table::Align::left, 0, 2}};
    for (const Watch& w : watches) {
        std::string what = w.name();
        if (const auto* route = std::get_if<Watch::Route>(&w.kind); route && route->window) {
            what += " " + route->window->first.text() + ".." + route->window->last.text();
        }
        if (w.hasPassed(today)) what += " (These dates have passed)";
        table.add({w.id, what, w.target ? money(*w.target) : "any drop", priceText(w.lastPrice),
                   w.lastChecked ? w.lastChecked->text() : "never"});
    }
    table.print(out);
}

}  // namespace

void addWatchCommand(CLI::App& root, Io& io) {
    struct Options {
        std::string file;
        std::string destination;
        std::optional<double> target;
        std::string window;
        std::string park;
        std::string search;
        std::string checkIn;
        std::string id;
        std::string today;
        bool json = false;
        DataOptions data;
    };
    auto options = std::make_shared<Options>();
    CLI::App* watch = root.add_subcommand("watch", appCoreHelp::watch);
    watch->require_subcommand(1);
    auto fileOption = [&](CLI::App* command) {
        command->add_option("--file", options->file,
                            "The watches file (default: the application's own watches.json)");
    };

    CLI::App* add = watch->add_subcommand("add", "Watch the cheapest round trip to a destination");
    add->add_option("DEST", options->destination, "Destination code (e.g. LIS)")->required();
    addNumberOption(*add, "--target", options->target, "Alert when the price is at or under this",
                    kPriceRange);
    add->add_option("--window", options->window, "Only trips leaving and back in FIRST..LAST");
    add->add_option("--today", options->today, "Day to run for (YYYY-MM-DD; default: today)")
        ->check(dayValidator());
    fileOption(add);
    add->callback([options, &io] {
        const std::string code = parseDestinationCode(options->destination);
        const Destination* place = Destinations::shipped().find(code);
        if (!place) throw UsageError("unknown destination: " + code);
        Watch w;
        w.id = newID();
        w.kind = Watch::Route{code, place->name,
                              options->window.empty() ? std::nullopt
                                                      : std::optional(parseWindow(options->window))};
        w.target = options->target;
        w.created = resolveToday(options->today);
        std::vector<Watch> watches = readWatches(options->file);
        watches.push_back(w);
        writeWatches(options->file, watches);
        io.out << w.id << "\n";
        io.status = kOk;
    });

    CLI::App* addTrip = watch->add_subcommand(
        "add-trip", "Watch a theme-park trip's total for check-ins within three days of one");
    addTrip->add_option("PARK", options->park, "disney or universal")
        ->required()
        ->check(CLI::IsMember({"disney", "universal"}));
    addTrip->add_option("--search", options->search, "The trip search (TripSearch JSON)")->required();
    addTrip->add_option("--check-in", options->checkIn, "The chosen check-in day")
        ->required()
        ->check(dayValidator());
    addTrip->add_option("--today", options->today, "Day to run for (YYYY-MM-DD; default: today)")
        ->check(dayValidator());
    fileOption(addTrip);
    addTrip->callback([options, &io] {
        std::optional<simdjson::padded_string> bytes = FileReader::read(options->search);
        if (!bytes) throw std::runtime_error("no file " + options->search);
        const TripSearch search = json::decodePadded<TripSearch>(std::move(*bytes), options->search);
        const Day checkIn = resolveToday(options->checkIn);
        Watch w;
        w.id = newID();
        const Watch::Disney trip{search, DayRange(checkIn, checkIn + search.nights)};
        // Both are kept as "disney" watches; the hotels the search takes say which park.
        if (trip.isUniversal() != (options->park == "universal")) {
            throw UsageError(
                "--search: the trip takes " +
                std::string(trip.isUniversal() ? "Universal Orlando" : "Walt Disney World") +
                " hotels, not " + options->park + " ones");
        }
        w.kind = trip;
        w.created = resolveToday(options->today);
        std::vector<Watch> watches = readWatches(options->file);
        watches.push_back(w);
        writeWatches(options->file, watches);
        io.out << w.id << "\n";
        io.status = kOk;
    });

    CLI::App* list = watch->add_subcommand("list", "List the watches");
    fileOption(list);
    list->add_option("--today", options->today, "Day to run for (YYYY-MM-DD; default: today)")
        ->check(dayValidator());
    list->add_flag("--json", options->json, "Print JSON instead of a table");
    list->callback([options, &io] {
        const std::vector<Watch> watches = readWatches(options->file);
        if (options->json) {
            printJson(io.out, json::array(watches));
        } else {
            printList(io.out, watches, resolveToday(options->today));
        }
        io.status = kOk;
    });

    CLI::App* remove = watch->add_subcommand("remove", "Remove one watch");
    remove->add_option("ID", options->id, "The watch's id")->required();
    fileOption(remove);
    remove->callback([options, &io] {
        std::vector<Watch> watches = readWatches(options->file);
        const auto before = watches.size();
        std::erase_if(watches, [&](const Watch& w) { return strcasecmp(w.id.c_str(), options->id.c_str()) == 0; });
        if (watches.size() == before) throw UsageError("no watch " + options->id + " in " + options->file);
        writeWatches(options->file, watches);
        io.status = kOk;
    });

    CLI::App* check = watch->add_subcommand(
        "check", "Check every watch against the nightly files and print the alerts");
    fileOption(check);
    addDataOptions(*check, options->data);
    check->callback([options, &io] {
        std::vector<Watch> watches = readWatches(options->file);
        const Day today = resolveToday(options->data.today);
        const bool routes = std::any_of(watches.begin(), watches.end(), [](const Watch& w) {
            return std::holds_alternative<Watch::Route>(w.kind);
        });
        const bool trips = std::any_of(watches.begin(), watches.end(), [](const Watch& w) {
            return std::holds_alternative<Watch::Disney>(w.kind);
        });
        // Route watches need the calendars; theme-park watches alone do not.
        std::optional<FareCalendar> calendar =
            routes ? loadFareCalendar(options->data, io.err) : FareCalendar();
        if (!calendar) {
            io.status = kNoData;
            return;
        }
        // Theme-park watches are priced by the planner from the main home
        // airport's fares and the guides; read only when there is one.
        std::optional<MainHome> home;
        std::optional<ParkData> parks;
        Alerts::TripPricer pricer;
        if (trips) {
            home = loadMainHome(options->data, io.err);
            parks = loadParkData(options->data, io.err);
            PlanInputs inputs;
            inputs.book = home->book ? &*home->book : nullptr;
            inputs.home = home->airport;
            inputs.orlando = home->orlando;
            pricer = Alerts::tripPricer(parks->disney, parks->universal, inputs);
        }
        const std::vector<WatchAlert> alerts = Alerts::checkAll(watches, *calendar, pricer, today);
        writeWatches(options->file, watches);

        auto watchOf = [&](const WatchAlert& a) -> const Watch& {
            return *std::find_if(watches.begin(), watches.end(),
                                 [&](const Watch& w) { return w.id == a.watchID; });
        };
        if (options->data.json) {
            json::Json list = json::Json::array();
            for (const WatchAlert& a : alerts) {
                const AlertNotification n = AlertNotification::of(watchOf(a), a, today);
                json::Json item = encode(a);
                item["previous"] = a.previous ? json::number(*a.previous) : json::Json();
                item["title"] = n.title;
                item["body"] = n.body;
                item["identifier"] = n.identifier;
                list.push_back(std::move(item));
            }
            printJson(io.out, json::Json{{"alerts", std::move(list)}});
        } else if (alerts.empty()) {
            io.out << "No alerts.\n";
        } else {
            for (const WatchAlert& a : alerts) {
                const AlertNotification n = AlertNotification::of(watchOf(a), a, today);
                io.out << shown(n.title) << "\n  " << shown(n.body) << "\n";
            }
        }
        io.status = kOk;
    });
}

}  // namespace roamwise::cli
