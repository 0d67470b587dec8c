// roamwise-cli feed write: a whole data-host tree of sample data for one day,
// ready for any static file server.
#include <filesystem>
#include <fstream>
#include <limits>

#include <fmt/format.h>

#include "cli/commands.h"
#include "feedgen/feed.h"
#include "tripkit/places.h"

namespace roamwise::cli {

namespace {

// "jfk, EWR,lga" -> {"JFK", "EWR", "LGA"}: any number of catalog airports.
std::vector<std::string> parseAirports(const std::string& text) {
    std::vector<std::string> codes;
    std::string code;
    const auto flush = [&] {
        if (code.empty()) return;
        if (!tripkit::Airports::shipped().find(code)) {
            throw UsageError("--airports: " + code + " is not an airport of the catalog");
        }
        if (std::find(codes.begin(), codes.end(), code) == codes.end()) codes.push_back(code);
        code.clear();
    };
    for (char c : text) {
        if (c == ',') {
            flush();
        } else if (c != ' ' && c != '\t') {
            code += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        }
    }
    flush();
    if (codes.empty()) throw UsageError("--airports: give airport codes, e.g. JFK,EWR");
    return codes;
}

void writeTree(const std::filesystem::path& dir, const feedgen::Files& files) {
    for (const auto& [relative, bytes] : files) {
        const std::filesystem::path path = dir / relative;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        out.close();
        if (!out) throw std::runtime_error(path.string() + ": could not be written");
    }
}

}  // namespace

void addFeedCommand(CLI::App& root, Io& io) {
    struct Options {
        std::string dir;
        std::string today;
        std::string airports;
        bool all = false;
        std::uint64_t seed = feedgen::kDefaultSeed;
        int extraPlaces = 0;
        int orlandoOptions = 0;
    };
    auto options = std::make_shared<Options>();
    CLI::App* feed = root.add_subcommand("feed", "Sample data for the data host");
    feed->require_subcommand(1);
    CLI::App* write = feed->add_subcommand(
        "write",
        "Write a data-host tree of sample data for one day (flights/, calendars/, "
        "history/, advisories.json)");
    write->add_option("DIR", options->dir, "Folder to write into (made when missing)")->required();
    write
        ->add_option("--today", options->today,
                     "Day of the nightly run (YYYY-MM-DD; default: today)")
        ->check(dayValidator());
    auto* airports = write->add_option("--airports", options->airports,
                                       "Origin airports (default: the twenty busiest)");
    write->add_flag("--all", options->all, "Every airport of the catalog")->excludes(airports);
    addWholeOption(*write, "--seed", options->seed, "Seed of the made-up prices",
                   {0, std::numeric_limits<long long>::max()});
    addWholeOption(*write, "--extra-places", options->extraPlaces,
                   "Made-up places beyond the catalog, for load tests", {0, 100000});
    addWholeOption(*write, "--orlando-options", options->orlandoOptions,
                   "Orlando fares per day instead of two to five, for load tests", {0, 1000});
    write->callback([options, &io] {
        feedgen::Options o;
        o.today = resolveToday(options->today);
        o.seed = options->seed;
        o.extraDestinations = options->extraPlaces;
        o.orlandoOptionsPerDay = options->orlandoOptions;
        if (options->all) {
            for (const tripkit::Airport& a : tripkit::Airports::shipped().list)
                o.airports.push_back(a.code);
        } else if (!options->airports.empty()) {
            o.airports = parseAirports(options->airports);
        } else {
            o.airports = feedgen::busiestAirports();
        }
        const feedgen::Files files = feedgen::generate(o);
        writeTree(options->dir, files);
        std::size_t bytes = 0;
        for (const auto& [path, text] : files) bytes += text.size();
        io.out << fmt::format(
            "Wrote {} files ({:.1f} MB) of sample data for {} airports as of {} to {}\n",
            files.size(), static_cast<double>(bytes) / 1e6, o.airports.size(), o.today.text(),
            options->dir);
        io.status = kOk;
    });
}

}  // namespace roamwise::cli
