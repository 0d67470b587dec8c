#include "cli/arguments.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include <fmt/format.h>

#include "cli/common.h"
#include "tripkit/display_text.h"

namespace roamwise::cli {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool allDigits(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

// The user's own text in an error: escaped, and cut short when it is long.
std::string echoed(std::string_view text, char mark = '"') {
    constexpr std::size_t kShown = 24;
    std::string shown = tripkit::DisplayText::escaped(text.substr(0, kShown));
    if (text.size() > kShown) shown += "...";
    return mark + shown + mark;
}

template <class Value, class Parse>
CLI::Option* addParsed(CLI::App& command, const std::string& name, Value& into,
                       const std::string& help, const char* typeName, Parse parse) {
    CLI::Option* option = command.add_option_function<std::string>(
        name, [&into, name, parse](const std::string& text) { into = parse(text, name); }, help);
    option->type_name(typeName);
    return option;
}

// A range with no real top: its end is only the type's. Not worth a ten- or
// nineteen-digit number in a message.
bool openTop(WholeRange range) {
    return range.max == std::numeric_limits<int>::max() ||
           range.max == std::numeric_limits<long long>::max();
}

}  // namespace

std::string describeRange(const std::string& name, WholeRange range) {
    if (openTop(range)) {
        return fmt::format("{} must be at least {}", name, range.min);
    }
    if (range.max == range.min + 1) {
        return fmt::format("{} must be {} or {}", name, range.min, range.max);
    }
    return fmt::format("{} must be between {} and {}", name, range.min, range.max);
}

std::string describeRange(const std::string& name, NumberRange range) {
    return fmt::format("{} must be between {} and {}", name, range.min, range.max);
}

long long parseWhole(std::string_view text, const std::string& name, WholeRange range) {
    std::string_view digits = text;
    if (digits.starts_with('+') || digits.starts_with('-')) digits.remove_prefix(1);
    if (!allDigits(digits)) {
        throw UsageError(fmt::format("{} must be a whole number, not {}", name, echoed(text)));
    }
    long long value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    const bool negative = text.starts_with('-');
    if (negative) value = -value;
    const bool tooLarge = !negative && (error != std::errc() || value > range.max);
    // "must be at least 1" would not tell what is wrong with 99999999999.
    if (tooLarge && openTop(range)) throw UsageError(fmt::format("{} is too large", name));
    if (error != std::errc() || end != digits.data() + digits.size()) {
        throw UsageError(describeRange(name, range));  // too many digits for any range
    }
    if (value < range.min || value > range.max) throw UsageError(describeRange(name, range));
    return value;
}

double parseNumber(std::string_view text, const std::string& name, NumberRange range) {
    std::string_view digits = text;
    const bool negative = digits.starts_with('-');
    if (negative || digits.starts_with('+')) digits.remove_prefix(1);
    const std::size_t point = digits.find('.');
    const bool decimal = point == std::string_view::npos
                             ? allDigits(digits)
                             : allDigits(digits.substr(point + 1)) &&
                                   (point == 0 || allDigits(digits.substr(0, point)));
    if (!decimal) {
        throw UsageError(fmt::format("{} must be a decimal number like 250 or 199.50, not {}", name,
                                     echoed(text)));
    }
    double value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value,
                                              std::chars_format::fixed);
    if (error != std::errc() || end != digits.data() + digits.size() || !std::isfinite(value)) {
        throw UsageError(describeRange(name, range));
    }
    if (negative) value = -value;
    if (value < range.min || value > range.max) throw UsageError(describeRange(name, range));
    return value;
}

CLI::Option* addWholeOption(CLI::App& command, const std::string& name, int& into,
                            const std::string& help, WholeRange range) {
    const std::string shownDefault = std::to_string(into);
    return addParsed(command, name, into, help, "INT",
                     [range](const std::string& text, const std::string& n) {
                         return static_cast<int>(parseWhole(text, n, range));
                     })
        ->default_str(shownDefault);
}

CLI::Option* addWholeOption(CLI::App& command, const std::string& name, std::optional<int>& into,
                            const std::string& help, WholeRange range) {
    return addParsed(command, name, into, help, "INT",
                     [range](const std::string& text, const std::string& n) {
                         return static_cast<int>(parseWhole(text, n, range));
                     });
}

CLI::Option* addWholeOption(CLI::App& command, const std::string& name, std::uint64_t& into,
                            const std::string& help, WholeRange range) {
    const std::string shownDefault = std::to_string(into);
    return addParsed(command, name, into, help, "INT",
                     [range](const std::string& text, const std::string& n) {
                         return static_cast<std::uint64_t>(parseWhole(text, n, range));
                     })
        ->default_str(shownDefault);
}

CLI::Option* addNumberOption(CLI::App& command, const std::string& name, double& into,
                             const std::string& help, NumberRange range) {
    const std::string shownDefault = fmt::format("{}", into);
    return addParsed(command, name, into, help, "NUMBER",
                     [range](const std::string& text, const std::string& n) {
                         return parseNumber(text, n, range);
                     })
        ->default_str(shownDefault);
}

CLI::Option* addNumberOption(CLI::App& command, const std::string& name,
                             std::optional<double>& into, const std::string& help,
                             NumberRange range) {
    return addParsed(command, name, into, help, "NUMBER",
                     [range](const std::string& text, const std::string& n) {
                         return parseNumber(text, n, range);
                     });
}

namespace {

// Edits to turn one name into the other: insertions, deletions, changes and
// swaps of two neighbouring letters ("dael" is two from "deals").
std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::vector<std::size_t>> d(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) d[i][0] = i;
    for (std::size_t j = 0; j <= b.size(); ++j) d[0][j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t change = a[i - 1] == b[j - 1] ? 0 : 1;
            d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1, d[i - 1][j - 1] + change});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
            }
        }
    }
    return d[a.size()][b.size()];
}

}  // namespace

std::optional<std::string> nearestName(std::string_view given,
                                       const std::vector<std::string>& names) {
    std::vector<std::string> begun;
    for (const std::string& name : names) {
        if (!given.empty() && name.starts_with(given)) begun.push_back(name);
    }
    if (begun.size() == 1) return begun.front();
    std::optional<std::string> best;
    std::size_t bestDistance = std::max<std::size_t>(2, given.size() / 3) + 1;
    for (const std::string& name : names) {
        const std::size_t d = editDistance(given, name);
        if (d < bestDistance) {
            best = name;
            bestDistance = d;
        }
    }
    return best;
}

void checkCommandNames(const CLI::App& app, const std::vector<std::string>& args) {
    const CLI::App* current = &app;
    std::string path;
    for (const std::string& word : args) {
        // Option groups are nameless subcommands to CLI11: not commands.
        std::vector<std::string> names;
        std::vector<const CLI::App*> subs;
        for (const CLI::App* sub : current->get_subcommands({})) {
            if (sub->get_name().empty()) continue;
            names.push_back(sub->get_name());
            subs.push_back(sub);
        }
        if (names.empty() || word.starts_with('-')) return;
        const auto found = std::find(names.begin(), names.end(), word);
        if (found == names.end()) {
            std::string message = "unknown command " + echoed(path + word, '\'');
            if (auto near = nearestName(word, names)) {
                message += "; did you mean '" + path + *near + "'?";
            } else {
                message += "; the commands are ";
                for (std::size_t i = 0; i < names.size(); ++i) {
                    message += (i == 0 ? "" : ", ") + path + names[i];
                }
            }
            throw UsageError(message);
        }
        current = subs[static_cast<std::size_t>(found - names.begin())];
        path += word + " ";
    }
}

}  // namespace roamwise::cli
