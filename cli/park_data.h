// What the theme-park commands (plan, watch check) read besides the trip
// search: the price guides and events calendar, and the main home airport
// with its fare file.
#pragma once

#include <optional>
#include <ostream>

#include "cli/common.h"
#include "tripkit/disney_guide.h"
#include "tripkit/fares.h"
#include "tripkit/places.h"
#include "tripkit/universal_guide.h"

namespace roamwise::cli {

struct ParkData {
    tripkit::DisneyGuide disney;  // with the events calendar's busy events
    tripkit::UniversalGuide universal;
};

// With --data, the guides ("disney-guide.json", "universal-guide.json") and
// the events calendar ("disney-events.json") found in the folder replace the
// shipped ones; one that does not decode is reported and the shipped one
// used, as the application keeps its last good copy. --sample uses the
// shipped ones.
ParkData loadParkData(const DataOptions& data, std::ostream& err);

struct MainHome {
    tripkit::Airport airport;
    tripkit::Airport orlando;
    std::optional<tripkit::FareBook> book;  // nothing: every flight is an estimate
};

// The first of --home's airports and its "flights/CODE.json" file (a missing
// or broken file is reported; the trips then use typical fares). An airport
// outside the catalog is a UsageError.
MainHome loadMainHome(const DataOptions& data, std::ostream& err);

}  // namespace roamwise::cli
