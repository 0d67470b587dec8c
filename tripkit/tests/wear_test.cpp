#include "tripkit/wear.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tripkit {
namespace {

const Day kStart = Day::fromCivil(2026, 6, 1);  // a Monday

// A mild, dry, calm day unless told otherwise.
WearDay weather(double high, double low) {
    WearDay d;
    d.day = kStart;
    d.high = high;
    d.low = low;
    d.humidity = 50;
    d.wind = 10;
    d.uv = 2;
    d.rain = 0;
    d.hotDay = high;
    d.coldNight = low;
    d.source = WearDay::Source::forecast;
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

WearGuide guideFor(std::vector<WearDay> days, std::set<WearActivity> activities = {},
                   bool laundry = false, bool modest = false, const std::string& country = "fr",
                   TempUnit unit = TempUnit::celsius) {
    return WhatToWear::guide(
        WearRequest::make(std::move(days), std::move(activities), laundry, country, modest), unit);
}

const PackItem* item(const WearGuide& g, const std::string& id) {
    for (const PackItem& i : g.packing) {
        if (i.id == id) return &i;
    }
    return nullptr;
}

int countOf(const WearGuide& g, const std::string& id) {
    const PackItem* i = item(g, id);
    return i == nullptr ? 0 : i->count;
}

bool hasNote(const WearGuide& g, const std::string& note) {
    return std::find(g.summary.begin(), g.summary.end(), note) != g.summary.end();
}

TEST(WearGuide, BandsAtTheirEdgesAndFeelsLike) {
    struct Case {
        double t;
        TempBand band;
    };
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const Case& c : std::vector<Case>{{-7.01, TempBand::frigid},
                                           {-7, TempBand::freezing},
                                           {1.99, TempBand::freezing},
                                           {2, TempBand::cold},
                                           {10, TempBand::cool},
                                           {17, TempBand::mild},
                                           {23.99, TempBand::mild},
                                           {24, TempBand::warm},
                                           {29.99, TempBand::warm},
                                           {30, TempBand::hot},
                                           {nan, TempBand::frigid}}) {
        EXPECT_EQ(tempBand(c.t), c.band) << c.t;
    }

    struct Feels {
        double high, low, humidity, wind;
        double feelsHigh, feelsLow;
    };
    for (const Feels& c :
         std::vector<Feels>{{20, 15, 90, 0, 20, 15},  // the humid bump starts at 27
                            {28, 15, 70, 0, 30, 15},  // and feels hot
                            {27, 15, 69.9, 0, 27, 15},
                            {30, 9, 50, 20, 30, 7},    // wind chill from 20 km/h below 10 °C
                            {30, 10, 50, 60, 30, 10},  // 10 °C stays 10
                            {30, 9, 50, 19.9, 30, 9}}) {
        WearDay d = weather(c.high, c.low);
        d.humidity = c.humidity;
        d.wind = c.wind;
        EXPECT_EQ(d.feelsHigh(), c.feelsHigh) << c.high << "/" << c.humidity;
        EXPECT_EQ(d.feelsLow(), c.feelsLow) << c.low << "/" << c.wind;
    }
    EXPECT_EQ(tempBand(weather(28, 15).feelsHigh()), TempBand::warm);
    WearDay humid = weather(28, 15);
    humid.humidity = 70;
    EXPECT_EQ(tempBand(humid.feelsHigh()), TempBand::hot);
}

TEST(WearGuide, UnitTexts) {
    EXPECT_EQ(temperatureText(20, TempUnit::fahrenheit), "68°F");
    EXPECT_EQ(temperatureText(20.5, TempUnit::celsius), "21°C");
    EXPECT_EQ(temperatureText(-0.5, TempUnit::celsius), "0°C");  // halves go up
    EXPECT_EQ(temperatureText(-0.6, TempUnit::celsius), "-1°C");
    EXPECT_EQ(temperatureText(-40, TempUnit::fahrenheit), "-40°F");
    EXPECT_EQ(rangeText(12.8, 25, TempUnit::fahrenheit), "55–77°F");  // 55.04 and 77
    EXPECT_EQ(rangeText(12.5, 25.4, TempUnit::celsius), "13–25°C");
    EXPECT_EQ(differenceText(10, TempUnit::fahrenheit), "18°F");  // no +32 in a difference
    EXPECT_EQ(differenceText(10.4, TempUnit::celsius), "10°C");
    EXPECT_EQ(windText(20, TempUnit::fahrenheit), "12 mph");
    EXPECT_EQ(windText(20.5, TempUnit::celsius), "21 km/h");
}

std::vector<WearMonth> numberedMonths() {
    // Month m (1–12) has high 10·m, so blends are easy to follow.
    std::vector<WearMonth> months;
    for (int m = 1; m <= 12; ++m) {
        WearMonth month;
        month.high = 10.0 * m;
        month.low = m;
        month.rain = m == 12 ? 1.5 : 0.5;  // December's is out of range on purpose
        month.snow = m == 1 ? -0.5 : 0;
        months.push_back(month);
    }
    return months;
}

TEST(WhatToWear, TypicalDayBlendsNeighbouringMonths) {
    const auto months = numberedMonths();
    struct Case {
        Day day;
        double high;
    };
    const std::vector<Case> cases = {
        {Day::fromCivil(2026, 1, 15), 10},                                     // the month itself
        {Day::fromCivil(2026, 1, 1), (14.0 / 31) * 120 + (17.0 / 31) * 10},    // from December
        {Day::fromCivil(2026, 12, 31), (15.0 / 31) * 120 + (16.0 / 31) * 10},  // into January
        {Day::fromCivil(2026, 3, 14), (1.0 / 28) * 20 + (27.0 / 28) * 30},     // February is 28
        {Day::fromCivil(2026, 2, 28), (15.0 / 28) * 20 + (13.0 / 28) * 30},
        {Day::fromCivil(2028, 2, 29), (15.0 / 28) * 20 + (13.0 / 28) * 30},  // reads as the 28th
        {Day::fromCivil(2026, 4, 30), (15.0 / 30) * 40 + (15.0 / 30) * 50},
    };
    for (const Case& c : cases) {
        const WearDay d = WhatToWear::typicalDay(months, c.day);
        EXPECT_NEAR(d.high, c.high, 1e-9) << c.day;
        EXPECT_EQ(d.day, c.day);
        EXPECT_EQ(d.source, WearDay::Source::typical);
        EXPECT_GE(d.rain, 0);
        EXPECT_LE(d.rain, 1);
        EXPECT_GE(d.snow, 0);
    }
    EXPECT_EQ(WhatToWear::typicalDay(months, Day::fromCivil(2026, 12, 15)).rain, 1);  // clamped
    EXPECT_EQ(WhatToWear::typicalDay(months, Day::fromCivil(2026, 1, 15)).snow, 0);
}

TEST(WhatToWear, PlanDaysTakeForecastsAndStopAt61) {
    const auto months = numberedMonths();
    std::map<Day, WearDay> forecast;
    WearDay f = weather(3, 1);
    f.day = Day::fromCivil(2026, 1, 11);
    forecast[f.day] = f;
    const auto days = WhatToWear::planDays(Day::fromCivil(2026, 1, 12), Day::fromCivil(2026, 1, 10),
                                           months, forecast);
    ASSERT_EQ(days.size(), 3u);
    EXPECT_EQ(days[0].day, Day::fromCivil(2026, 1, 10));
    EXPECT_EQ(days[0].source, WearDay::Source::typical);
    EXPECT_EQ(days[1], f);
    EXPECT_EQ(days[2].day, Day::fromCivil(2026, 1, 12));

    const Day first = Day::fromCivil(2026, 1, 1);
    EXPECT_EQ(WhatToWear::planDays(first, first + 60, months, {}).size(), 61u);
    const auto longTrip = WhatToWear::planDays(first, first + 90, months, {});
    ASSERT_EQ(longTrip.size(), 61u);
    EXPECT_EQ(longTrip.back().day, first + 60);
    EXPECT_EQ(WhatToWear::planDays(first, first, months, {}).size(), 1u);
}

TEST(WhatToWear, DayLines) {
    struct Case {
        WearDay day;
        std::string text;
    };
    WearDay warmCool = weather(26, 14);
    warmCool.uv = 6;
    WearDay mild = weather(20, 18);
    mild.rain = 0.3;
    WearDay wet = weather(20, 18);
    wet.rain = 0.5;
    WearDay snowy = weather(0, -3);
    snowy.rain = 0.9;
    snowy.snow = 0.15;
    for (const Case& c : std::vector<Case>{{warmCool, "Warm day, cool night; strong sun"},
                                           {mild, "Mild; showers possible"},
                                           {wet, "Mild; rain likely"},
                                           {snowy, "Freezing; snow possible"},
                                           {weather(-8, -20), "Very cold"}}) {
        EXPECT_EQ(WhatToWear::dayLine(c.day).summary, c.text);
    }
    const auto line = WhatToWear::dayLine(warmCool);
    EXPECT_EQ(line.dayBand, TempBand::warm);
    EXPECT_EQ(line.nightBand, TempBand::cool);
}

TEST(WhatToWear, EmptyTripGivesAnEmptyGuide) {
    const WearGuide g = guideFor({});
    EXPECT_EQ(g, WearGuide{});
    EXPECT_EQ(g.planDays, 0);
}

TEST(WhatToWear, WeatherNotesAtTheirThresholds) {
    struct Case {
        const char* what;
        std::vector<WearDay> days;
        std::string note;
        bool present;
        bool modest = false;
    };
    WearDay base = weather(20, 12);
    const auto with = [&](const std::function<void(WearDay&)>& change) {
        WearDay d = base;
        change(d);
        return d;
    };
    const auto rainSum = [&](int n, double each, double wettest) {
        return trip(n, base, [&](int i, WearDay& d) { d.rain = i == 0 ? wettest : each; });
    };
    const std::vector<Case> cases = {
        {"one wet day", {with([](WearDay& d) { d.rain = 1.2; })}, "Rain is likely.", true},
        {"2.6 over ten days", rainSum(10, 0.26, 0.26), "Rain on about 3 of 10 days.", true},
        {"0.4 over ten days", rainSum(10, 0.4 / 10, 0.04), "Usually dry.", true},
        {"a 0.15 day", rainSum(2, 0, 0.15), "A shower is possible.", true},
        {"a 0.14 day", rainSum(2, 0, 0.14), "Usually dry.", true},
        {"snow",
         {with([](WearDay& d) { d.snow = 0.15; })},
         "Snow is possible; dress for wet and cold.",
         true},
        {"no snow",
         {with([](WearDay& d) { d.snow = 0.149; })},
         "Snow is possible; dress for wet and cold.",
         false},
        {"swing of 10",
         {weather(22, 12)},
         "Big swing from day to night (about 10°C): dress in layers.",
         true},
        {"swing of 9.9",
         {weather(21.9, 12)},
         "Big swing from day to night (about 10°C): dress in layers.",
         false},
        {"uv 8",
         {with([](WearDay& d) { d.uv = 7.6; }), with([](WearDay& d) { d.uv = 8; })},
         "Very strong sun (UV up to 8): cover up and use sunscreen midday.",
         true},
        {"uv 6",
         {with([](WearDay& d) { d.uv = 6.4; })},
         "Strong sun (UV up to 6): sunscreen, sunglasses and a hat.",
         true},
        {"uv 5.9",
         {with([](WearDay& d) { d.uv = 5.9; })},
         "Strong sun (UV up to 6): sunscreen, sunglasses and a hat.",
         false},
        {"humid",
         {with([](WearDay& d) {
             d.high = 24;
             d.humidity = 70;
         })},
         "Humid, so it feels hotter: breathable, quick-dry fabrics.",
         true},
        {"not humid at 23.9",
         {with([](WearDay& d) {
             d.high = 23.9;
             d.humidity = 90;
         })},
         "Humid, so it feels hotter: breathable, quick-dry fabrics.",
         false},
        {"windy", trip(2, base, [](int i, WearDay& d) { d.wind = i == 0 ? 30 : 10; }),
         "Often windy: a windproof layer helps.", true},
        {"not windy", trip(2, base, [](int i, WearDay& d) { d.wind = i == 0 ? 29.9 : 10; }),
         "Often windy: a windproof layer helps.", false},
        {"dry air",
         {with([](WearDay& d) { d.humidity = 35; })},
         "Dry air: lip balm and moisturizer.",
         true},
        {"not dry",
         {with([](WearDay& d) { d.humidity = 35.1; })},
         "Dry air: lip balm and moisturizer.",
         false},
        {"modest",
         {base},
         "Local custom favors modest dress: cover shoulders and knees.",
         true,
         true},
        {"fifteen days", trip(15, base), "The counts stop at 14 days; plan a wash on longer trips.",
         true},
        {"fourteen days", trip(14, base),
         "The counts stop at 14 days; plan a wash on longer trips.", false},
    };
    for (const Case& c : cases) {
        const WearGuide g = guideFor(c.days, {}, false, c.modest);
        EXPECT_EQ(hasNote(g, c.note), c.present) << c.what << "\n"
                                                 << ::testing::PrintToString(g.summary);
    }

    // The temperature sentence: a range from 4 degrees apart, else "around".
    const auto highsLows = trip(2, base, [](int i, WearDay& d) {
        d.high = i == 0 ? 20 : 25;
        d.low = 12.8;
    });
    EXPECT_EQ(guideFor(highsLows, {}, false, false, "US", TempUnit::fahrenheit).summary[0],
              "Highs 68–77°F, lows around 55°F.");
    const auto close = trip(2, base, [](int i, WearDay& d) { d.high = i == 0 ? 20 : 23.9; });
    EXPECT_EQ(guideFor(close).summary[0], "Highs around 22°C, lows around 12°C.");
}

TEST(WhatToWear, TypicalExtremesNotes) {
    WearDay d = weather(20, 12);
    d.source = WearDay::Source::typical;
    d.coldNight = 9.9;  // cold band below the cool nights
    d.hotDay = 24;      // warm, above the mild days
    const WearGuide g = guideFor({d});
    EXPECT_TRUE(hasNote(g, "A cold night can drop to 10°C."))
        << ::testing::PrintToString(g.summary);
    EXPECT_TRUE(hasNote(g, "A hot day can reach 24°C."));
    d.hotDay = 23.9;  // same band as the days: nothing to say
    d.coldNight = 10;
    EXPECT_EQ(guideFor({d}).summary.size(), 2u);
    WearDay cool = weather(16, 8);
    cool.source = WearDay::Source::typical;
    cool.hotDay = 17;
    EXPECT_TRUE(hasNote(guideFor({cool}), "A warmer day can reach 17°C."));
    // Forecast days alone never say so.
    d.source = WearDay::Source::forecast;
    d.coldNight = -20;
    EXPECT_EQ(guideFor({d}).summary.size(), 2u);
}

TEST(WhatToWear, LaundryAndLongTripCounts) {
    const auto days = trip(20, weather(20, 12));
    const WearGuide plain = guideFor(days);
    EXPECT_EQ(plain.planDays, 14);
    EXPECT_EQ(countOf(plain, "underwear"), 15);
    EXPECT_EQ(countOf(plain, "socks"), 15);
    EXPECT_EQ(countOf(plain, "sleepwear"), 2);
    EXPECT_EQ(countOf(plain, "pants"), 5);  // ceil(14 / 3)
    EXPECT_EQ(item(plain, "underwear")->note, "One a day and a spare.");

    const WearGuide washed = guideFor(days, {}, true);
    EXPECT_EQ(washed.planDays, 5);
    EXPECT_FALSE(hasNote(washed, "The counts stop at 14 days; plan a wash on longer trips."));
    EXPECT_EQ(countOf(washed, "underwear"), 6);
    EXPECT_EQ(countOf(washed, "sleepwear"), 1);
    EXPECT_EQ(countOf(washed, "pants"), 2);
    const std::string S = " (enough for 5 days, then a wash)";
    EXPECT_EQ(item(washed, "underwear")->note, "One a day and a spare" + S + ".");
    EXPECT_EQ(item(washed, "long-sleeve")->note, "For the cooler days" + S + ".");

    // Thermals: a third of the planned days, one to three, two with laundry.
    const auto frozen = trip(20, weather(1, -5));
    EXPECT_EQ(countOf(guideFor(frozen), "thermal-top"), 3);
    EXPECT_EQ(countOf(guideFor(frozen, {}, true), "thermal-bottoms"), 2);
    EXPECT_EQ(countOf(guideFor(trip(2, weather(1, -5))), "thermal-top"), 1);
}

TEST(WhatToWear, TopsBottomsAndShorts) {
    struct Case {
        const char* what;
        std::vector<WearDay> days;
        std::set<WearActivity> activities;
        bool modest;
        int tees, longSleeves, shorts, longBottoms;
        const char* longId;
    };
    const WearDay warm = weather(26, 18);  // warm day, mild night
    const WearDay cool = weather(15, 8);
    const auto mixed = [&](int n, int warmDays) {
        return trip(n, warm, [&](int i, WearDay& d) {
            if (i >= warmDays) d = cool;
            d.day = kStart + i;
        });
    };
    const std::vector<Case> cases = {
        // Every day warm: tops may all be short-sleeved, shorts as many as the share says.
        {"all warm, 7 days", trip(7, warm), {}, false, 7, 0, 3, 0, "light-pants"},
        {"all warm, 2 days", trip(2, warm), {}, false, 2, 0, 1, 0, "light-pants"},  // the rule as
                                                                                    // written
        {"all warm, hiking",
         trip(2, warm),
         {WearActivity::hiking},
         false,
         2,
         0,
         0,
         1,
         "light-pants"},
        {"all warm, 7 days, hiking",
         trip(7, warm),
         {WearActivity::hiking},
         false,
         7,
         0,
         2,
         1,
         "light-pants"},
        {"all warm, dinner",
         trip(7, warm),
         {WearActivity::dinnerOut},
         false,
         7,
         0,
         2,
         1,
         "light-pants"},
        {"all warm, modest", trip(7, warm), {}, true, 7, 0, 0, 3, "light-pants"},
        // Mixed: one long-sleeve top at least, a single bottom is long.
        {"mixed, 7 days", mixed(7, 6), {}, false, 6, 1, 2, 1, "pants"},
        {"mixed, mostly cool", mixed(7, 1), {}, false, 1, 6, 1, 2, "pants"},
        {"mixed, 2 days", mixed(2, 1), {}, false, 1, 1, 0, 1, "pants"},
        // Cold: no short sleeves, no shorts.
        {"cold", trip(5, cool), {}, false, 0, 5, 0, 2, "pants"},
    };
    for (const Case& c : cases) {
        const WearGuide g = guideFor(c.days, c.activities, false, c.modest);
        EXPECT_EQ(countOf(g, "tee"), c.tees) << c.what;
        EXPECT_EQ(countOf(g, "long-sleeve"), c.longSleeves) << c.what;
        EXPECT_EQ(countOf(g, "shorts"), c.shorts) << c.what;
        EXPECT_EQ(countOf(g, c.longId), c.longBottoms) << c.what;
    }
    const WearGuide modest = guideFor(trip(7, warm), {}, false, true);
    EXPECT_EQ(item(modest, "light-pants")->name, "Light pants or long skirts");
    EXPECT_EQ(item(modest, "light-pants")->note, "Local custom favors covered knees.");

    // Heat or humidity adds a top, and the tops become breathable ones.
    WearDay humid = warm;
    humid.humidity = 80;
    const WearGuide sticky = guideFor(trip(4, humid));
    EXPECT_EQ(countOf(sticky, "breathable-top"), 5);
    EXPECT_EQ(item(sticky, "tee"), nullptr);
    EXPECT_EQ(item(sticky, "breathable-top")->note, "Short sleeves for the warm days.");
}

TEST(WhatToWear, LayersShoesAndExtras) {
    WearDay rainyCool = weather(16, 12);
    rainyCool.rain = 0.3;
    WearDay rainyCold = weather(8, 4);
    rainyCold.rain = 0.45;
    WearDay hotWet = weather(33, 24);
    hotWet.rain = 0.6;
    hotWet.uv = 11;
    WearDay windyWarm = weather(26, 18);
    windyWarm.wind = 25;
    const struct {
        WearDay day;
        std::set<WearActivity> activities;
        std::vector<std::string> ids;  // in this order
    } cases[] = {
        {rainyCool, {}, {"rain-jacket", "socks", "walking-shoes", "umbrella"}},
        {rainyCold,
         {},
         {"fleece", "rain-jacket", "waterproof-shoes", "umbrella", "warm-hat", "gloves"}},
        {weather(-2, -8), {}, {"insulated-mid", "parka", "warm-socks", "winter-boots", "scarf"}},
        {hotWet,
         {WearActivity::themeParks, WearActivity::beach},
         {"light-layer", "walking-shoes", "sandals", "umbrella", "sunscreen", "sun-hat", "day-bag",
          "water-bottle", "swimsuit", "rash-guard", "poncho", "cooling-towel", "battery"}},
        {windyWarm,
         {WearActivity::business},
         {"light-layer", "windbreaker", "dress-shoes", "blazer"}},
    };
    for (const auto& c : cases) {
        const WearGuide g = guideFor({c.day}, c.activities);
        std::size_t last = 0;
        for (const std::string& id : c.ids) {
            const PackItem* found = item(g, id);
            ASSERT_NE(found, nullptr) << id;
            const auto at = static_cast<std::size_t>(found - g.packing.data());
            EXPECT_GE(at, last) << id;
            last = at;
        }
    }
    const WearGuide wet = guideFor({rainyCold});
    EXPECT_EQ(item(wet, "rain-jacket")->name, "Waterproof rain jacket");
    EXPECT_EQ(countOf(wet, "socks"), 3);  // a dry pair for rain of 0.4 or more
    EXPECT_EQ(item(wet, "socks")->note, "One pair a day and a spare, plus a dry pair.");
    EXPECT_EQ(item(wet, "walking-shoes"), nullptr);
    const WearGuide hot = guideFor({hotWet}, {WearActivity::themeParks, WearActivity::beach});
    EXPECT_EQ(item(hot, "light-layer")->note, "Air conditioning indoors can be chilly.");
    EXPECT_EQ(item(hot, "sunglasses")->note, "UV up to 11.");
    EXPECT_EQ(item(hot, "walking-shoes")->note, "Theme park days mean miles of walking.");
    EXPECT_EQ(item(hot, "water-bottle")->note, "Drink often in the heat.");
    EXPECT_EQ(item(hot, "waterproof-shoes"), nullptr);  // too hot for them
    EXPECT_EQ(item(hot, "sandals")->note, "For the beach and pool.");
    // One all-warm day: its single bottom is shorts, as the rule is written.
    EXPECT_EQ(countOf(hot, "shorts"), 1);
    EXPECT_EQ(item(hot, "light-pants"), nullptr);
    EXPECT_EQ(item(hot, "swimsuit")->count, 1);

    // Business outfits count the trip's Monday-to-Friday days; a weekend has one.
    const WearGuide week = guideFor(trip(12, weather(20, 12)), {WearActivity::business});
    EXPECT_EQ(countOf(week, "business-outfit"), 10);
    EXPECT_EQ(item(week, "business-outfit")->note, "One per workday (10).");
    std::vector<WearDay> weekend = trip(2, weather(20, 12));
    weekend[0].day = Day::fromCivil(2026, 6, 6);
    weekend[1].day = Day::fromCivil(2026, 6, 7);
    EXPECT_EQ(item(guideFor(weekend, {WearActivity::business}), "business-outfit")->note,
              "One per workday (1).");
    // Hiking socks: half the days, one to four.
    EXPECT_EQ(countOf(guideFor(trip(3, weather(20, 12)), {WearActivity::hiking}), "hiking-socks"),
              2);
    EXPECT_EQ(countOf(guideFor(trip(20, weather(20, 12)), {WearActivity::hiking}), "hiking-socks"),
              4);
    // A scarf for covering up abroad, not at home.
    EXPECT_NE(item(guideFor({weather(20, 12)}, {WearActivity::cityWalking}), "cover-scarf"),
              nullptr);
    EXPECT_EQ(item(guideFor({weather(20, 12)}, {WearActivity::cityWalking}, false, false, "us"),
                   "cover-scarf"),
              nullptr);
}

TEST(WhatToWear, IdsNeverRepeat) {
    // Every combination of activities over climates from arctic to tropical.
    std::vector<WearDay> climates = {weather(-15, -25), weather(1, -6),  weather(8, 3),
                                     weather(16, 11),   weather(23, 17), weather(33, 25)};
    climates[2].rain = 0.6;
    climates[5].humidity = 85;
    climates[5].uv = 12;
    climates[1].snow = 0.3;
    for (int mask = 0; mask < 64; ++mask) {
        std::set<WearActivity> activities;
        for (int a = 0; a < 6; ++a) {
            if (mask & (1 << a))
                activities.insert(allWearActivities()[static_cast<std::size_t>(a)]);
        }
        for (const bool modest : {false, true}) {
            const WearGuide g = guideFor(climates, activities, false, modest);
            std::set<std::string> ids;
            for (const PackItem& i : g.packing) {
                EXPECT_TRUE(ids.insert(i.id).second) << i.id << " mask " << mask;
                EXPECT_GE(i.count, 1) << i.id;
            }
        }
    }
}

TEST(WhatToWear, DaytimeEveningAndTextExport) {
    const auto days = trip(4, weather(26, 18), [](int i, WearDay& d) {
        if (i == 0) d.high = 15;
    });
    WearGuide g = guideFor(days, {WearActivity::beach});
    // Sorted feels-highs 15, 26, 26, 26: index 2 is warm.
    EXPECT_EQ(g.daytime, "Daytime: a T-shirt with shorts or light pants.");
    EXPECT_EQ(g.evening, "Evenings: a T-shirt, and a light layer if it cools off.");
    EXPECT_TRUE(g.usesForecast);
    EXPECT_FALSE(g.usesTypical);
    ASSERT_EQ(g.days.size(), 4u);

    const std::string title = "Packing list: Mérida, 4 days";
    const std::string text =
        WhatToWear::exportText(g, title, {"swimsuit"}, {"Cover up in churches."});
    const std::string expectedStart = title + "\n" + std::string(28, '=') + "\n\nClothes\n[ ] ";
    EXPECT_EQ(text.substr(0, expectedStart.size()), expectedStart);
    EXPECT_NE(text.find("\n\nFor what you're doing\n[x] Swimsuits × 2\n"), std::string::npos)
        << text;
    EXPECT_NE(text.find("\n[ ] Swim cover-up\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\n\nLocal dress notes\n"), std::string::npos);
    EXPECT_EQ(text.substr(text.rfind('\n') + 1), WhatToWear::forecastSourceLine);
    EXPECT_LT(text.find("Rain, sun and cold"), text.find("For what you're doing"));

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
