// A calendar file ("calendars/CODE.json") as the calendar and getaway screens
// read it: decoded, merged into a fare calendar, queried by day and month.
#include "fuzz/fuzz_support.h"
#include "tripkit/calendars.h"
#include "tripkit/getaways.h"

using namespace tripkit;

namespace {

// The On-Demand reader must read a file exactly as the DOM decoder does, or
// leave it to the DOM decoder.
void checkFastReader(const std::uint8_t* data, std::size_t size) {
    const simdjson::padded_string padded(roamwise::fuzz::bytesOf(data, size));
    const std::optional<CalendarBook> fast = CalendarBook::readFast(padded.data(), padded.size());
    if (!fast) return;
    std::optional<CalendarBook> tree;
    try {
        tree = json::decodeTree<CalendarBook>(roamwise::fuzz::bytesOf(data, size), "fuzz");
    } catch (const json::DecodeError&) {
        roamwise::fuzz::fail("the fast reader took a file the DOM decoder refuses");
    }
    if (fast->origin != tree->origin || fast->updated != tree->updated ||
        fast->routes != tree->routes || fast->airlines != tree->airlines ||
        fast->skippedImpossible != tree->skippedImpossible) {
        roamwise::fuzz::fail("the fast reader and the DOM decoder read different books");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    checkFastReader(data, size);
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
