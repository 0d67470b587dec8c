// Reading a data file given by a user or downloaded: only regular files, with
// a size limit, ready for the JSON parser without another copy.
#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>

#include <simdjson.h>

namespace tripkit {

struct FileReader {
    // The largest file read: far above any real feed (a fare file of every
    // destination is a few hundred kilobytes), low enough that no input can
    // take gigabytes of memory.
    static constexpr std::size_t maxBytes = 64 * 1024 * 1024;

    // The bytes of the file at `path` (a UTF-8 byte-order mark at the start
    // left out), padded for simdjson; nothing when there is no such file.
    // Throws std::runtime_error naming the path for a directory ("PATH: is a
    // directory"), anything else that is not a regular file, such as a FIFO
    // or a device ("PATH: not a regular file"; checked without waiting on
    // it), a file larger than `limit`, or one that cannot be read.
    static std::optional<simdjson::padded_string> read(const std::string& path,
                                                       std::size_t limit = maxBytes);
};

}  // namespace tripkit
