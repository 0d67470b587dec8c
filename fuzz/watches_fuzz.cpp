// The user's "watches.json", read at start, checked against a small calendar
// after a refresh and written back.
#include "fuzz/fuzz_support.h"
#include "tripkit/alerts.h"

using namespace tripkit;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::optional<std::vector<Watch>> watches = roamwise::fuzz::decoded<std::vector<Watch>>(data, size);
    if (!watches) return 0;
    for (const Watch& w : *watches) roamwise::fuzz::checkRoundTrip(w);
    const Day today = Day::fromCivil(2026, 11, 23);
    CalendarBook book;
    book.origin = "JFK";
    book.updated = today.text();
    FareCalendar calendar;
    calendar.add(book);
    const Alerts::TripPricer trips = [](const Watch::Disney& d, Day) -> std::optional<double> {
        return static_cast<double>(d.search.nights) * 100;
    };
    for (const WatchAlert& alert : Alerts::checkAll(*watches, calendar, trips, today)) {
        for (const Watch& w : *watches) {
            if (w.id == alert.watchID) (void)AlertNotification::of(w, alert, today);
        }
    }
    for (const Watch& w : *watches) (void)w.hasPassed(today);
    return 0;
}
