// Reading a large JSON container a window at a time. simdjson indexes a whole
// document before it is read (about four bytes for every structural byte), so
// a large file read in one piece holds its index beside the records read
// from it. Here the container's children are found by a scan that follows
// only strings and brackets; runs of whole children are then copied into a
// small document of their own, wrapped in the container's brackets, and read
// there. simdjson checks each window's text; the scan checks what lies
// between windows, so a file is taken only when it is one valid container.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include <simdjson.h>

namespace tripkit::json::fast {

// The children of one container: an array's values or an object's members
// ("key": value), each without the whitespace around it.
struct Children {
    char open = '[';  // '[' or '{'
    std::vector<std::string_view> items;
    std::string_view rest;  // the text after the closing bracket
};

// The container at the start of `text` (after whitespace), or nothing when
// it is not one: unbalanced brackets or quotes, an empty child ("[1,,2]",
// "[1,]"), a bracket closed by the other kind. What a child holds is not
// checked here.
std::optional<Children> childrenOf(std::string_view text);

// The value of the object member `member` when its key is written exactly as
// `key` (no escapes), or nothing.
std::optional<std::string_view> memberValue(std::string_view member, std::string_view key);

// Only JSON's whitespace in `text`.
bool isBlank(std::string_view text);

// The most bytes of children put in one window; a larger child is a window
// of its own.
inline constexpr std::size_t kWindowBytes = 1024 * 1024;  // above a real fare file

// The pages of an input the reader owns, given back to the system as they
// are read, so that a large file is not held beside its records. What was
// given back reads as zeros: a reader that gives up halfway must have the
// file read again (see json::decodePadded).
struct GiveBack {
    const char* from = nullptr;  // nothing is given back before it
    void upTo(const char* end);
};

// Reads the children a window at a time: each window is given to `read` as
// the root value of a document of its own (an array or object like the
// container). False when a window is not one valid container, holds more
// than its text, or `read` says false.
bool forEachWindow(const Children& children, std::size_t windowBytes,
                   const std::function<bool(simdjson::ondemand::value)>& read,
                   GiveBack* giveBack = nullptr);

// The one element of an array, given to `read`; false for any other array.
bool readOnly(simdjson::ondemand::value array,
              const std::function<bool(simdjson::ondemand::value)>& read);

}  // namespace tripkit::json::fast
