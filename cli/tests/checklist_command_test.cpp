#include <gtest/gtest.h>

#include "cli/cli.h"
#include "cli/tests/cli_test_support.h"

namespace roamwise::cli {
namespace {

using testing::runCli;

TEST(ChecklistCommand, AbroadWithReminderAndAtHomeWithout) {
    // Nassau: islands and family abroad. The trip is 8 weeks and 2 days away,
    // so the reminder day is still to come; 9 weeks ahead it is past.
    auto r = runCli({"checklist", "nas", "--trip", "2027-01-20", "--weeks", "8", "--today",
                     "2026-11-23", "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    const auto abroad = r.json();
    EXPECT_EQ(abroad["place"], "Nassau");
    EXPECT_EQ(abroad["document"], "passport");
    EXPECT_TRUE(abroad["entryNote"].is_string());
    EXPECT_EQ(abroad["items"][0].dump(), R"({"id":"passport","title":"Passport","packed":false})");
    EXPECT_EQ(abroad["reminder"].dump(), R"({"day":"2026-11-25","past":false})");

    auto late = runCli(
        {"checklist", "NAS", "--trip", "2027-01-20", "--weeks", "9", "--today", "2026-11-23"});
    ASSERT_EQ(late.status, kOk) << late.err;
    EXPECT_NE(late.out.find("Wed 2026-11-18\n  That’s already past, so check "
                            "your passport now.\n"),
              std::string::npos)
        << late.out;

    const auto home =
        runCli({"checklist", "BOS", "--trip", "2027-01-20", "--weeks", "8", "--json"}).json();
    EXPECT_EQ(home["document"], "photoId");
    EXPECT_TRUE(home["reminder"].is_null());
}

}  // namespace
}  // namespace roamwise::cli
