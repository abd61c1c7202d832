#include "engine/air_leg.h"

#include <gtest/gtest.h>

#include "core/model/aircraft_class.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "engine/leg.h"
#include "parking/park_airport.h"
#include "sim/definitions.h"
#include "sim/drain.h"
#include "tests/engine/engine_world.h"

namespace hcr::test {
namespace {

struct AirLeg : EngineWorld {
    /// An aircraft at 2000 ft with a leg of 10 s ahead.
    LiveAc& legBetween(f64 alt1, f64 alt2) {
        gLiveAcs.clear();
        gEventQueue.clear();
        LiveAc& ac = activeAc(sampleAt({52, 4}, alt1, 200, simTick));
        ac.flightState = FlightState::flying;
        ac.onGround = false;
        ac.alt = 2000;
        ac.stream.push_back(sampleAt({52.01, 4}, alt2, 210, simTick + 1000));
        return ac;
    }
    static bool gearDownSent() {
        for (const EventCommand& event : gEventQueue) {
            if (event.eventId == GEAR_SET && event.data == 1) return true;
        }
        return false;
    }
};

TEST_F(AirLeg, HeightFollowsWhatTheSamplesTell) {
    struct Row {
        const char* what;
        f64 alt1, alt2, vs1, vs2, agl;
        bool landing, parkAirport;
        i32 qnh;
        f64 dAlt;
        bool gearDown;
    };
    const Row rows[] = {
        {"climb", 2000, 2300, 1800, 1800, 2000, false, false, 1013, 0.3, false},
        {"climb faster than the type can", 2000, 9000, 1800, 1800, 2000, false, false, 1013, 0.6, false},
        {"descent", 2000, 1700, -1800, -1800, 2000, false, false, 1013, -0.3, false},
        {"low traffic follows its reports down", 2000, 1700, -1800, -1800, 1000, false, false, 1013, -0.3, false},
        {"but nobody sinks into the ground", 2000, 1700, -1800, -1800, 90, false, false, 1013, 0.01, false},
        {"nor is thrown up from it", 2000, 1700, -1800, -1800, -500, false, false, 1013, 0.2, false},
        {"climb that is told to be faster", 2000, 9000, 1800, 6000, 2000, false, false, 1013, 1.2, false},
        {"fall that nobody told", 2000, 0.5, -1800, -1800, 2000, false, false, 1013, -5000.0 / 6000, false},
        {"dive that is told", 2000, 0.5, -1800, -9000, 2000, false, false, 1013, -1.8, false},
        {"approach", 2000, 1700, -700, -700, 900, true, false, 1013, -0.3, false},
        {"approach whose altitude stands still", 2000, 2000, -700, -700, 900, true, false, 1013,
         (-700 + 0.25 * 6) / 6000, false},
        {"approach on short final", 2000, 2000, -700, -700, 100, true, false, 1013, -0.1, false},
        {"to the ground of no airport", 2000, 0, -700, 0, 500, false, false, 1013, -601.0 / 6000, true},
        {"to the ground of no airport, high pressure", 2000, 0, -700, -700, 500, false, false, 1020,
         (-700 - 6.75 * 6) / 6000, true},
        {"to the park airport", 2000, 0, -700, 0, 500, true, true, 1013, -1.9, true},
        {"lift-off", 0, 2300, 0, 1500, 500, false, false, 1013, 0.3, false},
        {"lift-off of one that is higher already", 0, 1500, 0, 1500, 500, false, false, 1013, 0, false},
        {"ground to ground", 0, 0, -100, 0, 500, false, false, 1013, (-601 + 0.25 * 6) / 6000, true},
        {"taken off before its altitude shows", 0, 0, 50, 900, 500, false, false, 1013, 0.15, true},
        {"taken off slowly", 0, 0, 50, 60, 500, false, false, 1013, 601.0 / 6000, true},
    };
    for (const Row& row : rows) {
        LiveAc& ac = legBetween(row.alt1, row.alt2);
        ac.stream[0].vs = row.vs1;
        ac.stream[1].vs = row.vs2;
        ac.agl = row.agl;
        ac.landing = row.landing;
        gQnh = row.qnh;
        gParkAirport = row.parkAirport ? AirportEntry{"EHAM", "AMS", 52, 4, 100, 1} : AirportEntry{};
        ac.climbLightsDone = true;
        lf_airDeltas(ac);
        EXPECT_NEAR(ac.dAlt, row.dAlt, 1e-9) << row.what;
        EXPECT_EQ(gearDownSent(), row.gearDown) << row.what;
    }
}

TEST_F(AirLeg, WhoTookOffHereDoesNotSinkBeforeItIsAboveAThousandFeet) {
    LiveAc& ac = legBetween(2000, 1700);
    ac.tookOffHere = true;
    ac.agl = 1000;
    lf_airDeltas(ac);
    EXPECT_NEAR(ac.dAlt, 0.2, 1e-9);
    ac.agl = 1001;
    lf_airDeltas(ac);
    EXPECT_NEAR(ac.dAlt, -0.3, 1e-9);
    ac.agl = 900;
    lf_airDeltas(ac);
    EXPECT_NEAR(ac.dAlt, -0.3, 1e-9) << "once above, it may come down";
}

TEST_F(AirLeg, ALongLegBehindACornerIsSplitOnItsLineHoweverLateTheAircraftIs) {
    for (const i32 left : {-300, 0, 10, 1000, 4000}) {
        LiveAc& ac = legBetween(5000, 6000);
        ac.stream[1].lat = 52.03;
        ac.stream[1].time = simTick + left;
        ac.heading = 60 * kDegToRad;
        lf_nextPosAir(ac);
        ASSERT_EQ(ac.stream.size(), 3U);
        EXPECT_NEAR((ac.stream[1].lat - 52) / 0.03, 1000.0 / 3161, 0.01) << "10 of 31.6 seconds for the turn";
        EXPECT_NEAR(ac.stream[1].alt, 5316, 2);
        EXPECT_TRUE(ac.stream[1].airborne);
    }
    LiveAc& landing = legBetween(5000, 0);
    landing.stream[1].lat = 52.03;
    landing.heading = 60 * kDegToRad;
    lf_nextPosAir(landing);
    EXPECT_EQ(landing.stream.size(), 2U) << "an altitude of 0 is no altitude to mix";
}

TEST_F(AirLeg, HiddenTakeOffJumpsToTheFirstSampleInTheAir) {
    LiveAc& ac = legBetween(0, 0);
    ac.stream[1].vs = 900;
    ac.stream.push_back(sampleAt({52.02, 4}, 0, 220, simTick + 2000));
    ac.stream.push_back(sampleAt({52.03, 4}, 2600, 230, simTick + 3000));
    ac.stream.push_back(sampleAt({52.04, 4}, 2900, 230, simTick + 4000));
    lf_airDeltas(ac);
    ASSERT_EQ(ac.stream.size(), 3U);
    EXPECT_EQ(ac.stream[1].alt, 2600);
    EXPECT_EQ(ac.targetSpeed, 230);
    EXPECT_NEAR(ac.dAlt, 600 / legTicksLeft(ac), 1e-9);
}

TEST_F(AirLeg, BanksIntoATurnNoFasterThanTheTypeCan) {
    LiveAc& ac = legBetween(5000, 5000);
    ac.stream.push_back(sampleAt({52.01, 4.02}, 5000, 200, simTick + 2000));
    lf_airDeltas(ac);
    EXPECT_NEAR(ac.dHeading, 45 * kDegToRad / 1000, 1e-5) << "half of a square corner, the rest behind it";
    EXPECT_NEAR(ac.dBank, -classValue(kBankRate, Large), 1e-12);
    ac.stream[1].time = simTick + 30000;
    lf_airDeltas(ac);
    EXPECT_NEAR(ac.dBank, -classValue(kMaxBank, Large) / 30000, 1e-12);
}

TEST_F(AirLeg, ReportedAttitudeLeadsOnlyNearTheGround) {
    for (const bool low : {true, false}) {
        LiveAc& ac = legBetween(5000, 5000);
        ac.agl = low ? 900 : 1000;
        PosSample& s2 = ac.stream[1];
        s2.adsb = s2.rollValid = s2.trueHeadingValid = true;
        s2.roll = -0.2;
        s2.trueHeading = 6.1;
        lf_airDeltas(ac);
        EXPECT_NEAR(ac.dHeading, low ? (6.1 - 2 * kPi) / 1000 : 0, 1e-9);
        EXPECT_NEAR(ac.dBank, -0.2 / 1000, 1e-12);
    }
}

TEST_F(AirLeg, RotorcraftHoversWhereOthersFlyOn) {
    for (const i32 acClass : {static_cast<i32>(Large), static_cast<i32>(Rotorcraft)}) {
        gLiveAcs.clear();
        LiveAc& ac = activeAc(sampleAt({52, 4}, 1500, 60, simTick), 500);
        ac.acClass = acClass;
        PosSample standing = sampleAt({52, 4}, 1500, 0, simTick + 400);
        standing.stationary = true;
        ac.stream.push_back(standing);
        ac.stream.push_back(sampleAt({52.02, 4}, 1500, 60, simTick + 3000));
        cycles(300);
        EXPECT_EQ(ac.lat > 52.0001, acClass == Large);
    }
}

}  // namespace
}  // namespace hcr::test
