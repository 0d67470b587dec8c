// Making the sample data: every file of three home airports for one night,
// which the application does at start when it shows sample data; and the
// same at load-test scale.
#include <benchmark/benchmark.h>

#include "feedgen/feed.h"

namespace {

using namespace roamwise::feedgen;

Options threeAirports() {
    Options o;
    o.today = tripkit::Day::fromCivil(2026, 11, 20);
    o.airports = {"JFK", "EWR", "LGA"};
    return o;
}

void report(benchmark::State& state, const Files& files) {
    std::size_t bytes = 0;
    for (const auto& [path, text] : files) bytes += text.size();
    state.counters["files"] = static_cast<double>(files.size());
    state.counters["MB"] = static_cast<double>(bytes) / 1e6;
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
}

void BM_ThreeAirportsOneNight(benchmark::State& state) {
    const Options o = threeAirports();
    Files files;
    for (auto _ : state) {
        files = generate(o);
        benchmark::DoNotOptimize(files);
    }
    report(state, files);
}
BENCHMARK(BM_ThreeAirportsOneNight)->Unit(benchmark::kMillisecond);

// Load-test scale: made-up places beyond the catalog and many Orlando fares
// a day (state.range(0) places, state.range(1) options).
void BM_ThreeAirportsScaled(benchmark::State& state) {
    Options o = threeAirports();
    o.extraDestinations = static_cast<int>(state.range(0));
    o.orlandoOptionsPerDay = static_cast<int>(state.range(1));
    Files files;
    for (auto _ : state) {
        files = generate(o);
        benchmark::DoNotOptimize(files);
    }
    report(state, files);
}
BENCHMARK(BM_ThreeAirportsScaled)->Args({500, 20})->Unit(benchmark::kMillisecond);

}  // namespace
