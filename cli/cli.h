// roamwise-cli: every main job of Roamwise from a terminal. Commands print a
// readable table by default and JSON with --json; they write to the streams
// they are given so tests can run them in-process.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace roamwise::cli {

// Exit statuses every command keeps.
constexpr int kOk = 0;
constexpr int kNoData = 1;    // nothing at all could be read
constexpr int kUsage = 2;     // wrong arguments

struct Io;

// Registers one subcommand; its callback sets io.status.
using CommandAdder = std::function<void(CLI::App& root, Io& io)>;

// Runs one command line (args exclude the program name) with the commands
// given, in the order `--help` lists them.
int run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err,
        const std::vector<CommandAdder>& commands);

}  // namespace roamwise::cli
