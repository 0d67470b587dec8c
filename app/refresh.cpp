#include "app/refresh.h"

#include <exception>

#include "feedgen/feed.h"
#include "tripkit/json.h"

namespace roamwise::app {

using namespace tripkit;

namespace {

std::optional<Day> savedDay(const HomeBooks& main) {
    return main.fares ? main.fares->updatedDay() : std::nullopt;
}

// Decides the status of the live feed and puts the sample in when the live
// feed cannot be had or it was asked for.
void settle(FaresData& data, bool mainMissing, bool mainFailed, Day today, bool sampleRequested) {
    mergeBooks(data, today);
    const std::optional<Day> saved = data.homes.empty() ? std::nullopt : savedDay(data.homes.front());
    data.status = FeedStatus::decide(mainMissing, mainFailed, saved,
                                     static_cast<int>(data.deals.size()), today);
    const bool liveMain = !data.homes.empty() && data.homes.front().fares.has_value();
    if (sampleRequested || !liveMain) {
        std::vector<std::string> codes;
        for (const HomeBooks& home : data.homes) codes.push_back(home.code);
        std::vector<HomeBooks> sample = sampleBooks(codes, today);
        if (!sample.empty()) {
            data.homes = std::move(sample);
            data.sample = true;
            mergeBooks(data, today);
        }
    }
}

// Base address of `hosts` that `url` lies under.
std::optional<std::string> baseOf(const FeedHosts& hosts, const std::string& url) {
    for (const std::string& base : hosts.hosts) {
        if (url.starts_with(base)) return base;
    }
    return std::nullopt;
}

}  // namespace

std::vector<HomeBooks> sampleBooks(const std::vector<std::string>& homes, Day today) {
    std::vector<HomeBooks> out;
    feedgen::Options options;
    options.today = today;
    for (const std::string& code : homes) {
        options.airports = {code};
        try {
            HomeBooks books{code, {}, {}, {}};
            books.fares = json::decodeDocument<FareBook>(feedgen::fareFile(options, code),
                                                         FeedHosts::faresPath(code));
            books.calendar = json::decodeDocument<CalendarBook>(feedgen::calendarFile(options, code),
                                                                FeedHosts::calendarPath(code));
            books.history = json::decodeDocument<HistoryBook>(feedgen::historyFile(options, code),
                                                              FeedHosts::historyPath(code));
            out.push_back(std::move(books));
        } catch (const std::exception&) {
            // An airport the generator has no data for has no sample.
        }
    }
    return out;
}

void mergeBooks(FaresData& data, Day today) {
    std::vector<FareBook> fares;
    std::vector<CalendarBook> calendars;
    std::vector<HistoryBook> histories;
    for (const HomeBooks& home : data.homes) {
        if (home.fares) fares.push_back(*home.fares);
        if (home.calendar) calendars.push_back(*home.calendar);
        if (home.history) histories.push_back(*home.history);
    }
    data.deals = Fares::deals(fares, today);
    data.calendar = FareCalendar(calendars);
    data.history = FareHistory(histories, today);
}

FaresData loadCachedFares(const Cache& cache, const std::vector<std::string>& homes, Day today,
                          bool sampleRequested) {
    FaresData data;
    for (const std::string& code : homes) {
        data.homes.push_back({code, cache.decoded<FareBook>(Cache::faresName(code)),
                              cache.decoded<CalendarBook>(Cache::calendarName(code)),
                              cache.decoded<HistoryBook>(Cache::historyName(code))});
    }
    // Nothing fetched yet: what would show if the host could not be reached.
    settle(data, false, true, today, sampleRequested);
    return data;
}

std::optional<std::map<std::string, Advisory>> cachedAdvisories(const Cache& cache) {
    try {
        std::optional<simdjson::padded_string> bytes = cache.read(Cache::advisoriesName);
        if (!bytes) return std::nullopt;
        return Advisories::parse(std::string_view(bytes->data(), bytes->size()), Cache::advisoriesName);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

RefreshOutcome runRefresh(const RefreshInput& input) {
    RefreshOutcome outcome;
    auto say = [&](const std::string& line) {
        if (input.progress) input.progress(line);
    };
    std::optional<std::string> answered;
    const HttpLoader recording = [&](const std::string& url) {
        HttpResponse response = input.loader(url);
        if (response.status == 200) answered = url;
        return response;
    };

    // One file from the data host: decoded, and cached only once it decoded.
    // Returns the value in use afterwards (fetched, else the cached copy).
    struct Fetched {
        bool missing = false;
        bool failed = false;
    };
    auto fetchFile = [&]<class T>(const std::string& path, const std::string& name,
                                  std::optional<T>& value, auto&& decodeBytes) -> Fetched {
        FileReport file{name, FileReport::Status::failed, std::nullopt, {}};
        Fetched result;
        answered.reset();
        try {
            std::optional<std::string> bytes = input.hosts.fetch(path, recording);
            if (!bytes) {
                result.missing = true;
                file.error = "not on any host";
            } else {
                file.host = answered ? baseOf(input.hosts, *answered) : std::nullopt;
                value = decodeBytes(*bytes, path);
                file.status = FileReport::Status::fetched;
                try {
                    input.cache.write(name, *bytes);
                } catch (const std::exception& e) {
                    file.error = e.what();  // in use now, just not kept for next time
                }
            }
        } catch (const std::exception& e) {
            result.failed = true;
            file.error = e.what();
        }
        if (file.status != FileReport::Status::fetched) {
            value = input.cache.decoded<T>(name);
            file.status = result.missing ? FileReport::Status::missing
                          : value        ? FileReport::Status::kept
                                         : FileReport::Status::failed;
        }
        say(name + ": " + std::string(caseName(file.status)) +
            (file.host ? " from " + *file.host : std::string()) +
            (file.error.empty() ? std::string() : " (" + file.error + ")"));
        outcome.report.files.push_back(std::move(file));
        return result;
    };
    auto decodeAs = []<class T>(std::optional<T>&) {
        return [](const std::string& bytes, const std::string& path) {
            return json::decodeDocument<T>(bytes, path);
        };
    };

    FaresData& data = outcome.fares;
    bool mainMissing = false;
    bool mainFailed = false;
    for (std::size_t i = 0; i < input.homes.size(); ++i) {
        const std::string& code = input.homes[i];
        HomeBooks books{code, {}, {}, {}};
        const Fetched fares =
            fetchFile(FeedHosts::faresPath(code), Cache::faresName(code), books.fares, decodeAs(books.fares));
        fetchFile(FeedHosts::calendarPath(code), Cache::calendarName(code), books.calendar,
                  decodeAs(books.calendar));
        fetchFile(FeedHosts::historyPath(code), Cache::historyName(code), books.history,
                  decodeAs(books.history));
        if (i == 0) {
            mainMissing = fares.missing;
            mainFailed = fares.failed;
        }
        data.homes.push_back(std::move(books));
    }
    settle(data, mainMissing, mainFailed, input.today, input.sampleRequested);
    outcome.report.fares = loadOf(data.status);
    outcome.report.message = data.status.message();

    // The advisories service is one address of its own, not the data host.
    {
        FileReport file{Cache::advisoriesName, FileReport::Status::failed, std::nullopt, {}};
        try {
            HttpResponse response = input.loader(input.advisoriesURL);
            if (response.status != 200) {
                throw FetchError(FetchError::Kind::badServerResponse, input.advisoriesURL,
                                 "status " + std::to_string(response.status));
            }
            outcome.advisories = Advisories::parse(response.body, Cache::advisoriesName);
            outcome.advisoriesFetched = true;
            file.status = FileReport::Status::fetched;
            file.host = input.advisoriesURL;
            try {
                input.cache.write(Cache::advisoriesName, response.body);
            } catch (const std::exception& e) {
                file.error = e.what();
            }
        } catch (const std::exception& e) {
            file.error = e.what();
            outcome.advisories = cachedAdvisories(input.cache);
            file.status = outcome.advisories ? FileReport::Status::kept : FileReport::Status::failed;
        }
        outcome.report.advisories = outcome.advisoriesFetched ? Load::loaded
                                    : outcome.advisories      ? Load::offline
                                                              : Load::failed;
        say(file.name + ": " + std::string(caseName(file.status)) +
            (file.error.empty() ? std::string() : " (" + file.error + ")"));
        outcome.report.files.push_back(std::move(file));
    }

    if (input.guides) {
        // Only a fetched guide replaces the loaded one; the cached copies were
        // read at start.
        auto fetchGuide = [&]<class T>(const char* name, std::optional<T>& value) {
            std::optional<T> got;
            fetchFile(name, name, got, decodeAs(got));
            if (outcome.report.files.back().status == FileReport::Status::fetched) value = std::move(got);
        };
        fetchGuide(Cache::disneyEventsName, outcome.events);
        fetchGuide(Cache::disneyGuideName, outcome.guide);
        fetchGuide(Cache::universalGuideName, outcome.universal);
    }
    for (const FileReport& file : outcome.report.files) {
        if (file.host && file.name != Cache::advisoriesName) outcome.answeringHost = file.host;
    }
    return outcome;
}

Load loadOf(const FeedStatus& status) {
    switch (status.kind) {
        case FeedStatus::Kind::loaded: return Load::loaded;
        case FeedStatus::Kind::offline: return Load::offline;
        case FeedStatus::Kind::unavailable: return Load::unavailable;
        case FeedStatus::Kind::failed: return Load::failed;
    }
    return Load::failed;
}

std::string_view caseName(Load load) {
    switch (load) {
        case Load::idle: return "idle";
        case Load::loading: return "loading";
        case Load::loaded: return "loaded";
        case Load::offline: return "offline";
        case Load::failed: return "failed";
        case Load::unavailable: return "unavailable";
    }
    return "idle";
}

std::string_view caseName(FileReport::Status status) {
    switch (status) {
        case FileReport::Status::fetched: return "fetched";
        case FileReport::Status::kept: return "kept";
        case FileReport::Status::missing: return "missing";
        case FileReport::Status::failed: return "failed";
    }
    return "failed";
}

}  // namespace roamwise::app
