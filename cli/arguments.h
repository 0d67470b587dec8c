// Numbers and command names on the command line, read the same way by every
// command: decimal only, finite, and range errors said in words.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

namespace roamwise::cli {

// The whole numbers an argument allows.
struct WholeRange {
    long long min = std::numeric_limits<int>::min();
    long long max = std::numeric_limits<int>::max();
};

// The numbers an argument allows; both ends included.
struct NumberRange {
    double min = 0;
    double max = 0;
};

// A round-trip price per person in dollars.
constexpr NumberRange kPriceRange{0.01, 1'000'000};

// "NAME must be at least 1", "NAME must be 1 or 2", "NAME must be between 1000
// and 9999".
std::string describeRange(const std::string& name, WholeRange range);
std::string describeRange(const std::string& name, NumberRange range);

// `text` as a decimal whole number (an optional sign and digits; leading
// zeros do not make it octal). Throws UsageError naming `name` for anything
// else (hex, exponents, spaces) or a number outside `range`.
long long parseWhole(std::string_view text, const std::string& name, WholeRange range);
// `text` as a decimal number ("250", "199.50", ".5"); no hex, exponent, NaN or
// infinity. Throws UsageError as parseWhole does.
double parseNumber(std::string_view text, const std::string& name, NumberRange range);

// Options and positionals read by parseWhole and parseNumber. A value that is
// set before the call is shown as the default in --help.
CLI::Option* addWholeOption(CLI::App& command, const std::string& name, int& into,
                            const std::string& help, WholeRange range);
CLI::Option* addWholeOption(CLI::App& command, const std::string& name, std::optional<int>& into,
                            const std::string& help, WholeRange range);
// Seeds and other counts wider than an int; `range.max` at most LLONG_MAX.
CLI::Option* addWholeOption(CLI::App& command, const std::string& name, std::uint64_t& into,
                            const std::string& help, WholeRange range);
CLI::Option* addNumberOption(CLI::App& command, const std::string& name, double& into,
                             const std::string& help, NumberRange range);
CLI::Option* addNumberOption(CLI::App& command, const std::string& name,
                             std::optional<double>& into, const std::string& help,
                             NumberRange range);

// Of `names`, the one `given` most likely misspells: the only one it begins,
// or the nearest by edit distance when that is small for its length.
std::optional<std::string> nearestName(std::string_view given,
                                       const std::vector<std::string>& names);

// Throws UsageError for a leading word of `args` that names no subcommand
// where one is expected ("unknown command 'dael'; did you mean 'deals'?").
void checkCommandNames(const CLI::App& app, const std::vector<std::string>& args);

}  // namespace roamwise::cli
