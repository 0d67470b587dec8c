#include "tripkit/config.h"

#include <gtest/gtest.h>

#include <map>

using namespace tripkit;

namespace {

TEST(Config, EnvironmentThenBuiltInValue) {
    std::map<std::string, std::string> env;
    const Config::Environment lookup = [&](const char* name) -> const char* {
        auto it = env.find(name);
        return it == env.end() ? nullptr : it->second.c_str();
    };
    // Nothing set: the data host is the built-in one alone, partners are off.
    FeedHosts hosts = Config::feedHosts(lookup);
    ASSERT_FALSE(hosts.hosts.empty());
    EXPECT_EQ(hosts.hosts.back(), Config::defaultDataURL);
    EXPECT_EQ(Config::partners(lookup).marker, "");

    // A real value wins (what counts as one is FeedHosts' rule).
    env["RWDataURL"] = " https://mirror.example.org/feed ";
    EXPECT_EQ(Config::feedHosts(lookup).hosts,
              (std::vector<std::string>{"https://mirror.example.org/feed/",
                                        std::string(Config::defaultDataURL)}));
    // The partners read through the same settings; their rules are PartnerConfig's.
    env["RWTravelpayoutsMarker"] = "12345";
    EXPECT_EQ(Config::partners(lookup).marker, "12345");
    EXPECT_EQ(Config::setting("RWNoSuchKey", lookup), std::nullopt);
}

}  // namespace
