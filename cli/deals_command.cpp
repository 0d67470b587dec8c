// roamwise-cli deals: the cheapest round trips from the home airports.
#include <fmt/format.h>

#include "cli/commands.h"
#include "cli/table.h"
#include "tripkit/fares.h"
#include "tripkit/links.h"

namespace roamwise::cli {

using namespace tripkit;

namespace {

void printTable(std::ostream& out, const std::vector<Deal>& deals, Day today,
                const std::optional<PartnerConfig>& links) {
    if (deals.empty()) {
        out << "No deals departing in the next " << Freshness::horizonDays
            << " days were seen recently enough to show.\n";
        return;
    }
    using A = Table::Align;
    Table table;
    table.columns = {{"Dest", A::left, 5},   {"City", A::left, 22},     {"Price", A::right, 9},
                     {"Depart", A::left, 10, 2}, {"Return", A::left, 10}, {"Airline", A::left, 18},
                     {"Stops", A::right, 5}, {"From", A::left, 4, 2},   {"Age", A::right, 4},
                     {""}};
    bool anyStale = false;
    for (const Deal& d : deals) {
        const bool stale = d.isStale(today);
        anyStale = anyStale || stale;
        table.add({d.destination, d.city, money(d.price), d.depart.text(),
                   d.returnDay ? d.returnDay->text() : "-", Airline::display(d.airline),
                   d.stops == 0 ? std::string("non") : std::to_string(d.stops),
                   d.origin.value_or("-"), fmt::format("{}d", Freshness::age(d.seen, today)),
                   stale ? "*" : ""},
                  links ? links->flightSearch(d).value_or("") : "");
    }
    table.print(out);
    if (anyStale) {
        out << "* stale: fares older than " << Freshness::freshDays
            << " days may have changed\n";
    }
}

}  // namespace

void addDealsCommand(CLI::App& root, Io& io) {
    struct Options {
        DataOptions data;
        bool links = false;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = root.add_subcommand(
        "deals", "Cheapest round trips from the home airports, merged across them");
    addDataOptions(*command, options->data);
    command->add_flag("--links", options->links,
                      "Add each deal's flight search link (\"searchLink\" in JSON), with the "
                      "marker from RWTravelpayoutsMarker");
    command->callback([options, &io] {
        const std::vector<std::string> homes = parseHomeCodes(options->data.homes);
        const Day today = resolveToday(options->data.today);
        auto files = loadHomeFiles<FareBook>(options->data, "flights", homes, io.err,
                                             FareNeeds{today, false, true});
        if (files.empty()) {
            io.err << "roamwise-cli: no fare file could be read\n";
            io.status = kNoData;
            return;
        }
        std::vector<FareBook> books;
        for (auto& f : files) books.push_back(std::move(f.value));
        const std::vector<Deal> deals = Fares::deals(std::move(books), today);
        std::optional<PartnerConfig> links;
        if (options->links) links = partnerConfigFromEnvironment();
        if (options->data.json) {
            json::Json out = json::array(deals);
            if (links) {
                for (std::size_t i = 0; i < deals.size(); ++i) {
                    const auto link = links->flightSearch(deals[i]);
                    out[i]["searchLink"] = link ? json::Json(*link) : json::Json();
                }
            }
            printJson(io.out, out);
        } else {
            printTable(io.out, deals, today, links);
        }
        io.status = kOk;
    });
}

}  // namespace roamwise::cli
