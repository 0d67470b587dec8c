#include <gtest/gtest.h>

#include "cli/cli.h"
#include "cli/tests/cli_test_support.h"

namespace roamwise::cli {
namespace {

using testing::runCli;

TEST(HolidaysCommand, ElevenWindowsWithTheirDaysOff) {
    auto r = runCli({"holidays", "2027", "--json"});
    ASSERT_EQ(r.status, kOk) << r.err;
    ASSERT_EQ(r.json().size(), 11u);
    // July 4, 2027 is a Sunday: observed Monday the 5th, off Saturday to Monday.
    EXPECT_EQ(r.json()[5].dump(),
              R"({"holiday":"independenceDay","date":"2027-07-04",)"
              R"("observed":"2027-07-05","days":{"first":"2027-07-03","last":"2027-07-05"}})");

    auto table = runCli({"holidays", "2027"});
    EXPECT_NE(table.out.find("\nIndependence Day            Sun 2027-07-04  Mon 2027-07-05  "
                             "Sat 2027-07-03 to Mon 2027-07-05 (3 days)\n"),
              std::string::npos)
        << table.out;
}

}  // namespace
}  // namespace roamwise::cli
