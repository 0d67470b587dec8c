// The user's "trip-dates.json", read at start; each trip's passport reminder
// is worked out and the list written back.
#include "fuzz/fuzz_support.h"
#include "tripkit/checklist.h"

using namespace tripkit;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::optional<std::vector<TripDate>> trips = roamwise::fuzz::decoded<std::vector<TripDate>>(data, size);
    if (!trips) return 0;
    const Day today = Day::fromCivil(2026, 11, 23);
    for (const TripDate& trip : *trips) {
        roamwise::fuzz::checkRoundTrip(trip);
        for (int weeks : {1, 10, 52}) (void)PassportReminder{weeks, trip.depart}.isPast(today);
        (void)trip.body();
    }
    return 0;
}
