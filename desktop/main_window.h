// The one main window: the menu bar, the tabs, the sample-data banner, the
// refresh with its progress, and the sheets opened from it.
#pragma once

#include <memory>
#include <optional>

#include <QMainWindow>
#include <QPointer>
#include <QString>

#include "tripkit/calendars.h"

class QAction;
class QLabel;
class QProgressBar;
class QSettings;
class QTabWidget;

namespace roamwise::app {
class AppModel;
}

namespace roamwise::desktop {

class CloseGuard;
class DealsView;
class DestinationView;
class SettingsDialog;

class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    // `settingsFile`: the preferences file (INI) the model uses too; empty:
    // the user's own preferences.
    MainWindow(app::AppModel& model, const QString& settingsFile, QWidget* parent = nullptr);
    ~MainWindow() override;

    // The welcome sheet on a first start (not yet onboarded).
    void showWelcomeIfNeeded();
    DestinationView* openDestination(const QString& code, std::optional<tripkit::RoundTrip> trip);
    SettingsDialog* openSettings();
    DealsView* deals() const { return m_deals; }

signals:
    // The window closed for good (the application quits).
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    app::AppModel& m_model;
    std::unique_ptr<QSettings> m_settings;
    CloseGuard* m_guard = nullptr;
    QTabWidget* m_tabs = nullptr;
    DealsView* m_deals = nullptr;
    QLabel* m_sampleBanner = nullptr;
    QLabel* m_statusText = nullptr;
    QProgressBar* m_progress = nullptr;
    QAction* m_refresh = nullptr;
    QPointer<SettingsDialog> m_settingsDialog;

    void makeMenus();
    QWidget* placeholder(const QString& name, const QString& title, const QString& what);
    void updateSample();
    void updateRefresh();
    void showAbout();
};

}  // namespace roamwise::desktop
