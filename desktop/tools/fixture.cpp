#include "desktop/tools/fixture.h"

#include <QDir>
#include <QSettings>
#include <QStringList>

#include "app/storage.h"
#include "feedgen/feed.h"

namespace roamwise::desktop::fixture {

void writeNight(const QString& cacheFolder, const std::vector<std::string>& airports, tripkit::Day night) {
    QDir().mkpath(cacheFolder);
    feedgen::Options options;
    options.today = night;
    options.airports = airports;
    const app::Cache cache{cacheFolder};
    for (const std::string& code : airports) {
        cache.write(app::Cache::faresName(code), feedgen::fareFile(options, code));
        cache.write(app::Cache::calendarName(code), feedgen::calendarFile(options, code));
        cache.write(app::Cache::historyName(code), feedgen::historyFile(options, code));
    }
    cache.write(app::Cache::advisoriesName, feedgen::advisoriesFile(options));
}

void writeSettings(const QString& settingsFile, const std::vector<std::string>& homes, bool onboarded) {
    QSettings settings(settingsFile, QSettings::IniFormat);
    QStringList codes;
    for (const std::string& code : homes) codes << QString::fromStdString(code);
    settings.setValue("homeAirports", codes);
    settings.setValue("onboarded", onboarded);
    settings.sync();
}

tripkit::HttpLoader offlineLoader() {
    return [](const std::string& url) -> tripkit::HttpResponse {
        throw tripkit::FetchError(tripkit::FetchError::Kind::transport, url, "no network in this run");
    };
}

app::AppEnvironment environment(const QString& folder, tripkit::Day today, tripkit::HttpLoader loader) {
    app::AppEnvironment env;
    env.folders = {folder + "/cache", folder + "/data"};
    env.settingsFile = folder + "/settings.ini";
    env.loader = std::move(loader);
    env.today = [today] { return today; };
    // Nothing of the user's environment: the built-in hosts, which the loader never reaches.
    env.configuration = [](const char*) -> const char* { return nullptr; };
    env.notifier = std::make_shared<KeptNotifier>();
    return env;
}

}  // namespace roamwise::desktop::fixture
