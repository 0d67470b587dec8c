// A price-history file ("history/CODE.json") as the price check reads it:
// decoded, merged, and a price judged against each route's nights.
#include "fuzz/fuzz_support.h"
#include "tripkit/price_history.h"

using namespace tripkit;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::optional<HistoryBook> book = roamwise::fuzz::decoded<HistoryBook>(data, size);
    if (!book) return 0;
    roamwise::fuzz::checkRoundTrip(*book, roamwise::fuzz::Fidelity::decodes);

    const Day today = book->updated;
    const FareHistory history({*book, *book}, today);
    for (const auto& [to, series] : book->routes) {
        const std::vector<NightPrice> nights = book->nights(to);
        // The route's own prices are the edges a verdict turns on.
        for (double price : {1.0, 300.0}) (void)history.check(price, to, today);
        for (const NightPrice& night : nights) {
            (void)history.check(night.price, to, today);
            (void)PriceCheck::judge(night.price, nights, today);
        }
    }
    return 0;
}
