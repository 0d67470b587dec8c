// Runs roamwise-cli in-process and keeps what it printed; writes throw-away
// data folders.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "cli/cli.h"  // the exit statuses a run is compared with
#include "tripkit/json.h"

namespace roamwise::cli {
using ::testing::HasSubstr;  // what the commands print is looked for line by line
}

namespace roamwise::cli::testing {

struct CliResult {
    int status = -1;
    std::string out;
    std::string err;
    tripkit::json::Json json() const;  // `out` parsed (fails the test when it is not JSON)
};

CliResult runCli(const std::vector<std::string>& args);

// A fresh temporary folder, removed when the object goes away.
struct TempDir {
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    // Writes `text` to path (relative to the folder), making folders as needed.
    void write(const std::string& relative, const std::string& text) const;
    std::string str() const { return path.string(); }
    std::filesystem::path path;
};

// A file's bytes ("" when it cannot be read).
std::string contents(const std::filesystem::path& path);

// Two adults, two nights, one park day at the cheapest value or prime-value
// hotel, a rideshare and $50 a day of food each, checking in 11 to 13
// January 2027. In the test Disney guide each stay is $225 hotel with its
// 12.5% tax + $200 tickets + $100 rideshare + $300 food = $825.
std::string parkSearch(const std::string& extra = "", bool avoidHolidays = false);

// The test park guides, parkSearch() as search.json, and JFK's fares out on
// 11 January 2027 ($89) and back on the 13th ($79).
void writeParkData(const TempDir& dir);

}  // namespace roamwise::cli::testing
