// A fare file ("flights/CODE.json", cached as "fares-CODE.json") as the deals
// list reads it: decoded, merged into deals, linked and quoted for the planner.
#include "fuzz/fuzz_support.h"
#include "tripkit/fares.h"
#include "tripkit/links.h"
#include "tripkit/places.h"

using namespace tripkit;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    roamwise::fuzz::checkFastReader<FareBook>(data, size, std::equal_to<FareBook>{});
    // Windows of one child each: every edge between children is a window's.
    const simdjson::padded_string padded(roamwise::fuzz::bytesOf(data, size));
    if (FareBook::readFast(padded.data(), padded.size(), 1) !=
        FareBook::readFast(padded.data(), padded.size())) {
        roamwise::fuzz::fail("a fare file read in small windows reads otherwise");
    }
    const std::optional<FareBook> book = roamwise::fuzz::decoded<FareBook>(data, size);
    if (!book) return 0;
    roamwise::fuzz::checkRoundTrip(*book, roamwise::fuzz::Fidelity::decodes);

    const Day today = book->updatedDay().value_or(roamwise::fuzz::fuzzToday());
    const std::vector<Deal> merged = Fares::deals({*book, *book}, today);
    // What each command reads of the file must merge and report as the whole.
    for (const FareNeeds& needs :
         {FareNeeds{today, false, true}, FareNeeds{today, true, false}, FareNeeds{today}}) {
        FareBook narrowed = *book;
        narrow(narrowed, needs);
        if (const std::optional<FareBook> fast =
                FareBook::readFast(padded.data(), padded.size(), 1, false, needs);
            fast && *fast != narrowed) {
            roamwise::fuzz::fail("a narrowed fast read differs from the narrowed tree");
        }
        if (Fares::seenAfter(narrowed, today) != Fares::seenAfter(*book, today) ||
            Fares::deals({narrowed, narrowed}, today) !=
                (needs.deals ? merged : std::vector<Deal>{})) {
            roamwise::fuzz::fail("a narrowed book merges or reports otherwise");
        }
    }
    // Merged with itself the ties rule runs too.
    for (const Deal& deal : merged) {
        (void)deal.id();
        (void)deal.isStale(today);
        (void)Links::flightSearch(deal, "https://www.aviasales.com", "fuzz");
    }

    const Airports& airports = Airports::shipped();
    const Airport* home = airports.find("JFK");
    const Airport* orlando = airports.find("MCO");
    if (!home || !orlando) roamwise::fuzz::fail("shipped airports lack JFK or MCO");
    (void)Fares::airlines(&*book);
    FareFilter nonstop;
    nonstop.nonstopOnly = true;
    for (const auto* fares : {&book->toOrlando, &book->fromOrlando}) {
        for (const auto& [dayText, options] : *fares) {
            const std::optional<Day> day = Day::parse(dayText);
            if (!day) continue;
            for (const FareFilter& filter : {FareFilter{}, nonstop}) {
                QuoteRequest request;
                request.leg = fares == &book->toOrlando ? QuoteRequest::Leg::toOrlando
                                                        : QuoteRequest::Leg::fromOrlando;
                request.day = *day;
                request.demand = 0.5;
                request.filter = filter;
                request.home = *home;
                request.orlando = *orlando;
                request.today = today;
                (void)Fares::quote(*book, request);
            }
        }
    }
    return 0;
}
