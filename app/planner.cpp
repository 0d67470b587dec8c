#include "app/planner.h"

#include <stdexcept>

#include "tripkit/trip_planner.h"

namespace roamwise::app {

using namespace tripkit;

namespace {

// The fares and airports a job's trips fly with; null when the main home
// airport is not in the catalog (no trip can be flown then).
std::optional<PlanInputs> inputsOf(const PlannerJob& job) {
    const Airport* home = Airports::shipped().find(job.home);
    const Airport* orlando = Airports::shipped().find("MCO");
    if (!home || !orlando) return std::nullopt;
    PlanInputs inputs;
    inputs.book = job.mainBook.get();
    inputs.home = *home;
    inputs.orlando = *orlando;
    inputs.today = job.today;
    return inputs;
}

}  // namespace

Planner tripPlanner() {
    Planner planner;
    planner.run = [](const PlannerJob& job) -> std::shared_ptr<const TripSearchResult> {
        const std::optional<PlanInputs> inputs = inputsOf(job);
        if (!inputs || !job.guide || !job.universal) return nullptr;
        const ParkGuide& guide = job.park == Park::disney
                                     ? static_cast<const ParkGuide&>(*job.guide)
                                     : static_cast<const ParkGuide&>(*job.universal);
        return std::make_shared<const TripSearchResult>(
            TripPlanner::plan(job.search, guide, *inputs));
    };
    planner.tripPrice = [](const Watch::Disney& watch,
                           const PlannerJob& job) -> std::optional<double> {
        const std::optional<PlanInputs> inputs = inputsOf(job);
        if (!inputs || !job.guide || !job.universal) return std::nullopt;
        return Alerts::tripPricer(*job.guide, *job.universal, *inputs)(watch, job.today);
    };
    return planner;
}

}  // namespace roamwise::app
