// The data path at start and refresh: decoding each kind of nightly file
// beside a bare simdjson parse of the same bytes, reading and merging three
// home airports' nine files, and the getaway search over the merged calendar.
//
// Reads the folder written by bench/make_input.py, named by the environment
// variable ROAMWISE_BENCH_INPUT (bench/run_data_path.sh does both).
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <simdjson.h>

#include "tripkit/calendars.h"
#include "tripkit/fares.h"
#include "tripkit/getaways.h"
#include "tripkit/price_history.h"

namespace {

using namespace tripkit;

const Day kToday = Day::fromCivil(2026, 11, 20);
const char* const kHomes[] = {"JFK", "EWR", "LGA"};

std::string inputDir() {
    const char* dir = std::getenv("ROAMWISE_BENCH_INPUT");
    return dir ? dir : "";
}

std::string readBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

// One home airport's file of one kind, or "" (and the benchmark skipped) when
// the input folder is missing.
std::string inputFile(benchmark::State& state, const std::string& folder,
                      const char* code = "JFK") {
    const std::string dir = inputDir();
    std::string bytes = dir.empty() ? "" : readBytes(dir + "/" + folder + "/" + code + ".json");
    if (bytes.empty())
        state.SkipWithError("set ROAMWISE_BENCH_INPUT to a bench/make_input.py folder");
    return bytes;
}

// This thread's CPU time: the machine may be shared, and the ratio of two
// figures in wall time would carry the neighbours' load.
double cpuSeconds() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

double megabytesPerSecond(std::size_t bytes, double seconds, int runs) {
    return static_cast<double>(bytes) * runs / seconds / 1e6;
}

// The reference: simdjson's DOM parse of the bytes with a reused parser,
// nothing built from them.
double bareParseMBps(const std::string& bytes) {
    simdjson::dom::parser parser;
    simdjson::padded_string padded(bytes);
    constexpr int kRuns = 30;
    benchmark::DoNotOptimize(parser.parse(padded).error());  // allocate once
    const double start = cpuSeconds();
    for (int i = 0; i < kRuns; ++i) benchmark::DoNotOptimize(parser.parse(padded).error());
    return megabytesPerSecond(bytes.size(), cpuSeconds() - start, kRuns);
}

void BM_BareSimdjsonParse(benchmark::State& state, const char* folder) {
    const std::string bytes = inputFile(state, folder);
    if (bytes.empty()) return;
    simdjson::dom::parser parser;
    simdjson::padded_string padded(bytes);
    for (auto _ : state) benchmark::DoNotOptimize(parser.parse(padded).error());
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes.size()));
    state.SetLabel("reference row");
}
BENCHMARK_CAPTURE(BM_BareSimdjsonParse, calendar, "calendars")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_BareSimdjsonParse, fare, "flights")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_BareSimdjsonParse, history, "history")->Unit(benchmark::kMillisecond);

// The same with a new parser for every file, as a process that reads each
// file once pays it (allocating and first touching the parser's buffers).
void BM_BareSimdjsonParseFreshParser(benchmark::State& state, const char* folder) {
    const std::string bytes = inputFile(state, folder);
    if (bytes.empty()) return;
    simdjson::padded_string padded(bytes);
    for (auto _ : state) {
        simdjson::dom::parser parser;
        benchmark::DoNotOptimize(parser.parse(padded).error());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes.size()));
    state.SetLabel("reference row");
}
BENCHMARK_CAPTURE(BM_BareSimdjsonParseFreshParser, calendar, "calendars")
    ->Unit(benchmark::kMillisecond);

// Our parse alone (the parser reused, nothing decoded), to tell the parse
// from the walk over it.
void BM_ParseOnly(benchmark::State& state, const char* folder) {
    const std::string bytes = json::padded(inputFile(state, folder));
    if (bytes.empty()) return;
    for (auto _ : state) benchmark::DoNotOptimize(json::parse(bytes, "calendars/JFK.json"));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes.size()));
}
BENCHMARK_CAPTURE(BM_ParseOnly, calendar, "calendars")->Unit(benchmark::kMillisecond);

// Decoding one file as the app does; `vs_bare` is its speed over the bare
// parse of the same bytes measured just before (goal for calendars: 0.8).
template <class Book>
void BM_Decode(benchmark::State& state, const char* folder) {
    // Padded as the readers leave them, so the parser reads them in place.
    const std::string bytes = json::padded(inputFile(state, folder));
    if (bytes.empty()) return;
    const double bare = bareParseMBps(bytes);
    const std::string source = std::string(folder) + "/JFK.json";
    const double start = cpuSeconds();
    for (auto _ : state) benchmark::DoNotOptimize(json::decodeDocument<Book>(bytes, source));
    const double mine = megabytesPerSecond(bytes.size(), cpuSeconds() - start,
                                           static_cast<int>(state.iterations()));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes.size()));
    state.counters["bare_MBps"] = bare;
    state.counters["vs_bare"] = mine / bare;
    state.SetLabel("goal: vs_bare >= 0.8");
}
void BM_DecodeCalendar(benchmark::State& state) {
    BM_Decode<CalendarBook>(state, "calendars");
}
void BM_DecodeFare(benchmark::State& state) {
    BM_Decode<FareBook>(state, "flights");
}
void BM_DecodeHistory(benchmark::State& state) {
    BM_Decode<HistoryBook>(state, "history");
}
BENCHMARK(BM_DecodeCalendar)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DecodeFare)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DecodeHistory)->Unit(benchmark::kMillisecond);

// Ceilings: how fast a calendar reader could be with no records built at all,
// each cell's values only read, by the two ways simdjson offers. They bound
// what the decode above can reach against the same bare parse.
double onDemandWalk(simdjson::ondemand::parser& parser, const std::string& padded) {
    namespace od = simdjson::ondemand;
    double sum = 0;
    od::document doc = parser.iterate(padded.data(), padded.size(), padded.capacity());
    for (auto field : doc.get_object()) {
        if (std::string_view(field.unescaped_key()) != "routes") continue;
        for (auto route : field.value().get_object()) {
            for (auto day : route.value().get_object()) {
                sum += static_cast<double>(std::string_view(day.unescaped_key()).size());
                int i = 0;
                for (auto element : day.value().get_array()) {
                    od::value v = element.value();
                    if (i == 0) sum += double(v.get_double());
                    if (i == 1) sum += static_cast<double>(std::string_view(v.get_string()).size());
                    if (i == 2) sum += static_cast<double>(int64_t(v.get_int64()));
                    if (i > 2 && !v.is_null())
                        sum += static_cast<double>(std::string_view(v.get_string()).size());
                    ++i;
                }
            }
        }
    }
    return sum;
}

double domWalk(simdjson::dom::parser& parser, const std::string& padded) {
    namespace dom = simdjson::dom;
    double sum = 0;
    const dom::element doc = parser.parse(padded.data(), padded.size(), false);
    for (const dom::key_value_pair route : dom::object(doc["routes"])) {
        for (const dom::key_value_pair day : dom::object(route.value)) {
            sum += static_cast<double>(day.key.size());
            for (const dom::element v : dom::array(day.value)) {
                if (v.is_string())
                    sum += static_cast<double>(std::string_view(v).size());
                else if (v.is_number())
                    sum += double(v);
            }
        }
    }
    return sum;
}

template <class Parser, double (*Walk)(Parser&, const std::string&)>
void BM_CalendarCeiling(benchmark::State& state) {
    const std::string bytes = json::padded(inputFile(state, "calendars"));
    if (bytes.empty()) return;
    const double bare = bareParseMBps(bytes);
    Parser parser;
    benchmark::DoNotOptimize(Walk(parser, bytes));  // allocate once
    const double start = cpuSeconds();
    for (auto _ : state) benchmark::DoNotOptimize(Walk(parser, bytes));
    const double mine = megabytesPerSecond(bytes.size(), cpuSeconds() - start,
                                           static_cast<int>(state.iterations()));
    state.counters["bare_MBps"] = bare;
    state.counters["vs_bare"] = mine / bare;
    state.SetLabel("ceiling: values read, no records");
}
BENCHMARK(BM_CalendarCeiling<simdjson::ondemand::parser, onDemandWalk>)
    ->Name("BM_CalendarCeiling/on_demand")
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CalendarCeiling<simdjson::dom::parser, domWalk>)
    ->Name("BM_CalendarCeiling/dom")
    ->Unit(benchmark::kMillisecond);

// What a start or a refresh does with the three home airports' nine files:
// read them from disk, decode them, merge the deals, calendars and history.
struct Merged {
    std::vector<Deal> deals;
    FareCalendar calendar;
    FareHistory history;
};

Merged readDecodeMerge(const std::string& dir) {
    Merged out;
    std::vector<FareBook> fareBooks;
    std::vector<HistoryBook> historyBooks;
    for (const char* code : kHomes) {
        const std::string name = std::string(code) + ".json";
        fareBooks.push_back(json::decodeDocument<FareBook>(
            json::padded(readBytes(dir + "/flights/" + name)), "flights/" + name));
        // Calendars merge as they are read, as the app does.
        out.calendar.add(json::decodeDocument<CalendarBook>(
            json::padded(readBytes(dir + "/calendars/" + name)), "calendars/" + name));
        historyBooks.push_back(json::decodeDocument<HistoryBook>(
            json::padded(readBytes(dir + "/history/" + name)), "history/" + name));
    }
    out.deals = Fares::deals(fareBooks, kToday);
    out.history = FareHistory(historyBooks, kToday);
    return out;
}

void BM_ReadDecodeMergeThreeAirports(benchmark::State& state) {
    if (inputFile(state, "calendars").empty()) return;
    const std::string dir = inputDir();
    for (auto _ : state) benchmark::DoNotOptimize(readDecodeMerge(dir));
    state.SetLabel("goal: <= 30 ms");
}
BENCHMARK(BM_ReadDecodeMergeThreeAirports)->Unit(benchmark::kMillisecond);

void BM_FindGetaways(benchmark::State& state) {
    if (inputFile(state, "calendars").empty()) return;
    const FareCalendar calendar = readDecodeMerge(inputDir()).calendar;
    const TripTiming timings[] = {TripTiming::anytime(), TripTiming::weekends(),
                                  TripTiming::anyHoliday()};
    const TripTiming timing = timings[state.range(0)];
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            Getaways::find(calendar, timing, TripLength::any, std::nullopt, std::nullopt, kToday));
    }
    state.SetLabel(std::string(caseName(timing.kind)));
}
BENCHMARK(BM_FindGetaways)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

}  // namespace
