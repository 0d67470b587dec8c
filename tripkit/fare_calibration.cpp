#include "tripkit/fare_calibration.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "tripkit/freshness.h"

namespace tripkit {

namespace {

struct Sample {
    Day day;
    double ratio;  // found fare / typical fare of that day
};

// The cheapest option of each day of one direction that a quote would use.
void collect(const FareBook::DayFares& fares, const FareBook& book, const FareFilter& filter,
             const Airport& home, const Airport& orlando, const std::function<double(Day)>& demand,
             Day today, std::vector<Sample>& out) {
    const std::optional<Day> updated = book.updatedDay();
    for (const auto& [text, options] : fares) {
        const std::optional<Day> day = Day::parse(text);
        if (!day || *day < today) continue;
        std::optional<double> cheapest;
        for (const FareOption& o : options) {
            const std::optional<Day> observed = o.seen ? o.seen : updated;
            if (!filter.allows(o.airline, o.stops) || Freshness::isTooOld(observed, today) ||
                (observed && *observed > today)) {
                continue;
            }
            if (!cheapest || o.price < *cheapest) cheapest = o.price;
        }
        if (!cheapest) continue;
        const double typical = Fares::typicalOneWay(home, orlando, demand(*day));
        out.push_back({*day, std::clamp(*cheapest / typical, FareCalibrations::minRatio,
                                        FareCalibrations::maxRatio)});
    }
}

double quantile(const std::vector<double>& sorted, double q) {
    const double at = q * static_cast<double>(sorted.size() - 1);
    const auto i = static_cast<std::size_t>(std::floor(at));
    const std::size_t j = std::min(i + 1, sorted.size() - 1);
    return sorted[i] + (at - static_cast<double>(i)) * (sorted[j] - sorted[i]);
}

}  // namespace

FareCalibration FareCalibrations::make(const FareBook& book, const FareFilter& filter,
                                       const Airport& home, const Airport& orlando,
                                       const std::function<double(Day)>& demand, DayRange days,
                                       Day today) {
    std::vector<Sample> samples;
    collect(book.toOrlando, book, filter, home, orlando, demand, today, samples);
    collect(book.fromOrlando, book, filter, home, orlando, demand, today, samples);
    std::sort(samples.begin(), samples.end(), [](const Sample& a, const Sample& b) { return a.day < b.day; });

    FareCalibration out;
    std::vector<double> ratios;
    std::size_t first = 0;
    for (Day day = days.first; day <= days.last; day = day + 1) {
        while (first < samples.size() && samples[first].day < day - nearbyDays) ++first;
        ratios.clear();
        std::int64_t nearest = nearbyDays + 1;
        for (std::size_t i = first; i < samples.size() && samples[i].day <= day + nearbyDays; ++i) {
            ratios.push_back(samples[i].ratio);
            nearest = std::min<std::int64_t>(nearest, std::abs(samples[i].day - day));
        }
        if (ratios.empty()) continue;
        std::sort(ratios.begin(), ratios.end());
        // The median ratio follows what fares did around the day without one
        // odd fare pulling it. The band says how sure that is: the spread of
        // the ratios found (half the interquartile range), never less than
        // what few samples allow (25% for one, shrinking with their square
        // root), widened by 1% for every day to the nearest found fare.
        const double factor = quantile(ratios, 0.5);
        const double spreadOfRatios = (quantile(ratios, 0.75) - quantile(ratios, 0.25)) / 2;
        const double relative = std::max(spreadOfRatios / factor,
                                         0.25 / std::sqrt(static_cast<double>(ratios.size()))) +
                                0.01 * static_cast<double>(nearest);
        const double estimate = std::round(Fares::typicalOneWay(home, orlando, demand(day)) * factor);
        out.byDay[day] = {factor, std::round(estimate * relative)};
    }
    return out;
}

}  // namespace tripkit
