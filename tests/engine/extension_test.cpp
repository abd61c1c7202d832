#include "engine/extension.h"

#include <gtest/gtest.h>

#include "core/model/range.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "engine/following.h"
#include "engine/leg.h"
#include "engine/report_judgement.h"
#include "shell/parameters.h"
#include "sim/session.h"
#include "tests/engine/engine_world.h"

namespace hcr::test {
namespace {

struct Extension : EngineWorld {};

TEST_F(Extension, LostInTheAirGoesOnForEightStepsAndLeaves) {
    const Flight flight{.speed = 300};
    fly(flight, 61);
    ASSERT_NE(flown("KLM1023"), nullptr);
    // The last report is played at 90 s; eight steps of 8 s follow.
    runTo(145);
    ASSERT_EQ(gLiveAcs.size(), 1U);
    const f64 headingBefore = flown("KLM1023")->heading;
    runTo(170, [] { return gLiveAcs.empty(); });
    EXPECT_TRUE(gLiveAcs.empty());
    EXPECT_NEAR(now(), 90 + 8 * 8, 3);
    EXPECT_NEAR(flown("KLM1023")->heading, headingBefore, 0.1);
    EXPECT_NEAR(flown("KLM1023")->alt, flight.alt, 1);
}

TEST_F(Extension, WhoIsReportedAgainIsFollowedAndComesBackToItsTimesLegByLeg) {
    const Flight flight{.speed = 300};
    fly(flight, 61);
    runTo(110);
    ASSERT_GT(gLiveAcs[0].extendCount, 0);
    fly(flight, 170);
    EXPECT_EQ(gLiveAcs[0].extendCount, 0);
    EXPECT_GT(gLiveAcs[0].maxLate, 1000);
    fly({.start = flight.start, .speed = flight.speed}, 250);
    EXPECT_EQ(gLiveAcs[0].maxLate, 1000);
    EXPECT_EQ(gLiveAcs[0].maxEarly, 1000);
    const FeedLine real = flight.lineAt(now() - 30);
    EXPECT_LT(distanceNm(flown("KLM1023")->lat, flown("KLM1023")->lon, real.lat, real.lon), 0.5);
}

TEST_F(Extension, ReportAheadIsFlownToAtOnceAndOneBehindByATurn) {
    LiveAc& ac = activeAc(sampleAt({52, 4}, 12000, 300, simTick + 500));
    ac.extendCount = 5;
    ac.heading = 0;
    PosSample ahead = sampleAt({52.1, 4.02}, 12000, 300, simTick + 3000);
    EXPECT_TRUE(checkExtendingSituations(ac, ahead));
    EXPECT_EQ(ac.extendCount, 0);
    EXPECT_EQ(ac.maxLate, 3000);
    EXPECT_EQ(ac.stream.front().time, simTick + 1);
    EXPECT_EQ(ac.stream.size(), 1U);

    ac.extendCount = 3;
    PosSample behind = sampleAt({51.9, 4.01}, 12000, 300, simTick + 3000);
    EXPECT_FALSE(checkExtendingSituations(ac, behind)) << "the same way: the aircraft has overtaken its reports";
    EXPECT_EQ(ac.extendCount, 5) << "and waits for them in flight";
    behind.track = 180;
    EXPECT_TRUE(checkExtendingSituations(ac, behind));
    EXPECT_EQ(ac.maxLate, 6000) << "the turn costs time";
    ASSERT_GT(ac.stream.size(), 15U);
    for (std::size_t i = 1; i < ac.stream.size(); ++i) {
        const PosSample &a = ac.stream[i - 1], &b = ac.stream[i];
        EXPECT_EQ(b.time - a.time, 300);
        EXPECT_NEAR(distanceNm(a.lat, a.lon, b.lat, b.lon), 300 * 3.0 / 3600, 1e-6);
    }
    const PosSample& end = ac.stream.back();
    EXPECT_GT(end.lon, 4) << "to the right, by the shorter way";
    const PosSample& last = ac.stream[ac.stream.size() - 2];
    const f64 course = bearingRad(last.lat, last.lon, end.lat, end.lon);
    EXPECT_LT(std::abs(wrapPi(bearingRad(end.lat, end.lon, behind.lat, behind.lon) - course)), 10 * kDegToRad);
}

TEST_F(Extension, EndsAtOnceForWhomNobodyWouldSee) {
    struct Row {
        const char* what;
        void (*prepare)(LiveAc& ac);
        bool extended;
    };
    const Row rows[] = {
        {"in range", [](LiveAc&) {}, true},
        {"at the edge of the range", [](LiveAc&) { gRangeNm = 60.5; }, false},
        {"user unknown",
         [](LiveAc&) {
             gRangeNm = 10;
             gf_storeUserPosition({});
         },
         true},
        {"class switched off",
         [](LiveAc& ac) {
             ac.acClass = 5;
             HELICOPTERS.current = false;
         },
         false},
        {"extension has ended", [](LiveAc& ac) { ac.extendCount = -1; }, false},
        {"last step", [](LiveAc& ac) { ac.extendCount = 1; }, false},
        {"low with traffic in the air only",
         [](LiveAc& ac) {
             AIRBORNE_ONLY.current = true;
             ac.alt = 900;
         },
         false},
        {"high with traffic in the air only", [](LiveAc&) { AIRBORNE_ONLY.current = true; }, true},
    };
    for (const Row& row : rows) {
        begin();
        placeUser({53, 4});
        LiveAc& ac = activeAc(sampleAt({52, 4}, 12000, 300, simTick));
        row.prepare(ac);
        EXPECT_EQ(lf_tryExtend(ac), row.extended) << row.what;
        EXPECT_EQ(ac.stream.size(), row.extended ? 2U : 1U) << row.what;
    }
}

TEST_F(Extension, RunwaySpeedsRiseAndFallInSteps) {
    LiveAc& ac = activeAc(sampleAt({52, 4}, 0, 25, simTick));
    ac.takeOffRun = true;
    for (const f64 speed : {40.0, 80.0, 110.0, 150.0, 170.0, 180.0}) {
        lf_extendStream(ac, 10);
        ac.stream.erase(ac.stream.begin());
        EXPECT_EQ(ac.stream[0].speed, speed);
    }
    EXPECT_EQ(ac.stream[0].vs, 2400);
    ac.takeOffRun = false;
    ac.rollOut = true;
    for (const f64 speed : {100.0, 80.0, 60.0, 30.0, 20.0, 20.0}) {
        lf_extendStream(ac, 10);
        ac.stream.erase(ac.stream.begin());
        EXPECT_EQ(ac.stream[0].speed, speed);
    }
    EXPECT_EQ(ac.stream[0].vs, 0);
}

TEST_F(Extension, AnAircraftInTheTaxiStateOffTheGroundDoesNotHoldForEver) {
    LiveAc& ac = activeAc(sampleAt({52, 4}, 12000, 300, simTick));
    ac.flightState = FlightState::taxi;
    ac.onGround = false;
    nextPosMain(ac);
    EXPECT_EQ(ac.lifeState, LifeState::removingfromsim);
}

}  // namespace
}  // namespace hcr::test
