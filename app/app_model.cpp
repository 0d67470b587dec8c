#include "app/app_model.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

#include <QDateTime>
#include <QDir>
#include <QPointer>
#include <QSettings>
#include <QStandardPaths>
#include <QThread>
#include <QThreadPool>
#include <QtGlobal>

#include "app/http_loader.h"
#include "app/notifier.h"
#include "app/planner.h"
#include "app/refresh.h"
#include "app/storage.h"
#include "app/weather.h"
#include "tripkit/trip_planner.h"
#include "tripkit/widget_snapshot.h"

namespace roamwise::app {

using namespace tripkit;

namespace {

constexpr int kParks = 2;
int slot(Park park) { return park == Park::disney ? 0 : 1; }

const char* const kHomeAirportsKey = "homeAirports";
const char* const kOldHomeAirportKey = "homeAirport";
const char* const kMaxLevelKey = "maxLevel";
const char* const kOnboardedKey = "onboarded";
const char* const kPassportWeeksKey = "passportWeeks";
const char* const kWatchNudgeKey = "watchNudge";
const char* const kSearchKey = "search";
const char* const kUniversalSearchKey = "universalSearch";
const char* const kNotificationsKey = "notificationsAllowed";
const char* const kSampleModeKey = "sampleMode";

constexpr int kMaxPassportWeeks = 52;

bool isAirportCode(const std::string& code) {
    return code.size() == 3 && std::all_of(code.begin(), code.end(), [](char c) {
               return std::isupper(static_cast<unsigned char>(c)) != 0;
           });
}

// Upper-cased, valid, distinct codes, at most three, in order.
std::vector<std::string> cleanCodes(const std::vector<std::string>& codes) {
    std::vector<std::string> out;
    for (std::string code : codes) {
        for (char& c : code) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        if (!isAirportCode(code) || std::find(out.begin(), out.end(), code) != out.end()) continue;
        out.push_back(code);
        if (out.size() == AppModel::maxHomeAirports) break;
    }
    return out;
}

template <class T>
std::optional<T> decodeSetting(const QVariant& value, const char* key) {
    if (!value.isValid()) return std::nullopt;
    try {
        return json::decodeDocument<T>(value.toString().toStdString(), key);
    } catch (const std::exception&) {
        return std::nullopt;  // a stored value that does not decode starts from the default
    }
}

std::optional<int> intSetting(const QVariant& value) {
    if (!value.isValid()) return std::nullopt;
    bool ok = false;
    const int n = value.toString().toInt(&ok);
    return ok ? std::optional(n) : std::nullopt;
}

std::optional<bool> boolSetting(const QVariant& value) {
    if (!value.isValid()) return std::nullopt;
    if (value.typeId() == QMetaType::Bool) return value.toBool();
    const QString text = value.toString();
    if (text == "true") return true;
    if (text == "false") return false;
    return std::nullopt;
}

}  // namespace

Folders Folders::standard() {
    // The generic locations: CacheLocation would add the organisation and
    // application names on top of our own folder.
    return {QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + "/Roamwise",
            QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/Roamwise"};
}

struct AppModel::State {
    AppEnvironment env;
    Cache cache;
    std::unique_ptr<QSettings> settings;
    FeedHosts hosts;
    std::string advisoriesURL;
    PartnerConfig partners;
    QThreadPool pool;  // the model's own, so that it can wait for its tasks when it goes

    std::shared_ptr<const DisneyGuide> guide;
    std::shared_ptr<const UniversalGuide> universal;
    std::shared_ptr<const EventCalendar> events;

    std::vector<std::string> homes;
    int maxLevel = defaultMaxLevel;
    bool onboarded = false;
    int passportWeeks = defaultPassportWeeks;
    bool notificationsAllowed = true;
    bool sampleRequested = false;

    std::map<std::string, FareBook> fareBooks;
    std::map<std::string, CalendarBook> calendarBooks;
    std::map<std::string, HistoryBook> historyBooks;
    FeedStatus status = FeedStatus::loaded();
    Load faresLoad = Load::idle;
    bool sample = false;
    std::vector<Deal> deals;
    FareCalendar calendar;
    FareHistory history;
    std::optional<Day> mainUpdated;

    std::map<std::string, Advisory> advisories;
    Load advisoriesLoad = Load::idle;
    std::optional<Day> advisoriesUpdated;

    std::vector<Watch> watches;
    std::vector<PackingItem> packing;
    std::vector<TripDate> tripDates;
    bool showingAlerts = false;
    WatchNudge nudge;
    bool nudged = false;

    TripSearch searches[kParks];
    std::shared_ptr<const TripSearchResult> results[kParks];
    bool searching[kParks] = {false, false};

    bool refreshing = false;
    bool refreshAgain = false;  // the home airports changed while a refresh ran
    RefreshReport lastRefresh;
    std::string dataHost;
    std::shared_ptr<Notifier> notifier;

    std::string powerURL;
    std::string forecastURL;
    std::shared_ptr<const WearOutcome> wear;
    bool wearLoading = false;
    std::uint64_t wearTicket = 0;  // the latest request; older answers are dropped

    Day today() const { return env.today ? env.today() : Day::today(); }
};

AppModel::AppModel(AppEnvironment environment, QObject* parent)
    : QObject(parent), m_state(std::make_unique<State>()) {
    State& s = *m_state;
    s.env = std::move(environment);
    if (!s.env.configuration) s.env.configuration = [](const char* name) { return std::getenv(name); };
    if (!s.env.weatherLoader) {
        s.env.weatherLoader = s.env.loader ? plainWeatherLoader(s.env.loader) : conditionalLoader(weatherOptions());
    }
    if (!s.env.loader) s.env.loader = curlLoader();
    if (!s.env.planner.run && !s.env.planner.tripPrice) s.env.planner = tripPlanner();
    s.cache.folder = s.env.folders.cache;
    QDir().mkpath(s.env.folders.cache);
    QDir().mkpath(s.env.folders.store);
    const Day today = s.today();

    // 1. Shipped catalogs and guides; cached copies that decode replace the guides.
    std::optional<EventCalendar> events = s.cache.decoded<EventCalendar>(Cache::disneyEventsName);
    s.events = std::make_shared<const EventCalendar>(events ? *events : EventCalendar::shipped());
    DisneyGuide guide = s.cache.decoded<DisneyGuide>(Cache::disneyGuideName).value_or(DisneyGuide::shipped());
    guide.busyEvents = DisneyGuide::busySpans(*s.events);
    s.guide = std::make_shared<const DisneyGuide>(std::move(guide));
    s.universal = std::make_shared<const UniversalGuide>(
        s.cache.decoded<UniversalGuide>(Cache::universalGuideName).value_or(UniversalGuide::shipped()));

    // 2. Configuration.
    s.hosts = Config::feedHosts(s.env.configuration);
    s.advisoriesURL = Config::advisoriesURL(s.env.configuration);
    s.powerURL = Config::powerURL(s.env.configuration);
    s.forecastURL = Config::forecastURL(s.env.configuration);
    s.partners = Config::partners(s.env.configuration);
    s.dataHost = s.hosts.hosts.empty() ? std::string() : s.hosts.hosts.front();

    // 3. Preferences, saved searches and the user's files.
    s.settings = s.env.settingsFile.isEmpty()
                     ? std::make_unique<QSettings>("Roamwise", "Roamwise")
                     : std::make_unique<QSettings>(s.env.settingsFile, QSettings::IniFormat);
    QSettings& settings = *s.settings;
    {
        const QVariant stored = settings.value(kHomeAirportsKey);
        std::vector<std::string> codes;
        // An INI file reads a one-element list back as a string.
        for (const QString& code : stored.toStringList()) codes.push_back(code.toStdString());
        if (codes.empty()) {
            const QVariant old = settings.value(kOldHomeAirportKey);
            if (old.typeId() == QMetaType::QString) codes.push_back(old.toString().toStdString());
        }
        s.homes = cleanCodes(codes);
        if (s.homes.empty()) s.homes = {defaultHomeAirport};
    }
    const std::optional<int> level = intSetting(settings.value(kMaxLevelKey));
    s.maxLevel = level && (*level == 1 || *level == 2) ? *level : defaultMaxLevel;
    s.onboarded = boolSetting(settings.value(kOnboardedKey)).value_or(false);
    const std::optional<int> weeks = intSetting(settings.value(kPassportWeeksKey));
    s.passportWeeks = weeks && *weeks >= 1 && *weeks <= kMaxPassportWeeks ? *weeks : defaultPassportWeeks;
    s.notificationsAllowed = boolSetting(settings.value(kNotificationsKey)).value_or(true);
    s.sampleRequested = boolSetting(settings.value(kSampleModeKey)).value_or(false);
    s.nudge = decodeSetting<WatchNudge>(settings.value(kWatchNudgeKey), kWatchNudgeKey).value_or(WatchNudge{});
    for (Park park : {Park::disney, Park::universal}) {
        const char* key = park == Park::disney ? kSearchKey : kUniversalSearchKey;
        // A new user starts from the planner's family trip.
        TripSearch search = decodeSetting<TripSearch>(settings.value(key), key)
                                .value_or(TripPlanner::defaultSearch(s.homes.front()));
        if (search.origin.empty()) search.origin = s.homes.front();
        s.searches[slot(park)] = std::move(search);
    }
    auto readList = [&]<class T>(const char* name, std::vector<T>& out) {
        std::string problem;
        out = UserFiles::readList<T>(s.env.folders.store, name, today, &problem);
        if (!problem.empty()) qWarning("Roamwise: %s: %s", name, problem.c_str());
    };
    readList(UserFiles::watches, s.watches);
    readList(UserFiles::packing, s.packing);
    readList(UserFiles::tripDates, s.tripDates);

    // 4. The cached books, so the first screen shows the last copy at once.
    FaresData cached = loadCachedFares(s.cache, s.homes, today, s.sampleRequested);
    showFares(cached);
    if (auto advisories = cachedAdvisories(s.cache)) s.advisories = std::move(*advisories);

    // Notifications come back from the bus on this thread; the model may be
    // gone by then.
    s.notifier = s.env.notifier ? s.env.notifier : std::make_shared<DBusNotifier>();
    QPointer<AppModel> self(this);
    s.notifier->setActivated([self](const Notification& notification) {
        if (!self || !notification.watchID) return;
        emit self->raiseRequested();
        self->setShowingAlerts(true);
    });

    checkPassportReminders();

    // 5. Refresh now and every three hours.
    m_refreshTimer.setInterval(std::chrono::seconds(refreshIntervalSeconds));
    connect(&m_refreshTimer, &QTimer::timeout, this, &AppModel::refresh);
    if (s.env.autoRefresh) {
        m_refreshTimer.start();
        refresh();
    }
}

AppModel::~AppModel() {
    // Tasks hold copies of what they need, but their results are posted to us.
    m_state->pool.waitForDone();
}

// --- getters ---

const Airports& AppModel::airports() const { return Airports::shipped(); }
const Destinations& AppModel::destinations() const { return Destinations::shipped(); }
const Climate& AppModel::climate() const { return Climate::shipped(); }
const DisneyGuide& AppModel::guide() const { return *m_state->guide; }
const UniversalGuide& AppModel::universal() const { return *m_state->universal; }
const EventCalendar& AppModel::events() const { return *m_state->events; }
const PartnerConfig& AppModel::partners() const { return m_state->partners; }
const std::vector<std::string>& AppModel::homeAirports() const { return m_state->homes; }
int AppModel::maxLevel() const { return m_state->maxLevel; }
bool AppModel::onboarded() const { return m_state->onboarded; }
int AppModel::passportWeeks() const { return m_state->passportWeeks; }
bool AppModel::notificationsAllowed() const { return m_state->notificationsAllowed; }
const std::map<std::string, FareBook>& AppModel::fareBooks() const { return m_state->fareBooks; }
const std::map<std::string, CalendarBook>& AppModel::calendarBooks() const { return m_state->calendarBooks; }
const std::map<std::string, HistoryBook>& AppModel::historyBooks() const { return m_state->historyBooks; }
Load AppModel::faresLoad() const { return m_state->faresLoad; }
FeedStatus AppModel::feedStatus() const { return m_state->status; }
std::optional<std::string> AppModel::faresMessage() const { return m_state->status.message(); }
std::optional<std::string> AppModel::faresDetail() const { return m_state->status.detail(); }
bool AppModel::sampleMode() const { return m_state->sample; }
const std::vector<Deal>& AppModel::deals() const { return m_state->deals; }
const FareCalendar& AppModel::calendar() const { return m_state->calendar; }
const FareHistory& AppModel::history() const { return m_state->history; }
const std::map<std::string, Advisory>& AppModel::advisories() const { return m_state->advisories; }
Load AppModel::advisoriesLoad() const { return m_state->advisoriesLoad; }
std::optional<std::string> AppModel::advisoriesMessage() const {
    if (m_state->advisoriesLoad == Load::failed) return std::string(Advisories::failedText);
    return std::nullopt;
}
std::optional<Day> AppModel::advisoriesUpdated() const { return m_state->advisoriesUpdated; }
const std::vector<Watch>& AppModel::watches() const { return m_state->watches; }
const std::vector<PackingItem>& AppModel::packing() const { return m_state->packing; }
const std::vector<TripDate>& AppModel::tripDates() const { return m_state->tripDates; }
bool AppModel::showingAlerts() const { return m_state->showingAlerts; }
const WatchNudge& AppModel::watchNudge() const { return m_state->nudge; }
bool AppModel::nudgedThisSession() const { return m_state->nudged; }
const TripSearch& AppModel::search(Park park) const { return m_state->searches[slot(park)]; }
std::shared_ptr<const TripSearchResult> AppModel::result(Park park) const {
    return m_state->results[slot(park)];
}
bool AppModel::searching(Park park) const { return m_state->searching[slot(park)]; }
std::vector<std::string> AppModel::dataHosts() const { return m_state->hosts.hosts; }
std::string AppModel::dataHost() const { return m_state->dataHost; }
bool AppModel::refreshing() const { return m_state->refreshing; }
std::shared_ptr<const WearOutcome> AppModel::wear() const { return m_state->wear; }
bool AppModel::wearLoading() const { return m_state->wearLoading; }
const RefreshReport& AppModel::lastRefresh() const { return m_state->lastRefresh; }
const Folders& AppModel::folders() const { return m_state->env.folders; }
Day AppModel::today() const { return m_state->today(); }

std::vector<TripDate> AppModel::duePassportReminders() const {
    std::vector<TripDate> due;
    const Day today = m_state->today();
    for (const TripDate& trip : m_state->tripDates) {
        const Destination* place = Destinations::shipped().find(trip.destination);
        if (!place || EntryBasics::of(*place).document != EntryBasics::Document::passport) continue;
        const PassportReminder reminder{m_state->passportWeeks, trip.depart};
        if (!trip.reminded && reminder.day() <= today && trip.depart >= today) due.push_back(trip);
    }
    return due;
}

// --- refresh ---

void AppModel::refresh() {
    Q_ASSERT(QThread::currentThread() == thread());
    State& s = *m_state;
    if (s.refreshing) return;
    s.refreshing = true;
    emit refreshingChanged();
    if (s.faresLoad != Load::loading) {
        s.faresLoad = Load::loading;
        emit faresLoadChanged();
    }
    if (s.advisoriesLoad != Load::loading) {
        s.advisoriesLoad = Load::loading;
        emit advisoriesLoadChanged();
    }
    RefreshInput input{s.homes, s.hosts, s.env.loader, s.advisoriesURL, s.cache, s.today(),
                       s.sampleRequested, true, {}};
    QPointer<AppModel> self(this);
    s.pool.start([self, input = std::move(input)] {
        auto outcome = std::make_shared<RefreshOutcome>(runRefresh(input));
        // Posted to the model's thread; dropped if the model is gone.
        if (self) {
            QMetaObject::invokeMethod(self, [self, outcome] {
                if (self) self->applyRefresh(outcome);
            }, Qt::QueuedConnection);
        }
    });
}

// Shows a set of books: the books, deals, calendar and history shown so far
// give way to them (the feed's status is the caller's).
void AppModel::showFares(FaresData& data) {
    State& s = *m_state;
    s.fareBooks.clear();
    s.calendarBooks.clear();
    s.historyBooks.clear();
    for (HomeBooks& home : data.homes) {
        if (home.fares) s.fareBooks[home.code] = std::move(*home.fares);
        if (home.calendar) s.calendarBooks[home.code] = std::move(*home.calendar);
        if (home.history) s.historyBooks[home.code] = std::move(*home.history);
    }
    auto main = s.fareBooks.find(s.homes.front());
    s.mainUpdated = main != s.fareBooks.end() ? main->second.updatedDay() : std::nullopt;
    s.deals = std::move(data.deals);
    s.calendar = std::move(data.calendar);
    s.history = std::move(data.history);
    const bool sampleChanged = s.sample != data.sample;
    s.sample = data.sample;
    emit fareBooksChanged();
    emit calendarBooksChanged();
    emit historyBooksChanged();
    emit dealsChanged();
    emit calendarChanged();
    emit historyChanged();
    if (sampleChanged) emit sampleModeChanged();
}

void AppModel::applyRefresh(std::shared_ptr<RefreshOutcome> outcome) {
    State& s = *m_state;
    const Day today = s.today();
    FaresData& fares = outcome->fares;

    std::vector<std::string> codes;
    for (const HomeBooks& home : fares.homes) codes.push_back(home.code);
    // The home airports changed while this ran: its books are of the old list.
    const bool current = !s.refreshAgain;
    if (current) {
        s.status = fares.status;
        s.faresLoad = loadOf(fares.status);
        showFares(fares);
        emit faresLoadChanged();
    }

    if (outcome->advisories) {
        s.advisories = std::move(*outcome->advisories);
        emit advisoriesChanged();
    }
    if (outcome->advisoriesFetched) {
        s.advisoriesUpdated = today;
        emit advisoriesUpdatedChanged();
    }
    s.advisoriesLoad = outcome->report.advisories;
    emit advisoriesLoadChanged();

    if (outcome->events) {
        s.events = std::make_shared<const EventCalendar>(std::move(*outcome->events));
        emit eventsChanged();
    }
    if (outcome->guide || outcome->events) {
        DisneyGuide guide = outcome->guide ? std::move(*outcome->guide) : DisneyGuide(*s.guide);
        guide.busyEvents = DisneyGuide::busySpans(*s.events);
        s.guide = std::make_shared<const DisneyGuide>(std::move(guide));
        emit guideChanged();
    }
    if (outcome->universal) {
        s.universal = std::make_shared<const UniversalGuide>(std::move(*outcome->universal));
        emit universalChanged();
    }
    if (outcome->answeringHost) s.dataHost = *outcome->answeringHost;
    s.lastRefresh = std::move(outcome->report);

    if (current) {
        checkWatches();
        writeWidgetSnapshot();
    }
    checkPassportReminders();

    s.refreshing = false;
    emit refreshingChanged();
    emit refreshFinished();
    if (s.refreshAgain) {
        s.refreshAgain = false;
        refresh();
    }
}

namespace {

// One copy of the main home airport's fares, shared by every planner job
// made from it.
std::shared_ptr<const FareBook> mainBook(const std::map<std::string, FareBook>& books,
                                         const std::string& home) {
    auto main = books.find(home);
    if (main == books.end()) return nullptr;
    return std::make_shared<const FareBook>(main->second);
}

}  // namespace

void AppModel::checkWatches() {
    State& s = *m_state;
    if (s.watches.empty()) return;
    const Day today = s.today();
    Alerts::TripPricer trips;
    if (s.env.planner.tripPrice) {
        // Theme-park watches are priced by the planner with the main airport's fares.
        PlannerJob base;
        base.park = Park::disney;
        base.home = s.homes.front();
        base.mainBook = mainBook(s.fareBooks, base.home);
        base.guide = s.guide;
        base.universal = s.universal;
        base.events = s.events;
        base.today = today;
        trips = [price = s.env.planner.tripPrice, base](const Watch::Disney& watch, Day day) {
            PlannerJob job = base;
            job.search = watch.search;
            job.today = day;
            return price(watch, job);
        };
    }
    const std::vector<WatchAlert> alerts = Alerts::checkAll(s.watches, s.calendar, trips, today);
    saveWatches();
    emit watchesChanged();
    if (!s.notificationsAllowed) return;
    for (const WatchAlert& alert : alerts) {
        auto watch = std::find_if(s.watches.begin(), s.watches.end(),
                                  [&](const Watch& w) { return w.id == alert.watchID; });
        if (watch == s.watches.end()) continue;
        const AlertNotification shown = AlertNotification::of(*watch, alert, today);
        // A notification that cannot be shown is not an error: the bell has it.
        s.notifier->post({shown.title, shown.body, shown.identifier, watch->id});
    }
}

void AppModel::checkPassportReminders() {
    State& s = *m_state;
    const Day today = s.today();
    bool changed = false;
    for (const TripDate& due : duePassportReminders()) {
        const Destination* place = Destinations::shipped().find(due.destination);
        const std::string title = TripDate::title(place ? place->name : due.destination);
        const std::string body = due.body();
        if (s.notificationsAllowed) {
            s.notifier->post({title, body, "passport-" + due.destination + "-" + due.depart.text(), std::nullopt});
        }
        for (TripDate& trip : s.tripDates) {
            if (trip == due) trip.reminded = today;
        }
        changed = true;
        emit passportReminderDue(due, QString::fromStdString(title), QString::fromStdString(body));
    }
    if (!changed) return;
    try {
        UserFiles::writeList(s.env.folders.store, UserFiles::tripDates, s.tripDates);
    } catch (const std::exception& e) {
        qWarning("Roamwise: %s", e.what());
    }
    emit tripDatesChanged();
}

void AppModel::saveWatches() {
    try {
        UserFiles::writeList(m_state->env.folders.store, UserFiles::watches, m_state->watches);
    } catch (const std::exception& e) {
        qWarning("Roamwise: %s", e.what());
    }
}

void AppModel::writeWidgetSnapshot() {
    State& s = *m_state;
    const Day today = s.today();
    WidgetSnapshot snapshot;
    snapshot.updated = s.mainUpdated.value_or(today);
    snapshot.homeAirports = s.homes;
    // The cheapest deal that is not stale; the cheapest of all when every one is.
    const Deal* best = nullptr;
    for (bool freshOnly : {true, false}) {
        for (const Deal& deal : s.deals) {
            if (freshOnly && deal.isStale(today)) continue;
            if (!best || deal.price < best->price) best = &deal;
        }
        if (best) break;
    }
    if (best) {
        snapshot.bestDeal = WidgetSnapshot::Item{best->city, best->origin.value_or(s.homes.front()),
                                                 best->price, std::nullopt, best->depart, best->returnDay};
    }
    for (const Watch& watch : s.watches) {
        if (watch.hasPassed(today)) continue;
        if (const auto* route = std::get_if<Watch::Route>(&watch.kind)) {
            const std::optional<RoundTrip> trip = s.calendar.cheapest(route->code, route->window, today, true);
            if (!trip) continue;
            snapshot.watched.push_back({route->place, trip->origin, trip->price, watch.target,
                                        trip->depart, trip->returnDay});
        } else if (const auto* park = std::get_if<Watch::Disney>(&watch.kind); park && watch.lastPrice) {
            snapshot.watched.push_back({watch.name(), park->search.origin, *watch.lastPrice, watch.target,
                                        park->window.first, park->window.last});
        }
    }
    try {
        saveFile(s.env.folders.store + "/" + QString::fromUtf8(WidgetSnapshot::fileName.data()),
                 encode(snapshot).dump(2) + "\n");
    } catch (const std::exception& e) {
        qWarning("Roamwise: %s", e.what());
    }
}

// --- actions ---

void AppModel::setHomeAirports(const std::vector<std::string>& codes) {
    Q_ASSERT(QThread::currentThread() == thread());
    State& s = *m_state;
    std::vector<std::string> clean = cleanCodes(codes);
    if (clean.empty() || clean == s.homes) return;
    s.homes = std::move(clean);
    QStringList stored;
    for (const std::string& code : s.homes) stored << QString::fromStdString(code);
    s.settings->setValue(kHomeAirportsKey, stored);
    emit homeAirportsChanged();

    // The books of the airports in the new list only, from the cache, until
    // the refresh brings the new files.
    FaresData cached = loadCachedFares(s.cache, s.homes, s.today(), s.sampleRequested);
    auto outcome = std::make_shared<RefreshOutcome>();
    outcome->fares = std::move(cached);
    outcome->report = s.lastRefresh;
    outcome->report.advisories = s.advisoriesLoad;
    const bool wasRefreshing = s.refreshing;
    {
        // Apply the cached books without the refresh bookkeeping.
        showFares(outcome->fares);
    }
    if (wasRefreshing) {
        s.refreshAgain = true;
    } else {
        refresh();
    }
}

void AppModel::setMaxLevel(int level) {
    Q_ASSERT(QThread::currentThread() == thread());
    if ((level != 1 && level != 2) || level == m_state->maxLevel) return;
    m_state->maxLevel = level;
    m_state->settings->setValue(kMaxLevelKey, level);
    emit maxLevelChanged();
}

void AppModel::setOnboarded(bool done) {
    Q_ASSERT(QThread::currentThread() == thread());
    if (done == m_state->onboarded) return;
    m_state->onboarded = done;
    m_state->settings->setValue(kOnboardedKey, done);
    emit onboardedChanged();
}

void AppModel::setSampleMode(bool on) {
    Q_ASSERT(QThread::currentThread() == thread());
    State& s = *m_state;
    s.sampleRequested = on;
    s.settings->setValue(kSampleModeKey, on);
    // Shown at once from what is at hand; the live feed's state stays as it was.
    FaresData data = loadCachedFares(s.cache, s.homes, s.today(), on);
    showFares(data);
    writeWidgetSnapshot();
}

void AppModel::setPassportWeeks(int weeks) {
    Q_ASSERT(QThread::currentThread() == thread());
    if (weeks < 1 || weeks > kMaxPassportWeeks || weeks == m_state->passportWeeks) return;
    m_state->passportWeeks = weeks;
    m_state->settings->setValue(kPassportWeeksKey, weeks);
    emit passportWeeksChanged();
    checkPassportReminders();
}

void AppModel::setNotificationsAllowed(bool allowed) {
    Q_ASSERT(QThread::currentThread() == thread());
    if (allowed == m_state->notificationsAllowed) return;
    m_state->notificationsAllowed = allowed;
    m_state->settings->setValue(kNotificationsKey, allowed);
    emit notificationsAllowedChanged();
}

void AppModel::setShowingAlerts(bool showing) {
    Q_ASSERT(QThread::currentThread() == thread());
    if (showing == m_state->showingAlerts) return;
    m_state->showingAlerts = showing;
    emit showingAlertsChanged();
}

void AppModel::addWatch(const Watch& watch) {
    Q_ASSERT(QThread::currentThread() == thread());
    auto& watches = m_state->watches;
    if (std::any_of(watches.begin(), watches.end(), [&](const Watch& w) { return w.id == watch.id; })) return;
    watches.push_back(watch);
    saveWatches();
    emit watchesChanged();
    writeWidgetSnapshot();
}

void AppModel::updateWatch(const Watch& watch) {
    Q_ASSERT(QThread::currentThread() == thread());
    for (Watch& w : m_state->watches) {
        if (w.id != watch.id) continue;
        w = watch;
        saveWatches();
        emit watchesChanged();
        writeWidgetSnapshot();
        return;
    }
}

void AppModel::removeWatch(const std::string& id) {
    Q_ASSERT(QThread::currentThread() == thread());
    auto& watches = m_state->watches;
    const auto removed = std::erase_if(watches, [&](const Watch& w) { return w.id == id; });
    if (removed == 0) return;
    saveWatches();
    emit watchesChanged();
    writeWidgetSnapshot();
}

void AppModel::setPacking(const std::vector<PackingItem>& items) {
    Q_ASSERT(QThread::currentThread() == thread());
    m_state->packing = items;
    try {
        UserFiles::writeList(m_state->env.folders.store, UserFiles::packing, m_state->packing);
    } catch (const std::exception& e) {
        qWarning("Roamwise: %s", e.what());
    }
    emit packingChanged();
}

void AppModel::setPacked(const std::string& itemID, bool packed) {
    std::vector<PackingItem> items = m_state->packing;
    for (PackingItem& item : items) {
        if (item.id == itemID) item.packed = packed;
    }
    if (items != m_state->packing) setPacking(items);
}

void AppModel::setTripDates(const std::vector<TripDate>& dates) {
    Q_ASSERT(QThread::currentThread() == thread());
    std::vector<TripDate> next = dates;
    // A trip keeps its reminder when only other trips changed; a new date
    // is a new trip and gets its own.
    for (TripDate& trip : next) {
        for (const TripDate& old : m_state->tripDates) {
            if (old.destination == trip.destination && old.depart == trip.depart && !trip.reminded) {
                trip.reminded = old.reminded;
            }
        }
    }
    m_state->tripDates = std::move(next);
    try {
        UserFiles::writeList(m_state->env.folders.store, UserFiles::tripDates, m_state->tripDates);
    } catch (const std::exception& e) {
        qWarning("Roamwise: %s", e.what());
    }
    emit tripDatesChanged();
    checkPassportReminders();
}

bool AppModel::recordView(const std::string& destinationCode) {
    Q_ASSERT(QThread::currentThread() == thread());
    State& s = *m_state;
    const bool watching = std::any_of(s.watches.begin(), s.watches.end(), [&](const Watch& w) {
        const auto* route = std::get_if<Watch::Route>(&w.kind);
        return route && route->code == destinationCode;
    });
    const bool offer = s.nudge.recordView(destinationCode, watching, s.nudged);
    if (offer) s.nudged = true;
    s.settings->setValue(kWatchNudgeKey, QString::fromStdString(encode(s.nudge).dump()));
    emit watchNudgeChanged();
    return offer;
}

void AppModel::setSearch(Park park, const TripSearch& search) {
    Q_ASSERT(QThread::currentThread() == thread());
    State& s = *m_state;
    if (s.searches[slot(park)] == search) return;
    s.searches[slot(park)] = search;
    s.settings->setValue(park == Park::disney ? kSearchKey : kUniversalSearchKey,
                         QString::fromStdString(encode(search).dump()));
    emit searchChanged(park);
}

void AppModel::findBestDates(Park park) {
    Q_ASSERT(QThread::currentThread() == thread());
    State& s = *m_state;
    const int i = slot(park);
    if (s.searching[i]) return;
    if (!s.env.planner.run) {
        // No planner in this build: the search ends at once without a result.
        qWarning("Roamwise: the trip planner is not part of this build");
        return;
    }
    PlannerJob job;
    job.park = park;
    job.search = s.searches[i];
    job.home = s.homes.front();
    job.mainBook = mainBook(s.fareBooks, job.home);
    job.guide = s.guide;
    job.universal = s.universal;
    job.events = s.events;
    job.today = s.today();
    s.searching[i] = true;
    emit searchingChanged(park);
    QPointer<AppModel> self(this);
    s.pool.start([self, run = s.env.planner.run, job = std::move(job), park, i] {
        std::shared_ptr<const TripSearchResult> result;
        try {
            result = run(job);
        } catch (const std::exception& e) {
            qWarning("Roamwise: the planner failed: %s", e.what());
        }
        if (!self) return;
        QMetaObject::invokeMethod(self, [self, result, park, i] {
            if (!self) return;
            self->m_state->results[i] = result;
            self->m_state->searching[i] = false;
            emit self->resultChanged(park);
            emit self->searchingChanged(park);
        }, Qt::QueuedConnection);
    });
}

void AppModel::requestWear(const WearPlace& place, Day first, Day last, const std::set<WearActivity>& activities,
                           bool laundry, bool modest, TempUnit unit) {
    Q_ASSERT(QThread::currentThread() == thread());
    State& s = *m_state;
    WearAsk ask{place, first, last, activities, laundry, modest, unit};
    WeatherInput input{s.env.weatherLoader, s.powerURL,  s.forecastURL,
                       s.cache,             QDateTime::currentSecsSinceEpoch(), s.today()};
    const std::uint64_t ticket = ++s.wearTicket;
    if (!s.wearLoading) {
        s.wearLoading = true;
        emit wearLoadingChanged();
    }
    QPointer<AppModel> self(this);
    s.pool.start([self, ask = std::move(ask), input = std::move(input), ticket] {
        auto outcome = std::make_shared<WearOutcome>();
        try {
            *outcome = wearGuide(ask, input);
        } catch (const std::exception& e) {
            outcome->ask = ask;
            outcome->problems.push_back(e.what());
        }
        for (const std::string& problem : outcome->problems) {
            qWarning("Roamwise: %s: %s", ask.place.name.c_str(), problem.c_str());
        }
        if (!self) return;
        QMetaObject::invokeMethod(self, [self, outcome = std::shared_ptr<const WearOutcome>(outcome), ticket] {
            if (!self || ticket != self->m_state->wearTicket) return;
            self->m_state->wear = outcome;
            self->m_state->wearLoading = false;
            emit self->wearChanged();
            emit self->wearLoadingChanged();
        }, Qt::QueuedConnection);
    });
}

bool AppModel::openLink(const std::string& url) {
    if (!Links::isSafeLink(url)) {
        qWarning("Roamwise: refused to open a link that is not a plain https address: %s", url.c_str());
        return false;
    }
    if (!m_state->env.linkOpener) return false;
    return m_state->env.linkOpener(url);
}

}  // namespace roamwise::app
