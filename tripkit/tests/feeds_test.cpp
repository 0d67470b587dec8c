#include "tripkit/feed_hosts.h"
#include "tripkit/feed_status.h"
#include "tripkit/freshness.h"

#include <gtest/gtest.h>

#include <map>

using namespace tripkit;

namespace {

const std::string kDefault = "https://data.example.org/roamwise-data/";

TEST(FeedHosts, ConfiguredBaseRules) {
    using V = std::vector<std::string>;
    // Unset, unfilled, blank, not https, no host, no scheme, or the default
    // itself: the default alone.
    // clang-format off
    const std::vector<std::optional<std::string>> bases = {
        std::nullopt, "$(RW_DATA_URL)", "  \t\n", "http://mirror.example.com/data/", "https://",
        "mirror.example.com/data", kDefault, " https://data.example.org/roamwise-data "};
    // clang-format on
    for (const auto& base : bases) {
        EXPECT_EQ(FeedHosts::make(base, kDefault).hosts, V{kDefault}) << base.value_or("unset");
    }
    EXPECT_EQ(FeedHosts::make(" https://mirror.example.com/d ", kDefault).hosts,
              (V{"https://mirror.example.com/d/", kDefault}));
    EXPECT_EQ(FeedHosts::make("HTTPS://user@127.0.0.1:8443", kDefault).hosts,
              (V{"HTTPS://user@127.0.0.1:8443/", kDefault}));
}

// A loader that answers from a table of url -> status (or -1 for a time-out)
// and records what it was asked.
struct FakeLoader {
    explicit FakeLoader(std::map<std::string, int> s = {}) : statuses(std::move(s)) {}
    std::map<std::string, int> statuses;
    std::vector<std::string> asked;
    HttpLoader loader() {
        return [this](const std::string& url) {
            asked.push_back(url);
            int status = statuses.count(url) ? statuses[url] : 404;
            if (status < 0) throw FetchError(FetchError::Kind::transport, url, "timed out");
            return HttpResponse{status, "body of " + url};
        };
    }
};

TEST(FeedHosts, FetchWalksTheHostsInOrder) {
    FeedHosts hosts{{"https://a/", "https://b/"}};
    // What each host answers (-1: a time-out): the body, or the error's kind
    // and address (the last error wins), and how many were asked.
    struct Case {
        int a, b;
        std::string body;
        std::optional<FetchError::Kind> error;
        std::string errorURL;
        std::size_t asked;
    };
    const std::vector<Case> cases = {
        {500, 200, "body of https://b/x.json", {}, "", 2},
        {200, 200, "body of https://a/x.json", {}, "", 1},  // stops at the first 200
        {404, 404, "none", {}, "", 2},
        {-1, 404, "", FetchError::Kind::transport, "https://a/x.json", 2},
        {-1, 503, "", FetchError::Kind::badServerResponse, "https://b/x.json", 2},
    };
    for (const Case& c : cases) {
        FakeLoader fake({{"https://a/x.json", c.a}, {"https://b/x.json", c.b}});
        try {
            EXPECT_EQ(hosts.fetch("x.json", fake.loader()).value_or("none"), c.body);
            EXPECT_FALSE(c.error) << c.a << " " << c.b;
        } catch (const FetchError& e) {
            EXPECT_EQ(e.kind, c.error) << c.a << " " << c.b;
            EXPECT_EQ(e.url, c.errorURL);
        }
        EXPECT_EQ(fake.asked.size(), c.asked) << c.a << " " << c.b;
    }
    EXPECT_EQ(FeedHosts::faresPath("JFK"), "flights/JFK.json");
    FakeLoader fake;
    EXPECT_EQ(FeedHosts{}.fetch("x.json", fake.loader()), std::nullopt);
    EXPECT_TRUE(fake.asked.empty());
}

TEST(FeedStatus, DecideAndExplainAndFreshnessDayLimits) {
    const Day today = Day::fromCivil(2026, 11, 23);
    const Day yesterday = today - 1;
    using S = FeedStatus;
    for (bool failed : {false, true}) {
        EXPECT_EQ(S::decide(true, failed, yesterday, 0, today), S::unavailable());
        EXPECT_EQ(S::decide(true, failed, std::nullopt, 0, today), S::unavailable());
    }
    EXPECT_EQ(S::decide(true, false, std::nullopt, 4, today), S::loaded());
    EXPECT_EQ(S::decide(false, false, std::nullopt, 0, today), S::loaded());
    EXPECT_EQ(S::decide(false, true, std::nullopt, 3, today), S::loaded());
    EXPECT_EQ(S::decide(false, true, std::nullopt, 0, today), S::failed());
    EXPECT_EQ(S::decide(false, true, yesterday, 9, today), S::offline(yesterday));
    EXPECT_EQ(S::decide(false, true, today, 0, today), S::loaded());

    using E = S::Empty;
    EXPECT_EQ(S::emptyReason(S::offline(yesterday), 0), (E{E::Kind::offlineTooOld, yesterday}));
    EXPECT_EQ(S::emptyReason(S::offline(yesterday), 2), std::nullopt);
    EXPECT_EQ(S::emptyReason(S::loaded(), 0), (E{E::Kind::noneRecent, Day{}}));
    EXPECT_EQ(S::emptyReason(S::failed(), 0), std::nullopt);
    EXPECT_EQ(S::emptyReason(S::unavailable(), 0), std::nullopt);

    EXPECT_FALSE(Freshness::isStale(today - 3, today));
    EXPECT_TRUE(Freshness::isStale(today - 4, today));
    EXPECT_FALSE(Freshness::isStale(std::nullopt, today));
    EXPECT_FALSE(Freshness::isTooOld(today - 7, today));
    EXPECT_TRUE(Freshness::isTooOld(today - 8, today));
    EXPECT_TRUE(Freshness::isUsable(today - 7, today, today));
    EXPECT_FALSE(Freshness::isUsable(today - 8, today + 1, today));
    EXPECT_FALSE(Freshness::isUsable(std::nullopt, today - 1, today));
    EXPECT_TRUE(Freshness::isUsable(std::nullopt, today + 330, today));
    EXPECT_FALSE(Freshness::isUsable(std::nullopt, today + 331, today));
    EXPECT_EQ(Freshness::age(today - 5, today), 5);
    EXPECT_EQ(Freshness::age(today + 2, today), 0);
}

}  // namespace
