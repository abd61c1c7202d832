#include "core/model/geo.h"

#include <gtest/gtest.h>

#include <cmath>

namespace hcr {
namespace {

struct Pair {
    const char* name;
    f64 latA, lonA, latB, lonB;
    f64 nm;
    f64 bearingDeg;  ///< negative: any bearing is right
};

constexpr Pair kPairs[] = {
    {"equal points", 52.3, 4.7, 52.3, 4.7, 0, 0},
    {"equal points at the pole", 90, 10, 90, 10, 0, 0},
    {"one degree north", 0, 0, 1, 0, 60, 0},
    {"one degree south", 0, 0, -1, 0, 60, 180},
    {"Amsterdam to London", 52.3086, 4.7639, 51.4706, -0.4619, 199.89045813898406, 257.5014775450647},
    {"east across 180 degrees", 0, 179.5, 0, -179.5, 60, 90},
    {"west across 180 degrees", 0, -179.5, 0, 179.5, 60, 270},
    {"both names of the date line", 10, 180, 10, -180, 0, -1},
    {"over the pole", 89.5, 0, 89.5, 180, 60, 0},
    {"from the south pole", -90, 0, -89, 77, 60, -1},
    {"antipodes", 0, 0, 0, 180, 10800, -1},
    {"antipodes off the equator", 37, -120, -37, 60, 10800, -1},
};

TEST(Geo, DistancesAndBearingsBetweenNastyPairs) {
    for (const Pair& p : kPairs) {
        SCOPED_TRACE(p.name);
        EXPECT_NEAR(distanceNm(p.latA, p.lonA, p.latB, p.lonB), p.nm, 1e-6);
        const f64 bearing = bearingRad(p.latA, p.lonA, p.latB, p.lonB);
        EXPECT_GE(bearing, 0);
        EXPECT_LT(bearing, 2 * kPi);
        if (p.bearingDeg >= 0) {
            EXPECT_NEAR(bearing * kRadToDeg, p.bearingDeg, 1e-6);
        }
    }
    EXPECT_EQ(distanceNm(-33.9, 151.2, -33.9, 151.2), 0);
    EXPECT_EQ(bearingRad(-33.9, 151.2, -33.9, 151.2), 0);
}

TEST(Geo, ADestinationLiesAtItsDistanceAndBearing) {
    const LatLon starts[] = {{52.3, 4.7}, {-33.9, 179.9999}, {10, -180}, {0, 0}, {89.9, 12}};
    for (const LatLon& a : starts) {
        for (const f64 bearing : {0.0, 0.5, kPi / 2, 3.0, kPi, 4.5, 6.2}) {
            for (const f64 feet : {1.0, 6076.11549, 600000.0}) {
                SCOPED_TRACE(testing::Message() << a.lat << " " << a.lon << " " << bearing << " " << feet);
                const LatLon b = destinationPoint(a.lat, a.lon, bearing, feet);
                EXPECT_GE(b.lon, -180);
                EXPECT_LE(b.lon, 180);
                EXPECT_NEAR(distanceNm(a.lat, a.lon, b.lat, b.lon) * kFeetPerNm / feet, 1, 1e-5);
                const f64 off = std::remainder(bearingRad(a.lat, a.lon, b.lat, b.lon) - bearing, 2 * kPi);
                EXPECT_NEAR(off, 0, 1e-4);
            }
        }
    }
    const LatLon across = destinationPoint(0, 179.99, kPi / 2, 2 * 0.01 * 60 * kFeetPerNm);
    EXPECT_NEAR(across.lon, -179.99, 1e-6);
}

TEST(Geo, AnglesComeIntoTheirRanges) {
    for (int turns = -3; turns <= 3; ++turns) {
        EXPECT_NEAR(wrapTwoPi(1 + turns * 2 * kPi), 1, 1e-12);
    }
    EXPECT_EQ(wrapTwoPi(2 * kPi), 0);
    EXPECT_LT(wrapTwoPi(-1e-18), 2 * kPi);
    EXPECT_NEAR(wrapPi(kPi + 0.1), -kPi + 0.1, 1e-12);
    EXPECT_NEAR(wrapPi(-kPi - 0.1), kPi - 0.1, 1e-12);
    EXPECT_EQ(wrapPi(kPi), kPi);
}

TEST(Geo, AnUnknownPositionIsTheOneAtTheZeroPoint) {
    EXPECT_FALSE(positionKnown(0, 0));
    EXPECT_FALSE(positionKnown(0.0001, -0.0001));
    EXPECT_TRUE(positionKnown(0, -0.00011));
    EXPECT_TRUE(samePosition(52, 4, 52 + 0.5e-8, 4));
    EXPECT_FALSE(samePosition(52, 4, 52, 4 + 2e-8));
}

}  // namespace
}  // namespace hcr
