// What the theme-park planner will spend pricing every check-in date: one
// stay at every shipped Disney resort for each day of the published calendar.
#include <benchmark/benchmark.h>

#include "tripkit/disney_guide.h"
#include "tripkit/universal_guide.h"

namespace {

using namespace tripkit;

const Party kFamily{2, {10, 6, 1}};

double priceStay(const ParkGuide& guide, const ParkResort& resort, Day checkIn) {
    const int nights = 5;
    const int parkDays = 4;
    double total = 0;
    if (auto stay = guide.hotelStay(resort, checkIn, nights, kFamily.rooms())) total += stay->total;
    auto tickets = guide.ticketTotals(parkDays, kFamily, checkIn, true, true);
    total += tickets.tickets + tickets.hopper;
    total += guide.lightningLaneTotal(LightningLaneChoice::multiPass(parkDays), parkDays, checkIn,
                                      kFamily);
    total += guide.transportTotal(TransportChoice::mearsStandard, kFamily, nights, resort);
    for (int i = 0; i <= nights; ++i) total += guide.isBusy(checkIn + i) ? 1 : 0;
    return total;
}

// Every resort of `guide` for each check-in day of 2027.
void priceEveryDate(benchmark::State& state, const ParkGuide& guide) {
    const auto resorts = guide.parkResorts();
    const Day first = Day::fromCivil(2027, 1, 1);
    for (auto _ : state) {
        double sum = 0;
        for (int day = 0; day < 365; ++day)
            for (const auto& resort : resorts) sum += priceStay(guide, resort, first + day);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * 365 * static_cast<int64_t>(resorts.size()));
}

void BM_PriceEveryDisneyDate(benchmark::State& state) {
    priceEveryDate(state, DisneyGuide::shipped());
}
BENCHMARK(BM_PriceEveryDisneyDate)->Unit(benchmark::kMillisecond);

void BM_PriceEveryUniversalDate(benchmark::State& state) {
    priceEveryDate(state, UniversalGuide::shipped());
}
BENCHMARK(BM_PriceEveryUniversalDate)->Unit(benchmark::kMillisecond);

}  // namespace
