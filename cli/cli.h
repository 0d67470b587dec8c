// roamwise-cli: every main job of Roamwise from a terminal. Commands print a
// readable table by default and JSON with --json; they write to the streams
// they are given so tests can run them in-process.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace roamwise::cli {

// Exit statuses every command keeps.
constexpr int kOk = 0;
constexpr int kNoData = 1;    // nothing at all could be read
constexpr int kUsage = 2;     // wrong arguments

// Runs one command line (args exclude the program name).
int run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace roamwise::cli
