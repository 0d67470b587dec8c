#include "tripkit/file_writer.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace tripkit {
namespace {

namespace fs = std::filesystem;

std::string contents(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

TEST(FileWriter, ReplacesWholeFilesAndLeavesNothingBehindOnFailure) {
    const fs::path dir = fs::temp_directory_path() / ("roamwise-writer-" + std::to_string(::getpid()));
    fs::create_directories(dir);
    const fs::path file = dir / "watches.json";

    writeFileAtomically(file.string(), "[]\n");
    EXPECT_EQ(contents(file), "[]\n");
    EXPECT_EQ(fs::status(file).permissions() & fs::perms::all, fs::perms::owner_read | fs::perms::owner_write);

    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    writeFileAtomically(file.string(), "[1]\n");
    EXPECT_EQ(contents(file), "[1]\n");
    EXPECT_EQ(fs::status(file).permissions() & fs::perms::all,
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);

    // A folder that is not there: an error naming the path, and no stray files.
    try {
        writeFileAtomically((dir / "missing" / "watches.json").string(), "[]");
        FAIL() << "wrote into a missing folder";
    } catch (const std::runtime_error& e) {
        EXPECT_NE(std::string(e.what()).find("missing/watches.json: cannot create a temporary file"),
                  std::string::npos) << e.what();
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(dir), fs::directory_iterator()), 1);
    fs::remove_all(dir);
}

}  // namespace
}  // namespace tripkit
