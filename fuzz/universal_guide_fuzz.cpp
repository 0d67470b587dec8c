// A downloaded "universal-guide.json" as the planner uses it: decoded, then a
// family's stay priced at every hotel on dates around its coverage.
#include "fuzz/fuzz_support.h"
#include "fuzz/park_pricing.h"
#include "tripkit/universal_guide.h"

using namespace tripkit;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::optional<UniversalGuide> guide = roamwise::fuzz::decoded<UniversalGuide>(data, size);
    if (!guide) return 0;
    roamwise::fuzz::checkRoundTrip(*guide, roamwise::fuzz::Fidelity::decodes);

    const Day from = guide->coverage.from;
    for (Day checkIn : {from, from + 45, guide->coverage.to - 2}) {
        roamwise::fuzz::priceStays(*guide, roamwise::fuzz::familySearch(), checkIn);
        roamwise::fuzz::priceChoices(*guide, checkIn);
    }
    for (int parkDays : {1, 2, 3, 4}) {
        for (bool epic : {false, true}) {
            (void)guide->guestTicket(parkDays, epic, true);
            (void)guide->guestTicket(parkDays, epic, false);
        }
    }
    for (const std::string& park : {std::string(UniversalGuide::studiosPark),
                                    std::string(UniversalGuide::epicUniversePark)}) {
        (void)guide->oneDayPrice(park);
    }
    return 0;
}
