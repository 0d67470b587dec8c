// roamwise-cli price-check: is a price to one destination high, usual or low
// against the cheapest price found each night over the last 90 days?
#include <cmath>

#include <fmt/format.h>

#include "cli/commands.h"
#include "tripkit/fares.h"
#include "tripkit/price_history.h"

namespace roamwise::cli {

using namespace tripkit;

namespace {

constexpr std::string_view kBuilding = "Building (verdicts after 21 nights)";
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
    auto files = loadHomeFiles<FareBook>(data, "flights", parseHomeCodes(data.homes), err);
    std::vector<FareBook> books;
    for (auto& f : files) books.push_back(std::move(f.value));
    for (const Deal& d : Fares::deals(books, today)) {
        if (d.destination == to) return d;
    }
    return std::nullopt;
}

void printTable(std::ostream& out, const std::string& to, double price,
                const std::optional<Deal>& deal, const std::optional<PriceCheck>& check,
                std::size_t nights) {
    out << to << " at " << money(price);
    if (deal) {
        out << " (today's cheapest round trip, from " << deal->origin.value_or("?") << ", "
            << deal->depart.text() << (deal->returnDay ? " to " + deal->returnDay->text() : "")
            << ")";
    }
    out << "\n";
    if (!check) {
        out << kBuilding << ": " << nights << (nights == 1 ? " night" : " nights")
            << " of prices so far\n";
        return;
    }
    out << sentence(check->verdict) << " " << check->days << " days\n";
    out << fmt::format("  {:<16} {}\n", "Nights of data", check->nights);
    out << fmt::format("  {:<16} {}\n", "Low (25%)", money(std::round(check->low)));
    out << fmt::format("  {:<16} {}\n", "Typical", money(std::round(check->typical)));
    out << fmt::format("  {:<16} {}\n", "High (75%)", money(std::round(check->high)));
    out << fmt::format("  {:<16} {:.0f}% of nights\n", "Cheaper on", check->cheaperShare * 100);
    if (check->lowestInDays) {
        out << fmt::format("  {:<16} {} days\n", "Lowest in", *check->lowestInDays);
    }
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
    command->add_option("--price", options->price,
                        "Round-trip price per person to judge (default: today's cheapest deal)")
        ->check(CLI::PositiveNumber);
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
