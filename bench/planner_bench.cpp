// The trip planner over a year of check-in days, the way the planner screen
// and `roamwise-cli plan` run it: every resort of the shipped guide the
// search allows, flights quoted and calibrated from a nightly fare file.
// Goal: a year of check-in days over every Disney resort in 10 ms.
#include <benchmark/benchmark.h>

#include "tripkit/disney_guide.h"
#include "tripkit/places.h"
#include "tripkit/trip_planner.h"
#include "tripkit/universal_guide.h"

namespace {

using namespace tripkit;

const Day kToday = Day::fromCivil(2026, 12, 31);

// Five nights, four park days with hoppers and a Multi Pass each day, the
// Mears shuttle, for two adults and children of 10, 6 and 1, at every
// resort of both guides.
TripSearch familySearch() {
    TripSearch s;
    s.origin = "JFK";
    s.party = Party{2, {10, 6, 1}};
    s.nights = 5;
    s.parkDays = 4;
    s.resorts.tiers = allTiers();
    s.parkHopper = true;
    s.epicUniverse = true;
    s.lightningLane = LightningLaneChoice::multiPass(4);
    s.transport = TransportChoice::mearsStandard;
    s.food = FoodBudget{80, 40};
    return s;
}

// Found fares on about a third of the days, both ways, as a nightly file has.
FareBook fareBook() {
    FareBook book;
    book.origin = "JFK";
    book.updated = kToday.text();
    for (int i = 1; i <= 330; i += 3) {
        const Day day = kToday + i;
        book.toOrlando[day.text()] = {
            FareOption{"B6", 90.0 + i % 50, 0, std::nullopt, std::nullopt},
            FareOption{"DL", 120.0 + i % 30, 0, std::nullopt, std::nullopt}};
        book.fromOrlando[(day + 1).text()] = {
            FareOption{"NK", 70.0 + i % 40, 1, std::nullopt, std::nullopt}};
    }
    return book;
}

void planYear(benchmark::State& state, const ParkGuide& guide) {
    const TripSearch search = familySearch();
    const FareBook book = fareBook();
    PlanInputs inputs;
    inputs.book = &book;
    inputs.home = *Airports::shipped().find("JFK");
    inputs.orlando = *Airports::shipped().find("MCO");
    inputs.today = kToday;
    inputs.checkIns = DayRange(kToday + 1, kToday + 365);
    (void)TripPlanner::plan(search, guide, inputs);  // the guide's tables, once
    std::size_t resorts = 0;
    for (const ParkResort& r : guide.parkResorts()) resorts += search.resorts.allows(r) ? 1 : 0;
    std::size_t trips = 0;
    for (auto _ : state) {
        const TripSearchResult r = TripPlanner::plan(search, guide, inputs);
        trips = r.trips.size();
        benchmark::DoNotOptimize(r.trips.data());
    }
    state.counters["trips"] = static_cast<double>(trips);
    state.counters["resorts"] = static_cast<double>(resorts);
    state.counters["goal_ms"] = 10;
}

void BM_PlanDisneyYear(benchmark::State& state) {
    planYear(state, DisneyGuide::shipped());
}
BENCHMARK(BM_PlanDisneyYear)->Unit(benchmark::kMillisecond);

void BM_PlanUniversalYear(benchmark::State& state) {
    planYear(state, UniversalGuide::shipped());
}
BENCHMARK(BM_PlanUniversalYear)->Unit(benchmark::kMillisecond);

}  // namespace
