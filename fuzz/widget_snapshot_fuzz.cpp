// "widget.json" as the desktop widget reads it from the shared container.
#include "fuzz/fuzz_support.h"
#include "tripkit/widget_snapshot.h"

using namespace tripkit;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::optional<WidgetSnapshot> snapshot =
        roamwise::fuzz::decoded<WidgetSnapshot>(data, size);
    if (!snapshot) return 0;
    roamwise::fuzz::checkRoundTrip(*snapshot);
    const Day today = roamwise::fuzz::fuzzToday();
    for (Day day : {today, snapshot->updated, snapshot->updated + 5}) {
        (void)WidgetSnapshot::text(snapshot->showing(day));
    }
    for (const WidgetSnapshot::Item& item : snapshot->watched) {
        (void)WidgetSnapshot::cappedDay(item.depart.text(), today);
    }
    return 0;
}
