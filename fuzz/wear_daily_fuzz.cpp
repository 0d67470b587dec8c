// A NASA POWER daily point response, reduced to twelve typical months.
#include "fuzz/fuzz_support.h"
#include "tripkit/wear_data.h"

using namespace tripkit;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::optional<WearClimate::Daily> daily = roamwise::fuzz::decoded<WearClimate::Daily>(data, size);
    if (!daily) return 0;
    try {
        (void)WearClimate::reduce(*daily, WearClimate::UvClimatology{}, 250.0);
    } catch (const WearClimate::Failure&) {
        // An incomplete year is reported, not reduced.
    }
    return 0;
}
