// The application's files: the user's own lists in the data folder and the
// last good copy of every fetched file in the cache folder. Every write goes
// through QSaveFile, so a crash or a full disk never leaves half a file.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <QString>

#include "tripkit/days.h"
#include "tripkit/file_reader.h"
#include "tripkit/json.h"

namespace roamwise::app {

// Writes `bytes` to `path` through a temporary file renamed over it; throws
// std::runtime_error naming the path when any step fails (the old file is
// then untouched). Creates the folder when missing.
void saveFile(const QString& path, std::string_view bytes);

// Called between writing the temporary file and renaming it; tests stop the
// process there to show that the old file survives.
extern std::function<void()> beforeCommitForTesting;

struct UserFiles {
    static constexpr const char* watches = "watches.json";
    static constexpr const char* packing = "packing.json";
    static constexpr const char* tripDates = "trip-dates.json";
    static constexpr const char* asideSuffix = ".unreadable-";

    // A list read at start: missing is empty; a file that cannot be read or
    // decoded is moved aside to NAME.unreadable-<day> (never overwritten by
    // the next save) and the list is empty.
    template <class T>
    static std::vector<T> readList(const QString& folder, const char* name, tripkit::Day today,
                                   std::string* problem = nullptr) {
        const QString path = folder + "/" + name;
        try {
            std::optional<simdjson::padded_string> bytes =
                tripkit::FileReader::read(path.toStdString());
            if (!bytes) return {};
            return tripkit::json::decodePadded<std::vector<T>>(std::move(*bytes), name);
        } catch (const std::exception& e) {
            const QString aside = setAside(path, today);
            if (problem) *problem = std::string(e.what()) + "; kept as " + aside.toStdString();
            return {};
        }
    }

    template <class T>
    static void writeList(const QString& folder, const char* name, const std::vector<T>& items) {
        saveFile(folder + "/" + name, tripkit::json::array(items).dump(2) + "\n");
    }

    // Renames an unreadable file out of the way: NAME.unreadable-<day>, with
    // "-2", "-3", ... when that is taken. Returns the new path.
    static QString setAside(const QString& path, tripkit::Day today);
};

// One cached file as the status command lists it.
struct CacheEntry {
    std::string name;
    long long bytes = 0;
    std::string modified;  // ISO 8601, UTC
};

// The cache folder: the last good copy of each fetched file, byte for byte,
// under the flat names "fares-JFK.json", "calendar-JFK.json",
// "history-JFK.json", "advisories.json" and the guides' names.
struct Cache {
    QString folder;

    static std::string faresName(std::string_view code) { return "fares-" + std::string(code) + ".json"; }
    static std::string calendarName(std::string_view code) { return "calendar-" + std::string(code) + ".json"; }
    static std::string historyName(std::string_view code) { return "history-" + std::string(code) + ".json"; }
    static constexpr const char* advisoriesName = "advisories.json";
    static constexpr const char* disneyGuideName = "disney-guide.json";
    static constexpr const char* disneyEventsName = "disney-events.json";
    static constexpr const char* universalGuideName = "universal-guide.json";

    QString path(std::string_view name) const;
    std::optional<simdjson::padded_string> read(std::string_view name) const;
    // Decodes the cached copy; nothing when it is missing or does not decode
    // (treated as missing).
    template <class T>
    std::optional<T> decoded(std::string_view name) const {
        try {
            std::optional<simdjson::padded_string> bytes = read(name);
            if (!bytes) return std::nullopt;
            return tripkit::json::decodePadded<T>(std::move(*bytes), std::string(name));
        } catch (const std::exception&) {
            return std::nullopt;
        }
    }
    void write(std::string_view name, std::string_view bytes) const;
    std::vector<CacheEntry> entries() const;  // by name
};

}  // namespace roamwise::app
