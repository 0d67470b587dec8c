// The trip planner as the model runs it: tripkit's planner over a job's
// copies of the guides and the main home airport's fares, so that a search
// or a theme-park watch is priced off the main thread while the model goes on.
#pragma once

#include "app/app_model.h"

namespace roamwise::app {

// The planner every model uses unless its environment gives another.
Planner tripPlanner();

}  // namespace roamwise::app
