// The desktop window's start from cached data: how long from main() until
// the deals list shows the cached deals of three home airports, and the
// peak memory once the first refresh has settled (no network: every fetch
// fails at once, so the cached copies stay).
//
//   desktop_start_bench --prepare DIR   writes one night of three airports
//   desktop_start_bench DIR             one start over DIR, one line of figures
//
// bench/run_desktop.sh runs several starts, each in a fresh process.
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstring>

#include <QAbstractItemModel>
#include <QApplication>
#include <QElapsedTimer>
#include <QTableView>

#include "desktop/main_window.h"
#include "desktop/tools/fixture.h"

using namespace roamwise;

namespace {

const std::vector<std::string> kHomes = {"JFK", "EWR", "BOS"};
const tripkit::Day kNight = tripkit::Day::fromCivil(2026, 3, 10);

long peakKilobytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

}  // namespace

int main(int argc, char** argv) {
    const auto started = std::chrono::steady_clock::now();
    if (argc == 3 && std::strcmp(argv[1], "--prepare") == 0) {
        QString folder = QString::fromLocal8Bit(argv[2]);
        desktop::fixture::writeNight(folder + "/cache", kHomes, kNight);
        desktop::fixture::writeSettings(folder + "/settings.ini", kHomes);
        return 0;
    }
    if (argc != 2) {
        std::fputs("usage: desktop_start_bench --prepare DIR | desktop_start_bench DIR\n", stderr);
        return 2;
    }
    QApplication application(argc, argv);
    const QString folder = QString::fromLocal8Bit(argv[1]);
    app::AppModel model(desktop::fixture::environment(folder, kNight, desktop::fixture::offlineLoader()));
    desktop::MainWindow window(model, folder + "/settings.ini");
    window.show();
    auto* table = window.findChild<QTableView*>("dealsTable");
    // Shown means painted once with its rows.
    while (table->model()->rowCount() == 0 || !table->isVisible()) QApplication::processEvents();
    QApplication::processEvents();
    const double firstDealsMs =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - started).count();
    const int rows = table->model()->rowCount();

    QElapsedTimer timer;
    timer.start();
    while (model.refreshing() && timer.elapsed() < 30000) QApplication::processEvents(QEventLoop::AllEvents, 20);
    std::printf("first_deals_ms %.1f rows %d homes %zu peak_rss_mb %.1f\n", firstDealsMs, rows,
                model.homeAirports().size(), static_cast<double>(peakKilobytes()) / 1024.0);
    return 0;
}
