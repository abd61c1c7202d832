#include "engine/ground.h"

#include <gtest/gtest.h>

#include <cmath>

#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "engine/curve.h"
#include "engine/following.h"
#include "engine/intake.h"
#include "engine/landing.h"
#include "engine/leg.h"
#include "engine/life_cycle.h"
#include "engine/reappearance.h"
#include "engine/report_judgement.h"
#include "engine/standstill.h"
#include "engine/take_off.h"
#include "parking/park_airport.h"
#include "parking/park_limits.h"
#include "shell/parameters.h"
#include "sim/definitions.h"
#include "tests/engine/engine_world.h"

namespace hcr::test {
namespace {

struct Ground : EngineWorld {
    /// A taxiing aircraft that heads north, with a corner of `degrees` 30 m ahead.
    LiveAc& beforeCorner(f64 degrees) {
        gLiveAcs.clear();
        LiveAc& ac = activeAc(sampleAt({52, 4}, 0, 12, simTick));
        const LatLon corner = destinationPoint(52, 4, 0, 100);
        const LatLon behind = destinationPoint(corner.lat, corner.lon, degrees * kDegToRad, 300);
        ac.stream.push_back(sampleAt(corner, 0, 12, simTick + 500));
        ac.stream.push_back(sampleAt(behind, 0, 12, simTick + 2000));
        return ac;
    }
};

TEST_F(Ground, OnlyTrueCornersGetACurve) {
    for (const f64 degrees : {2.9, 3.2, 45.0, 90.0, 159.0, 161.0, 180.0}) {
        LiveAc& ac = beforeCorner(degrees);
        nextPosGround(ac);
        EXPECT_EQ(!ac.curve.absent(), degrees > 3 && degrees <= 160) << degrees;
    }
}

TEST_F(Ground, CurveEndsAtThePointBehindTheCornerInItsDirection) {
    LiveAc& ac = beforeCorner(80);
    const PosSample target = ac.stream[2];
    f64 longest = 0;
    LatLon last{ac.lat, ac.lon};
    runTo(now() + 40, [&] {
        longest = std::max(longest, distanceNm(last.lat, last.lon, ac.lat, ac.lon));
        last = {ac.lat, ac.lon};
        return ac.stream.size() < 2 && simTick + 1 >= ac.stream[0].time;
    });
    EXPECT_LT(distanceNm(ac.lat, ac.lon, target.lat, target.lon) * kMetresPerNm, 2);
    EXPECT_NEAR(ac.heading * kRadToDeg, 80, 20);
    EXPECT_LT(longest * kMetresPerNm, 0.2);
}

TEST_F(Ground, CurveIsOnlyDefinedOnItsRange) {
    const GroundCurve curve = makeCurve({52, 179.9999}, {52.0005, 179.9999}, {52.0005, -179.999});
    LatLon place;
    f64 angle = 0;
    EXPECT_TRUE(lf_evaluateCurve(curve, 0, place, angle));
    EXPECT_NEAR(angle, 0, 1e-6);
    EXPECT_TRUE(lf_evaluateCurve(curve, 1, place, angle));
    EXPECT_NEAR(angle, kPi / 2, 1e-6);
    EXPECT_NEAR(place.lon, 180.001, 1e-6);
    EXPECT_FALSE(lf_evaluateCurve(curve, 1.1, place, angle));
    EXPECT_FALSE(lf_evaluateCurve(GroundCurve{}, 0.5, place, angle));
}

TEST_F(Ground, WithoutAToldClimbItRotatesAtTheSpeedOfItsClass) {
    for (const f64 speed : {139.0, 140.0}) {
        gLiveAcs.clear();
        LiveAc& ac = activeAc(sampleAt({52, 4}, 0, speed, simTick));
        ac.takeOffRun = true;
        ac.stream.push_back(sampleAt({52.01, 4}, 300, speed, simTick + 500));
        lf_checkRotation(ac);
        EXPECT_EQ(ac.flightState, speed < 140 ? FlightState::taxi : FlightState::take_off) << speed;
    }
}

TEST_F(Ground, WhoHasLandedDoesNotSpeedUpAgain) {
    LiveAc& ac = activeAc(sampleAt({52, 4}, 0, 60, simTick));
    ac.rollOut = true;
    PosSample faster = sampleAt({52.001, 4}, 0, 90, simTick + 300);
    EXPECT_TRUE(checkNewPosDuringLanding(ac, faster));
    EXPECT_EQ(faster.speed, 60);
    ac.stream.front().speed = 20;
    PosSample taxiing = sampleAt({52.001, 4}, 0, 35, simTick + 300);
    EXPECT_TRUE(checkNewPosDuringLanding(ac, taxiing));
    EXPECT_EQ(taxiing.speed, 35);
}

}  // namespace
}  // namespace hcr::test
