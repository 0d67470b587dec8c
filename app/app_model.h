// The application's one state store. Created once at start on the main
// thread, it lives until the application quits; every screen reads it and
// asks it to act. Fetching, decoding and planner searches run on worker
// threads and hand their results back to the main thread, which alone
// changes the state below. Each observed field has its own signal so a
// screen re-reads only what changed.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <QObject>
#include <QString>
#include <QTimer>

#include "app/http_loader.h"

#include "tripkit/advisories.h"
#include "tripkit/alerts.h"
#include "tripkit/calendars.h"
#include "tripkit/checklist.h"
#include "tripkit/climate.h"
#include "tripkit/config.h"
#include "tripkit/days.h"
#include "tripkit/destinations.h"
#include "tripkit/disney_guide.h"
#include "tripkit/events.h"
#include "tripkit/fares.h"
#include "tripkit/feed_hosts.h"
#include "tripkit/feed_status.h"
#include "tripkit/links.h"
#include "tripkit/places.h"
#include "tripkit/price_history.h"
#include "tripkit/trip_search.h"
#include "tripkit/universal_guide.h"
#include "tripkit/watch_nudge.h"
#include "tripkit/wear.h"
#include "tripkit/wear_data.h"

class QSettings;

namespace tripkit {
struct TripSearchResult;  // the planner's answer (tripkit's trip planner)
}

namespace roamwise::app {

class Notifier;
struct FaresData;
struct RefreshOutcome;
struct WearOutcome;  // app/weather.h

// The load state of a feed, as the screens report it.
enum class Load { idle, loading, loaded, offline, failed, unavailable };
std::string_view caseName(Load load);  // "idle", "loading", ...

// The two theme-park planners.
enum class Park { disney, universal };

// Where the application keeps its files: the cache of fetched files and the
// user's own data (also the widget's snapshot).
struct Folders {
    QString cache;  // $XDG_CACHE_HOME/Roamwise
    QString store;  // $XDG_DATA_HOME/Roamwise

    // The user's folders, as the desktop application and the CLI use them.
    static Folders standard();
};

// Everything the planner needs for one search, copied or shared so that it
// runs on a worker thread while the model goes on.
struct PlannerJob {
    Park park = Park::disney;
    tripkit::TripSearch search;
    std::string home;                                   // the main home airport's code
    std::shared_ptr<const tripkit::FareBook> mainBook;  // its fares; null: every flight estimated
    std::shared_ptr<const tripkit::DisneyGuide> guide;
    std::shared_ptr<const tripkit::UniversalGuide> universal;
    std::shared_ptr<const tripkit::EventCalendar> events;
    tripkit::Day today;
};

// The seam to tripkit's trip planner (app/planner.h); tests may give their
// own. An empty `run` ends searches at once with no result; an empty
// `tripPrice` leaves theme-park watches unchecked.
struct Planner {
    std::function<std::shared_ptr<const tripkit::TripSearchResult>(const PlannerJob&)> run;
    // The whole-trip total of a theme-park watch around its stay; the job
    // carries the watch's own search and today.
    std::function<std::optional<double>(const tripkit::Watch::Disney&, const PlannerJob&)> tripPrice;
};

// What one refresh did with each file it asked for.
struct FileReport {
    enum class Status { fetched, kept, missing, failed };
    std::string name;                // cache file name: "fares-JFK.json"
    Status status = Status::failed;  // kept: the fetch failed or did not decode; the cached copy stays
    std::optional<std::string> host;  // base address that answered
    std::string error;                // why, when not fetched
};
std::string_view caseName(FileReport::Status status);  // "fetched", "kept", ...

struct RefreshReport {
    Load fares = Load::idle;
    std::optional<std::string> message;  // the deals screen's text, when it has one
    Load advisories = Load::idle;
    std::vector<FileReport> files;
};

// The things a model is made from; tests give their own, the application
// leaves the defaults.
struct AppEnvironment {
    Folders folders = Folders::standard();
    // Preferences file (INI); empty: the user's own preferences ("Roamwise").
    QString settingsFile;
    // One GET; empty: libcurl (see http_loader.h).
    tripkit::HttpLoader loader;
    // The weather services' GETs (conditional, caching headers read). Empty:
    // libcurl with the weather user agent, or `loader` when that is given
    // (plain GETs, so nothing leaves a test's or tool's own loader).
    WeatherLoader weatherLoader;
    // Today in the user's time zone; empty: the clock.
    std::function<tripkit::Day()> today;
    // Desktop notifications; null: freedesktop notifications on the session bus.
    std::shared_ptr<Notifier> notifier;
    // RWDataURL and the partner keys; empty: the environment over the built-in values.
    tripkit::Config::Environment configuration;
    // The trip planner; empty: tripkit's (app/planner.h).
    Planner planner;
    // Opens a link the user chose (the desktop passes QDesktopServices::openUrl);
    // empty: links are only checked.
    std::function<bool(const std::string& url)> linkOpener;
    // Refresh at construction and then every three hours. Tests that drive
    // refreshes themselves turn it off.
    bool autoRefresh = true;
};

class AppModel : public QObject {
    Q_OBJECT

public:
    static constexpr int refreshIntervalSeconds = 10800;  // three hours
    static constexpr int maxHomeAirports = 3;
    static constexpr int defaultMaxLevel = 2;
    static constexpr int defaultPassportWeeks = 10;
    static constexpr const char* defaultHomeAirport = "JFK";

    explicit AppModel(AppEnvironment environment = {}, QObject* parent = nullptr);
    ~AppModel() override;

    // --- catalogs and guides ---
    const tripkit::Airports& airports() const;
    const tripkit::Destinations& destinations() const;
    const tripkit::Climate& climate() const;
    const tripkit::DisneyGuide& guide() const;
    const tripkit::UniversalGuide& universal() const;
    const tripkit::EventCalendar& events() const;
    const tripkit::PartnerConfig& partners() const;

    // --- preferences ---
    const std::vector<std::string>& homeAirports() const;  // main one first
    int maxLevel() const;
    bool onboarded() const;
    int passportWeeks() const;
    bool notificationsAllowed() const;

    // --- fares ---
    const std::map<std::string, tripkit::FareBook>& fareBooks() const;  // by home airport
    const std::map<std::string, tripkit::CalendarBook>& calendarBooks() const;
    const std::map<std::string, tripkit::HistoryBook>& historyBooks() const;
    Load faresLoad() const;
    tripkit::FeedStatus feedStatus() const;
    // The deals screen's text for the fare feed's state; nothing when loaded.
    std::optional<std::string> faresMessage() const;
    // Settings' line for the feed ("Using the last copy" when offline).
    std::optional<std::string> faresDetail() const;
    bool sampleMode() const;  // sample data shown instead of live files (the banner)
    const std::vector<tripkit::Deal>& deals() const;
    const tripkit::FareCalendar& calendar() const;
    const tripkit::FareHistory& history() const;

    // --- advisories ---
    const std::map<std::string, tripkit::Advisory>& advisories() const;
    Load advisoriesLoad() const;
    std::optional<std::string> advisoriesMessage() const;
    std::optional<tripkit::Day> advisoriesUpdated() const;

    // --- the user's lists ---
    const std::vector<tripkit::Watch>& watches() const;
    const std::vector<tripkit::PackingItem>& packing() const;
    const std::vector<tripkit::TripDate>& tripDates() const;
    bool showingAlerts() const;
    const tripkit::WatchNudge& watchNudge() const;
    bool nudgedThisSession() const;

    // --- planners ---
    const tripkit::TripSearch& search(Park park) const;
    // The last result of a park's planner; null before the first search.
    std::shared_ptr<const tripkit::TripSearchResult> result(Park park) const;
    bool searching(Park park) const;

    // --- data host ---
    std::vector<std::string> dataHosts() const;  // configured first
    // The base address that last answered; the first host before any answer.
    std::string dataHost() const;
    bool refreshing() const;
    const RefreshReport& lastRefresh() const;
    const Folders& folders() const;
    tripkit::Day today() const;

    // The passport reminders whose day has come and that were not shown yet.
    std::vector<tripkit::TripDate> duePassportReminders() const;

    // --- what to wear ---
    // Builds the wear guide of a place and dates on a worker thread: typical
    // months (fetched, cached or shipped) and forecast days where the forecast
    // reaches. wear() and wearLoading() change when it ends; a later request
    // supersedes an earlier one still running.
    void requestWear(const tripkit::WearPlace& place, tripkit::Day first, tripkit::Day last,
                     const std::set<tripkit::WearActivity>& activities, bool laundry, bool modest,
                     tripkit::TempUnit unit = tripkit::TempUnit::fahrenheit);
    // The last guide with its credit lines; null before the first one.
    std::shared_ptr<const WearOutcome> wear() const;
    bool wearLoading() const;

public slots:
    // Fetches every file of the home airports, the advisories and the guides;
    // does nothing while a refresh runs.
    void refresh();
    // At most three distinct codes, the main one first; stored, then refreshed.
    void setHomeAirports(const std::vector<std::string>& codes);
    void setMaxLevel(int level);  // 1 or 2
    void setOnboarded(bool done);
    // Shows sample data for today (true), or the live files again (false).
    void setSampleMode(bool on);
    void setPassportWeeks(int weeks);
    void setNotificationsAllowed(bool allowed);
    void setShowingAlerts(bool showing);

    void addWatch(const tripkit::Watch& watch);  // a new id replaces nothing
    void updateWatch(const tripkit::Watch& watch);  // by id
    void removeWatch(const std::string& id);

    void setPacking(const std::vector<tripkit::PackingItem>& items);
    void setPacked(const std::string& itemID, bool packed);
    void setTripDates(const std::vector<tripkit::TripDate>& dates);

    // One opening of a place; true when the screen should offer a watch now.
    bool recordView(const std::string& destinationCode);

    void setSearch(Park park, const tripkit::TripSearch& search);
    // Prices the park's search on a worker thread; result() and searching()
    // change when it ends.
    void findBestDates(Park park);

    // Opens `url` when it is a safe https link; anything else is refused and
    // logged. Returns whether it was handed to the opener.
    bool openLink(const std::string& url);

signals:
    void guideChanged();
    void universalChanged();
    void eventsChanged();
    void homeAirportsChanged();
    void maxLevelChanged();
    void onboardedChanged();
    void fareBooksChanged();
    void calendarBooksChanged();
    void historyBooksChanged();
    void faresLoadChanged();  // also when the offline day or message changes
    void sampleModeChanged();
    void advisoriesChanged();
    void advisoriesLoadChanged();
    void advisoriesUpdatedChanged();
    void dealsChanged();
    void calendarChanged();
    void historyChanged();
    void watchesChanged();
    void packingChanged();
    void tripDatesChanged();
    void passportWeeksChanged();
    void watchNudgeChanged();
    void notificationsAllowedChanged();
    void showingAlertsChanged();
    void searchChanged(Park park);
    void resultChanged(Park park);
    void searchingChanged(Park park);
    void refreshingChanged();
    void wearChanged();
    void wearLoadingChanged();
    // A refresh ended; lastRefresh() says what it did.
    void refreshFinished();
    // The user activated a notification: bring the window to the front.
    void raiseRequested();
    // A passport reminder is due now (also at start when its day passed
    // while the application was closed).
    void passportReminderDue(const tripkit::TripDate& trip, const QString& title,
                             const QString& body);

private:
    struct State;
    std::unique_ptr<State> m_state;
    QTimer m_refreshTimer;

    void applyRefresh(std::shared_ptr<RefreshOutcome> outcome);
    void showFares(FaresData& data);
    void checkWatches();
    void checkPassportReminders();
    void saveWatches();
    void writeWidgetSnapshot();
    void recompute();
};

}  // namespace roamwise::app
