// roamwise-cli plan: every check-in date of a theme-park trip priced as a
// whole trip and ranked, with the cheapest trip of each month, as the
// planner screen shows them.
#include <cmath>

#include "cli/commands.h"
#include "cli/park_data.h"
#include "cli/table.h"
#include "tripkit/trip_planner.h"

namespace roamwise::cli {

using namespace tripkit;

namespace {

json::Json legJson(const FareQuote& leg) {
    json::Json out = json::Json::object();
    out["price"] = json::number(leg.price);
    out["estimated"] = leg.estimated;
    out["spread"] = json::number(leg.spread);
    return out;
}

json::Json tripJson(const TripQuote& t) {
    json::Json parts = json::Json::object();
    for (TripQuote::Part part : tripParts(t.fromPrices)) {
        parts[std::string(caseName(part))] = json::number(t.amount(part));
    }
    json::Json out = json::Json::object();
    out["checkIn"] = encode(t.checkIn);
    out["checkOut"] = encode(t.checkOut);
    out["resort"] = t.resort.id;
    out["season"] = t.season;
    out["parts"] = std::move(parts);
    out["total"] = json::number(t.total());
    out["estimated"] = t.estimated;
    out["flightsSpread"] = json::number(t.flightsSpread);
    out["travelers"] = t.travelers;
    out["outbound"] = legJson(t.outbound);
    out["inbound"] = legJson(t.inbound);
    return out;
}

json::Json resultJson(const TripSearchResult& r, std::size_t top) {
    json::Json trips = json::Json::array();
    for (std::size_t i = 0; i < r.trips.size() && i < top; ++i)
        trips.push_back(tripJson(r.trips[i]));
    json::Json months = json::Json::array();
    for (const MonthSummary& m : r.months) {
        json::Json month = json::Json::object();
        month["year"] = m.year;
        month["month"] = m.month;
        month["average"] = json::number(m.average);
        month["cheapest"] = json::number(m.cheapest());
        month["below"] = json::number(m.below());
        months.push_back(std::move(month));
    }
    json::Json out = json::Json::object();
    out["trips"] = std::move(trips);
    out["months"] = std::move(months);
    out["overBudget"] = r.overBudget;
    out["leftOut"] = r.leftOut;
    return out;
}

std::string plural(long long n, const char* one, const char* many) {
    return std::to_string(n) + " " + (n == 1 ? one : many);
}

// "$3,456 *" for a trip with an estimate in it.
std::string totalText(const TripQuote& t) {
    return money(t.total()) + (t.estimated ? " *" : "");
}

std::string flightsText(const TripQuote& t) {
    std::string text = money(t.flights);
    if (t.flightsSpread > 0) text += " ±" + money(t.flightsSpread);
    return text;
}

void printTrips(std::ostream& out, const std::vector<TripQuote>& trips, std::size_t top,
                bool disney) {
    Table table;
    table.columns = {{"CHECK-IN"},
                     {"CHECK-OUT", Table::Align::left, 0, 2},
                     {"RESORT", Table::Align::left, 0, 2},
                     {"SEASON", Table::Align::left, 0, 2},
                     {"FLIGHTS", Table::Align::right, 0, 2},
                     {"HOTEL", Table::Align::right, 0, 2},
                     {"TICKETS", Table::Align::right, 0, 2},
                     {disney ? "HOPPER" : "PARK-TO-PARK", Table::Align::right, 0, 2},
                     {disney ? "LIGHTNING LANE" : "EXPRESS", Table::Align::right, 0, 2},
                     {"TRANSPORT", Table::Align::right, 0, 2},
                     {"FOOD", Table::Align::right, 0, 2},
                     {"TOTAL", Table::Align::right, 0, 2}};
    for (std::size_t i = 0; i < trips.size() && i < top; ++i) {
        const TripQuote& t = trips[i];
        const std::string ridePasses =
            disney ? money(t.ridePasses) : (t.expressIncluded ? "with hotel" : money(t.ridePasses));
        table.add({dayWithWeekday(t.checkIn), dayWithWeekday(t.checkOut), t.resort.name, t.season,
                   flightsText(t), money(t.hotel), money(t.tickets), money(t.hopper), ridePasses,
                   money(t.transport), money(t.food), totalText(t)});
    }
    table.print(out);
    out << "* Estimated: a typical fare (± how far it may be off) or a price past the guide's "
           "published dates.\n";
}

void printMonths(std::ostream& out, const std::vector<MonthSummary>& months) {
    out << "Cheapest trip each month:\n";
    Table table;
    table.columns = {{"MONTH"},
                     {"CHECK-IN", Table::Align::left, 0, 2},
                     {"RESORT", Table::Align::left, 0, 2},
                     {"CHEAPEST", Table::Align::right, 0, 2},
                     {"AVERAGE DATE", Table::Align::right, 0, 2},
                     {"LESS THAN THE AVERAGE", Table::Align::right, 0, 2}};
    for (const MonthSummary& m : months) {
        const TripQuote& best = m.trips.front();
        table.add({YearMonth{m.year, m.month}.text(), dayWithWeekday(best.checkIn),
                   best.resort.name, totalText(best), money(std::round(m.average)),
                   money(std::round(m.below()))});
    }
    table.print(out);
}

void printResult(std::ostream& out, const TripSearchResult& r, const TripSearch& search,
                 const MainHome& home, std::size_t top, bool months, bool disney) {
    out << (disney ? "Walt Disney World" : "Universal Orlando") << " from " << home.airport.code
        << ": " << plural(search.nights, "night", "nights") << ", "
        << plural(search.parkDays, "park day", "park days") << ", "
        << plural(search.party.seats(), "traveler", "travelers") << " with a seat\n";
    if (r.trips.empty()) {
        out << "No trips fit these limits\n"
               "Try more months, other resorts, fewer date limits or a higher budget.\n";
    } else if (months) {
        printMonths(out, r.months);
    } else {
        out << "Dates with found fares come first unless a date with typical fares is clearly "
               "cheaper.\n";
        printTrips(out, r.trips, top, disney);
    }
    if (r.overBudget > 0)
        out << plural(r.overBudget, "trip", "trips") << " were over your budget.\n";
    if (r.leftOut > 0) {
        out << plural(r.leftOut, "check-in date", "check-in dates")
            << " were outside your limits.\n";
    }
}

}  // namespace

void addPlanCommand(CLI::App& root, Io& io) {
    struct Options {
        std::string park;
        std::string search;
        std::optional<int> top;
        bool months = false;
        DataOptions data;
    };
    auto options = std::make_shared<Options>();
    CLI::App* plan = root.add_subcommand(
        "plan", "Price every check-in date of a Walt Disney World or Universal Orlando trip");
    plan->add_option("PARK", options->park, "disney or universal")
        ->required()
        ->check(CLI::IsMember({"disney", "universal"}));
    plan->add_option("--search", options->search,
                     "Trip search file (JSON); default: the family trip a new user is offered");
    addWholeOption(*plan, "--top", options->top, "Show only the first N trips",
                   WholeRange{.min = 1});
    plan->add_flag("--months", options->months,
                   "Show the cheapest trip of each month instead of the trips");
    addDataOptions(*plan, options->data);
    plan->callback([options, &io] {
        const bool disney = options->park == "disney";
        const Day today = resolveToday(options->data.today);
        const MainHome home = loadMainHome(options->data, io.err);
        TripSearch search = TripPlanner::defaultSearch(home.airport.code);
        if (!options->search.empty()) {
            try {
                std::optional<simdjson::padded_string> bytes = FileReader::read(options->search);
                if (!bytes) {
                    io.err << "roamwise-cli: no trip search file " << shown(options->search)
                           << "\n";
                    io.status = kNoData;
                    return;
                }
                search = json::decodePadded<TripSearch>(std::move(*bytes), options->search);
            } catch (const std::exception& e) {
                io.err << "roamwise-cli: not a trip search: " << shown(e.what()) << "\n";
                io.status = kNoData;
                return;
            }
        }
        const ParkData parks = loadParkData(options->data, io.err);
        PlanInputs inputs;
        inputs.book = home.book ? &*home.book : nullptr;
        inputs.home = home.airport;
        inputs.orlando = home.orlando;
        inputs.today = today;
        const ParkGuide& guide =
            disney ? static_cast<const ParkGuide&>(parks.disney) : parks.universal;
        const TripSearchResult result = TripPlanner::plan(search, guide, inputs);

        const std::size_t top =
            options->top ? static_cast<std::size_t>(*options->top) : result.trips.size();
        if (options->data.json) {
            printJson(io.out, resultJson(result, top));
        } else {
            printResult(io.out, result, search, home, top, options->months, disney);
        }
        io.status = kOk;
    });
}

}  // namespace roamwise::cli
