#include "feedgen/feed.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <set>

#include "tripkit/advisories.h"
#include "tripkit/calendars.h"
#include "tripkit/destinations.h"
#include "tripkit/fares.h"
#include "tripkit/holidays.h"
#include "tripkit/places.h"
#include "tripkit/price_history.h"

namespace roamwise::feedgen {
namespace {

using namespace tripkit;

Options night(Day today, std::vector<std::string> airports = {"JFK", "EWR", "ORD"},
              std::uint64_t seed = kDefaultSeed) {
    Options o;
    o.today = today;
    o.seed = seed;
    o.airports = std::move(airports);
    return o;
}

const Day kToday = Day::fromCivil(2026, 11, 20);

template <class T>
T decodeFile(const Files& files, const std::string& path) {
    return json::decodeDocument<T>(files.at(path), path);
}

double mean(const std::vector<double>& v) {
    return std::accumulate(v.begin(), v.end(), 0.0) /
           static_cast<double>(std::max<size_t>(v.size(), 1));
}

TEST(Feed, SameInputsGiveTheSameBytesAnotherSeedOtherPricesAndTheAppDecodesThem) {
    const Files files = generate(night(kToday));
    EXPECT_EQ(files, generate(night(kToday)));
    ASSERT_EQ(files.size(), 10u);  // three airports' three files and the advisories

    // One airport's file made alone is the same as in the whole night: the
    // app asks for its homes only, the data host has many more.
    for (const auto& [path, code] :
         std::map<std::string, std::string>{{"flights/EWR.json", "EWR"},
                                            {"calendars/ORD.json", "ORD"},
                                            {"history/JFK.json", "JFK"},
                                            {"advisories.json", "JFK"}}) {
        EXPECT_EQ(generateFile(night(kToday, {code}), path), files.at(path)) << path;
    }
    EXPECT_EQ(generateFile(night(kToday), "flights/LAX.json"), std::nullopt);  // not asked for
    EXPECT_EQ(generateFile(night(kToday), "guides/JFK.json"), std::nullopt);
    EXPECT_THROW(generate(night(kToday, {"XYZ"})), std::invalid_argument);

    const Files other = generate(night(kToday, {"JFK", "EWR", "ORD"}, 7));
    for (const char* path : {"flights/JFK.json", "calendars/JFK.json", "history/JFK.json"}) {
        EXPECT_NE(other.at(path), files.at(path)) << path;
    }

    // Every file decodes with the app's own decoders.
    const std::size_t catalog = Destinations::shipped().list.size();
    for (const char* code : {"JFK", "EWR", "ORD"}) {
        const std::string c = code;
        const auto fares = decodeFile<FareBook>(files, "flights/" + c + ".json");
        const auto calendar = decodeFile<CalendarBook>(files, "calendars/" + c + ".json");
        const auto history = decodeFile<HistoryBook>(files, "history/" + c + ".json");
        EXPECT_GT(std::min(fares.toOrlando.size(), fares.fromOrlando.size()), 250u);
        // A deal to nearly every place; the places too near (JFK from EWR) and
        // a few without a fare tonight are left out.
        EXPECT_GT(fares.deals.size(), catalog * 8 / 10);
        EXPECT_LT(fares.deals.size(), catalog);
        EXPECT_GT(calendar.routes.size(), catalog * 9 / 10);
        EXPECT_EQ(history.from, kToday - 179);
        for (const auto& [to, series] : history.routes) EXPECT_EQ(series.size(), 180u) << to;
    }
    const auto advisories = Advisories::parse(files.at("advisories.json"));
    std::set<std::string> wanted;
    for (const Destination& d : Destinations::shipped().list) {
        if (d.advisory) wanted.insert(*d.advisory);
    }
    EXPECT_EQ(advisories.size(), wanted.size());
    std::set<int> levels;
    for (const auto& [code, a] : advisories) {
        EXPECT_TRUE(wanted.count(code)) << code;
        EXPECT_NE(a.title.find("sample data"), std::string::npos) << a.title;
        levels.insert(a.level);
    }
    EXPECT_EQ(advisories.at("FR").country, "France");  // not Guadeloupe, met first
    EXPECT_GE(levels.size(), 3u);
}

// Loose checks of the shape of the prices: each would fail for a generator
// that lost one of its factors, not for an unlucky draw.
TEST(Feed, PricesBehaveLikeFares) {
    // Thanksgiving well ahead, so it is not also a last-minute fare.
    const Day today = Day::fromCivil(2026, 8, 10);
    const Files files = generate(night(today, {"JFK", "BOS", "ORD", "ATL"}));
    const auto windows = Holidays::windows(today, today + 330);
    const auto thanksgiving = std::find_if(
        windows.begin(), windows.end(),
        [](const HolidayWindow& w) { return w.holiday == FederalHoliday::thanksgiving; });
    ASSERT_NE(thanksgiving, windows.end());

    // Farther is dearer; on the Orlando routes nonstops are dearer than the
    // same airline's connections; holidays and the last week are dear.
    std::vector<double> near, middle, far;
    int dearer = 0, routes = 0, lastMinuteDearer = 0;
    for (const char* code : {"JFK", "BOS", "ORD", "ATL"}) {
        const auto fares = decodeFile<FareBook>(files, std::string("flights/") + code + ".json");
        const Airport& from = *Airports::shipped().find(code);
        for (const Deal& d : fares.deals) {
            const Destination& to = *Destinations::shipped().find(d.destination);
            const double miles = distanceMiles(from.lat, from.lon, *to.lat, *to.lon);
            (miles < 1500 ? near : miles < 4000 ? middle : far).push_back(d.price);
        }
        std::map<std::string, std::vector<double>> nonstop, connecting;
        for (const auto& [day, options] : fares.toOrlando) {
            for (const FareOption& o : options)
                (o.stops == 0 ? nonstop : connecting)[o.airline].push_back(o.price);
        }
        int compared = 0;
        for (const auto& [airline, prices] : connecting) {
            if (!nonstop.count(airline) || prices.size() < 30 || nonstop[airline].size() < 30)
                continue;
            EXPECT_GT(mean(nonstop[airline]), mean(prices) * 1.08) << code << " " << airline;
            ++compared;
        }
        EXPECT_GT(compared, 0) << code;

        const auto calendar =
            decodeFile<CalendarBook>(files, std::string("calendars/") + code + ".json");
        for (const auto& [to, row] : calendar.routes) {
            std::vector<double> holiday, plain, lastWeek, monthsOut;
            for (const RoundTrip& t : calendar.trips(to)) {
                const std::int64_t offset = t.depart - thanksgiving->days.first;
                if (offset >= -2 && offset <= 2) holiday.push_back(t.price);
                if ((offset >= -24 && offset <= -10) || (offset >= 7 && offset <= 20))
                    plain.push_back(t.price);
                const std::int64_t ahead = t.depart - today;
                if (ahead < 7) lastWeek.push_back(t.price);
                if (ahead >= 50 && ahead < 57) monthsOut.push_back(t.price);
            }
            if (holiday.size() < 3 || plain.size() < 10 || lastWeek.size() < 3 ||
                monthsOut.size() < 3)
                continue;
            ++routes;
            if (mean(holiday) > mean(plain)) ++dearer;
            if (mean(lastWeek) > mean(monthsOut)) ++lastMinuteDearer;
        }
    }
    EXPECT_LT(mean(near) * 1.3, mean(middle));
    EXPECT_LT(mean(middle) * 1.3, mean(far));
    ASSERT_GT(routes, 400);
    EXPECT_GT(dearer, routes * 9 / 10);
    EXPECT_GT(lastMinuteDearer, routes * 9 / 10);
}

TEST(Feed, ConsecutiveNightsAgreeAndMostFaresAreRecent) {
    const Files today = generate(night(kToday, {"JFK"}));
    const Files tomorrow = generate(night(kToday + 1, {"JFK"}));
    const auto h0 = decodeFile<HistoryBook>(today, "history/JFK.json");
    const auto h1 = decodeFile<HistoryBook>(tomorrow, "history/JFK.json");
    ASSERT_EQ(h1.from, h0.from + 1);
    ASSERT_EQ(h0.routes.size(), h1.routes.size());
    for (const auto& [to, series] : h0.routes) {
        const auto& next = h1.routes.at(to);
        ASSERT_TRUE(std::equal(series.begin() + 1, series.end(), next.begin())) << to;
    }

    // Tonight's deal is tonight's history price and the calendar's cheapest
    // fresh trip.
    const auto fares = decodeFile<FareBook>(today, "flights/JFK.json");
    const auto calendar = decodeFile<CalendarBook>(today, "calendars/JFK.json");
    const FareCalendar merged({calendar});
    std::map<std::string, int> ages;  // "fresh", "stale", "tooOld"
    int total = 0;
    const auto count = [&](std::optional<Day> seen) {
        const std::int64_t age = seen ? kToday - *seen : 0;
        ++ages[age <= 3 ? "fresh" : age <= 7 ? "stale" : "tooOld"];
        ++total;
    };
    for (const auto& [to, row] : calendar.routes) {
        for (const RoundTrip& t : calendar.trips(to)) count(t.seen);
    }
    for (const auto& [day, options] : fares.toOrlando) {
        for (const FareOption& o : options) count(o.seen);
    }
    for (const Deal& d : fares.deals) {
        count(d.seen);
        EXPECT_EQ(h0.routes.at(d.destination).back(), d.price) << d.destination;
        const auto best = merged.cheapest(d.destination, std::nullopt, kToday, true);
        ASSERT_TRUE(best) << d.destination;
        EXPECT_EQ(best->price, d.price) << d.destination;
    }
    const int deals = static_cast<int>(fares.deals.size());
    EXPECT_GT(ages["fresh"], total * 7 / 10);
    EXPECT_GT(ages["stale"], total / 30);
    EXPECT_GT(ages["tooOld"], total / 100);

    // Between the two nights some prices drop by five dollars or more (a
    // watch fires) and some rise: tomorrow's deal is its history's last night.
    int drops = 0, rises = 0;
    for (const Deal& d : fares.deals) {
        const double next = h1.routes.at(d.destination).back().value_or(d.price);
        drops += next <= d.price - 5;
        rises += next >= d.price + 5;
    }
    EXPECT_GT(drops, deals / 10);
    EXPECT_GT(rises, deals / 10);
}

TEST(Feed, ScalesToMorePlacesAndOptions) {
    Options o = night(kToday, {"JFK"});
    o.extraDestinations = 40;
    o.orlandoOptionsPerDay = 12;
    const Files files = generate(o);
    const auto calendar = decodeFile<CalendarBook>(files, "calendars/JFK.json");
    int extra = 0;
    for (const auto& [to, trips] : calendar.routes) extra += to.starts_with("Q");
    // A made-up place may fall within reach of the origin and be left out.
    EXPECT_GE(extra, 38);
    const auto fares = decodeFile<FareBook>(files, "flights/JFK.json");
    for (const auto& [day, options] : fares.toOrlando) ASSERT_EQ(options.size(), 12u) << day;
}

}  // namespace
}  // namespace roamwise::feedgen
