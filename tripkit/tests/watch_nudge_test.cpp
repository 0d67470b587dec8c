#include "tripkit/watch_nudge.h"

#include <gtest/gtest.h>

using namespace tripkit;

namespace {

TEST(WatchNudge, OffersOnTheSecondOpeningOncePerPlace) {
    WatchNudge n;
    // Opening LIS seven times: the offer comes on the second, and only then.
    std::vector<bool> offers;
    for (int i = 0; i < 7; ++i) offers.push_back(n.recordView("LIS", false, false));
    EXPECT_EQ(offers, (std::vector<bool>{false, true, false, false, false, false, false}));
    EXPECT_EQ(n.views.at("LIS"), 7);

    // Watching, or an offer made earlier in this run, holds the offer back
    // without using it up; the count still grows.
    EXPECT_FALSE(n.recordView("CUN", false, false));
    EXPECT_FALSE(n.recordView("CUN", true, false));
    EXPECT_FALSE(n.recordView("CUN", false, true));
    EXPECT_EQ(n.views.at("CUN"), 3);
    EXPECT_TRUE(n.recordView("CUN", false, false));
    EXPECT_EQ(n.offered, (std::set<std::string>{"CUN", "LIS"}));

    // An empty code changes nothing.
    const WatchNudge before = n;
    EXPECT_FALSE(n.recordView("", false, false));
    EXPECT_EQ(n, before);
}

TEST(WatchNudge, CodesFoldToUpperCaseAndCountsStopAt99) {
    WatchNudge n;
    EXPECT_FALSE(n.recordView("sju", false, false));
    EXPECT_TRUE(n.recordView("Sju", false, false));
    n.recordView("ñu", true, false);  // letters beyond ASCII fold too
    EXPECT_EQ(n.views, (std::map<std::string, int>{{"SJU", 2}, {"ÑU", 1}}));
    for (int i = 0; i < 120; ++i) n.recordView("bcn", true, false);
    EXPECT_EQ(n.views.at("BCN"), 99);
    EXPECT_TRUE(n.recordView("BCN", false, false));
    EXPECT_EQ(n.views.at("BCN"), 99);
}

TEST(WatchNudge, RoundTripsAndNeedsBothKeys) {
    WatchNudge n;
    for (const char* code : {"LIS", "LIS", "KEF"}) n.recordView(code, false, false);
    EXPECT_EQ(json::decodeDocument<WatchNudge>(encode(n).dump(), "watchNudge"), n);
    for (const char* bad :
         {R"({"views":{}})", R"({"offered":[]})", R"({"views":{"LIS":"2"},"offered":[]})"}) {
        EXPECT_THROW(json::decodeDocument<WatchNudge>(bad, "w"), json::DecodeError) << bad;
    }
}

}  // namespace
