// The main window over a real model on throw-away folders: the deals come
// from cached nightly files while the fetch is held back, and every flow is
// driven through the widgets as a user would, found by objectName.
#include <condition_variable>
#include <memory>
#include <mutex>

#include <QtCharts>
#include <QtTest>
#include <QtWidgets>

#include "desktop/deals_model.h"
#include "desktop/destination_view.h"
#include "desktop/main_window.h"
#include "desktop/settings_dialog.h"
#include "desktop/tools/fixture.h"

using namespace roamwise;
using desktop::DealsModel;
using tripkit::Day;

namespace {

// Holds every fetch until it is opened, as a data host that has not
// answered yet; then each fails as a machine without a network does.
struct Gate {
    std::mutex mutex;
    std::condition_variable changed;
    bool open = false;

    void release() {
        std::lock_guard lock(mutex);
        open = true;
        changed.notify_all();
    }
};

QStringList column(QTableView* table, int column, int role = Qt::DisplayRole) {
    QStringList values;
    const QAbstractItemModel* model = table->model();
    for (int row = 0; row < model->rowCount(); ++row)
        values << model->index(row, column).data(role).toString();
    return values;
}

}  // namespace

class MainWindowTest : public QObject {
    Q_OBJECT

    const Day today = Day::fromCivil(2026, 3, 10);
    std::unique_ptr<QTemporaryDir> m_folder;
    std::shared_ptr<Gate> m_gate;
    std::vector<std::string> m_opened;  // links handed to the browser
    std::unique_ptr<app::AppModel> m_model;
    std::unique_ptr<desktop::MainWindow> m_window;

    QString path(const QString& name) const { return m_folder->path() + "/" + name; }
    QTableView* table() const { return m_window->findChild<QTableView*>("dealsTable"); }
    int rows() const { return table()->model()->rowCount(); }
    bool shown(const char* name) const { return m_window->findChild<QWidget*>(name)->isVisible(); }
    QString text(const char* name) const { return m_window->findChild<QLabel*>(name)->text(); }

    void start(const std::vector<std::string>& homes, bool onboarded = true) {
        desktop::fixture::writeSettings(path("settings.ini"), homes, onboarded);
        const auto held = [gate = m_gate](const std::string& url) -> tripkit::HttpResponse {
            std::unique_lock lock(gate->mutex);
            gate->changed.wait(lock, [&] { return gate->open; });
            throw tripkit::FetchError(tripkit::FetchError::Kind::transport, url, "held, refused");
        };
        app::AppEnvironment env = desktop::fixture::environment(m_folder->path(), today, held);
        env.linkOpener = [this](const std::string& url) { return m_opened.push_back(url), true; };
        m_model = std::make_unique<app::AppModel>(std::move(env));
        m_window = std::make_unique<desktop::MainWindow>(*m_model, path("settings.ini"));
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }

    desktop::DestinationView* openFirstDealAbroad() {
        const QStringList countries = column(table(), DealsModel::country);
        for (int row = 0; row < rows(); ++row) {
            if (countries[row] == "United States") continue;
            table()->setCurrentIndex(table()->model()->index(row, 0));
            QTest::keyClick(table(), Qt::Key_Return);
            return m_window->findChild<desktop::DestinationView*>();
        }
        return nullptr;
    }

private slots:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        m_gate = std::make_shared<Gate>();
        m_opened.clear();
        // Last night's files of two airports are in the cache; only JFK is home.
        desktop::fixture::writeNight(path("cache"), {"JFK", "EWR"}, today);
    }

    void cleanup() {
        m_gate->release();
        if (m_model) QTRY_VERIFY_WITH_TIMEOUT(!m_model->refreshing(), 20000);
        m_window.reset();
        m_model.reset();
        m_folder.reset();
    }

    void dealsFromTheCacheTheirFiltersAndTheHomeAirports() {
        start({"JFK"});
        QVERIFY(m_model->refreshing());  // the fetch is held: nothing came from the network
        QVERIFY(rows() > 10);
        QCOMPARE(static_cast<std::size_t>(rows()), m_model->deals().size());
        QVERIFY(shown("refreshProgress") && !shown("sampleBanner"));
        QVERIFY(text("dealsFootnote").contains("fares older than 3 days are greyed"));
        for (const QString& origin : column(table(), DealsModel::origin))
            QCOMPARE(origin, QString("JFK"));
        // Cheapest first.
        QList<double> prices;
        for (const QString& p : column(table(), DealsModel::price, DealsModel::sortRole))
            prices << p.toDouble();
        QVERIFY(std::is_sorted(prices.begin(), prices.end()));

        // The fetch fails: the saved copy is from today, so it stays shown as it is.
        const int all = rows();
        m_gate->release();
        QTRY_VERIFY_WITH_TIMEOUT(!m_model->refreshing(), 20000);
        QCOMPARE(rows(), all);
        QVERIFY(!shown("refreshProgress") && !shown("feedStatus"));

        auto* search = m_window->findChild<QLineEdit*>("dealSearch");

        // Edit > Find puts the cursor in the search field.
        QApplication::setActiveWindow(m_window.get());
        QTest::keyClick(m_window.get(), Qt::Key_F, Qt::ControlModifier);
        QTRY_VERIFY(search->hasFocus());

        const QString country = column(table(), DealsModel::country).last();
        QVERIFY(country != "United States");
        QTest::keyClicks(search, country.toLower());
        QVERIFY(rows() > 0 && rows() < all);
        for (const QString& c : column(table(), DealsModel::country)) QCOMPARE(c, country);
        search->clear();
        QCOMPARE(rows(), all);

        auto* nonstop = m_window->findChild<QCheckBox*>("nonstopOnly");
        nonstop->click();
        QVERIFY(rows() < all);
        for (const QString& stops : column(table(), DealsModel::stops))
            QCOMPARE(stops, QString("Nonstop"));
        nonstop->click();

        // An airline of the books that has deals: only its fares stay.
        auto* airline = m_window->findChild<QComboBox*>("airlineFilter");
        const QString name = column(table(), DealsModel::airline).first();
        airline->setCurrentIndex(airline->findText(name));
        QVERIFY(rows() > 0 && rows() < all);
        for (const QString& a : column(table(), DealsModel::airline)) QCOMPARE(a, name);

        // Nothing left: the screen says the filters did it and offers to clear them.
        QTest::keyClicks(search, "zzzz");
        QCOMPARE(rows(), 0);
        QVERIFY(shown("dealsEmpty") && text("dealsEmpty").contains("filters"));
        QTest::mouseClick(m_window->findChild<QPushButton*>("clearFilters"), Qt::LeftButton);
        QCOMPARE(rows(), all);
        QVERIFY(search->text().isEmpty());
        QCOMPARE(airline->currentIndex(), 0);

        // Getaways: weekend trips only, each from Thursday to Saturday and back Sunday to Tuesday.
        QTest::mouseClick(m_window->findChild<QToolButton*>("showGetaways"), Qt::LeftButton);
        auto* getaways = m_window->findChild<QTableWidget*>("getawaysTable");
        QVERIFY(getaways->isVisible() && getaways->rowCount() > 0);
        m_window->findChild<QComboBox*>("getawayTiming")->setCurrentIndex(1);
        QVERIFY(getaways->rowCount() > 0);
        const QRegularExpression weekend("^(Thu|Fri|Sat) .* – (Sun|Mon|Tue) ");
        for (int row = 0; row < getaways->rowCount(); ++row) {
            const QString dates = getaways->item(row, 2)->text();
            QVERIFY2(weekend.match(dates).hasMatch(), qPrintable(dates));
        }

        // Settings: Newark added, moved first, then alone; the deals follow.
        auto* settings = qobject_cast<desktop::SettingsDialog*>(m_window->openSettings());
        QVERIFY(settings);
        QTest::keyClicks(settings->findChild<QLineEdit*>("homePickerSearch"), "newark");
        QTest::mouseClick(settings->findChild<QPushButton*>("homeAdd"), Qt::LeftButton);
        QCOMPARE(m_model->homeAirports(), (std::vector<std::string>{"JFK", "EWR"}));
        QVERIFY(column(table(), DealsModel::origin).contains("EWR"));
        // Storing the list is the model's business.

        // Newark first, then alone: every deal is Newark's.
        auto* list = settings->findChild<QListWidget*>("homeAirportsList");
        list->setCurrentRow(1);
        QTest::mouseClick(settings->findChild<QPushButton*>("homeUp"), Qt::LeftButton);
        QCOMPARE(m_model->homeAirports(), (std::vector<std::string>{"EWR", "JFK"}));
        list->setCurrentRow(1);
        QTest::mouseClick(settings->findChild<QPushButton*>("homeRemove"), Qt::LeftButton);
        QCOMPARE(m_model->homeAirports(), std::vector<std::string>{"EWR"});
        QVERIFY(rows() > 0);
        for (const QString& origin : column(table(), DealsModel::origin))
            QCOMPARE(origin, QString("EWR"));
        // One airport always stays.
        QVERIFY(!settings->findChild<QPushButton*>("homeRemove")->isEnabled());

        settings->findChild<QRadioButton*>("level1")->click();
        QCOMPARE(m_model->maxLevel(), 1);
    }

    void aDestinationItsCalendarVerdictAndAWatch() {
        start({"JFK"});
        desktop::DestinationView* view = openFirstDealAbroad();
        QVERIFY(view);

        const QString verdict = view->findChild<QLabel*>("priceVerdict")->text();
        const QRegularExpression said(
            "^\\$\\d+: (Higher than most prices|About the usual price|"
            "Lower than most prices) seen in the last \\d+ days$");
        QVERIFY2(said.match(verdict).hasMatch(), qPrintable(verdict));
        auto* chart = view->findChild<QChartView*>("priceChart");
        auto* series = qobject_cast<QLineSeries*>(chart->chart()->series().value(0));
        QVERIFY(series && series->count() >= 21);
        QVERIFY(view->findChild<QLabel*>("advisoryLabel")->text().startsWith("Level "));

        // The best months (up to three) are starred.
        auto* months = view->findChild<QTableWidget*>("monthsTable");
        const auto stars = months->findItems("★", Qt::MatchExactly).size();
        QVERIFY(months->rowCount() > 1 && stars >= 1 && stars <= 3);

        // Picking a day in the grid makes it the fare the screen is about.
        auto* grid = view->findChild<QTableWidget*>("dayGrid");
        QTableWidgetItem* priced = nullptr;
        for (int i = 0; i < grid->rowCount() * grid->columnCount() && !priced; ++i) {
            QTableWidgetItem* item = grid->item(i / 7, i % 7);
            if (item && item->text().contains('$')) priced = item;
        }
        QVERIFY(priced);
        const QString price = priced->text().section('\n', 1);
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                          grid->visualItemRect(priced).center());
        QVERIFY2(view->findChild<QLabel*>("pickedTrip")->text().startsWith("Picked: " + price),
                 qPrintable(price));
        QVERIFY(view->findChild<QLabel*>("priceVerdict")->text().startsWith(price + ":"));

        // Booking goes through the model to the browser.
        QTest::mouseClick(view->findChild<QPushButton*>("linkFlights"), Qt::LeftButton);
        QCOMPARE(m_opened.size(), std::size_t{1});
        QVERIFY(QString::fromStdString(m_opened.front()).startsWith("https://"));

        // The second opening of the same place offers a watch, once.
        QVERIFY(!view->findChild<QWidget*>("watchNudge")->isVisible());
        view->close();
        QTRY_VERIFY(!m_window->findChild<desktop::DestinationView*>());
        view = openFirstDealAbroad();
        QVERIFY(view->findChild<QWidget*>("watchNudge")->isVisible());

        // A watch made there is shown and handed to the model.
        QTest::mouseClick(view->findChild<QPushButton*>("watchButton"), Qt::LeftButton);
        view->findChild<QRadioButton*>("watchUnderPrice")->click();
        auto* target = view->findChild<QDoubleSpinBox*>("watchTarget");
        target->selectAll();
        QTest::keyClicks(target, "250");
        view->findChild<QCheckBox*>("watchWindow")->click();
        QTest::mouseClick(view->findChild<QPushButton*>("watchSave"), Qt::LeftButton);

        auto* watching = view->findChild<QLabel*>("watchingLabel");
        QVERIFY(watching->isVisible());
        QVERIFY(watching->text().startsWith("Watching this price: under $250"));
        QVERIFY(!view->findChild<QPushButton*>("watchButton")->isVisible());

        // Saving it is the model's business.
        QCOMPARE(m_model->watches().size(), std::size_t{1});
        const tripkit::Watch& watch = m_model->watches().front();
        QCOMPARE(watch.target, std::optional<double>(250));
        const auto& route = std::get<tripkit::Watch::Route>(watch.kind);
        QCOMPARE(route.code, view->fareCode());
        QVERIFY(route.window);
    }

    void theFeedStatusTheSampleAndTheWindowItself() {
        // Offline with the copy saved two nights ago: the deals screen and Settings say so.
        desktop::fixture::writeNight(path("cache"), {"JFK"}, today - 2);
        m_gate->release();
        start({"JFK"});
        QTRY_VERIFY_WITH_TIMEOUT(!m_model->refreshing(), 20000);
        QVERIFY(shown("feedStatus"));
        QCOMPARE(text("feedStatus"), "Offline: showing fares saved 2026-03-08. Pull to refresh.");
        QVERIFY(rows() > 0);
        auto* settings = m_window->openSettings();
        QCOMPARE(settings->findChild<QLabel*>("feedDetail")->text(),
                 QString("Using the last copy"));
        settings->close();

        // Help: the release page through the model, and About with the privacy statement.
        m_window->findChild<QAction*>("updatesAction")->trigger();
        QCOMPARE(m_opened,
                 std::vector<std::string>{"https://github.com/roamwise/roamwise/releases"});
        m_window->findChild<QAction*>("aboutAction")->trigger();
        auto* about = m_window->findChild<QMessageBox*>("aboutDialog");
        QVERIFY(about->text().contains("Roamwise doesn’t collect any data."));
        QVERIFY(
            about->text().contains("Roamwise earns a commission when you book through its links"));
        about->close();

        // Closing the window by accident is caught; "don't ask again" is kept.
        m_window->close();
        QVERIFY(m_window->isVisible());
        auto* guard = m_window->findChild<QMessageBox*>("closeGuard");
        QVERIFY(guard && guard->isVisible());
        guard->findChild<QCheckBox*>("closeGuardDontAsk")->click();
        QTest::mouseClick(guard->findChild<QPushButton*>("closeGuardQuit"), Qt::LeftButton);
        QVERIFY(!m_window->isVisible());
        QSettings stored(path("settings.ini"), QSettings::IniFormat);
        QVERIFY(stored.value("window/dontAskBeforeClosing").toBool());
        QVERIFY(!stored.value("window/geometry").toByteArray().isEmpty());

        // A first start on an empty cache: today's sample, its banner, and the welcome.
        m_window.reset();
        m_model.reset();
        QDir(path("cache")).removeRecursively();
        start({"JFK"}, false);
        QVERIFY(shown("sampleBanner"));
        QVERIFY(rows() > 0);
        m_window->showWelcomeIfNeeded();
        auto* welcome = m_window->findChild<QDialog*>("welcomeDialog");
        QVERIFY(welcome && welcome->isVisible());
        QTest::keyClicks(welcome->findChild<QLineEdit*>("welcomePickerSearch"), "BOS");
        QTest::mouseClick(welcome->findChild<QPushButton*>("welcomeStart"), Qt::LeftButton);
        QCOMPARE(m_model->homeAirports(), std::vector<std::string>{"BOS"});
        QVERIFY(m_model->onboarded());
    }
};

QTEST_MAIN(MainWindowTest)
#include "main_window_test.moc"
