#include "tripkit/file_reader.h"

#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <random>

#include <gtest/gtest.h>

namespace tripkit {
namespace {

namespace fs = std::filesystem;

TEST(FileReader, ReadsOnlyRegularFilesUpToTheLimit) {
    std::random_device seed;
    const fs::path dir = fs::temp_directory_path() / ("roamwise-reader-" + std::to_string(seed()));
    fs::create_directories(dir);
    auto file = [&](const std::string& name, const std::string& bytes) {
        std::ofstream(dir / name, std::ios::binary) << bytes;
        return (dir / name).string();
    };
    const std::string fifo = (dir / "fifo").string();
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);

    const struct {
        std::string path;
        std::size_t limit;
        std::optional<std::string> bytes;  // nothing: no file
        std::string error;                 // when it is refused
    } cases[] = {
        {file("a.json", "{\"a\":1}"), 100, "{\"a\":1}", ""},
        {file("empty.json", ""), 100, "", ""},
        {file("bom.json", "\xEF\xBB\xBF[1]"), 100, "[1]", ""},
        {file("bomonly.json", "\xEF\xBB\xBF"), 100, "", ""},
        {file("twobytes.json", "\xEF\xBB"), 100, "\xEF\xBB", ""},  // half a mark is data
        {file("limit.json", std::string(10, 'x')), 10, std::string(10, 'x'), ""},
        {file("over.json", std::string(11, 'x')), 10, "", "over.json: larger than 10 bytes"},
        {(dir / "missing.json").string(), 100, std::nullopt, ""},
        {dir.string(), 100, "", dir.string() + ": is a directory"},
        {fifo, 100, "", fifo + ": not a regular file"},  // refused without waiting for a writer
        {"/dev/zero", 100, "", "/dev/zero: not a regular file"},
        {file("plain.txt", "x") + "/inside", 100, "", "plain.txt/inside: Not a directory"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        if (!c.error.empty()) {
            try {
                FileReader::read(c.path, c.limit);
                ADD_FAILURE() << "read";
            } catch (const std::runtime_error& e) {
                EXPECT_NE(std::string(e.what()).find(c.error), std::string::npos) << e.what();
            }
            continue;
        }
        const auto got = FileReader::read(c.path, c.limit);
        ASSERT_EQ(got.has_value(), c.bytes.has_value());
        if (got) {
            EXPECT_EQ(std::string_view(*got), *c.bytes);
        }
    }
    fs::remove_all(dir);
}

}  // namespace
}  // namespace tripkit
