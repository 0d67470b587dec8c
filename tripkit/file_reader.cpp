#include "tripkit/file_reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fmt/format.h>

namespace tripkit {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

struct Descriptor {
    int fd;
    ~Descriptor() { ::close(fd); }
};

[[noreturn]] void fail(const std::string& path, const std::string& why) {
    throw std::runtime_error(path + ": " + why);
}

// Reads up to `size` bytes at `offset`; fewer only at the end of the file.
std::size_t readAt(const std::string& path, int fd, char* into, std::size_t size, off_t offset) {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t n = ::pread(fd, into + done, size - done, offset + static_cast<off_t>(done));
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) fail(path, std::strerror(errno));
        if (n == 0) break;
        done += static_cast<std::size_t>(n);
    }
    return done;
}

std::string sizeText(std::size_t bytes) {
    if (bytes % (1024 * 1024) == 0) return fmt::format("{} MiB", bytes / (1024 * 1024));
    return fmt::format("{} bytes", bytes);
}

}  // namespace

std::optional<simdjson::padded_string> FileReader::read(const std::string& path,
                                                        std::size_t limit) {
    // Non-blocking so that opening a FIFO returns at once; it is refused below.
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) {
        if (errno == ENOENT) return std::nullopt;
        fail(path, std::strerror(errno));
    }
    const Descriptor descriptor{fd};
    struct stat status {};
    if (::fstat(fd, &status) != 0) fail(path, std::strerror(errno));
    if (S_ISDIR(status.st_mode)) fail(path, "is a directory");
    if (!S_ISREG(status.st_mode)) fail(path, "not a regular file");
    const auto size = static_cast<std::size_t>(status.st_size);
    if (size > limit) {
        fail(path, fmt::format("larger than {}, the most a data file may have", sizeText(limit)));
    }

    char head[3] = {};
    const std::size_t headSize = readAt(path, fd, head, sizeof head, 0);
    const std::size_t skip = std::string_view(head, headSize) == kByteOrderMark ? 3 : 0;
    simdjson::padded_string bytes(size - std::min(size, skip));
    const std::size_t got = readAt(path, fd, bytes.data(), bytes.size(), static_cast<off_t>(skip));
    char more = 0;
    if (got != bytes.size() || readAt(path, fd, &more, 1, static_cast<off_t>(skip + got)) != 0) {
        fail(path, "changed while it was read");
    }
    return bytes;
}

}  // namespace tripkit
