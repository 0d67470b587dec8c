// roamwise-cli park price: one theme-park stay priced part by part for every
// resort a trip search allows, from the shipped price guide or a given one.
#include <fmt/format.h>

#include "cli/commands.h"
#include "cli/table.h"
#include "tripkit/disney_guide.h"
#include "tripkit/events.h"
#include "tripkit/stay_pricing.h"
#include "tripkit/trip_search.h"
#include "tripkit/universal_guide.h"

namespace roamwise::cli {

using namespace tripkit;

namespace {

// Universal has no child price: everyone from 3 pays the adult ticket.
json::Json partyJson(const Party& party, bool disney) {
    json::Json out = json::Json::object();
    out["adults"] = party.adults;
    out["adultPriced"] = disney ? party.adultPriced() : party.universalTicketed();
    out["childPriced"] = disney ? party.childPriced() : 0;
    out["seats"] = party.seats();
    out["lapBabies"] = party.lapBabies();
    out["freeInParks"] = party.freeInParks();
    out["rooms"] = party.rooms();
    return out;
}

json::Json stayJson(const ResortStay& stay, bool disney) {
    const StayPrice& s = stay.price;
    json::Json out = json::Json::object();
    out["resort"] = stay.resort.id;
    out["checkIn"] = encode(s.checkIn);
    out["checkOut"] = encode(s.checkOut);
    out["hotel"] = s.hotel ? json::number(s.hotel->total) : json::Json();
    out["hotelEstimated"] = s.hotelEstimated();
    out["tickets"] = json::number(s.tickets.tickets);
    out["hopper"] = json::number(s.tickets.hopper);
    if (disney) {
        out["lightningLane"] = json::number(s.lightningLane);
    } else {
        out["express"] = s.express;
    }
    out["transport"] = json::number(s.transport);
    out["food"] = json::number(s.food);
    const auto total = s.total();
    out["total"] = total ? json::number(*total) : json::Json();
    out["busy"] = s.busy;
    return out;
}

std::string plural(int n, const char* one, const char* many) {
    return std::to_string(n) + " " + (n == 1 ? one : many);
}

void printStays(std::ostream& out, const std::vector<ResortStay>& stays, const TripSearch& search,
                bool disney) {
    const Party& p = search.party;
    out << (disney ? "Walt Disney World" : "Universal Orlando") << ": "
        << plural(search.nights, "night", "nights") << ", "
        << plural(search.parkDays, "park day", "park days") << "\n";
    out << "Party: " << plural(p.adults, "adult", "adults") << ", "
        << (disney ? p.adultPriced() : p.universalTicketed()) << " at the adult price";
    if (disney) out << ", " << p.childPriced() << " at the child price";
    out << ", " << plural(p.seats(), "seat", "seats") << ", "
        << plural(p.lapBabies(), "lap baby", "lap babies") << ", " << p.freeInParks()
        << " free in the parks, " << plural(p.rooms(), "room", "rooms") << "\n";
    if (stays.empty()) {
        out << "\nNo hotel of the guide fits the search's resort choice.\n";
        return;
    }
    for (const auto& [resort, s] : stays) {
        out << "\n" << shown(resort.name) << " (" << label(resort.tier) << "), "
            << s.checkIn.text() << " to " << s.checkOut.text()
            << (s.busy ? ", touches a busy date" : "") << "\n";
        Table table;
        table.titles = false;
        table.indent = 2;
        table.columns = {{"", Table::Align::left, 16}, {""}};
        auto row = [&table](std::string_view name, const std::string& value) {
            table.add({std::string(name), value});
        };
        row("Hotel", s.hotel ? money(s.hotel->total) + (s.hotel->estimated ? " (estimated)" : "")
                             : "no price for these nights");
        row("Tickets", money(s.tickets.tickets));
        row(disney ? "Park hopper" : "Park-to-park", money(s.tickets.hopper));
        if (disney) {
            row("Lightning Lane", money(s.lightningLane));
        } else {
            row("Express", s.express ? "Unlimited, with the hotel" : "not included");
        }
        row("Transport", money(s.transport) + " (" + std::string(label(search.transport)) + ")");
        row("Food", money(s.food));
        const auto total = s.total();
        row("Total", total ? money(*total) : "-");
        table.print(out);
    }
}

// Decodes the file at `path`, naming it in any error; nothing (after saying
// why) when it cannot be read.
template <class T>
std::optional<T> readRecord(const std::string& path, const char* what, std::ostream& err) {
    try {
        std::optional<simdjson::padded_string> bytes = FileReader::read(path);
        if (!bytes) {
            err << "roamwise-cli: no " << what << " file " << path << "\n";
            return std::nullopt;
        }
        return json::decodePadded<T>(std::move(*bytes), path);
    } catch (const std::exception& e) {
        err << "roamwise-cli: not a " << what << ": " << shown(e.what()) << "\n";
        return std::nullopt;
    }
}

}  // namespace

void addParkCommand(CLI::App& root, Io& io) {
    struct Options {
        std::string park;
        std::string search;
        std::string checkIn;
        std::string guide;
        bool json = false;
    };
    auto options = std::make_shared<Options>();
    CLI::App* park = root.add_subcommand("park", "Walt Disney World and Universal Orlando trips");
    park->require_subcommand(1);
    CLI::App* price = park->add_subcommand(
        "price", "Price one stay part by part at every resort a trip search allows");
    price->add_option("PARK", options->park, "disney or universal")
        ->required()
        ->check(CLI::IsMember({"disney", "universal"}));
    price->add_option("--search", options->search, "Trip search file (JSON)")->required();
    price->add_option("--check-in", options->checkIn, "Check-in day, also the first park day")
        ->required()
        ->check(dayValidator());
    price->add_option("--guide", options->guide,
                      "Price guide file to use instead of the shipped one (JSON)");
    price->add_flag("--json", options->json, "Print JSON instead of a table");
    price->callback([options, &io] {
        const bool disney = options->park == "disney";
        const Day checkIn = resolveToday(options->checkIn);
        const std::optional<TripSearch> search =
            readRecord<TripSearch>(options->search, "trip search", io.err);
        if (!search) {
            io.status = kNoData;
            return;
        }
        std::vector<ResortStay> stays;
        if (disney) {
            std::optional<DisneyGuide> guide;
            if (options->guide.empty()) {
                guide = DisneyGuide::shipped();
            } else {
                guide = readRecord<DisneyGuide>(options->guide, "Disney guide", io.err);
                if (guide) guide->busyEvents = DisneyGuide::busySpans(EventCalendar::shipped());
            }
            if (!guide) {
                io.status = kNoData;
                return;
            }
            stays = priceStays(*guide, *search, checkIn);
        } else {
            std::optional<UniversalGuide> guide;
            if (options->guide.empty()) {
                guide = UniversalGuide::shipped();
            } else {
                guide = readRecord<UniversalGuide>(options->guide, "Universal guide", io.err);
            }
            if (!guide) {
                io.status = kNoData;
                return;
            }
            stays = priceStays(*guide, *search, checkIn);
        }

        if (options->json) {
            json::Json out = json::Json::object();
            out["party"] = partyJson(search->party, disney);
            json::Json list = json::Json::array();
            for (const ResortStay& s : stays) list.push_back(stayJson(s, disney));
            out["stays"] = std::move(list);
            printJson(io.out, out);
        } else {
            printStays(io.out, stays, *search, disney);
        }
        io.status = kOk;
    });
}

}  // namespace roamwise::cli
