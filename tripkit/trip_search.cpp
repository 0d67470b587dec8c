#include "tripkit/trip_search.h"

#include "tripkit/json_fields.h"

namespace tripkit {

template <>
struct json::Fields<TripSearch> {
    using T = TripSearch;
    static constexpr auto list = std::tuple{
        json::field("origin", &T::origin), json::field("party", &T::party),
        json::field("nights", &T::nights,
                    [](const json::Value& v, int nights) {
                        if (nights < 0 || nights > TripSearch::maxNights) {
                            v.fail("expected 0 to " + std::to_string(TripSearch::maxNights) +
                                   " nights");
                        }
                    }),
        json::field("parkDays", &T::parkDays, json::AtLeast{0, "expected a count of 0 or more"}),
        // The park days fall on the days of the stay, arrival and departure included.
        json::rule([](const json::Value& v, T& s) {
            if (s.parkDays > s.nights + 1) {
                v.field("parkDays")
                    .fail("expected at most " + std::to_string(s.nights + 1) + " park days in " +
                          std::to_string(s.nights) + " nights");
            }
        }),
        json::field("resorts", &T::resorts), json::field("parkHopper", &T::parkHopper),
        json::field("lightningLane", &T::lightningLane),
        json::field("epicUniverse", &T::epicUniverse), json::field("transport", &T::transport),
        json::field("food", &T::food), json::field("window", &T::window),
        json::field("fares", &T::fares), json::field("maxTotal", &T::maxTotal, json::amount)};
};

TRIPKIT_JSON_CODEC(TripSearch)

}  // namespace tripkit
