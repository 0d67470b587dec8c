// The small hand-made park guides and search of tripkit/tests/data/parks.
#pragma once

#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "tripkit/disney_guide.h"
#include "tripkit/json.h"
#include "tripkit/universal_guide.h"

namespace tripkit::testing {

inline std::string parkData(const std::string& name) {
    std::ifstream in(std::string(TRIPKIT_TEST_DATA) + "/parks/" + name, std::ios::binary);
    EXPECT_TRUE(in) << "no test file " << name;
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

// `text` with its first `from` replaced by `to` (which must be there).
inline std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const auto at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) text.replace(at, from.size(), to);
    return text;
}

inline DisneyGuide testDisneyGuide() {
    return json::decodeDocument<DisneyGuide>(parkData("disney-guide.json"), "disney-guide.json");
}

inline UniversalGuide testUniversalGuide() {
    return json::decodeDocument<UniversalGuide>(parkData("universal-guide.json"),
                                                "universal-guide.json");
}

}  // namespace tripkit::testing
