#include "tripkit/file_writer.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace tripkit {

namespace {
[[noreturn]] void fail(const std::string& path, const char* step, int error) {
    throw std::runtime_error(path + ": " + step + ": " + std::strerror(error));
}
}  // namespace

void writeFileAtomically(const std::string& path, std::string_view bytes) {
    std::string temporary = path + ".XXXXXX";
    const int fd = ::mkstemp(temporary.data());
    if (fd < 0) fail(path, "cannot create a temporary file", errno);
    auto abandon = [&](const char* step) {
        const int error = errno;
        ::close(fd);
        ::unlink(temporary.c_str());
        fail(path, step, error);
    };
    // A replaced file keeps its permissions; a new one stays private to the
    // user (mkstemp's 0600), as the user's own data should.
    struct stat old {};
    if (::stat(path.c_str(), &old) == 0 && ::fchmod(fd, old.st_mode & 07777) != 0) {
        abandon("cannot keep the file's permissions");
    }
    for (std::size_t written = 0; written < bytes.size();) {
        const ssize_t n = ::write(fd, bytes.data() + written, bytes.size() - written);
        if (n < 0) {
            if (errno == EINTR) continue;
            abandon("write failed");
        }
        written += static_cast<std::size_t>(n);
    }
    if (::fsync(fd) != 0) abandon("write failed");
    if (::close(fd) != 0) {
        const int error = errno;
        ::unlink(temporary.c_str());
        fail(path, "write failed", error);
    }
    if (::rename(temporary.c_str(), path.c_str()) != 0) {
        const int error = errno;
        ::unlink(temporary.c_str());
        fail(path, "cannot replace the file", error);
    }
}

}  // namespace tripkit
