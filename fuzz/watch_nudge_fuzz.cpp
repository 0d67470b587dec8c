// The saved "watchNudge" preference (its JSON), read back at start and then
// asked about a few places.
#include "fuzz/fuzz_support.h"
#include "tripkit/watch_nudge.h"

using namespace tripkit;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::optional<WatchNudge> nudge = roamwise::fuzz::decoded<WatchNudge>(data, size);
    if (!nudge) return 0;
    roamwise::fuzz::checkRoundTrip(*nudge);
    const std::vector<std::string> codes = [&] {
        std::vector<std::string> out{"LIS"};
        for (const auto& [code, views] : nudge->views) out.push_back(code);
        return out;
    }();
    for (const std::string& code : codes) {
        (void)nudge->recordView(code, false, false);
        (void)nudge->recordView(code, false, true);
    }
    roamwise::fuzz::checkRoundTrip(*nudge);
    return 0;
}
