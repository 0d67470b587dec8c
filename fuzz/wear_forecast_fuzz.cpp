// A MET Norway locationforecast response, grouped into local days.
#include "fuzz/fuzz_support.h"
#include "tripkit/wear_forecast.h"

using namespace tripkit;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::optional<WearForecast::Doc> doc = roamwise::fuzz::decoded<WearForecast::Doc>(data, size);
    if (!doc) return 0;
    for (const char* zone : {"Europe/Berlin", "Pacific/Kiritimati", "America/St_Johns"}) {
        (void)WearForecast::days(*doc, zone);
    }
    return 0;
}
