#include "tripkit/places.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tripkit/tests/test_data.h"

namespace tripkit {
namespace {

constexpr double kPi = 3.14159265358979323846;

Airport at(const std::string& code, double lat, double lon) {
    return {code, code + " city", "XX", code + " Airport", lat, lon};
}

TEST(Distance, GreatCircleOnTheMileSphere) {
    // One degree of the equator is 3958.8 × π / 180 miles.
    EXPECT_NEAR(distanceMiles(0, 0, 0, 1), 3958.8 * kPi / 180, 1e-9);
    EXPECT_NEAR(distanceMiles(0, 179.5, 0, -179.5), 3958.8 * kPi / 180, 1e-9);  // across 180°
    // Antipodes: rounding may push the root past 1, which must not give NaN.
    EXPECT_NEAR(distanceMiles(0, 0, 0, 180), 3958.8 * kPi, 1e-6);
    EXPECT_NEAR(distanceMiles(45, 30, -45, -150), 3958.8 * kPi, 1e-6);
    EXPECT_EQ(distanceMiles(40, -73, 40, -73), 0);

    // Published airport distances are measured on the ellipsoid; the sphere
    // stays within half a percent of them (JFK-LAX: 2469.5 against 2475).
    const Airports& airports = Airports::shipped();
    EXPECT_NEAR(distanceMiles(airports.byCode.at("JFK"), airports.byCode.at("LAX")), 2469.5, 0.5);
    EXPECT_NEAR(distanceMiles(airports.byCode.at("SFO"), airports.byCode.at("HNL")), 2398, 12);
}

TEST(Airports, NearbyIsNearestFirstWithoutItselfWithinTheLimits) {
    const Airports airports = Airports::fromList({
        at("AAA", 0, 0), at("FAR", 0, 3), at("ONE", 0, 1), at("HLF", 0, 0.5),
        at("TIE", 0, -0.5),  // as far as HLF, later in the file
        at("TWN", 0, 0),     // same spot as AAA
    });
    auto codes = [](const std::vector<Airport>& list) {
        std::vector<std::string> out;
        for (const Airport& a : list) out.push_back(a.code);
        return out;
    };
    EXPECT_EQ(codes(airports.nearby("AAA", 100, 10)),
              (std::vector<std::string>{"TWN", "HLF", "TIE", "ONE"}));
    EXPECT_EQ(codes(airports.nearby("AAA", 100, 2)), (std::vector<std::string>{"TWN", "HLF"}));
    // The limit distance itself is within.
    const double one = distanceMiles(0, 0, 0, 1);
    EXPECT_EQ(codes(airports.nearby("AAA", one, 10)).back(), "ONE");
    EXPECT_EQ(codes(airports.nearby("AAA", std::nextafter(one, 0.0), 10)).back(), "TIE");
    EXPECT_EQ(codes(airports.nearby("AAA", 0, 10)), (std::vector<std::string>{"TWN"}));
    EXPECT_EQ(codes(airports.nearby("FAR", 100, 10)), (std::vector<std::string>{}));
    EXPECT_TRUE(airports.nearby("AAA", 100, 0).empty());
    EXPECT_TRUE(airports.nearby("aaa", 1e9, 10).empty());  // codes are upper case
    EXPECT_EQ(codes(Airports::shipped().nearby("JFK", 25, 2)),
              (std::vector<std::string>{"LGA", "EWR"}));
}

TEST(Airports, DecodingRepeatedCodesAndTheShippedCatalog) {
    const Airport mco{"MCO", "Orlando", "FL", "Orlando International Airport", 28.4294, -81.309};
    EXPECT_EQ(mco.label(), "Orlando, FL (MCO)");
    const std::string ok = R"({"code":"AAA","city":"A","state":"FL","name":"A","lat":1,"lon":2})";
    EXPECT_EQ(json::decodeDocument<Airports>("[" + ok + "]", "x").byCode.at("AAA").lon, 2);
    EXPECT_EQ(testing::decodeError<Airports>("[" + ok + "," + ok + "]", "airports.json"),
              "airports.json: [1]: airport code AAA appears twice");
    EXPECT_THROW(Airports::fromList({at("AAA", 0, 0), at("AAA", 1, 1)}), std::invalid_argument);

    // The catalog is checked against its sources by make_airports.py; here:
    // that it decodes, whole, with positions of the right sign.
    const Airports& airports = Airports::shipped();
    EXPECT_GE(airports.list.size(), 120u);
    EXPECT_EQ(airports.byCode.size(), airports.list.size());
    for (const Airport& a : airports.list) {
        // All U.S. airports but Guam's lie west and north: a flipped sign shows.
        EXPECT_TRUE(a.lat > 13 && (a.state == "GU" ? a.lon > 0 : a.lon < -64)) << a.code;
    }
}

}  // namespace
}  // namespace tripkit
