// A trip search file (`park price --search`, `plan --search`, a park watch's
// saved search): decoded, then priced against both shipped guides on a few
// check-in days, and planned over a week of them.
#include "fuzz/fuzz_support.h"
#include "fuzz/park_pricing.h"
#include "tripkit/disney_guide.h"
#include "tripkit/trip_planner.h"
#include "tripkit/trip_search.h"
#include "tripkit/universal_guide.h"

using namespace tripkit;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::optional<TripSearch> search = roamwise::fuzz::decoded<TripSearch>(data, size);
    if (!search) return 0;
    roamwise::fuzz::checkRoundTrip(*search);

    const Party& party = search->party;
    (void)party.passengers();
    (void)search->lightningLane.label();
    for (const ParkGuide* guide : std::initializer_list<const ParkGuide*>{
             &DisneyGuide::shipped(), &UniversalGuide::shipped()}) {
        const Day checkIn = search->window.earliest.value_or(roamwise::fuzz::fuzzToday() + 60);
        for (Day day : {checkIn, checkIn + 1}) roamwise::fuzz::priceStays(*guide, *search, day);
        PlanInputs inputs;
        inputs.home = Airport{"JFK", "New York", "NY", "", 40.64, -73.78};
        inputs.orlando = Airport{"MCO", "Orlando", "FL", "", 28.43, -81.31};
        inputs.today = roamwise::fuzz::fuzzToday();
        inputs.checkIns = DayRange(checkIn, checkIn + 6);
        for (const TripQuote& trip : TripPlanner::plan(*search, *guide, inputs).trips) {
            if (!(trip.total() >= 0)) __builtin_trap();
        }
    }
    return 0;
}
