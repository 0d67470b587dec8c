// The State Department advisories feed ("advisories.json") as the advisories
// screen and Safe & Fun read it, against the shipped destination catalog.
#include "fuzz/fuzz_support.h"
#include "tripkit/advisories.h"
#include "tripkit/destinations.h"

using namespace tripkit;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::map<std::string, Advisory> advisories;
    try {
        advisories = Advisories::parse(roamwise::fuzz::bytesOf(data, size), "fuzz");
    } catch (const json::DecodeError&) {
        return 0;
    }
    const std::vector<Destination>& catalog = Destinations::shipped().list;
    for (const auto& [code, advisory] : advisories) {
        if (code != advisory.code) roamwise::fuzz::fail("advisory filed under another code");
        (void)Advisories::levelText(advisory.level);
        (void)Advisories::destinations(advisory, catalog);
        roamwise::fuzz::checkRoundTrip(advisory, roamwise::fuzz::Fidelity::decodes);
    }
    for (int maxLevel : {1, 2}) (void)Advisories::safeAndFun(catalog, advisories, maxLevel);
    for (const Destination& d : catalog) (void)Advisories::of(d, advisories);
    return 0;
}
