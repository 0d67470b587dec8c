#include "tripkit/wear.h"

#include <gtest/gtest.h>

#include <limits>

namespace tripkit {
namespace {

const Day kStart = Day::fromCivil(2026, 6, 1);  // a Monday

// A mild, dry, calm day unless told otherwise.
WearDay weather(double high, double low) {
    WearDay d;
    d.day = kStart;
    d.high = d.hotDay = high;
    d.low = d.coldNight = low;
    d.humidity = 50;
    d.wind = 10;
    d.uv = 2;
    d.source = WearDay::Source::forecast;
    return d;
}

// `d` with one value changed.
WearDay with(WearDay d, double WearDay::*field, double value) {
    d.*field = value;
    return d;
}

// `n` days from kStart, each `proto` unless `vary` changes it.
std::vector<WearDay> trip(int n, const WearDay& proto,
                          const std::function<void(int, WearDay&)>& vary = {}) {
    std::vector<WearDay> days;
    for (int i = 0; i < n; ++i) {
        WearDay d = proto;
        d.day = kStart + i;
        if (vary) vary(i, d);
        days.push_back(d);
    }
    return days;
}

using Activities = std::set<WearActivity>;

WearGuide guideFor(std::vector<WearDay> days, Activities activities = {}, bool laundry = false,
                   bool modest = false, const std::string& country = "fr",
                   TempUnit unit = TempUnit::celsius) {
    return WhatToWear::guide(
        WearRequest::make(std::move(days), std::move(activities), laundry, country, modest), unit);
}

const PackItem* item(const WearGuide& g, const std::string& id) {
    for (const PackItem& i : g.packing)
        if (i.id == id) return &i;
    return nullptr;
}

int countOf(const WearGuide& g, const std::string& id) {
    const PackItem* i = item(g, id);
    return i == nullptr ? 0 : i->count;
}

std::string noteOf(const WearGuide& g, const std::string& id) {
    const PackItem* i = item(g, id);
    return i == nullptr ? "<none>" : i->note;
}

bool hasNote(const WearGuide& g, const std::string& note) {
    return std::find(g.summary.begin(), g.summary.end(), note) != g.summary.end();
}

TEST(WearGuide, BandsAtTheirEdgesFeelsLikeAndUnitTexts) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<std::pair<double, TempBand>> bands = {
        {-7.01, TempBand::frigid}, {-7, TempBand::freezing}, {1.99, TempBand::freezing},
        {2, TempBand::cold},       {10, TempBand::cool},     {17, TempBand::mild},
        {23.99, TempBand::mild},   {24, TempBand::warm},     {29.99, TempBand::warm},
        {30, TempBand::hot},       {nan, TempBand::frigid}};
    for (const auto& [t, band] : bands) EXPECT_EQ(tempBand(t), band) << t;

    struct Feels {
        double high, low, humidity, wind, feelsHigh, feelsLow;
    };
    for (const Feels& c :
         std::vector<Feels>{{20, 15, 90, 0, 20, 15},  // the humid bump starts at 27
                            {28, 15, 70, 0, 30, 15},  // and feels hot
                            {27, 15, 69.9, 0, 27, 15},
                            {30, 9, 50, 20, 30, 7},    // wind chill from 20 km/h
                            {30, 10, 50, 60, 30, 10},  // below 10 °C only
                            {30, 9, 50, 19.9, 30, 9}}) {
        WearDay d = with(with(weather(c.high, c.low), &WearDay::humidity, c.humidity),
                         &WearDay::wind, c.wind);
        EXPECT_EQ(d.feelsHigh(), c.feelsHigh) << c.high << "/" << c.humidity;
        EXPECT_EQ(d.feelsLow(), c.feelsLow) << c.low << "/" << c.wind;
    }

    constexpr TempUnit F = TempUnit::fahrenheit, C = TempUnit::celsius;
    EXPECT_EQ(temperatureText(-0.5, C), "0°C");  // halves go up
    EXPECT_EQ(temperatureText(-0.6, C), "-1°C");
    EXPECT_EQ(differenceText(10, F), "18°F");  // no +32 in a difference
    EXPECT_EQ(windText(20, F), "12 mph");
    EXPECT_EQ(windText(20.5, C), "21 km/h");
}

TEST(WhatToWear, TypicalDaysPlansStopAt61DayLinesAndAnEmptyTrip) {
    // Month m (1–12) has high 10·m, so blends are easy to follow.
    std::vector<WearMonth> months(12);
    for (int m = 1; m <= 12; ++m) {
        months[m - 1].high = 10.0 * m;
        months[m - 1].low = m;
        months[m - 1].rain = m == 12 ? 1.5 : 0.5;  // December's is out of range on purpose
        months[m - 1].snow = m == 1 ? -0.5 : 0;
    }
    const auto on = [](int y, int m, int d) { return Day::fromCivil(y, m, d); };
    const std::vector<std::pair<Day, double>> cases = {
        {on(2026, 1, 15), 10},                                     // the month itself
        {on(2026, 1, 1), (14.0 / 31) * 120 + (17.0 / 31) * 10},    // from December
        {on(2026, 12, 31), (15.0 / 31) * 120 + (16.0 / 31) * 10},  // into January
        {on(2026, 3, 14), (1.0 / 28) * 20 + (27.0 / 28) * 30},     // February is 28
        {on(2028, 2, 29), (15.0 / 28) * 20 + (13.0 / 28) * 30},    // reads as the 28th
        {on(2026, 4, 30), (15.0 / 30) * 40 + (15.0 / 30) * 50},
    };
    for (const auto& [day, high] : cases) {
        const WearDay d = WhatToWear::typicalDay(months, day);
        EXPECT_NEAR(d.high, high, 1e-9) << day;
        EXPECT_TRUE(d.rain >= 0 && d.rain <= 1 && d.snow >= 0) << day;
    }
    EXPECT_EQ(WhatToWear::typicalDay(months, on(2026, 12, 15)).rain, 1);  // clamped
    EXPECT_EQ(WhatToWear::typicalDay(months, on(2026, 1, 15)).snow, 0);

    // Either order of the ends; a forecast day where there is one.
    WearDay f = weather(3, 1);
    f.day = on(2026, 1, 11);
    const auto days = WhatToWear::planDays(on(2026, 1, 12), on(2026, 1, 10), months, {{f.day, f}});
    ASSERT_EQ(days.size(), 3u);
    EXPECT_EQ(days[0].day, on(2026, 1, 10));
    EXPECT_EQ(days[0].source, WearDay::Source::typical);
    EXPECT_EQ(days[1], f);
    EXPECT_EQ(days[2].day, on(2026, 1, 12));
    const Day first = on(2026, 1, 1);
    const auto longTrip = WhatToWear::planDays(first, first + 90, months, {});
    ASSERT_EQ(longTrip.size(), 61u);
    EXPECT_EQ(longTrip.back().day, first + 60);

    const WearDay warmCool = with(weather(26, 14), &WearDay::uv, 6);
    const WearDay snowy = with(with(weather(0, -3), &WearDay::rain, 0.9), &WearDay::snow, 0.15);
    for (const auto& [day, text] : std::vector<std::pair<WearDay, std::string>>{
             {warmCool, "Warm day, cool night; strong sun"},
             {with(weather(20, 18), &WearDay::rain, 0.3), "Mild; showers possible"},
             {with(weather(20, 18), &WearDay::rain, 0.5), "Mild; rain likely"},
             {snowy, "Freezing; snow possible"},
             {weather(-8, -20), "Very cold"}}) {
        EXPECT_EQ(WhatToWear::dayLine(day).summary, text);
    }
    EXPECT_EQ(guideFor({}), WearGuide{});
}

TEST(WhatToWear, WeatherNotesAtTheirThresholds) {
    const WearDay base = weather(20, 12);
    const auto rainSum = [&](int n, double each, double wettest) {
        return trip(n, base, [&](int i, WearDay& d) { d.rain = i == 0 ? wettest : each; });
    };
    const auto typical = [](WearDay d) {
        d.source = WearDay::Source::typical;
        return d;
    };
    const auto windy = [&](double wind) {
        return trip(2, base, [=](int i, WearDay& d) { d.wind = i == 0 ? wind : 10; });
    };
    const std::string snow = "Snow is possible; dress for wet and cold.",
                      swing = "Big swing from day to night (about 10°C): dress in layers.",
                      uv6 = "Strong sun (UV up to 6): sunscreen, sunglasses and a hat.",
                      humid = "Humid, so it feels hotter: breathable, quick-dry fabrics.",
                      wind = "Often windy: a windproof layer helps.",
                      dry = "Dry air: lip balm and moisturizer.",
                      wash = "The counts stop at 14 days; plan a wash on longer trips.";
    struct Case {
        const char* what;
        std::vector<WearDay> days;
        std::string note;
        bool present;
        bool modest = false;
    };
    // clang-format off
    const std::vector<Case> cases = {
        {"one wet day", {with(base, &WearDay::rain, 1.2)}, "Rain is likely.", true},
        {"2.6 over ten days", rainSum(10, 0.26, 0.26), "Rain on about 3 of 10 days.", true},
        {"0.4 over ten days", rainSum(10, 0.4 / 10, 0.04), "Usually dry.", true},
        {"a 0.15 day", rainSum(2, 0, 0.15), "A shower is possible.", true},
        {"a 0.14 day", rainSum(2, 0, 0.14), "Usually dry.", true},
        {"snow", {with(base, &WearDay::snow, 0.15)}, snow, true},
        {"no snow", {with(base, &WearDay::snow, 0.149)}, snow, false},
        {"swing of 10", {weather(22, 12)}, swing, true},
        {"swing of 9.9", {weather(21.9, 12)}, swing, false},
        {"uv 6", {with(base, &WearDay::uv, 6.4)}, uv6, true},
        {"uv 5.9", {with(base, &WearDay::uv, 5.9)}, uv6, false},
        {"humid", {with(with(base, &WearDay::high, 24), &WearDay::humidity, 70)}, humid, true},
        {"not humid at 23.9", {with(with(base, &WearDay::high, 23.9), &WearDay::humidity, 90)}, humid, false},
        {"windy", windy(30), wind, true},
        {"not windy", windy(29.9), wind, false},
        {"dry air", {with(base, &WearDay::humidity, 35)}, dry, true},
        {"not dry", {with(base, &WearDay::humidity, 35.1)}, dry, false},
        {"modest", {base}, "Local custom favors modest dress: cover shoulders and knees.", true, true},
        {"fifteen days", trip(15, base), wash, true},
        {"fourteen days", trip(14, base), wash, false},
        // Typical days also say how far a cold night or hot day can go, when
        // that is another band than the days themselves; forecast days never do.
        {"cold night", {typical(with(base, &WearDay::coldNight, 9.9))}, "A cold night can drop to 10°C.", true},
        {"cool night", {typical(with(base, &WearDay::coldNight, 10))}, "A cold night can drop to 10°C.", false},
        {"hot day", {typical(with(base, &WearDay::hotDay, 24))}, "A hot day can reach 24°C.", true},
        {"mild day", {typical(with(base, &WearDay::hotDay, 23.9))}, "A hot day can reach 24°C.", false},
        {"forecast", {with(base, &WearDay::coldNight, -20)}, "A cold night can drop to -20°C.", false},
    };
    // clang-format on
    for (const Case& c : cases) {
        const WearGuide g = guideFor(c.days, {}, false, c.modest);
        EXPECT_EQ(hasNote(g, c.note), c.present) << c.what << "\n"
                                                 << ::testing::PrintToString(g.summary);
    }

    // The temperature sentence, in either unit: a range from 4 degrees apart, else "around".
    const auto highsLows = trip(2, base, [](int i, WearDay& d) {
        d.high = i == 0 ? 20 : 25;
        d.low = 12.8;
    });
    EXPECT_EQ(guideFor(highsLows, {}, false, false, "US", TempUnit::fahrenheit).summary[0],
              "Highs 68–77°F, lows around 55°F.");
    const auto close = trip(2, base, [](int i, WearDay& d) { d.high = i == 0 ? 20 : 23.9; });
    EXPECT_EQ(guideFor(close).summary[0], "Highs around 22°C, lows around 12°C.");
}

TEST(WhatToWear, LaundryLongTripsTopsBottomsAndShorts) {
    const auto days = trip(20, weather(20, 12));
    const WearGuide plain = guideFor(days);
    EXPECT_EQ(plain.planDays, 14);
    EXPECT_EQ(countOf(plain, "underwear"), 15);
    EXPECT_EQ(countOf(plain, "pants"), 5);  // ceil(14 / 3)

    const WearGuide washed = guideFor(days, {}, true);
    EXPECT_EQ(washed.planDays, 5);
    EXPECT_FALSE(hasNote(washed, "The counts stop at 14 days; plan a wash on longer trips."));
    EXPECT_EQ(countOf(washed, "underwear"), 6);
    EXPECT_EQ(countOf(washed, "sleepwear"), 1);
    EXPECT_EQ(countOf(washed, "pants"), 2);
    EXPECT_EQ(noteOf(washed, "long-sleeve"),
              "For the cooler days (enough for 5 days, then a wash).");

    // Thermals: a third of the planned days, one to three, two with laundry.
    const auto frozen = trip(20, weather(1, -5));
    EXPECT_EQ(countOf(guideFor(frozen), "thermal-top"), 3);
    EXPECT_EQ(countOf(guideFor(frozen, {}, true), "thermal-bottoms"), 2);

    const WearDay warm = weather(26, 18);  // warm day, mild night
    const WearDay cool = weather(15, 8);
    const auto mixed = [&](int n, int warmDays) {
        return trip(n, warm, [&](int i, WearDay& d) {
            if (i >= warmDays) d = cool;
            d.day = kStart + i;
        });
    };
    const Activities none, hiking{WearActivity::hiking};
    struct Case {
        const char* what;
        std::vector<WearDay> days;
        Activities activities;
        bool modest;
        int tees, longSleeves, shorts, longBottoms;
        const char* longId;
    };
    // clang-format off
    const std::vector<Case> cases = {
        // Every day warm: tops may all be short-sleeved, shorts as many as the share says.
        {"all warm, 7 days", trip(7, warm), none, false, 7, 0, 3, 0, "light-pants"},
        {"all warm, 7 days, hiking", trip(7, warm), hiking, false, 7, 0, 2, 1, "light-pants"},
        {"all warm, modest", trip(7, warm), none, true, 7, 0, 0, 3, "light-pants"},
        // Mixed: one long-sleeve top at least, a single bottom is long.
        {"mixed, 7 days", mixed(7, 6), none, false, 6, 1, 2, 1, "pants"},
        {"mixed, mostly cool", mixed(7, 1), none, false, 1, 6, 1, 2, "pants"},
        // Cold: no short sleeves, no shorts.
        {"cold", trip(5, cool), none, false, 0, 5, 0, 2, "pants"},
    };
    // clang-format on
    for (const Case& c : cases) {
        const WearGuide g = guideFor(c.days, c.activities, false, c.modest);
        EXPECT_EQ(countOf(g, "tee"), c.tees) << c.what;
        EXPECT_EQ(countOf(g, "long-sleeve"), c.longSleeves) << c.what;
        EXPECT_EQ(countOf(g, "shorts"), c.shorts) << c.what;
        EXPECT_EQ(countOf(g, c.longId), c.longBottoms) << c.what;
    }
    // Heat or humidity adds a top, and the tops become breathable ones.
    const WearGuide sticky = guideFor(trip(4, with(warm, &WearDay::humidity, 80)));
    EXPECT_EQ(countOf(sticky, "breathable-top"), 5);
    EXPECT_EQ(item(sticky, "tee"), nullptr);
    EXPECT_EQ(noteOf(sticky, "breathable-top"), "Short sleeves for the warm days.");
}

TEST(WhatToWear, LayersShoesExtrasDaytimeEveningAndTextExport) {
    const WearDay rainyCool = with(weather(16, 12), &WearDay::rain, 0.3);
    const WearDay rainyCold = with(weather(8, 4), &WearDay::rain, 0.45);
    const WearDay hotWet = with(with(weather(33, 24), &WearDay::rain, 0.6), &WearDay::uv, 11);
    const WearDay windyWarm = with(weather(26, 18), &WearDay::wind, 25);
    const Activities parksAndBeach{WearActivity::themeParks, WearActivity::beach};
    // The day, the activities, and items found in this order.
    const std::vector<std::tuple<WearDay, Activities, std::vector<std::string>>> cases = {
        {rainyCool, {}, {"rain-jacket", "socks", "walking-shoes", "umbrella"}},
        {rainyCold,
         {},
         {"fleece", "rain-jacket", "waterproof-shoes", "umbrella", "warm-hat", "gloves"}},
        {weather(-2, -8), {}, {"insulated-mid", "parka", "warm-socks", "winter-boots", "scarf"}},
        {hotWet,
         parksAndBeach,
         {"light-layer", "walking-shoes", "sandals", "umbrella", "sunscreen", "sun-hat", "day-bag",
          "water-bottle", "swimsuit", "rash-guard", "poncho", "cooling-towel", "battery"}},
        {windyWarm,
         {WearActivity::business},
         {"light-layer", "windbreaker", "dress-shoes", "blazer"}},
    };
    for (const auto& [day, activities, ids] : cases) {
        const WearGuide g = guideFor({day}, activities);
        std::size_t last = 0;
        for (const std::string& id : ids) {
            const PackItem* found = item(g, id);
            ASSERT_NE(found, nullptr) << id;
            const auto at = static_cast<std::size_t>(found - g.packing.data());
            EXPECT_GE(at, last) << id;
            last = at;
        }
    }

    // Names, notes and counts that depend on the weather or the activities.
    const WearGuide wet = guideFor({rainyCold});
    const WearGuide hot = guideFor({hotWet}, parksAndBeach);
    const auto week = [](Activities a, int days) {
        return guideFor(trip(days, weather(20, 12)), a);
    };
    const Activities business{WearActivity::business}, hiking{WearActivity::hiking};
    EXPECT_EQ(countOf(wet, "socks"), 3);  // a dry pair for rain of 0.4 or more
    EXPECT_EQ(item(wet, "walking-shoes"), nullptr);
    EXPECT_EQ(noteOf(hot, "sunglasses"), "UV up to 11.");
    EXPECT_EQ(item(hot, "waterproof-shoes"), nullptr);  // too hot for them
    // One all-warm day: its single bottom is shorts, as the rule is written.
    EXPECT_EQ(countOf(hot, "shorts"), 1);

    // Business outfits count the trip's Monday-to-Friday days; a weekend has one.
    EXPECT_EQ(countOf(week(business, 12), "business-outfit"), 10);
    std::vector<WearDay> weekend =
        trip(2, weather(20, 12), [](int i, WearDay& d) { d.day = Day::fromCivil(2026, 6, 6 + i); });
    EXPECT_EQ(noteOf(guideFor(weekend, business), "business-outfit"), "One per workday (1).");
    // Hiking socks: half the days, one to four.
    EXPECT_EQ(countOf(week(hiking, 20), "hiking-socks"), 4);
    // A scarf for covering up abroad, not at home.
    const Activities city{WearActivity::cityWalking};
    EXPECT_NE(item(guideFor({weather(20, 12)}, city), "cover-scarf"), nullptr);
    EXPECT_EQ(item(guideFor({weather(20, 12)}, city, false, false, "us"), "cover-scarf"), nullptr);

    const auto days = trip(4, weather(26, 18), [](int i, WearDay& d) {
        if (i == 0) d.high = 15;
    });
    WearGuide g = guideFor(days, {WearActivity::beach});
    // Sorted feels-highs 15, 26, 26, 26: index 2 is warm.
    EXPECT_EQ(g.daytime, "Daytime: a T-shirt with shorts or light pants.");
    EXPECT_EQ(g.evening, "Evenings: a T-shirt, and a light layer if it cools off.");

    const std::string title = "Packing list: Mérida, 4 days";
    const std::string text =
        WhatToWear::exportText(g, title, {"swimsuit"}, {"Cover up in churches."});
    const std::string expectedStart = title + "\n" + std::string(28, '=') + "\n\nClothes\n[ ] ";
    EXPECT_EQ(text.substr(0, expectedStart.size()), expectedStart);
    for (const char* part :
         {"\n\nFor what you're doing\n[x] Swimsuits × 2\n", "\n\nLocal dress notes\n"}) {
        EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
    }
    EXPECT_EQ(text.substr(text.rfind('\n') + 1), WhatToWear::forecastSourceLine);

    for (auto& line : g.days) line.day.source = WearDay::Source::typical;
    g.usesForecast = false;
    const std::string typical = WhatToWear::exportText(g, std::string(80, 'x'));
    EXPECT_EQ(typical.substr(81, 61), std::string(60, '=') + "\n");
    EXPECT_EQ(typical.find("Local dress notes"), std::string::npos);
    EXPECT_EQ(typical.substr(typical.rfind('\n') + 1), WhatToWear::typicalSourceLine);
    g.typicalFromNormals = true;
    const std::string normals = WhatToWear::exportText(g, "x");
    EXPECT_EQ(normals.substr(normals.rfind('\n') + 1), WhatToWear::normalsSourceLine);
}

}  // namespace
}  // namespace tripkit
