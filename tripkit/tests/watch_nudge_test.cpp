#include "tripkit/watch_nudge.h"

#include <gtest/gtest.h>

namespace tripkit {
namespace {

TEST(WatchNudge, OffersOnTheSecondOpeningOncePerPlace) {
    WatchNudge n;
    EXPECT_FALSE(n.recordView("LIS", false, false));
    EXPECT_TRUE(n.recordView("LIS", false, false));
    EXPECT_EQ(n.offered, (std::set<std::string>{"LIS"}));
    for (int i = 0; i < 5; ++i) EXPECT_FALSE(n.recordView("LIS", false, false));
    EXPECT_EQ(n.views.at("LIS"), 7);

    // Watching, or an offer made earlier in this run, holds the offer back
    // without using it up; the count still grows.
    EXPECT_FALSE(n.recordView("CUN", false, false));
    EXPECT_FALSE(n.recordView("CUN", true, false));
    EXPECT_FALSE(n.recordView("CUN", false, true));
    EXPECT_FALSE(n.offered.contains("CUN"));
    EXPECT_EQ(n.views.at("CUN"), 3);
    EXPECT_TRUE(n.recordView("CUN", false, false));

    // An empty code changes nothing.
    const WatchNudge before = n;
    EXPECT_FALSE(n.recordView("", false, false));
    EXPECT_EQ(n, before);
}

TEST(WatchNudge, CodesFoldToUpperCaseAndCountsStopAt99) {
    WatchNudge n;
    EXPECT_FALSE(n.recordView("sju", false, false));
    EXPECT_TRUE(n.recordView("Sju", false, false));
    EXPECT_FALSE(n.recordView("SJU", false, false));
    EXPECT_EQ(n.views, (std::map<std::string, int>{{"SJU", 3}}));
    EXPECT_EQ(n.offered, (std::set<std::string>{"SJU"}));
    // Letters beyond ASCII fold too.
    n.recordView("ñu", true, false);
    EXPECT_EQ(n.views.count("ÑU"), 1u);

    for (int i = 0; i < 120; ++i) n.recordView("bcn", true, false);
    EXPECT_EQ(n.views.at("BCN"), 99);
    n.views["BCN"] = 99;
    EXPECT_TRUE(n.recordView("BCN", false, false));
    EXPECT_EQ(n.views.at("BCN"), 99);
}

TEST(WatchNudge, RoundTripsAndNeedsBothKeys) {
    WatchNudge n;
    n.recordView("LIS", false, false);
    n.recordView("LIS", false, false);
    n.recordView("KEF", false, false);
    const std::string text = encode(n).dump();
    EXPECT_EQ(text, R"({"views":{"KEF":1,"LIS":2},"offered":["LIS"]})");
    EXPECT_EQ(json::decodeDocument<WatchNudge>(text, "watchNudge"), n);
    EXPECT_EQ(json::decodeDocument<WatchNudge>(encode(WatchNudge{}).dump(), "w"), WatchNudge{});

    EXPECT_THROW(json::decodeDocument<WatchNudge>(R"({"views":{}})", "w"), json::DecodeError);
    EXPECT_THROW(json::decodeDocument<WatchNudge>(R"({"offered":[]})", "w"), json::DecodeError);
    EXPECT_THROW(json::decodeDocument<WatchNudge>(R"({"views":{"LIS":"2"},"offered":[]})", "w"),
                 json::DecodeError);
}

}  // namespace
}  // namespace tripkit
