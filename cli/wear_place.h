// The reference place a weather command is about.
#pragma once

#include <string>

#include "tripkit/wear_data.h"

namespace roamwise::cli {

// The place of the shipped typical-weather file called `text`: a destination
// code (its name and country are looked up in the catalog), a name or an
// alias. Throws UsageError when there is none.
const tripkit::WearPlace& resolveWearPlace(const std::string& text);

}  // namespace roamwise::cli
