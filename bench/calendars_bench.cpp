// Refresh cost of the fare calendars: decoding a busy airport's calendar file,
// merging three home airports' books and finding the getaways over them.
#include <benchmark/benchmark.h>

#include <random>

#include "tripkit/calendars.h"
#include "tripkit/getaways.h"

namespace {

using namespace tripkit;

const Day kToday = Day::fromCivil(2026, 11, 23);

// About what the nightly job publishes for a busy airport: 150 destinations,
// a fare for most departure days of the next eleven months.
std::string makeCalendarFile(const std::string& origin, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> price(59, 1400), nights(1, 14), age(0, 9), stops(0, 2),
        gap(0, 9);
    CalendarBook book;
    book.origin = origin;
    book.updated = kToday.text();
    for (int i = 0; i < 150; ++i) {
        std::string to{char('A' + i % 26), char('A' + (i / 26) % 26), 'X'};
        for (int day = 0; day < 330; ++day) {
            if (gap(random) == 0) continue;  // days with no fare found
            RoundTrip t;
            t.origin = origin;
            t.destination = to;
            t.depart = kToday + day;
            t.returnDay = t.depart + nights(random);
            t.price = price(random);
            t.airline = "B6";
            t.stops = stops(random);
            t.seen = kToday - age(random);
            book.add(t);
        }
    }
    return encode(book).dump();
}

std::vector<CalendarBook> threeBooks() {
    std::vector<CalendarBook> books;
    unsigned seed = 1;
    for (const char* code : {"JFK", "EWR", "LGA"}) {
        books.push_back(json::decodeDocument<CalendarBook>(makeCalendarFile(code, seed++), code));
    }
    return books;
}

void BM_DecodeCalendarFile(benchmark::State& state) {
    const std::string file = makeCalendarFile("JFK", 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(json::decodeDocument<CalendarBook>(file, "calendars/JFK.json"));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * file.size()));
}
BENCHMARK(BM_DecodeCalendarFile)->Unit(benchmark::kMillisecond);

void BM_MergeCalendars(benchmark::State& state) {
    const auto books = threeBooks();
    for (auto _ : state) benchmark::DoNotOptimize(FareCalendar(books));
}
BENCHMARK(BM_MergeCalendars)->Unit(benchmark::kMillisecond);

void BM_FindGetaways(benchmark::State& state) {
    const FareCalendar calendar(threeBooks());
    const TripTiming timing = state.range(0) == 0 ? TripTiming::weekends() : TripTiming::anyHoliday();
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            Getaways::find(calendar, timing, TripLength::any, std::nullopt, std::nullopt, kToday));
    }
}
BENCHMARK(BM_FindGetaways)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
