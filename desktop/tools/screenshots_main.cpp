// roamwise-screenshots DIR: renders each screen of the window to DIR/*.png
// for review, on throw-away folders with today's sample nights and no
// network (scripts/screenshots runs it under Xvfb).
#include <cstdio>
#include <functional>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMessageBox>
#include <QScrollArea>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QToolButton>

#include "desktop/destination_view.h"
#include "desktop/main_window.h"
#include "desktop/settings_dialog.h"
#include "desktop/tools/fixture.h"

using namespace roamwise;
using tripkit::Day;

namespace {

QString out;
int failures = 0;

void settle(int ms = 150) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < ms) QApplication::processEvents(QEventLoop::AllEvents, 20);
}

void waitRefresh(app::AppModel& model) {
    QElapsedTimer timer;
    timer.start();
    while (model.refreshing() && timer.elapsed() < 30000) QApplication::processEvents(QEventLoop::AllEvents, 20);
    settle();
}

void save(QWidget* widget, const QString& name) {
    settle();
    const QString path = out + "/" + name + ".png";
    if (!widget || !widget->grab().save(path)) {
        std::fprintf(stderr, "screenshots: could not write %s\n", qPrintable(path));
        ++failures;
        return;
    }
    std::printf("%s\n", qPrintable(path));
}

// One window over its own folders: `night` is the day of the cached files
// (none when empty), `onboarded` whether the welcome was done.
void withWindow(const std::vector<std::string>& homes, std::optional<Day> night, bool onboarded,
                const std::function<void(app::AppModel&, desktop::MainWindow&)>& shoot) {
    QTemporaryDir folder;
    const Day today = Day::today();
    if (night) desktop::fixture::writeNight(folder.path() + "/cache", homes, *night);
    desktop::fixture::writeSettings(folder.path() + "/settings.ini", homes, onboarded);
    app::AppModel model(desktop::fixture::environment(folder.path(), today, desktop::fixture::offlineLoader()));
    desktop::MainWindow window(model, folder.path() + "/settings.ini");
    window.resize(1100, 760);
    window.show();
    waitRefresh(model);
    shoot(model, window);
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationVersion("0.1.0");
    if (argc != 2) {
        std::fputs("usage: roamwise-screenshots DIR\n", stderr);
        return 2;
    }
    out = QString::fromLocal8Bit(argv[1]);
    QDir().mkpath(out);
    const Day today = Day::today();

    // A first start: nothing cached, no network: today's sample and the welcome.
    withWindow({"JFK"}, std::nullopt, false, [](app::AppModel&, desktop::MainWindow& window) {
        save(&window, "first-start");
        window.showWelcomeIfNeeded();
        settle();
        save(window.findChild<QDialog*>("welcomeDialog"), "welcome");
    });

    // A returning user with three home airports and last night's files.
    withWindow({"JFK", "EWR", "BOS"}, today, true, [&](app::AppModel& model, desktop::MainWindow& window) {
        save(&window, "deals");
        auto* search = window.findChild<QLineEdit*>("dealSearch");
        search->setText("beach");
        save(&window, "deals-search");
        search->setText("zzz");
        save(&window, "deals-empty");
        search->clear();
        window.findChild<QToolButton*>("showGetaways")->click();
        save(&window, "getaways");
        window.findChild<QToolButton*>("showDeals")->click();

        // The first deal abroad, opened twice so that the nudge shows.
        std::string code;
        for (const tripkit::Deal& deal : model.deals()) {
            if (deal.country != "United States") {
                code = deal.destination;
                break;
            }
        }
        window.openDestination(QString::fromStdString(code), std::nullopt)->close();
        settle();
        desktop::DestinationView* view = window.openDestination(QString::fromStdString(code), std::nullopt);
        view->resize(820, 900);
        save(view, "destination");
        QWidget* content = view->findChild<QScrollArea*>()->widget();
        content->resize(800, content->sizeHint().height());
        save(content, "destination-full");
        view->close();

        desktop::SettingsDialog* settings = window.openSettings();
        save(settings, "settings");
        settings->close();

        window.findChild<QTabWidget*>("tabs")->setCurrentIndex(1);
        save(&window, "safe-fun-placeholder");
        window.findChild<QTabWidget*>("tabs")->setCurrentIndex(0);

        window.findChild<QAction*>("aboutAction")->trigger();
        save(window.findChild<QMessageBox*>("aboutDialog"), "about");
        window.findChild<QMessageBox*>("aboutDialog")->close();

        window.close();
        save(window.findChild<QMessageBox*>("closeGuard"), "close-guard");
        window.findChild<QMessageBox*>("closeGuard")->close();
    });

    // Offline with the copy saved two nights ago.
    withWindow({"JFK"}, today - 2, true, [](app::AppModel&, desktop::MainWindow& window) {
        save(&window, "offline");
    });
    return failures == 0 ? 0 : 1;
}
