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
#include "parking/park_limits.h"
#include "engine/reappearance.h"
#include "engine/report_judgement.h"
#include "engine/standstill.h"
#include "engine/take_off.h"
#include "parking/park_airport.h"
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
    runTo(now() + 40, [&ac] { return ac.stream.size() < 2 && simTick + 1 >= ac.stream[0].time; });
    EXPECT_LT(distanceNm(ac.lat, ac.lon, target.lat, target.lon) * kMetresPerNm, 2);
    EXPECT_NEAR(ac.heading * kRadToDeg, 80, 20);
    f64 longest = 0;
    const auto& writes = objects[500].writes;
    for (std::size_t i = 1; i < writes.size(); ++i) {
        longest = std::max(longest, distanceNm(writes[i - 1].lat, writes[i - 1].lon, writes[i].lat, writes[i].lon));
    }
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

TEST_F(Ground, TouchingTheGroundFarFromAnAirportKeepsTheReportedLineAndEnds) {
    Flight flight{.track = 45, .speed = 120, .alt = 1500, .vs = -700};
    fly(flight, 280);
    ASSERT_EQ(gLiveAcs.size(), 1U);
    EXPECT_TRUE(gLiveAcs[0].onGround);
    EXPECT_EQ(gLiveAcs[0].flightState, FlightState::taxi);
    const FakeObject* flown = object("KLM1023");
    const PositionBlock& last = flown->writes.back();
    EXPECT_EQ(last.alt, 10);
    const f64 bearing = bearingRad(flight.start.lat, flight.start.lon, last.lat, last.lon);
    EXPECT_NEAR(bearing, 45 * kDegToRad, 0.01);
    MAX_HOLDING_MINUTES.current = 1;
    runTo(520, [] { return gLiveAcs.empty(); });
    EXPECT_TRUE(gLiveAcs.empty());
    EXPECT_NE(flown->goneAt, 0);
    EXPECT_EQ(log().find("==>"), std::string::npos) << log();
}

TEST_F(Ground, TakeOffRunRotatesAndClimbsAway) {
    LiveAc& ac = activeAc(sampleAt({52, 4}, 0, 20, simTick));
    ac.alt = 10;
    ac.agl = 10;
    ac.pitch = ac.groundPitch = 0.01;
    f64 metres = 0;
    for (i32 second = 0; second < 50; ++second) {
        const f64 speed = std::min(20 + 5.0 * second, 170.0);
        metres += speed * 0.5144;
        const LatLon place = destinationPoint(52, 4, 0, metres * kFeetPerNm / kMetresPerNm);
        PosSample sample =
            sampleAt(place, speed >= 150 ? 30.0 * (second - 25) : 0, speed, simTick + 100 * second + 100);
        sample.vs = sample.airborne ? 1800 : 0;
        decodeExisting(ac, sample);
    }
    EXPECT_TRUE(ac.takeOffRun);
    f64 highestPitch = 0;
    bool rotated = false;
    runTo(now() + 70, [&] {
        rotated = rotated || ac.flightState == FlightState::take_off;
        highestPitch = std::min(highestPitch, ac.pitch);
        return rotated && ac.flightState == FlightState::flying;
    });
    EXPECT_TRUE(rotated);
    EXPECT_EQ(ac.flightState, FlightState::flying);
    EXPECT_FALSE(ac.onGround);
    EXPECT_GT(ac.alt, 700);
    EXPECT_NEAR(highestPitch, ac.climbPitch, 0.001);
    f64 lowest = 10;
    for (const PositionBlock& write : objects[500].writes) {
        EXPECT_GE(write.alt, lowest - 1e-9);
        lowest = write.alt;
    }
}

TEST_F(Ground, FlareFollowsTheHeight) {
    LiveAc& ac = activeAc(sampleAt({52, 4}, 60, 130, simTick));
    ac.landing = true;
    struct Row {
        f64 agl;
        i32 phase;
        f64 dAlt;
    };
    for (const Row& row : {Row{401, 0, 0},
                           {41, 0, 0},
                           {40, 1, -0.1},
                           {31, 1, -0.1},
                           {30, 2, -0.075},
                           {20, 3, -0.05},
                           {13, 4, -0.025},
                           {5, 4, -0.025}}) {
        ac.agl = row.agl;
        lf_flareStep(ac);
        EXPECT_EQ(ac.flarePhase, row.phase) << row.agl;
        EXPECT_EQ(ac.dAlt, row.dAlt) << row.agl;
    }
    lf_onAiStatus(ac, {500, 1, 0, SimKind::aiStatus, -3, 10});
    EXPECT_TRUE(ac.rollOut && ac.onGround && ac.landedHere);
    EXPECT_FALSE(ac.landing);
    EXPECT_EQ(ac.alt, 7);
}

TEST_F(Ground, ApproachStartsOnlyNearAParkAirport) {
    for (const f64 miles : {-1.0, 9.9, 10.2}) {
        LiveAc& ac = activeAc(sampleAt({52, 4}, 1500, 130, simTick));
        gParkAirport = AirportEntry{};
        if (miles > 0) gParkAirport = AirportEntry{"EHAM", "AMS", 52 + miles / 60, 4, 0, 1};
        ac.stream[0].vs = -300;
        ac.agl = 1500;
        lf_lowAltitudeConfig(ac);
        EXPECT_EQ(ac.landing, miles > 0 && miles < 10) << miles;
        ac.stream[0].vs = 700;
        lf_lowAltitudeConfig(ac);
        EXPECT_FALSE(ac.landing);
        gLiveAcs.clear();
    }
}

TEST_F(Ground, HoldEndsWhenAnotherIsInTheWay) {
    LiveAc& first = activeAc(sampleAt({52, 4}, 0, 10, simTick), 500);
    first.onGround = true;
    nextPosMain(first);
    EXPECT_TRUE(first.holding);
    EXPECT_EQ(first.lifeState, LifeState::active);
    activeAc(sampleAt({52.0001, 4}, 0, 10, simTick), 501);
    gLiveAcs[0].stream.resize(1);
    nextPosMain(gLiveAcs[0]);
    EXPECT_EQ(gLiveAcs[0].lifeState, LifeState::removingfromsim);
}

}  // namespace
}  // namespace hcr::test
