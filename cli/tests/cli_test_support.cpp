#include "cli/tests/cli_test_support.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <sstream>

#include "cli/app_core_commands.h"

namespace roamwise::cli::testing {

tripkit::json::Json CliResult::json() const {
    try {
        return tripkit::json::Json::parse(out);
    } catch (const std::exception& e) {
        ADD_FAILURE() << "not JSON: " << e.what() << "\n" << out;
        return {};
    }
}

CliResult runCli(const std::vector<std::string>& args) {
    std::ostringstream out, err;
    CliResult result;
    result.status = run(args, out, err);
    result.out = out.str();
    result.err = err.str();
    return result;
}

TempDir::TempDir() {
    std::random_device seed;
    path = std::filesystem::temp_directory_path() /
           ("roamwise-test-" + std::to_string(seed()) + std::to_string(seed()));
    std::filesystem::create_directories(path);
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

void TempDir::write(const std::string& relative, const std::string& text) const {
    const auto file = path / relative;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
}

std::string contents(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

std::string parkSearch(const std::string& extra, bool avoidHolidays) {
    return R"({"origin": "JFK", "party": {"adults": 2, "childAges": []}, "nights": 2,
        "parkDays": 1, "resorts": {"cheapest": {"tiers": ["value", "primeValue"]}},
        "parkHopper": false, "lightningLane": {"none": {}}, "transport": "rideshare",
        "food": {"perAdult": 50, "perChild": 0},
        "window": {"earliest": "2027-01-11", "latest": "2027-01-13", "months": [],
                   "checkInWeekdays": [], "only": [], "avoid": [], "avoidHolidays": )" +
           std::string(avoidHolidays ? "true" : "false") + R"(},
        "fares": {"onlyAirlines": [], "avoidAirlines": [], "nonstopOnly": false})" +
           extra + "}";
}

void writeParkData(const TempDir& dir) {
    const std::string parks = std::string(TRIPKIT_TEST_DATA) + "/parks/";
    dir.write("disney-guide.json", contents(parks + "disney-guide.json"));
    dir.write("universal-guide.json", contents(parks + "universal-guide.json"));
    dir.write("flights/JFK.json", R"({"origin": "JFK", "updated": "2026-11-23",
        "toOrlando": {"2027-01-11": [{"airline": "B6", "price": 89, "stops": 0}]},
        "fromOrlando": {"2027-01-13": [{"airline": "B6", "price": 79, "stops": 0}]},
        "deals": []})");
    dir.write("search.json", parkSearch());
}

}  // namespace roamwise::cli::testing
