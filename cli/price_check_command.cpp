// roamwise-cli price-check: is a price to one destination high, usual or low
// against the cheapest price found each night over the last 90 days?
#include <cmath>

#include <fmt/format.h>

#include "cli/commands.h"
#include "cli/table.h"
#include "tripkit/fares.h"
#include "tripkit/price_history.h"

namespace roamwise::cli {

using namespace tripkit;

namespace {

// "Building (verdicts after 21 nights)"
std::string building() {
    return fmt::format("Building (verdicts after {} nights)", tripkit::PriceCheck::minNights);
}
constexpr std::string_view kFootnote =
    "Compared with the cheapest round trip found each night from your airports. Past prices "
    "don’t predict future ones.";

std::string_view sentence(PriceCheck::Verdict v) {
    switch (v) {
        case PriceCheck::Verdict::low: return "Lower than most prices seen in the last";
        case PriceCheck::Verdict::typical: return "About the usual price seen in the last";
        case PriceCheck::Verdict::high: return "Higher than most prices seen in the last";
    }
    return "";
}

// Today's cheapest merged deal to `to`, if any fare file has one.
std::optional<Deal> todaysDeal(const DataOptions& data, const std::string& to, Day today,
                               std::ostream& err) {
    auto files = loadHomeFiles<FareBook>(data, "flights", parseHomeCodes(data.homes), err,
                                         FareNeeds{today, false, true});
    std::vector<FareBook> books;
    for (auto& f : files) books.push_back(std::move(f.value));
    for (const Deal& d : Fares::deals(std::move(books), today)) {
        if (d.destination == to) return d;
    }
    return std::nullopt;
}

void printTable(std::ostream& out, const std::string& to, double price,
                const std::optional<Deal>& deal, const std::optional<PriceCheck>& check,
                std::size_t nights) {
    out << to << " at " << money(price);
    if (deal) {
        out << " (today's cheapest round trip, from " << shown(deal->origin.value_or("?")) << ", "
            << deal->depart.text() << (deal->returnDay ? " to " + deal->returnDay->text() : "")
            << ")";
    }
    out << "\n";
    if (!check) {
        out << building() << ": " << nights << (nights == 1 ? " night" : " nights")
            << " of prices so far\n";
        return;
    }
    out << sentence(check->verdict) << " " << check->days << " days\n";
    Table table;
    table.titles = false;
    table.indent = 2;
    table.columns = {{"", Table::Align::left, 16}, {""}};
    table.add({"Nights of data", std::to_string(check->nights)});
    table.add({"Low (25%)", money(std::round(check->low))});
    table.add({"Typical", money(std::round(check->typical))});
    table.add({"High (75%)", money(std::round(check->high))});
    table.add({"Cheaper on", fmt::format("{:.0f}% of nights", check->cheaperShare * 100)});
    if (check->lowestInDays) table.add({"Lowest in", fmt::format("{} days", *check->lowestInDays)});
    table.print(out);
    out << kFootnote << "\n";
}

}  // namespace

void addPriceCheckCommand(CLI::App& root, Io& io) {
    struct Options {
        std::string destination;
        std::optional<double> price;
        DataOptions data;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = root.add_subcommand(
        "price-check", "Judge a price to one destination against the last 90 nights");
    command->add_option("DEST", options->destination, "Destination code (e.g. LIS)")->required();
    addNumberOption(*command, "--price", options->price,
                    "Round-trip price per person to judge (default: today's cheapest deal)",
                    kPriceRange);
    addDataOptions(*command, options->data);
    command->callback([options, &io] {
        const std::string to = parseDestinationCode(options->destination);
        const Day today = resolveToday(options->data.today);
        const std::optional<FareHistory> history = loadFareHistory(options->data, today, io.err);
        if (!history) {
            io.status = kNoData;
            return;
        }
        std::optional<Deal> deal;
        double price = 0;
        if (options->price) {
            price = *options->price;
        } else {
            deal = todaysDeal(options->data, to, today, io.err);
            if (!deal) {
                io.err << "roamwise-cli: no deal to " << to
                       << " in today's fare files; give the price with --price\n";
                io.status = kNoData;
                return;
            }
            price = deal->price;
        }
        const std::vector<NightPrice> nights = history->nights(to, today);
        const std::optional<PriceCheck> check = PriceCheck::judge(price, nights, today);
        if (options->data.json) {
            json::Json out = json::Json::object();
            out["destination"] = to;
            out["price"] = json::number(price);
            if (deal) out["deal"] = encode(*deal);
            out["check"] = check ? encode(*check) : json::Json();
            out["nightsSoFar"] = nights.size();
            printJson(io.out, out);
        } else {
            printTable(io.out, to, price, deal, check, nights.size());
        }
        io.status = kOk;
    });
}

}  // namespace roamwise::cli
