// Writing the user's files so that a crash or a full disk never leaves half
// of one: the bytes go to a temporary file beside it, which is flushed to
// disk and then renamed over the old file.
#pragma once

#include <string>
#include <string_view>

namespace tripkit {

// Throws std::runtime_error naming the path when any step fails; the old
// file is then untouched and the temporary one removed. A replaced file keeps
// its permissions; a new one is readable by the user alone.
void writeFileAtomically(const std::string& path, std::string_view bytes);

}  // namespace tripkit
