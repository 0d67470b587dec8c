// The model end to end: a first start without a data host, the switch to a
// live host, and a watch whose price drops between two nights of sample data
// turned into a desktop notification on a private session bus, whose action
// opens the alerts list.
#include <algorithm>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QVariantMap>

#include <gtest/gtest.h>

#include "app/app_model.h"
#include "app/notifier.h"
#include "app/storage.h"
#include "app/tests/test_host.h"
#include "app/weather.h"
#include "feedgen/feed.h"
#include "tripkit/alerts.h"
#include "tripkit/trip_planner.h"
#include "tripkit/widget_snapshot.h"

namespace roamwise::app {

// Stands in for the desktop's notification server.
class FakeNotifications : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Shown {
        QString app, summary, body;
        QStringList actions;
        uint id = 0;
    };
    std::vector<Shown> shown;

public slots:
    uint Notify(const QString& app, uint, const QString&, const QString& summary,
                const QString& body, const QStringList& actions, const QVariantMap&, int) {
        shown.push_back({app, summary, body, actions, static_cast<uint>(shown.size() + 1)});
        return shown.back().id;
    }
};

namespace {

using namespace tripkit;
using testing::TestHost;

bool waitFor(const std::function<bool()>& done, int ms = 60000) {
    QElapsedTimer timer;
    timer.start();
    while (!done() && timer.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return done();
}

void refreshAndWait(AppModel& model) {
    bool finished = false;
    auto connection =
        QObject::connect(&model, &AppModel::refreshFinished, [&] { finished = true; });
    model.refresh();
    ASSERT_TRUE(waitFor([&] { return finished; }));
    QObject::disconnect(connection);
}

void serveNight(TestHost& host, Day day) {
    feedgen::Options options;
    options.today = day;
    options.airports = {"JFK"};
    host.clear();
    for (const auto& [path, bytes] : feedgen::generate(options))
        host.set("/roamwise-data/" + path, {200, bytes});
    host.set("/api/TravelAdvisories", {200, feedgen::advisoriesFile(options)});
}

struct ModelTest : ::testing::Test {
    QTemporaryDir folder;
    TestHost host;
    Day today = Day::fromCivil(2026, 11, 20);
    std::map<std::string, std::string> configuration;
    std::vector<std::string> opened;  // links handed to the browser

    AppEnvironment environment(std::string defaultHost) {
        AppEnvironment env;
        env.folders = {folder.path() + "/cache", folder.path() + "/data"};
        env.settingsFile = folder.path() + "/settings.ini";
        env.loader = testing::testLoader(std::move(defaultHost));
        env.today = [this] { return today; };
        env.configuration = [this](const char* name) -> const char* {
            auto found = configuration.find(name);
            return found == configuration.end() ? nullptr : found->second.c_str();
        };
        env.autoRefresh = false;
        env.linkOpener = [this](const std::string& url) { return opened.push_back(url), true; };
        return env;
    }

    // Tonight's sample files on the local host, configured as the data host.
    void serveLive() {
        serveNight(host, today);
        configuration["RWDataURL"] = host.url() + "roamwise-data";
        configuration["RWAdvisoriesURL"] = host.url() + "api/TravelAdvisories";
    }
};

TEST_F(ModelTest, FirstStartShowsTheSampleRWDataURLSwitchesToLiveAndThePlannerUsesItsFares) {
    const std::string down = "https://127.0.0.1:" + std::to_string(testing::closedPort()) + "/";
    configuration["RWAdvisoriesURL"] = down + "api/TravelAdvisories";
    {
        AppModel model(environment(down));
        EXPECT_TRUE(model.sampleMode());  // at once, before any fetch
        EXPECT_FALSE(model.deals().empty());
        refreshAndWait(model);
        EXPECT_TRUE(model.sampleMode());
        EXPECT_EQ(model.faresMessage(), std::string(FeedStatus::failedText));
        EXPECT_EQ(model.advisoriesMessage(), std::string(Advisories::failedText));
    }
    serveLive();
    AppModel model(environment(down));
    refreshAndWait(model);
    EXPECT_FALSE(model.sampleMode());
    EXPECT_EQ(model.faresLoad(), Load::loaded);
    EXPECT_EQ(model.dataHost(), host.url() + "roamwise-data/");
    EXPECT_EQ(model.advisoriesLoad(), Load::loaded);

    // The widget's snapshot follows the refresh.
    auto bytes = FileReader::read((folder.path() + "/data/widget.json").toStdString());
    ASSERT_TRUE(bytes);
    const auto snapshot = json::decodePadded<WidgetSnapshot>(std::move(*bytes), "widget.json");
    EXPECT_EQ(snapshot.updated, today);
    ASSERT_TRUE(snapshot.bestDeal);
    EXPECT_EQ(snapshot.bestDeal->origin, "JFK");

    // The trip planner searches off the main thread with the night's fares.
    bool ended = false;
    QObject::connect(&model, &AppModel::resultChanged,
                     [&](Park park) { ended = park == Park::disney; });
    model.findBestDates(Park::disney);
    EXPECT_TRUE(model.searching(Park::disney));
    ASSERT_TRUE(waitFor([&] { return ended; }));
    EXPECT_FALSE(model.searching(Park::disney));
    const auto result = model.result(Park::disney);
    ASSERT_TRUE(result);
    // The night's own Orlando fares are found.
    ASSERT_TRUE(std::any_of(result->trips.begin(), result->trips.end(),
                            [](const TripQuote& trip) { return trip.foundFlights(); }));
    EXPECT_FALSE(model.result(Park::universal));

    // A theme-park watch is priced after the next refresh.
    Watch watch;
    watch.id = Watch::makeID(1, 2);
    const TripQuote& best = result->trips.front();
    watch.kind = Watch::Disney{model.search(Park::disney), DayRange{best.checkIn, best.checkOut}};
    watch.created = today;
    model.addWatch(watch);
    refreshAndWait(model);
    ASSERT_EQ(model.watches().size(), 1u);
    EXPECT_EQ(model.watches().front().lastChecked, today);
    EXPECT_LE(model.watches().front().lastPrice.value_or(1e9), best.total());
}

// A destination whose cheapest fresh trip is at least $5 cheaper the next
// night, with the day it is seen first.
std::optional<std::pair<std::string, Day>> dropBetweenNights(Day from) {
    auto calendarOf = [](Day day) {
        feedgen::Options options;
        options.today = day;
        options.airports = {"JFK"};
        return FareCalendar(
            {json::decodeDocument<CalendarBook>(feedgen::calendarFile(options, "JFK"), "c")});
    };
    for (Day day = from; day < from + 30; day = day + 1) {
        const FareCalendar before = calendarOf(day);
        const FareCalendar after = calendarOf(day + 1);
        for (const auto& [code, row] : before.byDestination) {
            const Watch::Route route{code, code, std::nullopt};
            const auto p1 = Alerts::routePrice(route, before, day);
            const auto p2 = Alerts::routePrice(route, after, day + 1);
            if (p1 && p2 && *p2 <= *p1 - Alerts::minDrop && Destinations::shipped().find(code)) {
                return std::pair(code, day);
            }
        }
    }
    return std::nullopt;
}

TEST_F(ModelTest, AWatchDropBecomesANotificationWhoseActionOpensTheAlerts) {
    // A session bus of our own, with a notification server registered on it.
    QProcess daemon;
    daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address=1"});
    ASSERT_TRUE(daemon.waitForStarted() && daemon.waitForReadyRead(10000));
    const QString address = QString::fromUtf8(daemon.readLine()).trimmed();
    QDBusConnection serverBus = QDBusConnection::connectToBus(address, "notification-server");
    QDBusConnection appBus = QDBusConnection::connectToBus(address, "roamwise");
    ASSERT_TRUE(serverBus.isConnected() && appBus.isConnected());
    FakeNotifications server;
    ASSERT_TRUE(serverBus.registerService(DBusNotifier::service));
    ASSERT_TRUE(
        serverBus.registerObject(DBusNotifier::path, &server, QDBusConnection::ExportAllSlots));

    const auto drop = dropBetweenNights(today);
    ASSERT_TRUE(drop) << "the sample data has no drop in a month";
    const auto& [code, day] = *drop;
    today = day;
    serveLive();
    AppEnvironment env = environment(host.url());
    auto notifier = std::make_shared<DBusNotifier>(appBus);
    EXPECT_TRUE(notifier->available());
    env.notifier = notifier;
    {
        AppModel model(env);
        bool raised = false;
        QObject::connect(&model, &AppModel::raiseRequested, [&] { raised = true; });
        Watch watch;
        watch.id = Watch::makeID(1, 2);
        watch.kind = Watch::Route{code, Destinations::shipped().find(code)->name, std::nullopt};
        watch.created = today;
        model.addWatch(watch);

        refreshAndWait(model);  // the first night only records the price
        ASSERT_TRUE(model.watches().front().lastPrice);
        const double first = *model.watches().front().lastPrice;
        EXPECT_TRUE(server.shown.empty());

        today = day + 1;
        serveNight(host, today);
        refreshAndWait(model);
        ASSERT_TRUE(waitFor([&] { return !server.shown.empty(); }));
        ASSERT_EQ(server.shown.size(), 1u);
        const FakeNotifications::Shown& shown = server.shown.front();
        EXPECT_EQ(shown.app, "Roamwise");
        EXPECT_EQ(shown.summary.toStdString(), "Price drop: " + watch.name());
        EXPECT_TRUE(shown.actions.contains("default"));
        EXPECT_LE(*model.watches().front().lastPrice, first - Alerts::minDrop);

        // The user clicks it: the window comes forward with the alerts list.
        EXPECT_FALSE(model.showingAlerts());
        QDBusMessage invoked =
            QDBusMessage::createSignal(DBusNotifier::path, DBusNotifier::service, "ActionInvoked");
        invoked << shown.id << QString("default");
        ASSERT_TRUE(serverBus.send(invoked));
        EXPECT_TRUE(waitFor([&] { return model.showingAlerts(); }));
        EXPECT_TRUE(raised);

        // The watch's new price is on disk.
        const auto saved =
            UserFiles::readList<Watch>(folder.path() + "/data", UserFiles::watches, today);
        ASSERT_EQ(saved.size(), 1u);
        EXPECT_EQ(saved.front().lastPrice, model.watches().front().lastPrice);
    }
    QDBusConnection::disconnectFromBus("notification-server");
    QDBusConnection::disconnectFromBus("roamwise");
    daemon.terminate();
    daemon.waitForFinished();
}

TEST_F(ModelTest, PreferencesFallBackAndTheOldHomeAirportKeyIsRead) {
    {
        QSettings settings(folder.path() + "/settings.ini", QSettings::IniFormat);
        settings.setValue("homeAirport", "lax");
        settings.setValue("maxLevel", "three");
        settings.setValue("search", "{not json");
    }
    configuration["RWAdvisoriesURL"] = host.url() + "api/TravelAdvisories";
    AppModel model(environment(host.url()));
    EXPECT_EQ(model.homeAirports(), std::vector<std::string>{"LAX"});
    EXPECT_EQ(model.maxLevel(), AppModel::defaultMaxLevel);
    EXPECT_EQ(model.search(Park::disney).origin, "LAX");
    model.setHomeAirports({"sfo", "SFO", "bos", "ord", "dfw"});
    EXPECT_EQ(model.homeAirports(), (std::vector<std::string>{"SFO", "BOS", "ORD"}));
    EXPECT_TRUE(waitFor([&] { return !model.refreshing(); }));
    AppModel again(environment(host.url()));
    EXPECT_EQ(again.homeAirports(), (std::vector<std::string>{"SFO", "BOS", "ORD"}));

    // Only https links of a plain host are handed to the opener.
    EXPECT_TRUE(again.openLink("https://www.aviasales.com/search/JFK1405LIS2105"));
    EXPECT_FALSE(again.openLink("javascript:alert(1)"));
    EXPECT_EQ(opened, std::vector<std::string>{"https://www.aviasales.com/search/JFK1405LIS2105"});
}

TEST_F(ModelTest, WearGuideOffTheMainThreadFallsBackToShippedMonthsAndKeepsOnlyTheLatestAsk) {
    host.setAll(500);
    configuration["RWPowerURL"] = host.url();
    configuration["RWForecastURL"] = host.url();
    AppModel model(environment(host.url()));
    const WearPlace& place = WearClimate::File::shipped().places.front();
    int changes = 0;
    QObject::connect(&model, &AppModel::wearChanged, [&] { ++changes; });

    model.requestWear(place, today + 30, today + 33, {WearActivity::beach}, false, false);
    model.requestWear(place, today + 40, today + 44, {WearActivity::hiking}, true, false,
                      TempUnit::celsius);
    EXPECT_TRUE(model.wearLoading());
    ASSERT_TRUE(waitFor([&] { return !model.wearLoading(); }));
    QCoreApplication::processEvents();  // the first ask's late answer, if it were kept

    EXPECT_EQ(changes, 1);
    const std::shared_ptr<const WearOutcome> wear = model.wear();
    ASSERT_TRUE(wear);
    EXPECT_EQ(wear->ask.first, today + 40);
    EXPECT_EQ(wear->typical, TypicalWeather::Origin::shipped);
    EXPECT_EQ(wear->forecast, ForecastWeather::Origin::skipped);  // weeks away
    EXPECT_EQ(wear->guide.days.size(), 5u);
    // Both asks went through the injected loader to the local host, none elsewhere.
    EXPECT_EQ(host.seen().size(), 2u);
}

}  // namespace
}  // namespace roamwise::app

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

#include "model_test.moc"
