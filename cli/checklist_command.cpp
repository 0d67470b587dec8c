// roamwise-cli checklist: what a U.S. citizen needs to fly to a destination,
// a new packing list for it, and the day of the passport reminder.
#include <fmt/format.h>

#include "cli/commands.h"
#include "tripkit/checklist.h"
#include "tripkit/destinations.h"

namespace roamwise::cli {

using namespace tripkit;

namespace {

struct Checklist {
    const Destination* place = nullptr;
    EntryBasics basics;
    std::vector<PackingItem> items;
    std::optional<PassportReminder> reminder;  // abroad, with a trip day
    bool tripAtHome = false;                   // a trip day was given for a place at home
};

json::Json checklistJson(const Checklist& c, Day today) {
    json::Json out = json::Json::object();
    out["destination"] = c.place->code;
    out["place"] = c.place->name;
    out["domestic"] = c.place->domestic;
    out["document"] = encode(c.basics.document);
    out["entryBasics"] = c.basics.text();
    const auto note = c.basics.note();
    out["entryNote"] = note ? json::Json(*note) : json::Json(nullptr);
    json::Json links = json::Json::array();
    for (const EntryBasics::Link& link : c.basics.links()) {
        links.push_back({{"title", link.title}, {"url", link.url}});
    }
    out["links"] = std::move(links);
    out["items"] = json::array(c.items);
    if (c.reminder) {
        out["reminder"] = {{"day", c.reminder->day().text()}, {"past", c.reminder->isPast(today)}};
    } else {
        out["reminder"] = nullptr;
    }
    return out;
}

void printChecklistTable(std::ostream& out, const Checklist& c, Day today) {
    out << c.place->name << " (" << c.place->code << "), "
        << (c.place->domestic ? "at home" : "abroad") << ": " << c.basics.summary() << "\n\n";
    out << "Entry basics\n  " << c.basics.text() << "\n";
    if (const auto note = c.basics.note()) out << "  " << *note << "\n";
    for (const EntryBasics::Link& link : c.basics.links()) {
        out << "  " << link.title << ": " << link.url << "\n";
    }
    if (c.reminder) {
        out << "\n"
            << PassportReminder::title << "\n  "
            << fmt::format("{} {} before the trip on {}: {}", c.reminder->weeks,
                           c.reminder->weeks == 1 ? "week" : "weeks",
                           dayWithWeekday(c.reminder->trip), dayWithWeekday(c.reminder->day()))
            << "\n";
        if (c.reminder->isPast(today)) out << "  " << PassportReminder::pastText << "\n";
    } else if (c.tripAtHome) {
        out << "\nNo passport is needed for a trip at home, so there is no passport reminder.\n";
    }
    out << "\nPacking list\n";
    for (const PackingItem& item : c.items) {
        out << "  [" << (item.packed ? 'x' : ' ') << "] " << item.title << "\n";
    }
}

}  // namespace

void addChecklistCommand(CLI::App& root, Io& io) {
    struct Options {
        std::string destination;
        std::string trip;
        std::optional<int> weeks;
        std::string today;
        bool json = false;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = root.add_subcommand(
        "checklist",
        "Entry basics, a new packing list and the passport reminder for a destination");
    command->add_option("DEST", options->destination, "Destination code (e.g. LIS)")->required();
    CLI::Option* trip = command->add_option("--trip", options->trip, "The trip's day (YYYY-MM-DD)")
                            ->check(dayValidator());
    CLI::Option* weeks = addWholeOption(*command, "--weeks", options->weeks,
                                        "Weeks before the trip to be reminded", {0, 52});
    trip->needs(weeks);
    weeks->needs(trip);
    command->add_option("--today", options->today, "Day to run for (YYYY-MM-DD; default: today)")
        ->check(dayValidator());
    command->add_flag("--json", options->json, "Print JSON instead of text");
    command->callback([options, &io] {
        const std::string code = parseDestinationCode(options->destination);
        const Destination* place = Destinations::shipped().find(code);
        if (place == nullptr) {
            throw UsageError("no destination with the code \"" + code +
                             "\" in the catalog (see 'roamwise-cli places destinations')");
        }
        const Day today = resolveToday(options->today);
        Checklist c{place, EntryBasics::of(*place), Packing::newList(*place), std::nullopt, false};
        if (!options->trip.empty()) {
            // The reminder is about the passport, so only trips abroad get one.
            if (place->domestic) {
                c.tripAtHome = true;
            } else {
                c.reminder = PassportReminder{*options->weeks, *Day::parse(options->trip)};
            }
        }
        if (options->json) {
            printJson(io.out, checklistJson(c, today));
        } else {
            printChecklistTable(io.out, c, today);
        }
        io.status = kOk;
    });
}

}  // namespace roamwise::cli
