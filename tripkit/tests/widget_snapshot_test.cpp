#include "tripkit/widget_snapshot.h"

#include <gtest/gtest.h>

using namespace tripkit;

namespace {

const Day kToday = Day::fromCivil(2026, 11, 20);

TEST(WidgetSnapshot, ShowingByAgeAndCappedDay) {
    WidgetSnapshot s;
    auto at = [&](int daysAgo) {
        s.updated = kToday - daysAgo;
        return s.showing(kToday);
    };
    EXPECT_EQ(at(-2), WidgetSnapshot::Showing::current);  // clock set back: still current
    EXPECT_EQ(at(3), WidgetSnapshot::Showing::current);
    EXPECT_EQ(at(4), WidgetSnapshot::Showing::dated);
    EXPECT_EQ(at(7), WidgetSnapshot::Showing::dated);
    EXPECT_EQ(at(8), WidgetSnapshot::Showing::expired);

    EXPECT_EQ(WidgetSnapshot::cappedDay("2026-11-19", kToday), kToday - 1);
    EXPECT_EQ(WidgetSnapshot::cappedDay("2026-11-21", kToday), kToday);
    EXPECT_EQ(WidgetSnapshot::cappedDay("2027-01-01T08:00:00Z", kToday), kToday);
    EXPECT_EQ(WidgetSnapshot::cappedDay(std::nullopt, kToday), std::nullopt);
    EXPECT_EQ(WidgetSnapshot::cappedDay("yesterday", kToday), std::nullopt);
}

TEST(WidgetSnapshot, RoundTripsWithOptionalKeysLeftOut) {
    WidgetSnapshot full;
    full.updated = kToday;
    full.homeAirports = {"JFK", "EWR"};
    full.bestDeal =
        WidgetSnapshot::Item{"Lisbon", "JFK", 412, std::nullopt, kToday + 75, kToday + 83};
    full.watched = {WidgetSnapshot::Item{"Cancún", "EWR", 219.5, 200, kToday + 60, std::nullopt}};
    const json::Json j = encode(full);
    EXPECT_FALSE(j["watched"][0].contains("returnDay"));
    EXPECT_EQ(json::decodeDocument<WidgetSnapshot>(j.dump(), "widget.json"), full);
    EXPECT_THROW(json::decodeDocument<WidgetSnapshot>(
                     R"({"updated":"2026-11-20","homeAirports":[]})", "widget.json"),
                 json::DecodeError);
}

}  // namespace
