#include "cli/table.h"

#include <sys/wait.h>

#include <cstdlib>
#include <sstream>

#include <gtest/gtest.h>

#include "cli/tests/cli_test_support.h"

namespace roamwise::cli {
namespace {

using testing::runCli;
using testing::TempDir;

TEST(Table, AlignsByDisplayWidthAndEscapesCells) {
    Table table;
    table.columns = {{"City"}, {"Price", Table::Align::right, 6, 2}, {"Note"}};
    table.add({"Lisbon", "$365", "ok"});
    table.add({"東京", "$1,020", ""}, "a note\x1b[2J");
    table.add({"Cancu\xCC\x81n", "$219",
               "\xE2\x80\xAE"
               "evil"});
    table.add({"\xF0\x9F\x87\xB5\xF0\x9F\x87\xB9 Porto", "$9"});
    table.add({"Bad\x1b[31m"});
    std::ostringstream out;
    table.print(out);

    // Prices end in one terminal column whatever the width of the city's
    // characters; the escaped last row sets the first column's width.
    EXPECT_EQ(out.str(),
              "City          Price Note\n"
              "Lisbon         $365 ok\n"  // right-aligned, no trailing spaces
              "東京         $1,020\n"
              "      a note\\x1b[2J\n"
              "Cancu\xCC\x81n         $219 \\u{202e}evil\n"
              "\xF0\x9F\x87\xB5\xF0\x9F\x87\xB9 Porto         $9\n"
              "Bad\\x1b[31m\n");
}

TEST(Table, CommandsEscapeDataAndFailOnAFullDisk) {
    TempDir dir;
    dir.write("flights/JFK.json",
              "\xEF\xBB\xBF"  // a byte-order mark is fine
              R"({"origin":"JFK","updated":"2026-11-20","toOrlando":{},"fromOrlando":{},"deals":[)"
              R"({"destination":"LIS","city":"Lisbon\u001b[2J\u202e","country":"Portugal",)"
              R"("price":365,"depart":"2026-12-01","airline":"TP","stops":0,)"
              R"("link":"https://evil.example/search?marker=1"}]})");
    auto r =
        runCli({"deals", "--data", dir.str(), "--home", "JFK", "--today", "2026-11-20", "--links"});
    ASSERT_EQ(r.status, kOk) << r.err;
    EXPECT_EQ(r.out.find('\x1b'), std::string::npos);
    EXPECT_THAT(r.out, HasSubstr("Lisbon\\x1b[2J\\u{202e} "));
    // Another host's link is not used; the partner's own search is.
    EXPECT_EQ(r.out.find("evil.example"), std::string::npos) << r.out;
    EXPECT_THAT(r.out, HasSubstr("https://www.aviasales.com/search/JFK0112LIS1"));

    // Error messages that carry a path or a key from the user are escaped too.
    dir.write("a\x1b[2J.json", "{");
    r = runCli({"advisories", "--file", dir.str() + "/a\x1b[2J.json"});
    EXPECT_THAT(r.err, HasSubstr("a\\x1b[2J.json: not valid JSON"));
    EXPECT_EQ(r.err.find('\x1b'), std::string::npos);

    const std::string err = (dir.path / "err.txt").string();
    const int status =
        std::system((std::string(ROAMWISE_CLI) + " holidays 2027 >/dev/full 2>" + err).c_str());
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), kNoData);
    const std::string message = testing::contents(err);
    EXPECT_THAT(message, HasSubstr("could not write the output"));
}

}  // namespace
}  // namespace roamwise::cli
