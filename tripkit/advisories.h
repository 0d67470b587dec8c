// U.S. State Department travel advisories: the service's feed, one advisory
// per country code, and the level texts.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tripkit/destinations.h"
#include "tripkit/json.h"

namespace tripkit {

struct Advisory {
    std::string code;     // the service's country code (not always ISO)
    std::string country;  // from the title
    int level = 0;        // 1 to 4
    std::string title;
    std::string link;
    std::string updated;  // "YYYY-MM-DD", empty when the feed had none
    friend bool operator==(const Advisory&, const Advisory&) = default;
};

struct Advisories {
    // One element of the feed, with the service's own keys.
    struct Raw {
        std::string title;                                 // "Title"
        std::string link;                                  // "Link"
        std::optional<std::vector<std::string>> category;  // "Category"; [0] is the code
        std::optional<std::string> updated;                // "Updated", a timestamp
    };

    // The State Department's public data service.
    static constexpr std::string_view serviceURL = "https://cadataapi.state.gov/api/TravelAdvisories";
    static constexpr const char* failedText = "Couldn’t reach the State Department’s advisories.";

    static constexpr int lowestLevel = 1;
    static constexpr int highestLevel = 4;

    // The feed as read: the advisories by code, and how many elements were
    // left out for a level outside 1 to 4.
    struct Feed {
        std::map<std::string, Advisory> byCode;
        int impossible = 0;
    };

    // Decodes the feed (a JSON array) and keys the advisories by code; a later
    // element with the same code replaces an earlier one. Throws
    // json::DecodeError naming `source` when the body is not such an array.
    static Feed read(std::string_view data, std::string source = "advisories.json");
    static std::map<std::string, Advisory> parse(std::string_view data,
                                                 std::string source = "advisories.json") {
        return read(data, std::move(source)).byCode;
    }
    // One element as an advisory; nothing when it has no category, no
    // readable "Level N" in its title, or a level outside 1 to 4.
    static std::optional<Advisory> advisory(const Raw& raw);

    // "Exercise normal precautions" ... "Do not travel"; empty for any other level.
    static std::string_view levelText(int level);

    // The advisory of a destination abroad; nothing for a domestic place or
    // one whose advisory code the feed does not have.
    static const Advisory* of(const Destination& d, const std::map<std::string, Advisory>& advisories);
    // The catalog's places an advisory applies to, in catalog order.
    static std::vector<const Destination*> destinations(const Advisory& a,
                                                        const std::vector<Destination>& catalog);

    // Safe & Fun: whether a place is shown when abroad only advisory levels up
    // to `maxLevel` (1 or 2) are. Domestic places always are; a place abroad
    // whose level is unknown is not, since nothing says it is safe.
    static bool isShown(const Destination& d, const std::map<std::string, Advisory>& advisories,
                        int maxLevel);
    static std::vector<Destination> safeAndFun(const std::vector<Destination>& catalog,
                                               const std::map<std::string, Advisory>& advisories,
                                               int maxLevel);
};

void decode(const json::Value& v, Advisories::Raw& out);
void decode(const json::Value& v, Advisory& out);
json::Json encode(const Advisory& a);

}  // namespace tripkit
