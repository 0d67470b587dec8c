#include "cli/common.h"

#include <gtest/gtest.h>

namespace roamwise::cli {
namespace {

TEST(CliCommon, MoneyAndHomeCodes) {
    EXPECT_EQ(money(0), "$0");
    EXPECT_EQ(money(999), "$999");
    EXPECT_EQ(money(1234), "$1,234");
    EXPECT_EQ(money(1234567.5), "$1,234,567.50");
    EXPECT_EQ(money(-1500), "-$1,500");
    EXPECT_EQ(money(199.99), "$199.99");

    EXPECT_EQ(parseHomeCodes(" jfk , ewr,"), (std::vector<std::string>{"JFK", "EWR"}));
    EXPECT_THROW(parseHomeCodes("JFK,J1K"), UsageError);
    EXPECT_THROW(parseHomeCodes("JFK,ÉWR"), UsageError);
}

}  // namespace
}  // namespace roamwise::cli
