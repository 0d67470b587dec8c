// Runs roamwise-cli in-process and keeps what it printed; writes throw-away
// data folders.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tripkit/json.h"

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

}  // namespace roamwise::cli::testing
