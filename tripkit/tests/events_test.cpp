#include "tripkit/events.h"

#include <gtest/gtest.h>

#include <set>

namespace tripkit {
namespace {

Day day(int year, int month, int d) {
    return Day::fromCivil(year, month, d);
}

std::string errorOf(const std::string& text) {
    try {
        json::decodeDocument<EventCalendar>(text, "disney-events.json");
        return "";
    } catch (const json::DecodeError& e) {
        return e.what();
    }
}

// One calendar with a quiet span and two busy spans that share days.
const char* kCalendar =
    R"({"asOf":"2026-11-23",)"
    R"("sources":[{"name":"Events","nameEs":"Eventos","url":"https://example.org/events"}],)"
    R"("events":[)"
    R"({"name":"Festival","nameEs":"Festival","first":"2026-03-01","last":"2026-05-31","busy":false,"estimated":false},)"
    R"({"name":"Spring break","nameEs":"Primavera","first":"2026-03-07","last":"2026-03-22","busy":true,"estimated":false},)"
    R"({"name":"Easter weeks","nameEs":"Pascua","first":"2026-03-20","last":"2026-04-05","busy":true,"estimated":true}]})";

TEST(EventCalendar, DecodesAndEncodesInTheFilesOrder) {
    const auto calendar = json::decodeDocument<EventCalendar>(kCalendar, "x");
    ASSERT_EQ(calendar.events.size(), 3u);
    EXPECT_EQ(calendar.asOf, "2026-11-23");
    EXPECT_EQ(calendar.sources.at(0).url, "https://example.org/events");
    const Event& easter = calendar.events[2];
    EXPECT_EQ(easter.first, day(2026, 3, 20));
    EXPECT_EQ(easter.last, day(2026, 4, 5));
    EXPECT_TRUE(easter.busy);
    EXPECT_TRUE(easter.estimated);
    EXPECT_FALSE(calendar.events[0].busy);
    EXPECT_EQ(encode(calendar).dump(), kCalendar);

    // A one-day event is allowed; only a reversed span is not.
    const std::string oneDay =
        R"({"asOf":"x","sources":[],"events":[{"name":"Race","nameEs":"Carrera",)"
        R"("first":"2026-01-10","last":"2026-01-10","busy":true,"estimated":false}]})";
    EXPECT_EQ(json::decodeDocument<EventCalendar>(oneDay, "x").events.at(0).days().length(), 1);
}

TEST(EventCalendar, DecodeErrorsNameTheFileAndKey) {
    const std::string head = R"({"asOf":"2026-11-23","sources":[],"events":[)";
    const std::string good =
        R"({"name":"A","nameEs":"A","first":"2026-03-01","last":"2026-03-02","busy":true,"estimated":false})";
    EXPECT_EQ(
        errorOf(
            head + good + "," +
            R"({"name":"B","nameEs":"B","first":"2026-03-01","last":"2026-03-02","estimated":false}]})"),
        "disney-events.json: events[1].busy: required key is missing");
    EXPECT_EQ(errorOf(head + R"({"name":"A","nameEs":"A","first":"2026-03-01","last":"2026-03-02",)"
                             R"("busy":true,"estimated":"no"}]})"),
              "disney-events.json: events[0].estimated: expected a boolean");
    EXPECT_EQ(errorOf(head + R"({"name":"A","nameEs":"A","first":"2026-03-02","last":"2026-03-01",)"
                             R"("busy":true,"estimated":false}]})"),
              "disney-events.json: events[0]: first 2026-03-02 is after last 2026-03-01");
    EXPECT_EQ(errorOf(head + R"({"name":"A","nameEs":"A","first":"2026-13-01","last":"2026-03-01",)"
                             R"("busy":true,"estimated":false}]})"),
              "disney-events.json: events[0].first: not a date: 2026-13-01");
    EXPECT_EQ(errorOf(R"({"asOf":"2026-11-23","sources":[{"name":"E","url":"u"}],"events":[]})"),
              "disney-events.json: sources[0].nameEs: required key is missing");
    EXPECT_EQ(errorOf(R"({"asOf":"2026-11-23","sources":[],"events":{}})"),
              "disney-events.json: events: expected an array");
    EXPECT_EQ(errorOf(R"({"sources":[],"events":[]})"),
              "disney-events.json: asOf: required key is missing");
}

TEST(EventCalendar, BusyDaysAtTheEdgesOfEachSpan) {
    const auto calendar = json::decodeDocument<EventCalendar>(kCalendar, "x");

    // Only busy events count: the festival's first days are quiet.
    EXPECT_FALSE(calendar.isBusy(day(2026, 3, 1)));
    EXPECT_FALSE(calendar.isBusy(day(2026, 3, 6)));
    EXPECT_TRUE(calendar.isBusy(day(2026, 3, 7)));
    EXPECT_TRUE(calendar.isBusy(day(2026, 3, 22)));  // overlap of the two busy spans
    EXPECT_TRUE(calendar.isBusy(day(2026, 4, 5)));
    EXPECT_FALSE(calendar.isBusy(day(2026, 4, 6)));

    // Overlapping spans give each day once, ascending: 7 March to 5 April.
    const std::vector<Day> days = calendar.busyDays();
    ASSERT_EQ(days.size(), 30u);
    EXPECT_EQ(days.front(), day(2026, 3, 7));
    EXPECT_EQ(days.back(), day(2026, 4, 5));
    EXPECT_EQ(std::set<Day>(days.begin(), days.end()).size(), days.size());
    for (std::size_t i = 1; i < days.size(); ++i) EXPECT_EQ(days[i] - days[i - 1], 1);
    for (Day d = day(2026, 2, 25); d <= day(2026, 4, 10); d += 1) {
        EXPECT_EQ(calendar.isBusy(d), std::binary_search(days.begin(), days.end(), d)) << d;
    }

    auto names = [&](Day a, Day b) {
        std::vector<std::string> out;
        for (const Event& e : calendar.busyOverlapping(DayRange(a, b))) out.push_back(e.name);
        return out;
    };
    using Names = std::vector<std::string>;
    // A stay that ends the day before a span, or starts the day after, does not touch it.
    EXPECT_EQ(names(day(2026, 3, 1), day(2026, 3, 6)), Names{});
    EXPECT_EQ(names(day(2026, 4, 6), day(2026, 4, 12)), Names{});
    // Sharing one day at either end is enough.
    EXPECT_EQ(names(day(2026, 3, 1), day(2026, 3, 7)), Names{"Spring break"});
    EXPECT_EQ(names(day(2026, 4, 5), day(2026, 4, 12)), Names{"Easter weeks"});
    // A range inside both, or around both, gives both in file order.
    EXPECT_EQ(names(day(2026, 3, 21), day(2026, 3, 21)), (Names{"Spring break", "Easter weeks"}));
    EXPECT_EQ(names(day(2026, 1, 1), day(2026, 12, 31)), (Names{"Spring break", "Easter weeks"}));

    EXPECT_TRUE(EventCalendar{}.busyDays().empty());
    EXPECT_FALSE(EventCalendar{}.isBusy(day(2026, 3, 7)));
}

// The fourth Thursday of November.
Day thanksgiving(int year) {
    Day d = day(year, 11, 1);
    while (d.weekday() != 5) d += 1;
    return d + 21;
}

TEST(EventCalendar, ShippedCalendarIsSane) {
    const EventCalendar& shipped = EventCalendar::shipped();
    EXPECT_EQ(&shipped, &EventCalendar::shipped());  // decoded once
    EXPECT_FALSE(shipped.asOf.empty());
    ASSERT_FALSE(shipped.sources.empty());
    for (const auto& s : shipped.sources) {
        EXPECT_TRUE(s.url.starts_with("https://")) << s.url;
        EXPECT_FALSE(s.nameEs.empty());
    }

    std::set<std::int64_t> years;
    for (std::size_t i = 0; i < shipped.events.size(); ++i) {
        const Event& e = shipped.events[i];
        EXPECT_FALSE(e.name.empty());
        EXPECT_FALSE(e.nameEs.empty()) << e.name;
        // No event runs for more than a season, and the list is by first day.
        EXPECT_LE(e.days().length(), 100) << e.name << " " << e.first;
        if (i > 0) {
            EXPECT_LE(shipped.events[i - 1].first, e.first) << e.name;
        }
        years.insert(e.first.year());
    }
    EXPECT_TRUE(years.count(2026) && years.count(2027) && years.count(2028));

    // The peaks every year: Christmas, New Year's Day and Thanksgiving, each
    // with its week around it.
    for (int year = 2026; year <= 2028; ++year) {
        EXPECT_TRUE(shipped.isBusy(day(year, 12, 25))) << year;
        EXPECT_TRUE(shipped.isBusy(day(year, 1, 1))) << year;
        EXPECT_TRUE(shipped.isBusy(thanksgiving(year) - 3)) << year;
        EXPECT_TRUE(shipped.isBusy(thanksgiving(year) + 3)) << year;
        // Mid-September is the quietest time of the year.
        EXPECT_FALSE(shipped.isBusy(day(year, 9, 15))) << year;
    }
    // Busy days are a small share of the year, or skipping them would leave
    // a planner little to offer.
    const auto busy = shipped.busyDays();
    EXPECT_GT(busy.size(), 3u * 40);
    EXPECT_LT(busy.size(), 3u * 120);
}

}  // namespace
}  // namespace tripkit
