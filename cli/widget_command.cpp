// roamwise-cli widget: the snapshot the application writes after each
// refresh ("widget.json" in its data folder), for status bars and scripts.
#include "app/app_model.h"
#include "cli/app_core_commands.h"
#include "cli/table.h"
#include "tripkit/widget_snapshot.h"

namespace roamwise::cli {

using namespace tripkit;

namespace {

std::string itemLine(const WidgetSnapshot::Item& item) {
    std::string line = item.title + " " + money(item.price) + " from " + item.origin;
    if (item.target) line += " (target " + money(*item.target) + ")";
    return line;
}

}  // namespace

void addWidgetCommand(CLI::App& root, Io& io) {
    struct Options {
        bool line = false;
        bool json = false;
        std::string today;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = root.add_subcommand("widget", appCoreHelp::widget);
    command->add_flag("--line", options->line, "One line of text, for status bars");
    command->add_flag("--json", options->json, "Print the snapshot's JSON");
    command->add_option("--today", options->today, "Day to judge its age by (YYYY-MM-DD; default: today)")
        ->check(dayValidator());
    command->callback([options, &io] {
        const std::string path =
            (app::Folders::standard().store + "/" + QString::fromUtf8(WidgetSnapshot::fileName.data()))
                .toStdString();
        std::optional<simdjson::padded_string> bytes = FileReader::read(path);
        if (!bytes) {
            io.err << "No snapshot yet: " << path << " is written after the application's first refresh\n";
            io.status = 1;
            return;
        }
        const WidgetSnapshot snapshot = json::decodePadded<WidgetSnapshot>(std::move(*bytes), path);
        const Day today = resolveToday(options->today);
        const std::string_view showing = WidgetSnapshot::text(snapshot.showing(today));
        if (options->json) {
            json::Json out = encode(snapshot);
            out["showing"] = std::string(showing);
            printJson(io.out, out);
        } else if (options->line) {
            std::string line = snapshot.bestDeal ? itemLine(*snapshot.bestDeal) : "No deals";
            if (!snapshot.watched.empty()) line += " · " + std::to_string(snapshot.watched.size()) + " watched";
            if (showing != "current") line += " (" + std::string(showing) + ")";
            io.out << shown(line) << "\n";
        } else {
            io.out << "Fares of " << snapshot.updated.text() << " (" << showing << ")\n";
            io.out << "Best deal: " << (snapshot.bestDeal ? shown(itemLine(*snapshot.bestDeal)) : std::string("none")) << "\n";
            for (const WidgetSnapshot::Item& item : snapshot.watched) io.out << "Watched: " << shown(itemLine(item)) << "\n";
        }
        io.status = 0;
    });
}

}  // namespace roamwise::cli
