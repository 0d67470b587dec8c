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

}  // namespace roamwise::cli::testing
