#include "cli/arguments.h"

#include <array>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "cli/common.h"
#include "cli/tests/cli_test_support.h"

namespace roamwise::cli {
namespace {

using testing::runCli;

// What a parse gave: the number, or the error's text.
template <class Parse>
std::string outcome(Parse parse) {
    try {
        return fmt::format("{}", parse());
    } catch (const UsageError& e) {
        return e.what();
    }
}

TEST(Arguments, NumbersAreDecimalFiniteAndInRange) {
    const std::string big(400, '9');
    const std::string notWhole = "YEAR must be a whole number, not \"",
                      notDecimal = "--price must be a decimal number like 250 or 199.50, not \"",
                      years = "YEAR must be between 1000 and 9999",
                      prices = "--price must be between 0.01 and 1000000";
    // The text; read as YEAR in 1000-9999, and as --price in kPriceRange.
    const std::vector<std::array<std::string, 3>> cases = {
        {"2027", "2027", "2027"},
        {"02027", "2027", "2027"},  // leading zeros are not octal
        {"+2027", "2027", "2027"},
        {"199.50", notWhole + "199.50\"", "199.5"},
        {".5", notWhole + ".5\"", "0.5"},
        {"0x10", notWhole + "0x10\"", notDecimal + "0x10\""},
        {"9\x1b[2J", notWhole + "9\\x1b[2J\"", notDecimal + "9\\x1b[2J\""},
        {"0", years, prices},
        {big, years, prices},
        {big + "." + big, notWhole + big.substr(0, 24) + "...\"", prices},
    };
    const WholeRange year{1000, 9999};
    for (const auto& [text, whole, number] : cases) {
        EXPECT_EQ(outcome([&] { return parseWhole(text, "YEAR", year); }), whole) << text;
        EXPECT_EQ(outcome([&] { return parseNumber(text, "--price", kPriceRange); }), number)
            << text;
    }
    EXPECT_EQ(describeRange("--limit", WholeRange{1}), "--limit must be at least 1");
    EXPECT_EQ(describeRange("--max-level", WholeRange{1, 2}), "--max-level must be 1 or 2");
}

TEST(Arguments, NearestCommandName) {
    const std::vector<std::string> names = {"deals", "places", "price-check", "park", "holidays"};
    const std::vector<std::pair<std::string, std::optional<std::string>>> cases = {
        {"dael", "deals"},     {"deal", "deals"},
        {"hol", "holidays"},   {"pricecheck", "price-check"},
        {"plcaes", "places"},  {"p", std::nullopt},  // begins three of them
        {"xyz", std::nullopt}, {"", std::nullopt},
    };
    for (const auto& [given, nearest] : cases)
        EXPECT_EQ(nearestName(given, names), nearest) << given;
}

// Every command's wrong arguments: exit 2, a message naming what is wrong
// (or at least the program), nothing on standard output.
TEST(Arguments, EveryCommandRefusesWrongArgumentsTheSameWay) {
    const std::string data = std::string(ROAMWISE_EXAMPLES) + "/data";
    const std::string search = std::string(TRIPKIT_TEST_DATA) + "/parks/search.json";
    const std::string from = "--from=2026-05-01", to = "--to=2026-05-03";
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{"holidays", "0x10"}, "YEAR must be a whole number, not \"0x10\""},
        {{"price-check", "LIS", "--data", data, "--home", "JFK", "--price", "NaN"},
         "--price must be a decimal number"},
        {{"getaways", "--data", data, "--home", "JFK", "--timing", "anytime", "--max", "inf"},
         "--max must be a decimal number"},
        {{"places", "nearby", "MCO", "--within", "1e309"}, "--within must be a decimal number"},
        {{"places", "nearby", "MCO", "--limit", "99999999999"}, "--limit is too large"},
        {{"checklist", "LIS", "--trip", "2027-01-20", "--weeks", "0x10"},
         "--weeks must be a whole number, not \"0x10\""},
        {{"feed", "write", "out", "--seed", "010", "--extra-places", "1e3"},
         "--extra-places must be a whole number"},
        {{"advisories", "--file", "f.json", "--max-level", "3"}, "--max-level must be 1 or 2"},
        {{"dael"}, "unknown command 'dael'; did you mean 'deals'?"},
        {{"places", "nearbyy", "MCO"},
         "unknown command 'places nearbyy'; did you mean 'places nearby'?"},
        {{"zzz"}, "unknown command 'zzz'; the commands are deals, places, "},
        {{}, ""},
        {{"deals", "--data", data, "--home", "JFK,EWR,LGA,BOS"}, ""},  // four homes
        {{"deals", "--data", data, "--home", "JFK", "--today", "2026-13-01"}, ""},
        {{"deals", "--data", data + "/nowhere", "--home", "JFK"}, ""},
        {{"deals", "--data", data, "--home", "JFK", "--bogus"}, ""},
        {{"places", "nearby", "XYZ"}, "no airport with the code \"XYZ\""},
        {{"places", "airports", "hi", "kona"}, ""},  // one query argument; quote it
        {{"places", "destinations", "--domestic", "--abroad"}, ""},
        {{"getaways", "--data", data, "--home", "JFK", "--timing", "easter"}, ""},
        {{"getaways", "--data", data, "--home", "JFK", "--timing", "anytime", "--to", "L1S"}, ""},
        {{"park", "price", "seaworld", "--search", search, "--check-in", "2027-02-01"}, ""},
        {{"holidays"}, ""},
        {{"price-check", "LISB", "--data", data, "--home", "JFK", "--price", "1"}, ""},
        {{"checklist", "ZZZ", "--json"}, "no destination with the code \"ZZZ\""},
        {{"checklist", "LIS", "--trip", "2027-01-20"}, ""},  // no --weeks
        {{"best-time", "QQQ", "--sample", "--home", "JFK", "--json"},
         "no destination with the code \"QQQ\""},
        {{"wear", "Atlantis", from, to}, ""},
        {{"wear", "LIS", from, to, "--activities", "skiing"}, ""},
    };
    for (const auto& [args, error] : cases) {
        auto r = runCli(args);
        EXPECT_EQ(r.status, kUsage) << ::testing::PrintToString(args);
        EXPECT_THAT(r.err, HasSubstr("roamwise-cli: " + error));
        EXPECT_TRUE(r.out.empty()) << r.out;
    }

    EXPECT_EQ(runCli({"deals", "--help"}).status, kOk);
    auto version = runCli({"--version"});
    EXPECT_EQ(version.status, kOk);
    EXPECT_EQ(version.out, "roamwise-cli " ROAMWISE_VERSION "\n");
}

TEST(CliCommon, MoneyAndHomeCodes) {
    EXPECT_EQ(money(999), "$999");
    EXPECT_EQ(money(1234), "$1,234");
    EXPECT_EQ(money(1234567.5), "$1,234,567.50");
    EXPECT_EQ(money(-1500), "-$1,500");

    EXPECT_EQ(parseHomeCodes(" jfk , ewr,"), (std::vector<std::string>{"JFK", "EWR"}));
    EXPECT_THROW(parseHomeCodes("JFK,J1K"), UsageError);
    EXPECT_THROW(parseHomeCodes("JFK,jfk"), UsageError);
}

}  // namespace
}  // namespace roamwise::cli
