#include <gtest/gtest.h>

#include "cli/cli.h"
#include "cli/tests/cli_test_support.h"

namespace roamwise::cli {
namespace {

using testing::runCli;
using testing::TempDir;

const std::string kRealFeed =
    std::string(ROAMWISE_REAL_DATA) + "/advisories/travel-advisories-api-sample.json";

TEST(AdvisoriesCommand, JoinsTheRealFeedWithTheCatalog) {
    auto r = runCli({"advisories", "--file", kRealFeed, "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    const auto all = r.json();
    ASSERT_EQ(all.size(), 3u);
    // By code: IR, LI, QA.
    EXPECT_EQ(all[0]["levelText"], "Do not travel");
    EXPECT_EQ(all[2]["title"], "Qatar - Level 3: Reconsider Travel");
    // Every place listed under an advisory names it in the catalog.
    bool doha = false;
    for (const auto& a : all) {
        for (const auto& d : a["destinations"])
            doha = doha || (d["id"] == "DOH" && a["code"] == "QA");
    }
    EXPECT_TRUE(doha) << all.dump();

    auto table = runCli({"advisories", "--file", kRealFeed});
    ASSERT_EQ(table.status, kOk);
    EXPECT_NE(table.out.find("Exercise increased caution"), std::string::npos) << table.out;
}

TEST(AdvisoriesCommand, SafeAndFunKeepsDomesticPlacesAndLowLevels) {
    TempDir dir;
    dir.write("feed.json", R"([
      {"Title": "Mexico Travel Advisory - Level 2: Exercise Increased Caution", "Link": "m", "Category": ["MX"]},
      {"Title": "Portugal - Level 1: Exercise Normal Precautions", "Link": "p", "Category": ["PO"]}
    ])");
    const std::string feed = dir.str() + "/feed.json";
    auto levels = [&](const std::string& maxLevel) {
        auto r = runCli({"advisories", "--file", feed, "--max-level", maxLevel, "--json"});
        EXPECT_EQ(r.status, kOk) << r.err;
        std::map<std::string, tripkit::json::Json> byId;
        for (const auto& p : r.json()) byId[p["id"].get<std::string>()] = p;
        return byId;
    };
    // Safe & Fun's rule is the advisory tests' business: --max-level reaches it.
    auto one = levels("1");
    ASSERT_TRUE(one.contains("LIS") && one.contains("MIA"));
    EXPECT_EQ(one["LIS"]["level"], 1);
    EXPECT_EQ(one["LIS"]["advisory"], "PO");
    EXPECT_TRUE(one["MIA"]["level"].is_null());
    EXPECT_FALSE(one.contains("CUN"));
    EXPECT_EQ(levels("2")["CUN"]["level"], 2);

    auto table = runCli({"advisories", "--file", feed, "--max-level", "1"});
    EXPECT_NE(table.out.find("Level 1: Exercise normal precautions"), std::string::npos);
    EXPECT_NE(table.out.find("\nCode  Place  "), std::string::npos) << table.out;
}

TEST(AdvisoriesCommand, BadFeeds) {
    TempDir dir;
    dir.write("object.json", R"({"Title": "Chad - Level 3"})");
    dir.write("broken.json", R"([{"Title": "Chad - Level 3", "Link": )");
    for (const auto& [name, error] : std::vector<std::pair<std::string, std::string>>{
             {"object.json", dir.str() + "/object.json: expected an array"},
             {"broken.json", "broken.json: not valid JSON"}}) {
        auto r = runCli({"advisories", "--file", dir.str() + "/" + name, "--json"});
        EXPECT_EQ(r.status, kNoData);
        EXPECT_NE(r.err.find(error), std::string::npos) << r.err;
        EXPECT_TRUE(r.out.empty());
    }
}

}  // namespace
}  // namespace roamwise::cli
