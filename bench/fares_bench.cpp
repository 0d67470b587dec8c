// Start-up and refresh cost of the fare files: decoding three home airports'
// books and merging their deals.
#include <benchmark/benchmark.h>

#include <random>

#include "tripkit/fares.h"

namespace {

using namespace tripkit;

const Day kToday = Day::fromCivil(2026, 11, 23);

// A fare file about the size the nightly job publishes for a busy airport:
// a few hundred deals and a year of Orlando day fares.
std::string makeFareFile(const std::string& origin, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> price(59, 1400), ahead(0, 340), age(0, 9), stops(0, 2);
    FareBook book;
    book.origin = origin;
    book.updated = kToday.text();
    for (int i = 0; i < 400; ++i) {
        Deal d;
        d.destination = std::string{char('A' + i % 26), char('A' + (i / 26) % 26), 'X'};
        d.city = "City " + d.destination;
        d.country = "Country";
        d.price = price(random);
        d.depart = kToday + ahead(random);
        d.returnDay = d.depart + 7;
        d.airline = "B6";
        d.stops = stops(random);
        d.seen = kToday - age(random);
        book.deals.push_back(d);
    }
    for (int day = 0; day < 330; ++day) {
        std::vector<FareOption> options;
        for (const char* airline : {"B6", "DL", "NK", "AA"}) {
            options.push_back({airline, double(price(random)) / 4, stops(random), std::nullopt,
                               kToday - age(random)});
        }
        book.toOrlando[(kToday + day).text()] = options;
        book.fromOrlando[(kToday + day).text()] = options;
    }
    return encode(book).dump();
}

void BM_DecodeFareFile(benchmark::State& state) {
    const std::string file = makeFareFile("JFK", 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(json::decodeDocument<FareBook>(file, "flights/JFK.json"));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * file.size()));
}
BENCHMARK(BM_DecodeFareFile)->Unit(benchmark::kMillisecond);

void BM_MergeDeals(benchmark::State& state) {
    std::vector<FareBook> books;
    unsigned seed = 1;
    for (const char* code : {"JFK", "EWR", "LGA"}) {
        books.push_back(json::decodeDocument<FareBook>(makeFareFile(code, seed++), code));
    }
    for (auto _ : state) benchmark::DoNotOptimize(Fares::deals(books, kToday));
}
BENCHMARK(BM_MergeDeals)->Unit(benchmark::kMicrosecond);

}  // namespace
