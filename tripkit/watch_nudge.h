// The once-per-place offer to watch the price of a place the user keeps
// coming back to.
#pragma once

#include <map>
#include <set>
#include <string>

#include "tripkit/json.h"

namespace tripkit {

struct WatchNudge {
    static constexpr int maxViews = 99;

    std::map<std::string, int> views;  // destination code (upper case) -> openings
    std::set<std::string> offered;     // codes the offer was made for; never again

    // Records one opening of a place and answers whether to offer a watch
    // now. `watching`: the place has a watch already; `offeredThisSession`:
    // an offer was made earlier in this run of the app.
    bool recordView(const std::string& code, bool watching, bool offeredThisSession);
    friend bool operator==(const WatchNudge&, const WatchNudge&) = default;
};

void decode(const json::Value& v, WatchNudge& out);
json::Json encode(const WatchNudge& n);

}  // namespace tripkit
