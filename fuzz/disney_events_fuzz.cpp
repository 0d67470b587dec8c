// A downloaded "disney-events.json": decoded, its busy spans handed to the
// shipped Disney guide, and the busy-day queries the planner makes.
#include "fuzz/fuzz_support.h"
#include "fuzz/park_pricing.h"
#include "tripkit/disney_guide.h"
#include "tripkit/events.h"

using namespace tripkit;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::optional<EventCalendar> events = roamwise::fuzz::decoded<EventCalendar>(data, size);
    if (!events) return 0;
    roamwise::fuzz::checkRoundTrip(*events, roamwise::fuzz::Fidelity::decodes);

    DisneyGuide guide = DisneyGuide::shipped();
    guide.busyEvents = DisneyGuide::busySpans(*events);
    for (const Event& e : events->events) {
        (void)events->isBusy(e.first);
        (void)events->busyOverlapping(DayRange(e.first - 3, e.first + 3));
        roamwise::fuzz::priceStays(guide, roamwise::fuzz::familySearch(), e.first - 1);
    }
    return 0;
}
