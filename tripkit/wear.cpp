#include "tripkit/wear.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <fmt/format.h>

#include "tripkit/json_fields.h"

namespace tripkit {

namespace {

// floor(x + 0.5): halves go up, also below zero.
std::int64_t roundHalfUp(double x) {
    return static_cast<std::int64_t>(std::floor(x + 0.5));
}

std::string_view unitSuffix(TempUnit unit) {
    return unit == TempUnit::fahrenheit ? "°F" : "°C";
}

double inUnit(double celsius, TempUnit unit) {
    return unit == TempUnit::fahrenheit ? celsius * 9 / 5 + 32 : celsius;
}

// Monthly values stand for the 15th; February always has 28 days here.
constexpr std::array<int, 12> monthLength = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

std::size_t utf8Length(std::string_view text) {
    std::size_t n = 0;
    for (char c : text) {
        if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++n;
    }
    return n;
}

// The items of a guide in the making: the first of an id stays, and a count
// below one adds nothing.
struct Packer {
    std::vector<PackItem> items;
    void add(PackItem::Section section, std::string id, std::string name, int count,
             std::string note, std::optional<std::string> shop = std::nullopt) {
        if (count < 1) return;
        for (const PackItem& item : items) {
            if (item.id == id) return;
        }
        items.push_back(
            {std::move(id), section, std::move(name), count, std::move(note), std::move(shop)});
    }
};

}  // namespace

const std::vector<WearActivity>& allWearActivities() {
    static const std::vector<WearActivity> all = {
        WearActivity::cityWalking, WearActivity::beach,     WearActivity::hiking,
        WearActivity::themeParks,  WearActivity::dinnerOut, WearActivity::business};
    return all;
}

std::string_view caseName(WearActivity a) {
    switch (a) {
        case WearActivity::cityWalking:
            return "cityWalking";
        case WearActivity::beach:
            return "beach";
        case WearActivity::hiking:
            return "hiking";
        case WearActivity::themeParks:
            return "themeParks";
        case WearActivity::dinnerOut:
            return "dinnerOut";
        case WearActivity::business:
            return "business";
    }
    return "";
}

std::optional<WearActivity> wearActivityFromCaseName(std::string_view name) {
    for (WearActivity a : allWearActivities()) {
        if (caseName(a) == name) return a;
    }
    return std::nullopt;
}

std::string_view label(WearActivity a) {
    switch (a) {
        case WearActivity::cityWalking:
            return "City walking";
        case WearActivity::beach:
            return "Beach or pool";
        case WearActivity::hiking:
            return "Hiking";
        case WearActivity::themeParks:
            return "Theme parks";
        case WearActivity::dinnerOut:
            return "Dinner out";
        case WearActivity::business:
            return "Business";
    }
    return "";
}

std::string_view icon(WearActivity a) {
    switch (a) {
        case WearActivity::cityWalking:
            return "figure.walk";
        case WearActivity::beach:
            return "beach.umbrella";
        case WearActivity::hiking:
            return "mountain.2";
        case WearActivity::themeParks:
            return "ticket";
        case WearActivity::dinnerOut:
            return "fork.knife";
        case WearActivity::business:
            return "briefcase";
    }
    return "";
}

TempBand tempBand(double t) {
    if (std::isnan(t) || t < -7) return TempBand::frigid;
    if (t < 2) return TempBand::freezing;
    if (t < 10) return TempBand::cold;
    if (t < 17) return TempBand::cool;
    if (t < 24) return TempBand::mild;
    if (t < 30) return TempBand::warm;
    return TempBand::hot;
}

std::string_view label(TempBand b) {
    switch (b) {
        case TempBand::frigid:
            return "Very cold";
        case TempBand::freezing:
            return "Freezing";
        case TempBand::cold:
            return "Cold";
        case TempBand::cool:
            return "Cool";
        case TempBand::mild:
            return "Mild";
        case TempBand::warm:
            return "Warm";
        case TempBand::hot:
            return "Hot";
    }
    return "";
}

std::string_view daytimePhrase(TempBand b) {
    switch (b) {
        case TempBand::frigid:
            return "thermal layers, a heavy coat or parka, a warm hat, insulated gloves and a "
                   "scarf";
        case TempBand::freezing:
            return "a thermal base layer, a fleece and an insulated coat, with a hat and gloves";
        case TempBand::cold:
            return "a sweater, long pants and a warm jacket";
        case TempBand::cool:
            return "long sleeves and pants with a sweater or light jacket";
        case TempBand::mild:
            return "a T-shirt or long sleeves and pants, with a light layer handy";
        case TempBand::warm:
            return "a T-shirt with shorts or light pants";
        case TempBand::hot:
            return "light, breathable short sleeves and shorts or a skirt";
    }
    return "";
}

std::string_view eveningPhrase(TempBand b) {
    switch (b) {
        case TempBand::mild:
            return "a T-shirt, and a light layer if it cools off";
        case TempBand::warm:
        case TempBand::hot:
            return "the same light clothes; it stays warm after dark";
        default:
            return daytimePhrase(b);
    }
}

std::string_view caseName(TempUnit u) {
    return u == TempUnit::fahrenheit ? "fahrenheit" : "celsius";
}

std::optional<TempUnit> tempUnitFromCaseName(std::string_view name) {
    if (name == "fahrenheit") return TempUnit::fahrenheit;
    if (name == "celsius") return TempUnit::celsius;
    return std::nullopt;
}

std::string temperatureText(double celsius, TempUnit unit) {
    return fmt::format("{}{}", roundHalfUp(inUnit(celsius, unit)), unitSuffix(unit));
}

std::string rangeText(double lowC, double highC, TempUnit unit) {
    return fmt::format("{}–{}{}", roundHalfUp(inUnit(lowC, unit)), roundHalfUp(inUnit(highC, unit)),
                       unitSuffix(unit));
}

std::string differenceText(double differenceC, TempUnit unit) {
    const double d = unit == TempUnit::fahrenheit ? differenceC * 9 / 5 : differenceC;
    return fmt::format("{}{}", roundHalfUp(d), unitSuffix(unit));
}

std::string windText(double kmh, TempUnit unit) {
    if (unit == TempUnit::celsius) return fmt::format("{} km/h", roundHalfUp(kmh));
    return fmt::format("{} mph", roundHalfUp(kmh / 1.609));
}

WearRequest WearRequest::make(std::vector<WearDay> days, std::set<WearActivity> activities,
                              bool laundry, std::string_view country, bool modest) {
    std::stable_sort(days.begin(), days.end(),
                     [](const WearDay& a, const WearDay& b) { return a.day < b.day; });
    std::string upper(country);
    for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return {std::move(days), std::move(activities), laundry, std::move(upper), modest};
}

const std::vector<PackItem::Section>& allPackSections() {
    static const std::vector<PackItem::Section> all = {
        PackItem::Section::clothes,  PackItem::Section::layers,      PackItem::Section::underwear,
        PackItem::Section::footwear, PackItem::Section::accessories, PackItem::Section::extras};
    return all;
}

std::string_view caseName(PackItem::Section s) {
    switch (s) {
        case PackItem::Section::clothes:
            return "clothes";
        case PackItem::Section::layers:
            return "layers";
        case PackItem::Section::underwear:
            return "underwear";
        case PackItem::Section::footwear:
            return "footwear";
        case PackItem::Section::accessories:
            return "accessories";
        case PackItem::Section::extras:
            return "extras";
    }
    return "";
}

std::string_view title(PackItem::Section s) {
    switch (s) {
        case PackItem::Section::clothes:
            return "Clothes";
        case PackItem::Section::layers:
            return "Layers and jackets";
        case PackItem::Section::underwear:
            return "Underwear, socks and sleepwear";
        case PackItem::Section::footwear:
            return "Shoes";
        case PackItem::Section::accessories:
            return "Rain, sun and cold";
        case PackItem::Section::extras:
            return "For what you're doing";
    }
    return "";
}

json::Json encode(const PackItem& item) {
    json::Json out = json::Json::object();
    out["id"] = item.id;
    out["section"] = std::string(caseName(item.section));
    out["name"] = item.name;
    out["count"] = item.count;
    out["note"] = item.note;
    out["shop"] = item.shop ? json::Json(*item.shop) : json::Json(nullptr);
    return out;
}

json::Json encode(const WearGuide::DayLine& line) {
    json::Json out = json::Json::object();
    out["day"] = encode(line.day);
    out["dayBand"] = static_cast<int>(line.dayBand);
    out["nightBand"] = static_cast<int>(line.nightBand);
    out["summary"] = line.summary;
    return out;
}

template <>
struct json::Fields<WearGuide> {
    using T = WearGuide;
    static constexpr auto list = std::tuple{
        json::field("summary", &T::summary),         json::field("daytime", &T::daytime),
        json::field("evening", &T::evening),         json::field("days", &T::days),
        json::field("packing", &T::packing),         json::field("usesForecast", &T::usesForecast),
        json::field("usesTypical", &T::usesTypical), json::field("planDays", &T::planDays)};
};

TRIPKIT_JSON_ENCODER(WearGuide)

WearDay WhatToWear::typicalDay(const std::vector<WearMonth>& months, Day day) {
    const CivilDate civil = day.civil();
    const int m = civil.month - 1;
    const int d = std::min(civil.day, monthLength[static_cast<std::size_t>(m)]);
    int a = m;
    int b = m;
    double w = 0;
    if (d < 15) {
        a = (m + 11) % 12;
        const double length = monthLength[static_cast<std::size_t>(a)];
        w = (d + length - 15) / length;
    } else {
        b = (m + 1) % 12;
        const double length = monthLength[static_cast<std::size_t>(a)];
        w = (d - 15) / length;
    }
    const WearMonth& A = months.at(static_cast<std::size_t>(a));
    const WearMonth& B = months.at(static_cast<std::size_t>(b));
    const auto blend = [w](double x, double y) { return (1 - w) * x + w * y; };
    WearDay out;
    out.day = day;
    out.high = blend(A.high, B.high);
    out.low = blend(A.low, B.low);
    out.rain = std::clamp(blend(A.rain, B.rain), 0.0, 1.0);
    out.snow = std::clamp(blend(A.snow, B.snow), 0.0, 1.0);
    out.humidity = blend(A.humidity, B.humidity);
    out.wind = blend(A.wind, B.wind);
    out.uv = blend(A.uv, B.uv);
    out.hotDay = blend(A.hotDay, B.hotDay);
    out.coldNight = blend(A.coldNight, B.coldNight);
    out.source = WearDay::Source::typical;
    return out;
}

std::vector<WearDay> WhatToWear::planDays(Day a, Day b, const std::vector<WearMonth>& months,
                                          const std::map<Day, WearDay>& forecast) {
    const DayRange range(a, b);
    const std::int64_t n = std::min(range.length(), maxPlanDays);
    std::vector<WearDay> out;
    out.reserve(static_cast<std::size_t>(n));
    for (std::int64_t i = 0; i < n; ++i) {
        const Day day = range.first + i;
        auto it = forecast.find(day);
        out.push_back(it != forecast.end() ? it->second : typicalDay(months, day));
    }
    return out;
}

WearGuide::DayLine WhatToWear::dayLine(const WearDay& day) {
    WearGuide::DayLine line;
    line.day = day;
    line.dayBand = tempBand(day.feelsHigh());
    line.nightBand = tempBand(day.feelsLow());
    std::string text(label(line.dayBand));
    if (line.dayBand != line.nightBand) {
        std::string night(label(line.nightBand));
        for (char& c : night) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        text += " day, " + night + " night";
    }
    if (day.snow >= 0.15) {
        text += "; snow possible";
    } else if (day.rain >= 0.5) {
        text += "; rain likely";
    } else if (day.rain >= 0.3) {
        text += "; showers possible";
    }
    if (day.uv >= 6) text += "; strong sun";
    line.summary = std::move(text);
    return line;
}

WearGuide WhatToWear::guide(const WearRequest& request, TempUnit unit) {
    WearGuide guide;
    const std::vector<WearDay>& days = request.days;
    if (days.empty()) return guide;

    const int n = static_cast<int>(days.size());
    const double count = n;
    double maxFeelsHigh = -INFINITY, minFeelsHigh = INFINITY, minFeelsLow = INFINITY;
    double minHigh = INFINITY, maxHigh = -INFINITY, sumHigh = 0;
    double minLow = INFINITY, maxLow = -INFINITY, sumLow = 0;
    double sumSwing = 0, maxRain = 0, sumRain = 0, maxSnow = 0, maxUv = 0;
    double sumHumidity = 0, sumWind = 0, minColdNight = INFINITY, maxHotDay = -INFINITY;
    bool humid = false;
    int warmDays = 0;  // feels-high of 21 or more
    int hotDays = 0;   // feels-high of 24 or more
    int workdays = 0;
    bool anyTypical = false;
    std::vector<double> feelsHighs, feelsLows;
    for (const WearDay& d : days) {
        const double fh = d.feelsHigh();
        const double fl = d.feelsLow();
        feelsHighs.push_back(fh);
        feelsLows.push_back(fl);
        maxFeelsHigh = std::max(maxFeelsHigh, fh);
        minFeelsHigh = std::min(minFeelsHigh, fh);
        minFeelsLow = std::min(minFeelsLow, fl);
        minHigh = std::min(minHigh, d.high);
        maxHigh = std::max(maxHigh, d.high);
        sumHigh += d.high;
        minLow = std::min(minLow, d.low);
        maxLow = std::max(maxLow, d.low);
        sumLow += d.low;
        sumSwing += d.high - d.low;
        maxRain = std::max(maxRain, d.rain);
        sumRain += d.rain;
        maxSnow = std::max(maxSnow, d.snow);
        maxUv = std::max(maxUv, d.uv);
        sumHumidity += d.humidity;
        sumWind += d.wind;
        minColdNight = std::min(minColdNight, d.coldNight);
        maxHotDay = std::max(maxHotDay, d.hotDay);
        if (d.humidity >= 70 && d.high >= 24) humid = true;
        if (fh >= 21) ++warmDays;
        if (fh >= 24) ++hotDays;
        const int weekday = d.day.weekday();
        if (weekday >= 2 && weekday <= 6) ++workdays;
        if (d.source == WearDay::Source::typical) anyTypical = true;
        if (d.source == WearDay::Source::forecast) guide.usesForecast = true;
    }
    guide.usesTypical = anyTypical;
    const TempBand hottest = tempBand(maxFeelsHigh);
    const double averageHigh = sumHigh / count;
    const double averageLow = sumLow / count;
    const double averageHumidity = sumHumidity / count;
    const double averageWind = sumWind / count;
    const double low = minFeelsLow;
    const double coolHigh = minFeelsHigh;
    const double hotHigh = maxFeelsHigh;

    // Weather notes.
    std::vector<std::string>& notes = guide.summary;
    {
        std::string highs = maxHigh - minHigh >= 4
                                ? "highs " + rangeText(minHigh, maxHigh, unit)
                                : "highs around " + temperatureText(averageHigh, unit);
        const std::string lows = maxLow - minLow >= 4
                                     ? "lows " + rangeText(minLow, maxLow, unit)
                                     : "lows around " + temperatureText(averageLow, unit);
        highs[0] = 'H';
        notes.push_back(highs + ", " + lows + ".");
    }
    if (maxSnow >= 0.15) notes.emplace_back("Snow is possible; dress for wet and cold.");
    const std::int64_t wetDays = roundHalfUp(sumRain);
    if (wetDays < 1) {
        notes.emplace_back(maxRain >= 0.15 ? "A shower is possible." : "Usually dry.");
    } else if (n == 1) {
        notes.emplace_back("Rain is likely.");
    } else {
        notes.push_back(fmt::format("Rain on about {} of {} days.", wetDays, n));
    }
    if (sumSwing / count >= 10) {
        notes.push_back("Big swing from day to night (about " +
                        differenceText(sumSwing / count, unit) + "): dress in layers.");
    }
    if (maxUv >= 8) {
        notes.push_back(
            fmt::format("Very strong sun (UV up to {}): cover up and use sunscreen midday.",
                        roundHalfUp(maxUv)));
    } else if (maxUv >= 6) {
        notes.push_back(fmt::format("Strong sun (UV up to {}): sunscreen, sunglasses and a hat.",
                                    roundHalfUp(maxUv)));
    }
    if (humid) notes.emplace_back("Humid, so it feels hotter: breathable, quick-dry fabrics.");
    if (averageWind >= 20) notes.emplace_back("Often windy: a windproof layer helps.");
    if (averageHumidity <= 35) notes.emplace_back("Dry air: lip balm and moisturizer.");
    if (request.modest) {
        notes.emplace_back("Local custom favors modest dress: cover shoulders and knees.");
    }
    if (n >= 15 && !request.laundry) {
        notes.emplace_back("The counts stop at 14 days; plan a wash on longer trips.");
    }
    if (anyTypical) {
        if (tempBand(minColdNight) < tempBand(minFeelsLow)) {
            notes.push_back("A cold night can drop to " + temperatureText(minColdNight, unit) +
                            ".");
        }
        const TempBand hotDayBand = tempBand(maxHotDay);
        if (hotDayBand > hottest) {
            notes.push_back(
                (hotDayBand < TempBand::warm ? "A warmer day can reach " : "A hot day can reach ") +
                temperatureText(maxHotDay, unit) + ".");
        }
    }

    // Daytime and evening: the upper middle of the feels-like temperatures.
    std::sort(feelsHighs.begin(), feelsHighs.end());
    std::sort(feelsLows.begin(), feelsLows.end());
    const auto middle = static_cast<std::size_t>(n / 2);
    guide.daytime = "Daytime: " + std::string(daytimePhrase(tempBand(feelsHighs[middle]))) + ".";
    guide.evening = "Evenings: " + std::string(eveningPhrase(tempBand(feelsLows[middle]))) + ".";

    // Counts.
    const int planDays = std::min(n, request.laundry ? 5 : 14);
    guide.planDays = planDays;
    const std::string S = request.laundry ? " (enough for 5 days, then a wash)" : "";
    const int E = hottest == TempBand::hot || humid ? 1 : 0;
    const bool hiking = request.has(WearActivity::hiking);
    const bool themeParks = request.has(WearActivity::themeParks);
    const bool beach = request.has(WearActivity::beach);
    const bool dinnerOut = request.has(WearActivity::dinnerOut);
    const bool business = request.has(WearActivity::business);
    const bool cityWalking = request.has(WearActivity::cityWalking);
    using Section = PackItem::Section;
    Packer p;

    // Clothes: tops.
    {
        const int T = planDays + E;
        const double f = warmDays / count;
        int w = static_cast<int>(roundHalfUp(f * T));
        if (f > 0 && w < 2) w = 1;
        if (f < 1) w = std::min(w, T - 1);
        if (E == 1) {
            p.add(Section::clothes, "breathable-top",
                  "Light, breathable tops (linen, cotton or quick-dry)", w,
                  "Short sleeves for the warm days" + S + ".");
        } else {
            p.add(Section::clothes, "tee", "T-shirts or short-sleeve tops", w,
                  "For the warm days" + S + ".");
        }
        p.add(Section::clothes, "long-sleeve", "Long-sleeve tops", T - w,
              "For the cooler days" + S + ".");
    }
    // Bottoms.
    {
        const int B = n < 3 ? 1 : std::max((planDays + 2) / 3, 2);
        const double g = hotDays / count;
        int s = static_cast<int>(roundHalfUp(g * B));
        if (g > 0) s = std::max(s, 1);
        const auto usual = [&] { return B < 2 || request.modest ? 0 : std::min(B - 1, s); };
        int shorts = 0;
        if (low < 17 || g < 1) {
            shorts = usual();
        } else if (dinnerOut) {
            shorts = usual();
        } else if (request.modest) {
            shorts = 0;
        } else if (hiking) {
            shorts = B < 2 ? 0 : std::min(B - 1, s);
        } else {
            shorts = s;
        }
        p.add(Section::clothes, "shorts", "Shorts or skirts", shorts, "For the warm days.");
        const int L = B - shorts;
        if (coolHigh >= 21) {
            if (request.modest) {
                p.add(Section::clothes, "light-pants", "Light pants or long skirts", L,
                      "Local custom favors covered knees.");
            } else {
                p.add(Section::clothes, "light-pants", "Light pants", L,
                      "For evenings and cooler moments.");
            }
        } else {
            p.add(Section::clothes, "pants", "Pants or jeans", L, "Wear each a few times.");
        }
    }
    // Thermals.
    if (coolHigh < 2 || low < -7) {
        const int thermals = request.laundry ? 2 : std::clamp((planDays + 2) / 3, 1, 3);
        p.add(Section::clothes, "thermal-top", "Thermal base-layer tops", thermals,
              "Under everything on the coldest days.", "thermal base layer top");
        p.add(Section::clothes, "thermal-bottoms", "Thermal leggings or long underwear", thermals,
              "Under pants when it's below freezing.", "thermal leggings");
    }

    // Layers.
    const std::string lightLayer = "A light layer (cardigan, overshirt or light sweater)";
    if (low >= 17 && low < 21) {
        p.add(Section::layers, "light-layer", lightLayer, 1, "For cooler evenings.");
    } else if (low >= 21 && hottest == TempBand::hot) {
        p.add(Section::layers, "light-layer", lightLayer, 1,
              "Air conditioning indoors can be chilly.");
    }
    if (low >= 2 && low < 10) {
        p.add(Section::layers, "fleece", "Warm sweater or fleece", 1, "For cold evenings.",
              "fleece jacket");
    }
    if (low < 2) {
        p.add(Section::layers, "insulated-mid", "Insulated mid layer (fleece or light down)", 1,
              "Under your coat when it's freezing.", "packable down jacket");
    }
    if (low >= 10 && low < 17) {
        if (maxRain >= 0.3) {
            p.add(Section::layers, "rain-jacket", "Packable rain jacket", 1,
                  "For showers and cool evenings.", "packable rain jacket");
        } else {
            p.add(Section::layers, "light-jacket", "Light jacket or warm layer", 1,
                  "For cool evenings.", "lightweight jacket");
        }
    } else if (low >= 2 && low < 10) {
        if (maxRain >= 0.3) {
            p.add(Section::layers, "rain-jacket", "Waterproof rain jacket", 1,
                  "Wear it over the fleece when it's wet.", "waterproof rain jacket");
        } else {
            p.add(Section::layers, "warm-jacket", "Warm jacket", 1, "For cold mornings and nights.",
                  "warm jacket");
        }
    } else if (low >= -7 && low < 2) {
        p.add(Section::layers, "winter-coat", "Insulated winter coat", 1,
              "For freezing days and nights.", "insulated winter coat");
    } else if (low < -7) {
        p.add(Section::layers, "parka", "Heavy winter parka", 1,
              "For temperatures well below freezing.", "winter parka");
    } else if (low >= 17) {
        if (maxRain >= 0.3 && hotHigh < 27) {
            p.add(Section::layers, "rain-jacket", "Packable rain jacket", 1, "For showers.",
                  "packable rain jacket");
        } else if (averageWind >= 20) {
            p.add(Section::layers, "windbreaker", "Windproof jacket", 1, "It's often windy.",
                  "windbreaker jacket");
        }
    }

    // Underwear, socks and sleepwear.
    p.add(Section::underwear, "underwear", "Underwear", planDays + 1,
          "One a day and a spare" + S + ".");
    const int X = hiking || themeParks || maxRain >= 0.4 ? 1 : 0;
    if (low <= 2) {
        p.add(Section::underwear, "warm-socks", "Warm socks (wool or wool blend)", planDays + 1 + X,
              "One pair a day and a spare.", "wool socks");
    } else {
        p.add(
            Section::underwear, "socks", "Socks", planDays + 1 + X,
            std::string("One pair a day and a spare") + (X == 1 ? ", plus a dry pair" : "") + ".");
    }
    p.add(Section::underwear, "sleepwear", "Sleepwear", planDays > 7 ? 2 : 1,
          low < 10 ? "Something warm for chilly nights." : "Light for warm nights.");

    // Shoes.
    bool everydayChosen = false;
    if (low <= -5 || maxSnow >= 0.15) {
        p.add(Section::footwear, "winter-boots", "Insulated waterproof boots", 1,
              "For snow and slush; your everyday pair.", "insulated waterproof winter boots");
        everydayChosen = true;
    } else if (maxRain >= 0.4 && hotHigh < 27) {
        p.add(Section::footwear, "waterproof-shoes", "Water-resistant walking shoes", 1,
              "For wet streets; your everyday pair.", "waterproof walking shoes");
        everydayChosen = true;
    }
    if (hiking) {
        p.add(Section::footwear, "hiking-shoes", "Hiking shoes or boots", 1,
              "Grip and support on trails.", "hiking shoes");
    }
    if (!everydayChosen) {
        p.add(Section::footwear, "walking-shoes", "Comfortable walking shoes (broken in)", 1,
              themeParks ? "Theme park days mean miles of walking."
                         : "Your everyday pair; wear the bulkiest pair on the plane.",
              "comfortable walking shoes");
    }
    if (hotHigh >= 24 || beach) {
        p.add(Section::footwear, "sandals", "Sandals or flip-flops", 1,
              beach ? "For the beach and pool." : "For hot days.");
    }
    if (business || dinnerOut) {
        p.add(Section::footwear, "dress-shoes", "Dressier shoes", 1,
              business ? "For meetings." : "For dinner out.");
    }

    // Rain, sun and cold.
    if (maxRain >= 0.25) {
        p.add(Section::accessories, "umbrella", "Compact umbrella", 1,
              "Rain is likely on some days.", "compact travel umbrella");
    }
    if (maxUv >= 3 || beach) {
        p.add(Section::accessories, "sunglasses", "Sunglasses", 1,
              fmt::format("UV up to {}.", roundHalfUp(maxUv)));
        p.add(Section::accessories, "sunscreen", "Sunscreen (SPF 30 or higher)", 1,
              maxUv >= 8 ? "Very strong sun: reapply every two hours."
                         : "Reapply after swimming or sweating.",
              "travel size sunscreen spf 30");
    }
    if (maxUv >= 8) {
        p.add(Section::accessories, "sun-hat", "Wide-brim sun hat", 1, "Very strong midday sun.",
              "packable wide brim sun hat");
    } else if (maxUv >= 6) {
        p.add(Section::accessories, "sun-hat", "Sun hat or cap", 1, "Strong midday sun.",
              "packable sun hat");
    }
    if (low <= 5) {
        p.add(Section::accessories, "warm-hat", "Warm hat", 1, "For cold mornings and nights.",
              "warm beanie hat");
        if (low > -5) {
            p.add(Section::accessories, "gloves", "Gloves", 1, "For cold mornings and nights.",
                  "touchscreen gloves");
        } else {
            p.add(Section::accessories, "gloves", "Insulated gloves", 1, "Below freezing.",
                  "insulated winter gloves");
        }
    }
    if (low <= 2) {
        p.add(Section::accessories, "scarf", "Scarf", 1, "Keeps the wind off your neck.");
        p.add(Section::accessories, "lip-balm", "Lip balm and moisturizer", 1,
              averageHumidity <= 35 ? "The air is dry." : "Cold air dries skin.");
    } else if (averageHumidity <= 35) {
        p.add(Section::accessories, "lip-balm", "Lip balm and moisturizer", 1, "The air is dry.");
    }
    if (request.country != "US" && (request.modest || cityWalking)) {
        p.add(Section::accessories, "cover-scarf", "Light scarf or shawl", 1,
              "Covers shoulders or hair at religious sites.", "lightweight travel scarf");
    }

    // For what you're doing.
    if (cityWalking || themeParks) {
        p.add(Section::extras, "day-bag", "Small day bag or crossbody bag", 1,
              "Hands free, valuables in front.", "anti theft crossbody bag");
    }
    if (hottest == TempBand::hot) {
        p.add(Section::extras, "water-bottle", "Refillable water bottle", 1,
              "Drink often in the heat.", "insulated water bottle");
    } else if (hiking || themeParks) {
        p.add(Section::extras, "water-bottle", "Refillable water bottle", 1, "Stay topped up.",
              "insulated water bottle");
    }
    if (beach) {
        p.add(Section::extras, "swimsuit", "Swimsuits", n < 4 ? 1 : 2, "Two, so one can dry.");
        p.add(Section::extras, "cover-up", "Swim cover-up", 1,
              "For walking to and from the beach.");
        if (maxUv >= 8) {
            p.add(Section::extras, "rash-guard", "Rash guard or UPF swim shirt", 1,
                  "Sun protection in the water.", "upf 50 rash guard");
        }
    }
    if (hiking) {
        p.add(Section::extras, "hiking-socks", "Hiking socks", std::clamp((n + 1) / 2, 1, 4),
              "Cushioned, moisture-wicking.", "merino hiking socks");
        p.add(Section::extras, "daypack", "Daypack", 1, "Room for water, snacks and a layer.",
              "packable daypack");
    }
    if (themeParks) {
        if (maxRain >= 0.25) {
            p.add(Section::extras, "poncho", "Rain poncho", 1,
                  "Quick to pull on for a passing shower.", "disposable rain poncho");
        }
        if (E == 1) {
            p.add(Section::extras, "cooling-towel", "Cooling towel", 1,
                  "For long, hot days in line.", "cooling towel");
        }
        p.add(Section::extras, "battery", "Portable phone battery", 1, "Park apps drain phones.",
              "portable charger power bank");
    }
    if (dinnerOut) {
        p.add(Section::extras, "smart-outfit", "Dressier outfit for dinner", n < 8 ? 1 : 2,
              "Some restaurants have a dress code.");
    }
    if (business) {
        const int k = std::max(workdays, 1);
        p.add(Section::extras, "business-outfit", "Business outfits", std::min(k, 10),
              fmt::format("One per workday ({}).", k));
        p.add(Section::extras, "blazer", "Blazer or suit jacket", 1, "For meetings.");
    }

    guide.packing = std::move(p.items);
    for (const WearDay& d : days) guide.days.push_back(dayLine(d));
    return guide;
}

std::string_view WhatToWear::sourceLine(const WearGuide& guide) {
    if (guide.usesForecast) return forecastSourceLine;
    return guide.typicalFromNormals ? normalsSourceLine : typicalSourceLine;
}

std::string WhatToWear::exportText(const WearGuide& guide, std::string_view title,
                                   const std::set<std::string>& ticked,
                                   const std::vector<std::string>& dressNotes) {
    std::vector<std::string> lines;
    lines.emplace_back(title);
    lines.emplace_back(std::min<std::size_t>(utf8Length(title), 60), '=');
    for (PackItem::Section section : allPackSections()) {
        bool first = true;
        for (const PackItem& item : guide.packing) {
            if (item.section != section) continue;
            if (first) {
                lines.emplace_back();
                lines.emplace_back(tripkit::title(section));
                first = false;
            }
            std::string line = (ticked.count(item.id) != 0 ? "[x] " : "[ ] ") + item.name;
            if (item.count >= 2) line += " × " + std::to_string(item.count);
            lines.push_back(std::move(line));
        }
    }
    if (!dressNotes.empty()) {
        lines.emplace_back();
        lines.emplace_back("Local dress notes");
        for (const std::string& note : dressNotes) lines.push_back("- " + note);
    }
    lines.emplace_back();
    lines.emplace_back(sourceLine(guide));
    std::string out;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (i > 0) out += '\n';
        out += lines[i];
    }
    return out;
}

}  // namespace tripkit
