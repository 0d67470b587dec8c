// The wear guide's weather against a real local HTTPS server standing in for
// NASA POWER and MET Norway: what is asked (paths, user agent, conditional
// headers), what is cached under which name, when nothing is asked at all,
// and what stands in when the services fail.
#include <QFileInfo>
#include <QTemporaryDir>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "app/tests/test_host.h"
#include "app/weather.h"
#include "tripkit/wear_forecast.h"

namespace roamwise::app {
namespace {

using namespace tripkit;
using testing::TestHost;

constexpr const char* kDailyPath = "/api/temporal/daily/point";
constexpr const char* kUvPath = "/api/temporal/climatology/point";
constexpr const char* kForecastPath = "/weatherapi/locationforecast/2.0/complete";

// New York; no shipped place needs to be near for the fetches themselves.
constexpr double kLat = 40.7128;
constexpr double kLon = -74.0060;

const Day kToday = Day::fromCivil(2026, 1, 10);
const std::int64_t kNoon = kToday.count * 86400 + 12 * 3600;  // 2026-01-10 12:00 UTC

// Each month of 2010 holds four days: highs 20 + month, lows 10 + month, two
// of them wet (2 mm); the grid cell lies 200 m above the city.
std::string dailyText(int leaveOutMonth = 0) {
    json::Json parameter = json::Json::object();
    for (int m = 1; m <= 12; ++m) {
        if (m == leaveOutMonth) continue;
        for (int d = 1; d <= 4; ++d) {
            const std::string key = fmt::format("2010{:02d}{:02d}", m, d);
            parameter["T2M_MAX"][key] = 20.0 + m;
            parameter["T2M_MIN"][key] = 10.0 + m;
            parameter["PRECTOTCORR"][key] = d <= 2 ? 2.0 : 0.0;
            parameter["RH2M"][key] = 60.0;
            parameter["WS10M"][key] = 5.0;
        }
    }
    json::Json doc = {{"type", "Feature"},
                      {"geometry", {{"type", "Point"}, {"coordinates", {kLon, kLat, 300.0}}}},
                      {"properties", {{"parameter", parameter}}}};
    return doc.dump();
}

constexpr const char* kUvText = R"({"properties": {"parameter": {"ALLSKY_SFC_UV_INDEX_12": {
    "JAN": 4.04, "FEB": 4.04, "MAR": 4.04, "APR": 4.04, "MAY": 4.04, "JUN": 4.04,
    "JUL": 4.04, "AUG": 4.04, "SEP": 4.04, "OCT": 4.04, "NOV": 4.04, "DEC": 4.04}}}})";

// `steps` hourly steps from 10:00 UTC of kToday, 5 °C rising by one an hour,
// 0.5 mm in each hour.
std::string forecastText(int steps) {
    json::Json series = json::Json::array();
    for (int i = 0; i < steps; ++i) {
        json::Json details = {
            {"air_temperature", 5.0 + i}, {"relative_humidity", 70.0}, {"wind_speed", 3.0}};
        json::Json data = {{"instant", {{"details", details}}},
                           {"next_1_hours", {{"details", {{"precipitation_amount", 0.5}}}}}};
        series.push_back(
            {{"time", fmt::format("2026-01-10T{:02d}:00:00Z", 10 + i)}, {"data", data}});
    }
    return json::Json{{"type", "Feature"}, {"properties", {{"timeseries", series}}}}.dump();
}

std::string cached(const Cache& cache, const std::string& name) {
    auto bytes = cache.read(name);
    return bytes ? std::string(bytes->data(), bytes->size()) : std::string("<none>");
}

struct WeatherTest : ::testing::Test {
    QTemporaryDir folder;
    TestHost host;
    WeatherInput input;

    void SetUp() override {
        const auto none = [](const char*) -> const char* { return nullptr; };
        input = WeatherInput::standard(Cache{folder.path()}, none, kNoon, kToday);
        input.powerURL = input.forecastURL = host.url().substr(0, host.url().size() - 1);
        // The application's own options, with a quick give-up for a host that is down.
        HttpOptions options = weatherOptions();
        options.connectTimeoutSeconds = 2;
        options.totalTimeoutSeconds = 20;
        input.loader = conditionalLoader(options);
    }

    void serveTypical() {
        host.set(kDailyPath, {200, dailyText()});
        host.set(kUvPath, {200, kUvText});
    }
};

TEST_F(WeatherTest, TypicalMonthsAreFetchedReducedCachedAndThenServedFromTheCache) {
    serveTypical();
    const TypicalWeather first = typicalWeather(kLat, kLon, 100.0, input);
    ASSERT_EQ(first.origin, TypicalWeather::Origin::fetched) << first.problem;
    ASSERT_EQ(first.months.size(), 12u);
    // The place's elevation is passed on: 200 m of lapse rate, 1.3 °C warmer
    // than the cell; the UV climatology too.
    EXPECT_DOUBLE_EQ(first.months[0].high, 22.3);
    EXPECT_DOUBLE_EQ(first.months[5].uv, 4.0);

    // Both requests exactly as the service takes them, with the weather user agent.
    const std::vector<TestHost::Seen> seen = host.seen();
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0].target, WearClimate::dailyPath(kLat, kLon));
    EXPECT_EQ(seen[1].target, WearClimate::uvPath(kLat, kLon));
    for (const TestHost::Seen& s : seen) EXPECT_EQ(s.userAgent, WearClimate::userAgent);

    // Cached under the place's key, as the months themselves.
    const std::string name = TypicalWeather::cacheName(kLat, kLon);
    EXPECT_EQ(name, "typical-40.71_-74.01.json");
    EXPECT_EQ(input.cache.decoded<std::vector<WearMonth>>(name), first.months);

    // Within its lifetime the copy answers without a request, even with the service down.
    host.setAll(500);
    const qint64 written = QFileInfo(input.cache.path(name)).lastModified().toSecsSinceEpoch();
    input.nowSeconds = written + TypicalWeather::cacheLifetimeSeconds - 60;
    const TypicalWeather second = typicalWeather(kLat, kLon, 100.0, input);
    EXPECT_EQ(second.origin, TypicalWeather::Origin::cached);
    EXPECT_EQ(second.months, first.months);
    EXPECT_EQ(host.seen().size(), 2u);

    // Past it the service is asked again; when that fails the old copy stays in use.
    input.nowSeconds += 120;
    const TypicalWeather third = typicalWeather(kLat, kLon, 100.0, input);
    EXPECT_EQ(third.origin, TypicalWeather::Origin::kept);
    EXPECT_EQ(third.months, first.months);
    EXPECT_FALSE(third.problem.empty());
    EXPECT_EQ(host.seen().size(), 3u);
}

TEST_F(WeatherTest, FailedTypicalFetchesFallBackToTheShippedMonthsAndCacheNothing) {
    const WearPlace& shipped = WearClimate::File::shipped().places.front();
    const std::string name = TypicalWeather::cacheName(shipped.lat, shipped.lon);

    // An answer that decodes but lacks a month is a failure too: nothing of it is
    // cached. (A host that is down, here or below, fails the same way.)
    host.set(kDailyPath, {200, dailyText(6)});
    host.set(kUvPath, {200, kUvText});
    const TypicalWeather out = typicalWeather(shipped.lat, shipped.lon, shipped.elevation, input);
    EXPECT_EQ(out.origin, TypicalWeather::Origin::shipped);
    EXPECT_EQ(out.months, shipped.months);
    EXPECT_EQ(out.credit(), WearClimate::File::shipped().source.credit);
    EXPECT_FALSE(out.problem.empty());
    EXPECT_FALSE(QFileInfo::exists(input.cache.path(name)));

    // A point a few miles off a shipped place still gets one; the open ocean has none.
    host.setAll(500);
    const TypicalWeather near = typicalWeather(shipped.lat + 0.1, shipped.lon, std::nullopt, input);
    EXPECT_EQ(near.origin, TypicalWeather::Origin::shipped);
    EXPECT_EQ(typicalWeather(0.0, -140.0, std::nullopt, input).origin,
              TypicalWeather::Origin::none);
}

TEST_F(WeatherTest, ForecastHonoursExpiresAndLastModified) {
    const std::string body = forecastText(4);
    const std::string lastModified = "Sat, 10 Jan 2026 11:55:00 GMT";
    const std::map<std::string, std::string> headers = {
        {"Expires", "Sat, 10 Jan 2026 12:30:00 GMT"}, {"Last-Modified", lastModified}};
    host.set(kForecastPath, {200, body, {}, headers});

    const ForecastWeather first = forecastWeather(kLat, kLon, "UTC", input);
    ASSERT_EQ(first.origin, ForecastWeather::Origin::fetched) << first.problem;
    ASSERT_EQ(first.days.size(), 1u);
    EXPECT_EQ(first.days.at(kToday).high, 8);
    ASSERT_EQ(host.seen().size(), 1u);
    EXPECT_EQ(host.seen()[0].target, WearForecast::path(kLat, kLon));
    EXPECT_EQ(host.seen()[0].userAgent, WearClimate::userAgent);
    EXPECT_FALSE(host.seen()[0].ifModifiedSince);
    EXPECT_EQ(cached(input.cache, ForecastWeather::cacheName(kLat, kLon)), body);
    EXPECT_EQ(ForecastWeather::cacheName(kLat, kLon), "forecast-40.7128_-74.0060.json");

    // Before Expires: not asked at all.
    input.nowSeconds = kNoon + 29 * 60;
    const ForecastWeather second = forecastWeather(kLat, kLon, "UTC", input);
    EXPECT_EQ(second.origin, ForecastWeather::Origin::cached);
    EXPECT_EQ(host.seen().size(), 1u);

    // After it: asked with If-Modified-Since; a 304 keeps the cached answer
    // and its new Expires holds off the next request.
    host.set(kForecastPath, {304, "", {}, {{"Expires", "Sat, 10 Jan 2026 14:00:00 GMT"}}});
    input.nowSeconds = kNoon + 31 * 60;
    const ForecastWeather third = forecastWeather(kLat, kLon, "UTC", input);
    EXPECT_EQ(third.origin, ForecastWeather::Origin::notModified) << third.problem;
    EXPECT_EQ(third.days, first.days);
    ASSERT_EQ(host.seen().size(), 2u);
    EXPECT_EQ(host.seen()[1].ifModifiedSince, lastModified);
    input.nowSeconds = kNoon + 90 * 60;
    EXPECT_EQ(forecastWeather(kLat, kLon, "UTC", input).origin, ForecastWeather::Origin::cached);
    EXPECT_EQ(host.seen().size(), 2u);

    // A new answer that does not decode gives no days and leaves the copy as it was.
    host.set(kForecastPath, {200, "{\"properties\": {\"timeseries\": [{\"time\": 5}]}}", {}});
    input.nowSeconds = kNoon + 3 * 3600;
    const ForecastWeather broken = forecastWeather(kLat, kLon, "UTC", input);
    EXPECT_EQ(broken.origin, ForecastWeather::Origin::none);
    EXPECT_TRUE(broken.days.empty());
    EXPECT_EQ(host.seen().size(), 3u);
    EXPECT_EQ(host.seen()[2].ifModifiedSince, lastModified);
    EXPECT_EQ(cached(input.cache, ForecastWeather::cacheName(kLat, kLon)), body);
}

TEST_F(WeatherTest, FailedOrUnreadableForecastsGiveNoDays) {
    // A server error, and a good answer in a zone no one knows (an answer
    // that does not decode is the test above's).
    for (const auto& [status, timeZone] :
         std::vector<std::pair<int, std::string>>{{500, "UTC"}, {200, "Nowhere/Atlantis"}}) {
        host.set(kForecastPath, {status, forecastText(4)});
        const ForecastWeather out = forecastWeather(kLat, kLon, timeZone, input);
        EXPECT_EQ(out.origin, ForecastWeather::Origin::none) << timeZone;
        EXPECT_TRUE(out.days.empty()) << timeZone;
        EXPECT_FALSE(out.problem.empty()) << timeZone;
    }
    // Three steps make no forecast day, though the answer is good and kept.
    host.set(kForecastPath, {200, forecastText(3)});
    const ForecastWeather few = forecastWeather(kLat, kLon, "UTC", input);
    EXPECT_EQ(few.origin, ForecastWeather::Origin::fetched);
    EXPECT_TRUE(few.days.empty());
}

TEST_F(WeatherTest, GuideUsesForecastDaysWithinReachAndCreditsEachSource) {
    serveTypical();
    host.set(kForecastPath, {200, forecastText(4)});
    // Orlando: its morning holds the four hours of the forecast. The host answers
    // any place alike.
    WearAsk ask;
    ask.place = WearClimate::File::shipped().places.front();
    ask.first = kToday;
    ask.last = kToday + 3;

    const WearOutcome near = wearGuide(ask, input);
    EXPECT_EQ(near.typical, TypicalWeather::Origin::fetched);
    EXPECT_EQ(near.forecast, ForecastWeather::Origin::fetched);
    ASSERT_EQ(near.guide.days.size(), 4u);
    EXPECT_EQ(near.guide.days[0].day.source, WearDay::Source::forecast);
    EXPECT_EQ(near.guide.days[1].day.source, WearDay::Source::typical);
    EXPECT_EQ(near.credits, (std::vector<std::string>{std::string(WearClimate::credit),
                                                      std::string(WearForecast::credit)}));
}

}  // namespace
}  // namespace roamwise::app
