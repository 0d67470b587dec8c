#include "cli/common.h"

#include "tripkit/config.h"
#include "tripkit/freshness.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <sstream>

#include <fmt/format.h>

#include "cli/table.h"
#include "feedgen/feed.h"

namespace roamwise::cli {

void addDataOptions(CLI::App& command, DataOptions& options) {
    // Exactly one source of the nightly files.
    CLI::Option_group* source =
        command.add_option_group("source", "Where the nightly files come from");
    source->add_option("--data", options.dataDir, "Folder laid out like the data host")
        ->check(CLI::ExistingDirectory);
    source->add_flag("--sample", options.sample,
                     "Sample data made up for the day and the home airports, instead of --data");
    source->require_option(1);
    command.add_option("--home", options.homes, "Home airports, main one first (e.g. JFK,EWR)")
        ->required();
    command.add_option("--today", options.today, "Day to run for (YYYY-MM-DD; default: today)")
        ->check(dayValidator());
    command.add_flag("--json", options.json, "Print JSON instead of a table");
}

std::vector<std::string> parseHomeCodes(const std::string& text) {
    std::vector<std::string> codes;
    std::stringstream stream(text);
    std::string piece;
    while (std::getline(stream, piece, ',')) {
        std::string code;
        for (char c : piece) {
            if (c == ' ' || c == '\t') continue;
            code += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        }
        if (code.empty()) continue;
        bool letters = code.size() == 3;
        for (char c : code) letters = letters && c >= 'A' && c <= 'Z';
        if (!letters) throw UsageError("--home: not an airport code: " + piece);
        if (std::find(codes.begin(), codes.end(), code) != codes.end()) {
            throw UsageError("--home: " + code + " is given twice");
        }
        codes.push_back(code);
    }
    if (codes.empty()) throw UsageError("--home: give one to three airport codes, e.g. JFK,EWR");
    if (codes.size() > 3) throw UsageError("--home: at most three home airports");
    return codes;
}

std::string parseDestinationCode(const std::string& text) {
    std::string code;
    for (char c : text) code += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    bool letters = code.size() == 3;
    for (char c : code) letters = letters && c >= 'A' && c <= 'Z';
    if (!letters) throw UsageError("not a destination code (like LIS): " + text);
    return code;
}

CLI::Validator dayValidator() {
    return CLI::Validator(
        [](std::string& text) -> std::string {
            auto day = tripkit::Day::parse(text);
            if (!day || day->text() != text) return "not a date (YYYY-MM-DD): " + text;
            return "";
        },
        "YYYY-MM-DD");
}

tripkit::Day resolveToday(const std::string& text) {
    if (text.empty()) return tripkit::Day::today();
    auto day = tripkit::Day::parse(text);
    if (!day || day->text() != text) throw UsageError("not a date (YYYY-MM-DD): " + text);
    return *day;
}

std::optional<simdjson::padded_string> readDataFile(const DataOptions& data, const std::string& relative) {
    if (!data.sample) return tripkit::FileReader::read(data.dataDir + "/" + relative);
    roamwise::feedgen::Options sample;
    sample.today = resolveToday(data.today);
    sample.airports = parseHomeCodes(data.homes);
    try {
        std::optional<std::string> bytes = roamwise::feedgen::generateFile(sample, relative);
        if (!bytes) return std::nullopt;
        return simdjson::padded_string(*bytes);
    } catch (const std::invalid_argument&) {
        return std::nullopt;  // an airport the sample data has no fares for
    }
}

std::optional<tripkit::FareHistory> loadFareHistory(const DataOptions& data, tripkit::Day today,
                                                    std::ostream& err) {
    auto files = loadHomeFiles<tripkit::HistoryBook>(data, "history",
                                                     parseHomeCodes(data.homes), err);
    if (files.empty()) {
        err << "roamwise-cli: no history file could be read\n";
        return std::nullopt;
    }
    std::vector<tripkit::HistoryBook> books;
    for (auto& f : files) {
        if (today - f.value.updated > tripkit::Freshness::usableDays) {
            reportSkipped(err, f.code, "history published " + f.value.updated.text() +
                                           ", more than a week before " + today.text());
        }
        books.push_back(std::move(f.value));
    }
    return tripkit::FareHistory(books, today);
}

std::optional<tripkit::FareCalendar> loadFareCalendar(const DataOptions& data, std::ostream& err) {
    // Each book is merged as soon as it is read, so only one is held at a time.
    tripkit::FareCalendar calendar;
    bool any = false;
    forEachHomeFile<tripkit::CalendarBook>(
        data, "calendars", parseHomeCodes(data.homes), err,
        [&](const std::string&, tripkit::CalendarBook&& book) {
            calendar.add(book);
            any = true;
        });
    if (!any) {
        err << "roamwise-cli: no calendar file could be read\n";
        return std::nullopt;
    }
    return calendar;
}

tripkit::json::Json tripJson(const tripkit::RoundTrip& trip, tripkit::Day today) {
    tripkit::json::Json out = encode(trip);
    tripkit::json::putOptional(out, "nights", trip.nights());
    out["stale"] = trip.isStale(today);
    return out;
}

tripkit::PartnerConfig partnerConfigFromEnvironment() {
    return tripkit::Config::partners([](const char* name) { return std::getenv(name); });
}

void reportSkipped(std::ostream& err, const std::string& code, const std::string& why) {
    err << "roamwise-cli: skipping " << code << ": " << shown(why) << "\n";
}

void reportImpossible(std::ostream& err, const std::string& file, int count, const char* one,
                      const char* many) {
    if (count > 0) {
        err << "roamwise-cli: " << shown(file) << ": skipped " << count << " "
            << (count == 1 ? one : many) << " with impossible values\n";
    }
}

std::optional<std::string> readFile(const std::string& path) {
    std::optional<simdjson::padded_string> bytes = tripkit::FileReader::read(path);
    if (!bytes) return std::nullopt;
    return std::string(bytes->data(), bytes->size());
}

void reportImpossibleIn(std::ostream& err, const std::string& file, const tripkit::FareBook& book,
                        tripkit::Day today) {
    reportImpossible(err, file, book.impossible + tripkit::Fares::seenAfter(book, today), "fare",
                     "fares");
}

void reportImpossibleIn(std::ostream& err, const std::string& file, const tripkit::HistoryBook& book,
                        tripkit::Day) {
    reportImpossible(err, file, book.impossible, "price", "prices");
}

void reportImpossibleIn(std::ostream& err, const std::string& file,
                        const tripkit::CalendarBook& book, tripkit::Day) {
    reportImpossible(err, file, book.skippedImpossible, "calendar fare", "calendar fares");
}

void printJson(std::ostream& out, const tripkit::json::Json& value) {
    out << value.dump(2) << "\n";
}

std::string money(double dollars) {
    const bool whole = std::trunc(dollars) == dollars;
    const std::string digits = whole ? fmt::format("{:.0f}", std::abs(dollars))
                                     : fmt::format("{:.2f}", std::abs(dollars));
    const std::size_t point = whole ? digits.size() : digits.find('.');
    std::string out = dollars < 0 ? "-$" : "$";
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && i < point && (point - i) % 3 == 0) out += ',';
        out += digits[i];
    }
    return out;
}

std::string dayWithWeekday(tripkit::Day day) {
    static constexpr std::array<const char*, 7> names = {"Sun", "Mon", "Tue", "Wed",
                                                         "Thu", "Fri", "Sat"};
    return fmt::format("{} {}", names[static_cast<std::size_t>(day.weekday() - 1)], day.text());
}

}  // namespace roamwise::cli
