// A calendar file ("calendars/CODE.json") as the calendar and getaway screens
// read it: decoded, merged into a fare calendar, queried by day and month.
#include "fuzz/fuzz_support.h"
#include "tripkit/calendars.h"
#include "tripkit/getaways.h"

using namespace tripkit;

namespace {

bool sameBook(const CalendarBook& a, const CalendarBook& b) {
    return a.origin == b.origin && a.updated == b.updated && a.routes == b.routes &&
           a.airlines == b.airlines && a.skippedImpossible == b.skippedImpossible;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    roamwise::fuzz::checkFastReader<CalendarBook>(data, size, sameBook);
    const std::optional<CalendarBook> book = roamwise::fuzz::decoded<CalendarBook>(data, size);
    if (!book) return 0;
    roamwise::fuzz::checkRoundTrip(*book, roamwise::fuzz::Fidelity::decodes);

    const Day today = book->updatedDay().value_or(roamwise::fuzz::fuzzToday());
    const FareCalendar calendar({*book, *book});
    const std::vector<RoundTrip> all = calendar.allTrips(today);
    for (const RoundTrip& trip : all) {
        (void)trip.nights();
        (void)trip.isStale(today);
        (void)std::hash<RoundTrip>{}(trip);
    }
    for (const auto& [to, byDay] : calendar.byDestination) {
        (void)calendar.trips(to, today);
        (void)calendar.months(to, today);
        (void)calendar.cheapest(to, std::nullopt, today, true);
        (void)calendar.cheapest(to, DayRange(today, today + 30), today, false);
    }
    for (const TripTiming& timing : {TripTiming::anytime(), TripTiming::weekends(),
                                     TripTiming::anyHoliday()}) {
        for (TripLength length : {TripLength::any, TripLength::short_, TripLength::long_}) {
            (void)Getaways::find(calendar, timing, length, std::nullopt, 500.0, today);
        }
    }
    return 0;
}
