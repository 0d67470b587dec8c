// Pieces the commands share: options, the data folder, output helpers.
#pragma once

#include <functional>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "cli/cli.h"
#include "tripkit/calendars.h"
#include "tripkit/days.h"
#include "tripkit/fares.h"
#include "tripkit/file_reader.h"
#include "tripkit/json.h"
#include "tripkit/links.h"
#include "tripkit/price_history.h"

namespace roamwise::cli {

// Thrown by commands for arguments that parsed but make no sense; reported
// with the usage hint and exit status kUsage.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// What a command writes to and the status it ends with.
struct Io {
    std::ostream& out;
    std::ostream& err;
    const std::vector<std::string>& args;  // the whole command line, for a hand-over
    int status = 0;
};

// The options of every command that reads a data-host folder.
struct DataOptions {
    std::string dataDir;
    bool sample = false;  // --sample: files made in memory for the day instead of read
    std::string homes;    // "JFK,EWR"
    std::string today;    // "YYYY-MM-DD", empty for today
    bool json = false;
};
void addDataOptions(CLI::App& command, DataOptions& options);

// "jfk, EWR" -> {"JFK", "EWR"}; one to three distinct IATA codes.
std::vector<std::string> parseHomeCodes(const std::string& text);
// "lis" -> "LIS"; a destination's three-letter code.
std::string parseDestinationCode(const std::string& text);
// The --today value, or today in the user's time zone when empty.
tripkit::Day resolveToday(const std::string& text);
// A --today style check for CLI11.
CLI::Validator dayValidator();

// One home airport's file read from the data folder.
template <class T>
struct HomeFile {
    std::string code;
    T value;
};

// Reads and decodes "<dir>/<folder>/<CODE>.json" for each home airport, in
// order (with --sample, the sample file of the day made in memory). A
// missing or undecodable file is reported on `err` and skipped. `needs`
// (e.g. tripkit::FareNeeds) say what the caller will use of each file.
template <class T, class... Needs>
std::vector<HomeFile<T>> loadHomeFiles(const DataOptions& data, const std::string& folder,
                                       const std::vector<std::string>& codes, std::ostream& err,
                                       const Needs&... needs);
// The bytes of one data-host file ("flights/JFK.json"): from --data's folder,
// or with --sample generated for the day; nothing when there is none.
std::optional<simdjson::padded_string> readDataFile(const DataOptions& data,
                                                    const std::string& relative);

// The home airports' "history/CODE.json" files merged for `today`; nothing
// (after saying why on `err`) when none could be read.
std::optional<tripkit::FareHistory> loadFareHistory(const DataOptions& data, tripkit::Day today,
                                                    std::ostream& err);

// The home airports' "calendars/CODE.json" files merged; nothing (after
// saying why on `err`) when none could be read.
std::optional<tripkit::FareCalendar> loadFareCalendar(const DataOptions& data, std::ostream& err);
// A calendar trip in JSON: its own keys, plus "nights" (when it has a
// return) and "stale" as of `today`.
tripkit::json::Json tripJson(const tripkit::RoundTrip& trip, tripkit::Day today);

// The partner settings from the environment variables of the same names
// (RWTravelpayoutsMarker, RWTravelpayoutsProject, RWHotelProgram, ...).
tripkit::PartnerConfig partnerConfigFromEnvironment();

// The bytes of a file through the shared reader (regular files only, size
// cap, byte-order mark dropped); nothing when it does not exist.
std::optional<std::string> readFile(const std::string& path);

void printJson(std::ostream& out, const tripkit::json::Json& value);

// Formats a dollar amount: "$1,234" or "$199.50".
std::string money(double dollars);

// A day with its weekday: "Fri 2026-12-04".
std::string dayWithWeekday(tripkit::Day day);

// --- implementation of the template ---

void reportSkipped(std::ostream& err, const std::string& code, const std::string& why);
// One line per file for the records left out because their values cannot be
// true ("flights/JFK.json: skipped 3 fares with impossible values"); nothing
// when there were none. Fares seen after today count too.
void reportImpossibleIn(std::ostream& err, const std::string& file, const tripkit::FareBook& book,
                        tripkit::Day today);
void reportImpossibleIn(std::ostream& err, const std::string& file,
                        const tripkit::HistoryBook& book, tripkit::Day today);
void reportImpossibleIn(std::ostream& err, const std::string& file,
                        const tripkit::CalendarBook& book, tripkit::Day today);
void reportImpossible(std::ostream& err, const std::string& file, int count, const char* one,
                      const char* many);

// Reads and decodes each home airport's file in order and hands it to
// visit(code, value); a missing or undecodable file is reported and skipped.
template <class T, class Visit, class... Needs>
void forEachHomeFile(const DataOptions& data, const std::string& folder,
                     const std::vector<std::string>& codes, std::ostream& err, Visit&& visit,
                     const Needs&... needs) {
    for (const std::string& code : codes) {
        const std::string relative = folder + "/" + code + ".json";
        try {
            std::optional<simdjson::padded_string> bytes = readDataFile(data, relative);
            if (!bytes) {
                reportSkipped(err, code,
                              data.sample ? "no sample data for " + code
                                          : "no file " + data.dataDir + "/" + relative);
                continue;
            }
            // A large file's pages may be given back as they are read; this
            // reads it again should the DOM decoder need it.
            const auto again = [&] {
                std::optional<simdjson::padded_string> same = readDataFile(data, relative);
                if (!same) throw std::runtime_error("no file " + data.dataDir + "/" + relative);
                return std::move(*same);
            };
            T value = tripkit::json::decodePadded<T>(std::move(*bytes), relative, again, needs...);
            reportImpossibleIn(err, relative, value, resolveToday(data.today));
            visit(code, std::move(value));
        } catch (const std::exception& e) {
            reportSkipped(err, code, e.what());
        }
    }
}

template <class T, class... Needs>
std::vector<HomeFile<T>> loadHomeFiles(const DataOptions& data, const std::string& folder,
                                       const std::vector<std::string>& codes, std::ostream& err,
                                       const Needs&... needs) {
    std::vector<HomeFile<T>> out;
    forEachHomeFile<T>(
        data, folder, codes, err,
        [&](const std::string& code, T&& value) {
            out.push_back({code, std::move(value)});
        },
        needs...);
    return out;
}

}  // namespace roamwise::cli
