// Scaling typical-fare estimates to the fares actually found: where the
// nightly file has real one-way fares to and from Orlando on nearby dates,
// an estimate for a day without one follows them, and says how sure it is.
#pragma once

#include <functional>

#include "tripkit/fares.h"
#include "tripkit/places.h"

namespace tripkit {

struct FareCalibrations {
    // Found fares further away than this say nothing about a day. Two weeks
    // either side keeps a day in the same season and fare sale as the fares
    // found for it while still reaching across the gaps of a nightly file
    // that samples only some departure days.
    static constexpr int nearbyDays = 14;
    // Found-to-typical ratios are clamped to this range.
    static constexpr double minRatio = 0.5;
    static constexpr double maxRatio = 6.0;
    // An estimate with no found fare nearby is the typical fare alone; found
    // fares commonly sit from half to one and a half times it, so it is
    // given a band of half its price either way.
    static constexpr double typicalSpread = 0.5;

    // The calibration for the days of `days` from the found fares of the
    // main home airport's book (both directions, the filter applied, fares
    // seen at most a week before today). `demand` gives a day's season level,
    // as the quotes use it. Days with no found fare within `nearbyDays` get
    // no factor.
    static FareCalibration make(const FareBook& book, const FareFilter& filter, const Airport& home,
                                const Airport& orlando, const std::function<double(Day)>& demand,
                                DayRange days, Day today);
};

}  // namespace tripkit
