// roamwise: the desktop application.
#include <cstdio>
#include <cstdlib>

#include <QApplication>
#include <QDesktopServices>
#include <QUrl>

#include "app/app_model.h"
#include "desktop/main_window.h"

namespace {

bool hasDisplay() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        const char* value = std::getenv(name);
        if (value && *value) return true;
    }
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    if (!hasDisplay()) {
        std::fputs("roamwise: no display to open a window on (DISPLAY and WAYLAND_DISPLAY are not set).\n"
                   "roamwise-cli shows the same deals in a terminal: roamwise-cli deals\n",
                   stderr);
        return 1;
    }
    QApplication application(argc, argv);
    QApplication::setOrganizationName("Roamwise");
    QApplication::setApplicationName("Roamwise");
    QApplication::setApplicationVersion(ROAMWISE_VERSION);
    QApplication::setQuitOnLastWindowClosed(false);

    roamwise::app::AppEnvironment environment;
    environment.linkOpener = [](const std::string& url) {
        return QDesktopServices::openUrl(QUrl(QString::fromStdString(url)));
    };
    roamwise::app::AppModel model(std::move(environment));
    roamwise::desktop::MainWindow window(model, {});
    QObject::connect(&window, &roamwise::desktop::MainWindow::closed, &application, &QApplication::quit);
    window.show();
    window.showWelcomeIfNeeded();
    return QApplication::exec();
}
