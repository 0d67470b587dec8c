// The refresh against real local HTTPS hosts with faults injected: which
// host answers, what the feed status becomes, and that the cache keeps its
// last good copy byte for byte whatever arrives.
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "app/refresh.h"
#include "app/tests/test_host.h"
#include "feedgen/feed.h"
#include "tripkit/config.h"

namespace roamwise::app {
namespace {

using namespace tripkit;
using testing::TestHost;

const Day kToday = Day::fromCivil(2026, 11, 20);

feedgen::Files nightFiles(Day day) {
    feedgen::Options options;
    options.today = day;
    options.airports = {"JFK"};
    return feedgen::generate(options);
}

void serve(TestHost& host, const feedgen::Files& files) {
    for (const auto& [path, bytes] : files) host.set("/roamwise-data/" + path, {200, bytes});
}

std::string cached(const Cache& cache, const std::string& name) {
    auto bytes = cache.read(name);
    return bytes ? std::string(bytes->data(), bytes->size()) : std::string("<none>");
}

// Each named cache entry is byte for byte the night's file it came from.
void expectCopies(const Cache& cache, const feedgen::Files& night, std::vector<std::string> names) {
    static const std::map<std::string, std::string> from = {
        {"fares-JFK.json", "flights/JFK.json"},
        {"calendar-JFK.json", "calendars/JFK.json"},
        {"history-JFK.json", "history/JFK.json"},
        {"advisories.json", "advisories.json"}};
    for (const std::string& name : names)
        EXPECT_TRUE(cached(cache, name) == night.at(from.at(name))) << name;
}

const FileReport& fileNamed(const RefreshReport& report, const std::string& name) {
    for (const FileReport& file : report.files)
        if (file.name == name) return file;
    throw std::runtime_error("no report for " + name);
}

struct RefreshTest : ::testing::Test {
    QTemporaryDir folder;
    TestHost first;   // the configured host (RWDataURL)
    TestHost second;  // stands in for the built-in host
    Cache cache{folder.path()};

    RefreshInput input(std::optional<std::string> configured = std::nullopt) {
        RefreshInput in;
        in.homes = {"JFK"};
        in.hosts = FeedHosts::make(configured.value_or(first.url() + "roamwise-data/"),
                                   std::string(Config::defaultDataURL));
        in.loader = testing::testLoader(second.url());
        in.advisoriesURL = first.url() + "api/TravelAdvisories";
        in.cache = cache;
        in.today = kToday;
        in.guides = false;
        return in;
    }
};

TEST_F(RefreshTest, SecondHostServesWhenTheFirstFailsAndOnlyDecodedBytesAreCached) {
    const feedgen::Files files = nightFiles(kToday);
    first.setAll(500);
    serve(second, files);
    second.set("/api/TravelAdvisories", {200, files.at("advisories.json")});

    RefreshInput in = input();
    in.advisoriesURL = second.url() + "api/TravelAdvisories";
    const RefreshOutcome outcome = runRefresh(in);

    EXPECT_EQ(outcome.report.fares, Load::loaded);
    EXPECT_FALSE(outcome.fares.sample);
    const FileReport& fares = fileNamed(outcome.report, "fares-JFK.json");
    EXPECT_EQ(fares.status, FileReport::Status::fetched);
    EXPECT_EQ(fares.host, std::string(Config::defaultDataURL));
    expectCopies(cache, files,
                 {"fares-JFK.json", "calendar-JFK.json", "history-JFK.json", "advisories.json"});
    EXPECT_EQ(outcome.report.advisories, Load::loaded);
    // The first host was asked for each file before the second.
    EXPECT_EQ(first.seen().front().path, "/roamwise-data/flights/JFK.json");
}

TEST_F(RefreshTest, NotFoundEverywhereIsUnavailableAndShowsTheSampleWithTheReason) {
    // Both hosts answer 404 for every path (the default answer).
    const RefreshOutcome outcome = runRefresh(input());
    EXPECT_EQ(outcome.report.fares, Load::unavailable);
    EXPECT_EQ(outcome.report.message, std::string(FeedStatus::unavailableText));
    EXPECT_EQ(fileNamed(outcome.report, "fares-JFK.json").status, FileReport::Status::missing);
    EXPECT_EQ(outcome.report.advisories, Load::failed);
    // Nothing live to show: today's sample stands in, flagged as such.
    EXPECT_TRUE(outcome.fares.sample);
    EXPECT_FALSE(outcome.fares.deals.empty());
    EXPECT_EQ(cache.entries().size(), 0u);
}

TEST_F(RefreshTest, TimeOutThenNotFoundFailsAndKeepsTheLastCopies) {
    // A saved calendar of an earlier night, but no saved fares.
    const feedgen::Files yesterday = nightFiles(kToday - 1);
    cache.write("calendar-JFK.json", yesterday.at("calendars/JFK.json"));
    first.set("/roamwise-data/flights/JFK.json", {200, "{}", std::chrono::milliseconds(2500)});
    first.set("/roamwise-data/calendars/JFK.json", {200, "{}", std::chrono::milliseconds(2500)});

    RefreshInput in = input();
    in.loader = testing::testLoader(second.url(), 1);
    const RefreshOutcome outcome = runRefresh(in);
    EXPECT_EQ(outcome.report.fares, Load::failed);
    EXPECT_EQ(outcome.report.message, std::string(FeedStatus::failedText));
    const FileReport& fares = fileNamed(outcome.report, "fares-JFK.json");
    EXPECT_EQ(fares.status, FileReport::Status::failed);
    EXPECT_NE(fares.error.find("timed out"), std::string::npos)
        << fares.error;  // the time-out, not the 404
    EXPECT_EQ(fileNamed(outcome.report, "calendar-JFK.json").status, FileReport::Status::kept);
    expectCopies(cache, yesterday, {"calendar-JFK.json"});
    EXPECT_EQ(cached(cache, "fares-JFK.json"), "<none>");
}

TEST_F(RefreshTest, TruncatedAndUndecodableBodiesLeaveTheCacheByteForByte) {
    const feedgen::Files yesterday = nightFiles(kToday - 1);
    const feedgen::Files today = nightFiles(kToday);
    cache.write("fares-JFK.json", yesterday.at("flights/JFK.json"));
    cache.write("history-JFK.json", yesterday.at("history/JFK.json"));
    cache.write("advisories.json", yesterday.at("advisories.json"));
    const std::string& fresh = today.at("flights/JFK.json");
    first.set("/roamwise-data/flights/JFK.json", {200, fresh.substr(0, fresh.size() / 2)});
    first.set("/roamwise-data/history/JFK.json", {200, "<html>maintenance</html>"});
    first.set("/roamwise-data/calendars/JFK.json", {200, R"({"origin": 5})", {}});
    first.set("/api/TravelAdvisories", {200, "[{\"Title\": "});

    const RefreshOutcome outcome = runRefresh(input());
    expectCopies(cache, yesterday, {"fares-JFK.json", "history-JFK.json", "advisories.json"});
    EXPECT_EQ(cached(cache, "calendar-JFK.json"), "<none>");
    EXPECT_EQ(fileNamed(outcome.report, "fares-JFK.json").status, FileReport::Status::kept);
    EXPECT_EQ(fileNamed(outcome.report, "calendar-JFK.json").status, FileReport::Status::failed);
    // A broken body counts as a failed download: yesterday's copy is shown, offline.
    EXPECT_EQ(outcome.report.fares, Load::offline);
    EXPECT_EQ(outcome.fares.status, FeedStatus::offline(kToday - 1));
    EXPECT_EQ(outcome.report.advisories, Load::offline);
    EXPECT_FALSE(outcome.fares.sample);
}

TEST_F(RefreshTest, OfflineWithYesterdaysCopyShowsItWithTheOfflineText) {
    const feedgen::Files yesterday = nightFiles(kToday - 1);
    cache.write("fares-JFK.json", yesterday.at("flights/JFK.json"));
    const std::string down = "https://127.0.0.1:" + std::to_string(testing::closedPort()) + "/";
    RefreshInput in = input(down + "roamwise-data/");
    in.loader = testing::testLoader(down);
    in.advisoriesURL = down + "api/TravelAdvisories";

    const RefreshOutcome outcome = runRefresh(in);
    EXPECT_EQ(outcome.report.fares, Load::offline);
    EXPECT_EQ(outcome.report.message,
              "Offline: showing fares saved " + (kToday - 1).text() + ". Pull to refresh.");
    EXPECT_FALSE(outcome.fares.sample);
    expectCopies(cache, yesterday, {"fares-JFK.json"});

    // The same cache read without any fetch says the same.
    const FaresData start = loadCachedFares(cache, {"JFK"}, kToday, false);
    EXPECT_EQ(start.status, FeedStatus::offline(kToday - 1));
    EXPECT_EQ(start.deals, outcome.fares.deals);
}

TEST_F(RefreshTest, AHostTheProcessDoesNotTrustIsRefused) {
    serve(first, nightFiles(kToday));
    const std::string bundle = std::getenv("CURL_CA_BUNDLE");
    ::unsetenv("CURL_CA_BUNDLE");  // only the system store: the test authority is unknown
    const RefreshOutcome outcome = runRefresh(input());
    ::setenv("CURL_CA_BUNDLE", bundle.c_str(), 1);
    EXPECT_EQ(outcome.report.fares, Load::failed);
    EXPECT_EQ(fileNamed(outcome.report, "fares-JFK.json").status, FileReport::Status::failed);
    EXPECT_EQ(cache.entries().size(), 0u);
}

}  // namespace
}  // namespace roamwise::app
