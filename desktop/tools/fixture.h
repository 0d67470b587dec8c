// A model on throw-away folders for the screenshots, the tests and the
// benchmark: a cache holding one night's files made by feedgen, a settings
// file, a fixed today and a loader that never leaves the process.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QString>

#include "app/app_model.h"
#include "app/notifier.h"
#include "tripkit/days.h"

namespace roamwise::desktop::fixture {

// Writes the fare, calendar and history files of `airports` for the night
// of `night`, and the advisories, under their cache names in `cacheFolder`.
void writeNight(const QString& cacheFolder, const std::vector<std::string>& airports, tripkit::Day night);

// Settings as a returning user has them: onboarded, with these home airports.
void writeSettings(const QString& settingsFile, const std::vector<std::string>& homes, bool onboarded = true);

// A loader that answers every request with a transport error at once, as a
// machine without a network does.
tripkit::HttpLoader offlineLoader();

// Keeps the notifications it is given instead of showing them, so that no
// session bus is needed.
class KeptNotifier : public app::Notifier {
public:
    std::vector<app::Notification> posted;
    bool available() const override { return true; }
    bool post(const app::Notification& notification) override {
        posted.push_back(notification);
        return true;
    }
    void setActivated(Activated) override {}
};

// The environment of a model over `folder` (cache/, data/, settings.ini).
app::AppEnvironment environment(const QString& folder, tripkit::Day today, tripkit::HttpLoader loader);

}  // namespace roamwise::desktop::fixture
