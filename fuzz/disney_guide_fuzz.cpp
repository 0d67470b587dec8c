// A downloaded "disney-guide.json" as the planner uses it: decoded, then a
// family's stay priced at every resort on dates across its coverage.
#include "fuzz/fuzz_support.h"
#include "fuzz/park_pricing.h"
#include "tripkit/disney_guide.h"
#include "tripkit/events.h"

using namespace tripkit;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::optional<DisneyGuide> guide = roamwise::fuzz::decoded<DisneyGuide>(data, size);
    if (!guide) return 0;
    roamwise::fuzz::checkRoundTrip(*guide, roamwise::fuzz::Fidelity::decodes);
    guide->busyEvents = DisneyGuide::busySpans(EventCalendar::shipped());

    const Day from = guide->coverage.from;
    for (Day checkIn : {from, from + 45, guide->coverage.hotelsPublishedThrough - 2,
                        guide->coverage.ticketsPublishedThrough + 1}) {
        roamwise::fuzz::priceStays(*guide, roamwise::fuzz::familySearch(), checkIn);
        roamwise::fuzz::priceChoices(*guide, checkIn);
    }
    for (const DisneyGuide::Season& season : guide->calendar) {
        (void)season.baseRate(season.from);
        (void)guide->seasonOf(season.to);
    }
    return 0;
}
