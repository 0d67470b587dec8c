// roamwise-cli best-time: each month's comfort near a destination and its
// cheapest round trip from the home airports, best months first, starred.
#include <cmath>

#include <fmt/format.h>

#include "cli/commands.h"
#include "cli/table.h"
#include "tripkit/climate.h"
#include "tripkit/destinations.h"

namespace roamwise::cli {

using namespace tripkit;

namespace {

constexpr const char* kMonthNames[12] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// Scores are fractions; six places keep them exact enough for any reader
// without printing float noise.
double rounded(double value) {
    return std::round(value * 1e6) / 1e6;
}

struct BestTimeView {
    const Destination* place = nullptr;
    const Climate::Place* climate = nullptr;  // null: no long record near the place
    std::vector<BestTime::Pick> picks;        // best first
};

std::string note(const BestTimeView& v) {
    return v.climate ? BestTime::balancedNote : BestTime::cheapestNote;
}

json::Json bestTimeJson(const BestTimeView& v) {
    const Climate& catalog = Climate::shipped();
    json::Json out = json::Json::object();
    out["destination"] = v.place->code;
    out["climate"] = v.climate != nullptr;
    out["note"] = note(v);
    out["credit"] = v.climate ? json::Json(catalog.source.credit()) : json::Json(nullptr);
    out["station"] = v.climate ? json::Json(v.climate->stationLabel()) : json::Json(nullptr);
    out["period"] = v.climate ? json::Json(catalog.periodOf(*v.climate)) : json::Json(nullptr);
    json::Json picks = json::Json::array();
    for (std::size_t i = 0; i < v.picks.size(); ++i) {
        const BestTime::Pick& p = v.picks[i];
        json::Json pick = json::Json::object();
        pick["index"] = p.index;
        pick["comfort"] = p.comfort ? json::number(rounded(*p.comfort)) : json::Json(nullptr);
        pick["price"] = p.price ? json::number(*p.price) : json::Json(nullptr);
        pick["score"] = json::number(rounded(p.score));
        pick["starred"] = BestTime::isStarred(i);
        picks.push_back(std::move(pick));
    }
    out["picks"] = std::move(picks);
    return out;
}

void printBestTimeTable(std::ostream& out, const BestTimeView& v) {
    out << "Best time to go to " << shown(v.place->name) << " (" << v.place->code << ")\n";
    if (!v.climate) {
        out << "No long weather record near " << v.place->name << Climate::noRecordText << "\n";
    }
    if (v.picks.empty()) {
        out << "No fares were found and there is no climate record, so no month can be starred.\n";
        return;
    }
    out << note(v) << "\n";
    using A = Table::Align;
    Table table;
    table.indent = 1;
    table.columns = {{"", A::left, 1},         {"Month", A::left, 5},   {"High", A::right, 6},
                     {"Low", A::right, 6},     {"Rain", A::right, 7},   {"Comfort", A::right, 7},
                     {"Cheapest", A::right, 9}, {"Score", A::right, 6}};
    for (std::size_t i = 0; i < v.picks.size(); ++i) {
        const BestTime::Pick& p = v.picks[i];
        std::string high = "-", low = "-", rain = "-";
        if (v.climate) {
            const MonthlyClimate& m = v.climate->months[static_cast<std::size_t>(p.index - 1)];
            high = fmt::format("{:.0f}°F", m.high);
            low = fmt::format("{:.0f}°F", m.low);
            rain = fmt::format("{:.1f} in", m.rain);
        }
        table.add({BestTime::isStarred(i) ? "*" : "", kMonthNames[p.index - 1], high, low, rain,
                   p.comfort ? fmt::format("{:.2f}", *p.comfort) : "-",
                   p.price ? money(*p.price) : "-", fmt::format("{:.2f}", p.score)});
    }
    table.print(out);
    if (v.climate) {
        const Climate& catalog = Climate::shipped();
        out << catalog.source.credit() << "; " << v.climate->stationLabel() << ", normals "
            << catalog.periodOf(*v.climate) << "\n";
    }
}

}  // namespace

void addBestTimeCommand(CLI::App& root, Io& io) {
    struct Options {
        std::string destination;
        DataOptions data;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = root.add_subcommand(
        "best-time", "The best months to go to a destination: pleasant weather and low fares");
    command->add_option("DEST", options->destination, "Destination code (e.g. LIS)")->required();
    addDataOptions(*command, options->data);
    command->callback([options, &io] {
        const std::string code = parseDestinationCode(options->destination);
        const Destination* place = Destinations::shipped().find(code);
        if (place == nullptr) {
            throw UsageError("no destination with the code \"" + code +
                             "\" in the catalog (see 'roamwise-cli places destinations')");
        }
        const Day today = resolveToday(options->data.today);
        BestTimeView view{place, Climate::shipped().find(code), {}};
        // Without any calendar the months still rank by weather.
        const std::optional<FareCalendar> calendar = loadFareCalendar(options->data, io.err);
        if (!calendar && !view.climate) {
            io.status = kNoData;
            return;
        }
        std::vector<std::pair<YearMonth, RoundTrip>> months;
        if (calendar) months = calendar->months(place->fareCode, today);
        view.picks = BestTime::picks(*place, view.climate, months);
        if (options->data.json) {
            printJson(io.out, bestTimeJson(view));
        } else {
            printBestTimeTable(io.out, view);
        }
        io.status = kOk;
    });
}

}  // namespace roamwise::cli
