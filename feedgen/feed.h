// Sample data: the files the nightly job would publish on the data host for
// one day, made up but shaped like real fares, and the same on every machine
// for the same day, seed and airports.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tripkit/days.h"

namespace roamwise::feedgen {

inline constexpr std::uint64_t kDefaultSeed = 1;

struct Options {
    tripkit::Day today;
    std::uint64_t seed = kDefaultSeed;
    std::vector<std::string> airports;  // origin codes from the shipped catalog
    // For benchmarks and load tests: made-up places beyond the catalog
    // ("QAA", "QAB", ...), and a fixed number of Orlando options per day
    // instead of the usual two to five.
    int extraDestinations = 0;
    int orlandoOptionsPerDay = 0;
};

// Path on the data host ("flights/JFK.json") -> the file's bytes.
using Files = std::map<std::string, std::string>;

// Every file of the night: "flights/", "calendars/" and "history/" + CODE +
// ".json" for each airport, and "advisories.json". Throws
// std::invalid_argument for an airport the catalog does not have.
Files generate(const Options& options);

// One file by its path; nothing for a path the host would not have (an
// airport outside `options.airports`, an unknown folder).
std::optional<std::string> generateFile(const Options& options, std::string_view path);

std::string fareFile(const Options& options, std::string_view airport);
std::string calendarFile(const Options& options, std::string_view airport);
std::string historyFile(const Options& options, std::string_view airport);
// The State Department service's format, one advisory per country of the
// catalog, every title and link marked as sample data.
std::string advisoriesFile(const Options& options);

// The airports a data-host tree is written for when none are named: the
// twenty busiest in the country.
const std::vector<std::string>& busiestAirports();

}  // namespace roamwise::feedgen
