// How old a fare may be before it is greyed or no longer shown, in whole days.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>

#include "tripkit/days.h"

namespace tripkit {

struct Freshness {
    static constexpr int freshDays = 3;     // older is stale (greyed)
    static constexpr int usableDays = 7;    // older is too old to show
    static constexpr int horizonDays = 330; // departures further ahead are not listed

    static bool isStale(std::optional<Day> seen, Day today) {
        return seen && today - *seen > freshDays;
    }
    static bool isTooOld(std::optional<Day> seen, Day today) {
        return seen && today - *seen > usableDays;
    }
    static bool isUsable(std::optional<Day> seen, Day depart, Day today) {
        return !isTooOld(seen, today) && depart >= today && depart - today <= horizonDays;
    }
    static std::int64_t age(std::optional<Day> seen, Day today) {
        return seen ? std::max<std::int64_t>(today - *seen, 0) : 0;
    }
};

}  // namespace tripkit
