#include "tripkit/events.h"

#include <gtest/gtest.h>

#include "tripkit/tests/test_data.h"

namespace tripkit {
namespace {

Day day(int year, int month, int d) {
    return Day::fromCivil(year, month, d);
}

std::string errorOf(const std::string& text) {
    return testing::decodeError<EventCalendar>(text, "disney-events.json");
}

// One calendar with a quiet span and two busy spans that share days.
const char* kCalendar =
    R"({"asOf":"2026-11-23",)"
    R"("sources":[{"name":"Events","nameEs":"Eventos","url":"https://example.org/events"}],)"
    R"("events":[)"
    R"({"name":"Festival","nameEs":"Festival","first":"2026-03-01","last":"2026-05-31","busy":false,"estimated":false},)"
    R"({"name":"Spring break","nameEs":"Primavera","first":"2026-03-07","last":"2026-03-22","busy":true,"estimated":false},)"
    R"({"name":"Easter weeks","nameEs":"Pascua","first":"2026-03-20","last":"2026-04-05","busy":true,"estimated":true}]})";

TEST(EventCalendar, RoundTripsRejectsBrokenEventsBusyDaysAndShipped) {
    EXPECT_EQ(encode(json::decodeDocument<EventCalendar>(kCalendar, "x")).dump(), kCalendar);

    // A one-day event is allowed; a reversed span is not.
    const auto event = [](const std::string& first, const std::string& last) {
        return errorOf(R"({"asOf":"2026-11-23","sources":[],"events":[{"name":"A","nameEs":"A",)"
                       R"("first":")" +
                       first + R"(","last":")" + last + R"(","busy":true,"estimated":false}]})");
    };
    EXPECT_EQ(event("2026-03-01", "2026-03-01"), "decoded");
    EXPECT_EQ(event("2026-03-02", "2026-03-01"),
              "disney-events.json: events[0]: first 2026-03-02 is after last 2026-03-01");
    EXPECT_EQ(event("2026-13-01", "2026-03-01"),
              "disney-events.json: events[0].first: not a date: 2026-13-01");

    const auto calendar = json::decodeDocument<EventCalendar>(kCalendar, "x");

    // Only busy events count (the festival's first days are quiet);
    // overlapping spans give each day once, ascending: 7 March to 5 April.
    const std::vector<Day> days = calendar.busyDays();
    ASSERT_EQ(days.size(), 30u);
    EXPECT_EQ(days.front(), day(2026, 3, 7));
    EXPECT_EQ(days.back(), day(2026, 4, 5));
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
    // A stay that ends the day before a span does not touch it; sharing one
    // day at either end is enough; a range inside both gives both in file order.
    EXPECT_EQ(names(day(2026, 3, 1), day(2026, 3, 6)), Names{});
    EXPECT_EQ(names(day(2026, 3, 1), day(2026, 3, 7)), Names{"Spring break"});
    EXPECT_EQ(names(day(2026, 4, 5), day(2026, 4, 12)), Names{"Easter weeks"});
    EXPECT_EQ(names(day(2026, 3, 21), day(2026, 3, 21)), (Names{"Spring break", "Easter weeks"}));

    // check_guides.py checks the shipped events' order and spans; here: it
    // decodes, and Christmas is busy while mid-September is not.
    const EventCalendar& shipped = EventCalendar::shipped();
    EXPECT_TRUE(shipped.isBusy(day(2026, 12, 25)));
    EXPECT_FALSE(shipped.isBusy(day(2026, 9, 15)));
}

}  // namespace
}  // namespace tripkit
