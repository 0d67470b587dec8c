#include "desktop/main_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QProgressBar>
#include <QSettings>
#include <QStatusBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include "app/app_model.h"
#include "desktop/close_guard.h"
#include "desktop/deals_view.h"
#include "desktop/destination_view.h"
#include "desktop/settings_dialog.h"
#include "desktop/texts.h"
#include "desktop/welcome_dialog.h"

namespace roamwise::desktop {

using app::AppModel;
using app::Load;

namespace {

constexpr const char* kGeometryKey = "window/geometry";
constexpr const char* kStateKey = "window/state";
constexpr const char* kSampleBanner =
    "Sample data: these fares are made up for today, to show how Roamwise works. Live fares replace them "
    "as soon as the data host answers.";

}  // namespace

MainWindow::MainWindow(AppModel& model, const QString& settingsFile, QWidget* parent)
    : QMainWindow(parent),
      m_model(model),
      m_settings(settingsFile.isEmpty() ? std::make_unique<QSettings>("Roamwise", "Roamwise")
                                        : std::make_unique<QSettings>(settingsFile, QSettings::IniFormat)) {
    setObjectName("mainWindow");
    setWindowTitle("Roamwise");
    m_guard = new CloseGuard(this, *m_settings);

    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    m_sampleBanner = new QLabel(kSampleBanner, central);
    m_sampleBanner->setObjectName("sampleBanner");
    m_sampleBanner->setWordWrap(true);
    m_sampleBanner->setStyleSheet("QLabel { background: #fff3c4; color: #4a3b00; padding: 6px; border-radius: 4px; }");
    layout->addWidget(m_sampleBanner);

    m_tabs = new QTabWidget(central);
    m_tabs->setObjectName("tabs");
    m_deals = new DealsView(m_model, m_tabs);
    m_tabs->addTab(m_deals, "Deals");
    m_tabs->addTab(placeholder("safeFunTab", "Safe & Fun",
                               "Each destination with its U.S. State Department advisory level, filtered to the "
                               "safety level you choose in Settings."),
                   "Safe && Fun");
    m_tabs->addTab(placeholder("disneyTab", "Disney",
                               "The whole price of a Walt Disney World trip for every check-in date, ranked."),
                   "Disney");
    m_tabs->addTab(placeholder("universalTab", "Universal",
                               "The whole price of a Universal Orlando trip for every check-in date, ranked."),
                   "Universal");
    m_tabs->addTab(placeholder("wearTab", "What to wear",
                               "Typical weather, the forecast for near days, and a packing list for a city and dates."),
                   "What to wear");
    layout->addWidget(m_tabs, 1);
    setCentralWidget(central);

    m_statusText = new QLabel(this);
    m_statusText->setObjectName("statusText");
    m_progress = new QProgressBar(this);
    m_progress->setObjectName("refreshProgress");
    m_progress->setRange(0, 0);  // the refresh says when it ends, not how far it is
    m_progress->setMaximumWidth(140);
    m_progress->setTextVisible(false);
    statusBar()->addWidget(m_statusText, 1);
    statusBar()->addPermanentWidget(m_progress);

    makeMenus();
    connect(m_deals, &DealsView::destinationRequested, this,
            [this](const QString& code, std::optional<tripkit::RoundTrip> trip) { openDestination(code, trip); });
    connect(&m_model, &AppModel::sampleModeChanged, this, &MainWindow::updateSample);
    connect(&m_model, &AppModel::refreshingChanged, this, &MainWindow::updateRefresh);
    connect(&m_model, &AppModel::faresLoadChanged, this, &MainWindow::updateRefresh);
    connect(&m_model, &AppModel::raiseRequested, this, [this] {
        showNormal();
        raise();
        activateWindow();
    });

    resize(1040, 720);
    restoreGeometry(m_settings->value(kGeometryKey).toByteArray());
    restoreState(m_settings->value(kStateKey).toByteArray());
    updateSample();
    updateRefresh();
}

MainWindow::~MainWindow() = default;

QWidget* MainWindow::placeholder(const QString& name, const QString& title, const QString& what) {
    auto* page = new QWidget(this);
    page->setObjectName(name);
    auto* layout = new QVBoxLayout(page);
    auto* heading = new QLabel(title, page);
    QFont bold = heading->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.3);
    heading->setFont(bold);
    auto* text = new QLabel(what + "\n\nThis tab comes in the next version of Roamwise; the Deals tab works today.", page);
    text->setWordWrap(true);
    text->setAlignment(Qt::AlignHCenter);
    layout->addStretch(1);
    layout->addWidget(heading, 0, Qt::AlignHCenter);
    layout->addWidget(text);
    layout->addStretch(2);
    return page;
}

void MainWindow::makeMenus() {
    QMenu* file = menuBar()->addMenu("&File");
    m_refresh = file->addAction("&Refresh", &m_model, &AppModel::refresh);
    m_refresh->setObjectName("refreshAction");
    m_refresh->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_R), QKeySequence(Qt::Key_F5)});
    file->addSeparator();
    QAction* closeWindow = file->addAction("&Close Window", this, &QWidget::close);
    closeWindow->setObjectName("closeAction");
    closeWindow->setShortcut(QKeySequence::Close);
    QAction* quit = file->addAction("&Quit", this, [this] {
        m_guard->allowNextClose();
        close();
    });
    quit->setObjectName("quitAction");
    quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    quit->setMenuRole(QAction::QuitRole);

    QMenu* edit = menuBar()->addMenu("&Edit");
    QAction* find = edit->addAction("&Find…", this, [this] {
        m_tabs->setCurrentWidget(m_deals);
        m_deals->focusSearch();
    });
    find->setObjectName("findAction");
    find->setShortcut(QKeySequence::Find);
    edit->addSeparator();
    QAction* settings = edit->addAction("&Settings…", this, [this] { openSettings(); });
    settings->setObjectName("settingsAction");
    settings->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_Comma)});
    settings->setMenuRole(QAction::PreferencesRole);

    QMenu* view = menuBar()->addMenu("&View");
    for (int i = 0; i < m_tabs->count(); ++i) {
        QAction* tab = view->addAction(m_tabs->tabText(i), this, [this, i] { m_tabs->setCurrentIndex(i); });
        tab->setObjectName(QStringLiteral("tabAction%1").arg(i));
        tab->setShortcut(QKeySequence(Qt::ALT | static_cast<Qt::Key>(Qt::Key_1 + i)));
    }
    view->addSeparator();
    QAction* fullScreen = view->addAction("&Full Screen");
    fullScreen->setObjectName("fullScreenAction");
    fullScreen->setCheckable(true);
    fullScreen->setShortcuts({QKeySequence::FullScreen, QKeySequence(Qt::Key_F11)});
    connect(fullScreen, &QAction::toggled, this, [this](bool on) { on ? showFullScreen() : showNormal(); });

    QMenu* window = menuBar()->addMenu("&Window");
    QAction* minimize = window->addAction("&Minimize", this, &QWidget::showMinimized);
    minimize->setObjectName("minimizeAction");
    minimize->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_M));

    QMenu* help = menuBar()->addMenu("&Help");
    QAction* updates = help->addAction("Check for Updates…", this,
                                       [this] { m_model.openLink(Texts::releasePage); });
    updates->setObjectName("updatesAction");
    QAction* about = help->addAction("&About Roamwise", this, &MainWindow::showAbout);
    about->setObjectName("aboutAction");
    about->setMenuRole(QAction::AboutRole);
}

void MainWindow::showAbout() {
    auto* box = new QMessageBox(QMessageBox::NoIcon, "About Roamwise",
                                QStringLiteral("<h3>Roamwise %1</h3><p>Cheap round trips from your home airports, "
                                               "price alerts and trip planning.</p><p>%2</p><p>%3</p>")
                                    .arg(QApplication::applicationVersion(), Texts::privacy, Texts::partnerDisclosure),
                                QMessageBox::Ok, this);
    box->setObjectName("aboutDialog");
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void MainWindow::showWelcomeIfNeeded() {
    if (m_model.onboarded()) return;
    auto* welcome = new WelcomeDialog(m_model, this);
    welcome->setAttribute(Qt::WA_DeleteOnClose);
    welcome->open();
}

DestinationView* MainWindow::openDestination(const QString& code, std::optional<tripkit::RoundTrip> trip) {
    auto* view = new DestinationView(m_model, code.toStdString(), std::move(trip), this);
    view->setWindowFlag(Qt::Window);
    view->show();
    return view;
}

SettingsDialog* MainWindow::openSettings() {
    if (!m_settingsDialog) {
        m_settingsDialog = new SettingsDialog(m_model, this);
        m_settingsDialog->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_settingsDialog->show();
    m_settingsDialog->raise();
    m_settingsDialog->activateWindow();
    return m_settingsDialog;
}

void MainWindow::updateSample() { m_sampleBanner->setVisible(m_model.sampleMode()); }

void MainWindow::updateRefresh() {
    const bool busy = m_model.refreshing();
    m_progress->setVisible(busy);
    m_refresh->setEnabled(!busy);
    if (busy) {
        m_statusText->setText("Checking for new fares…");
        return;
    }
    if (auto message = m_model.faresMessage()) {
        m_statusText->setText(Texts::of(*message));
        return;
    }
    const auto main = m_model.fareBooks().find(m_model.homeAirports().front());
    if (main != m_model.fareBooks().end() && m_model.faresLoad() != Load::idle) {
        m_statusText->setText(QStringLiteral("Fares from the nightly update of %1").arg(Texts::of(main->second.updated)));
    } else if (main != m_model.fareBooks().end()) {
        m_statusText->setText(QStringLiteral("Showing the fares saved %1").arg(Texts::of(main->second.updated)));
    } else {
        m_statusText->clear();
    }
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (!m_guard->allowClose()) {
        event->ignore();
        return;
    }
    m_settings->setValue(kGeometryKey, saveGeometry());
    m_settings->setValue(kStateKey, saveState());
    // The sheets go with the window.
    for (QWidget* child : findChildren<QDialog*>(Qt::FindDirectChildrenOnly)) child->close();
    event->accept();
    emit closed();
}

}  // namespace roamwise::desktop
