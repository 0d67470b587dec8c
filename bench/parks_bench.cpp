// What the theme-park planner will spend pricing every check-in date: one
// stay at every shipped resort for each day of a year, through the same
// stay pricing the CLI uses. Goal: a year of Disney check-in days in 5 ms.
#include <benchmark/benchmark.h>

#include "tripkit/disney_guide.h"
#include "tripkit/stay_pricing.h"
#include "tripkit/universal_guide.h"

namespace {

using namespace tripkit;

// Five nights, four park days with hoppers and a Multi Pass each day, the
// Mears shuttle, for two adults and children of 10, 6 and 1.
TripSearch familySearch() {
    TripSearch s;
    s.party = Party{2, {10, 6, 1}};
    s.nights = 5;
    s.parkDays = 4;
    s.parkHopper = true;
    s.epicUniverse = true;
    s.lightningLane = LightningLaneChoice::multiPass(4);
    s.transport = TransportChoice::mearsStandard;
    s.food = FoodBudget{80, 40};
    return s;
}

// Every resort of `guide` for each check-in day of 2027.
void priceEveryDate(benchmark::State& state, const ParkGuide& guide) {
    const TripSearch search = familySearch();
    const auto resorts = guide.parkResorts();
    const Day first = Day::fromCivil(2027, 1, 1);
    for (auto _ : state) {
        double sum = 0;
        for (int day = 0; day < 365; ++day) {
            for (const auto& resort : resorts) {
                sum += priceStay(guide, resort, search, first + day).total().value_or(0);
            }
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * 365 * static_cast<int64_t>(resorts.size()));
    state.counters["goal_ms"] = 5;
}

void BM_PriceEveryDisneyDate(benchmark::State& state) {
    priceEveryDate(state, DisneyGuide::shipped());
}
BENCHMARK(BM_PriceEveryDisneyDate)->Unit(benchmark::kMillisecond);

void BM_PriceEveryUniversalDate(benchmark::State& state) {
    priceEveryDate(state, UniversalGuide::shipped());
}
BENCHMARK(BM_PriceEveryUniversalDate)->Unit(benchmark::kMillisecond);

// Building a guide's per-day tables, which the first price of a fresh copy pays.
void BM_BuildDisneyTables(benchmark::State& state) {
    const DisneyGuide& guide = DisneyGuide::shipped();
    for (auto _ : state) benchmark::DoNotOptimize(DisneyGuide::buildDays(guide));
}
BENCHMARK(BM_BuildDisneyTables)->Unit(benchmark::kMicrosecond);

}  // namespace
