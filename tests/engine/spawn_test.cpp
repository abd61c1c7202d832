#include "engine/spawn.h"

#include <gtest/gtest.h>

#include "core/model/labels.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "engine/conflicts.h"
#include "engine/life_cycle.h"
#include "engine/reappearance.h"
#include "liveries/dbase.h"
#include "liveries/match_memory.h"
#include "shell/parameters.h"
#include "sim/aircraft.h"
#include "sim/session.h"
#include "tests/engine/engine_world.h"

namespace hcr::test {
namespace {

struct Spawn : EngineWorld {
    /// Reports the flight at 0 and 4 seconds and runs until its creation was decided or it was dropped.
    void decide(const Flight& flight) {
        fly(flight, 5, 4);
        runTo(now() + 30, [] { return !gAddingStack.empty() || gLiveAcs.empty(); });
        cycle();
    }
    bool isShown(const std::string& callsign) {
        const LiveAc* ac = findLiveByCallsign(callsign);
        return ac != nullptr && ac->lifeState != LifeState::buffer;
    }
};

TEST_F(Spawn, AppearsTwentyNineSecondsAfterItsFirstReportWithItsPathAhead) {
    const i32 first = simTick;
    Flight flight;
    for (i32 i = 0; i < 29; ++i) {
        report(flight.at(now()));
        cycles(100);
    }
    ASSERT_EQ(simTick, first + 2900);
    ASSERT_EQ(gLiveAcs.size(), 1U);
    EXPECT_EQ(gLiveAcs[0].lifeState, LifeState::buffer);
    EXPECT_EQ(gLiveAcs[0].stream.size(), 10U);  // one in three: the others are too near to tell anything
    cycle();
    EXPECT_EQ(gLiveAcs[0].lifeState, LifeState::adding2sim);
    EXPECT_EQ(gLiveAcs[0].flightState, FlightState::flying);
    ASSERT_FALSE(gLiveAdding.empty());
    EXPECT_EQ(gLiveAdding[0].title, "A320 KLM");
}

TEST_F(Spawn, OneReportInThirtySecondsIsNeverShown) {
    report(Flight{}.at(0));
    runTo(28.99);
    EXPECT_EQ(gLiveAcs.size(), 1U);
    cycles(2);
    EXPECT_TRUE(gLiveAcs.empty());
    EXPECT_TRUE(objects.empty());
}

TEST_F(Spawn, BecomesActiveTwoHundredPassesAfterItsObjectWasSeen) {
    fly(Flight{}, 33);
    ASSERT_EQ(gLiveAcs.size(), 1U);
    EXPECT_EQ(gLiveAcs[0].lifeState, LifeState::active);
    ASSERT_NE(object("KLM1023"), nullptr);
    EXPECT_FALSE(object("KLM1023")->writes.empty());
    EXPECT_EQ(gLiveAcs[0].staticCgFt, 10);
}

TEST_F(Spawn, LongCallsignNeedsARegistrationRecord) {
    dbaseRecords.add("PHBXA", {"KLM", "A320", "", false});
    Flight unknown;
    unknown.callsign = "KLM1023456";
    unknown.registration = "PHQQQ";
    decide(unknown);
    EXPECT_TRUE(gLiveAcs.empty());
    Flight known = unknown;
    known.registration = "PHBXA";
    fly(known, now() + 32);
    ASSERT_EQ(gLiveAcs.size(), 1U);
    EXPECT_EQ(gLiveAcs[0].callsign, "PHBXA");
}

TEST_F(Spawn, WhoIsNotWantedIsDropped) {
    struct Row {
        const char* what;
        std::function<void(Flight&)> prepare;
    };
    const Row rows[] = {
        {"blocked", [](Flight&) { BLOCK_CALLSIGN.current.set("KLM1023"); }},
        {"no room at all", [](Flight&) { MAX_LIVE_SEL.current = 0; }},
        {"no livery", [](Flight& flight) { flight.callsign = "AFR1023"; }},
        {"no name", [](Flight& flight) { flight.callsign.clear(); }},
        {"removed ghost",
         [](Flight& flight) {
             flight.callsign = "KLM1023_";
             gGhosts.push_back("KLM1023_");
         }},
        {"class switched off",
         [](Flight& flight) {
             flight.model = "C172";
             LIGHT_AIRCRAFT.current = false;
         }},
        {"unknown type", [](Flight& flight) { flight.model = "QQQQ"; }},
    };
    for (const Row& row : rows) {
        TearDown();
        SetUp();
        Flight flight;
        row.prepare(flight);
        decide(flight);
        EXPECT_TRUE(gLiveAcs.empty()) << row.what;
        EXPECT_TRUE(gLiveAdding.empty()) << row.what;
    }
}

TEST_F(Spawn, AircraftWithoutALiveryIsRememberedByItsRegistration) {
    Flight flight;
    flight.callsign = "AFR1023";
    flight.registration = "FGQQQ";
    decide(flight);
    EXPECT_TRUE(noMatchAircraft.contains("AFR A320 FGQQQ"));
}

TEST_F(Spawn, WaitsWhileTheStreamShowsATakeOff) {
    Flight flight;
    flight.speed = 140;
    TrafficReport rolling = flight.at(0);
    rolling.sample.alt = 0;
    rolling.sample.airborne = false;
    report(rolling);
    cycles(400);
    fly(flight, 32);
    const FakeObject* seen = object("KLM1023");
    ASSERT_EQ(seen, nullptr);
    fly(flight, 40);
    ASSERT_NE(object("KLM1023"), nullptr);
    EXPECT_GT(object("KLM1023")->created.alt, 0);
}

TEST_F(Spawn, NearerAircraftTakesThePlaceOfTheFurthest) {
    MAX_LIVE_SEL.current = 2;
    placeUser({52, 4});
    activeAc(sampleAt({52.2, 4}, 12000, 300, simTick + 100000), 501);
    activeAc(sampleAt({52.5, 4}, 12000, 300, simTick + 100000), 502);
    Flight far{.hexid = 4749999, .callsign = "KLM1", .start = {52.499, 4}, .track = 0};
    decide(far);
    EXPECT_FALSE(isShown("KLM1"));
    EXPECT_EQ(findLiveByHexid(4740502)->lifeState, LifeState::active);
    Flight near{.hexid = 4749998, .callsign = "KLM2", .start = {52.4, 4}, .track = 0};
    fly(near, now() + 31);
    EXPECT_TRUE(isShown("KLM2"));
    EXPECT_EQ(findLiveByHexid(4740502), nullptr);
    EXPECT_EQ(findLiveByHexid(4740501)->lifeState, LifeState::active);
}

TEST_F(Spawn, PlainNameDrivesItsGhostAway) {
    Flight ghost{.callsign = "KLM1023_"};
    fly(ghost, 33);
    ASSERT_TRUE(isShown("KLM1023_"));
    Flight plain{.hexid = 4740001, .callsign = "KLM1023"};
    fly(plain, now() + 31);
    EXPECT_TRUE(isShown("KLM1023"));
    EXPECT_FALSE(isShown("KLM1023_"));
    ASSERT_EQ(gGhosts.size(), 1U);
    fly(ghost, now() + 33);
    EXPECT_FALSE(isShown("KLM1023_"));
    EXPECT_EQ(object("KLM1023_")->goneAt != 0, true);
    EXPECT_TRUE(logHas("KLM1023_ is a ghost and will be removed, continue with KLM1023"));
}

TEST_F(Spawn, SecondAddressOfAFlightMakesNoSecondAircraft) {
    report(Flight{}.at(0));
    report(Flight{.hexid = 4740001}.at(0));
    cycles(2);
    EXPECT_EQ(gLiveAcs.size(), 1U);
}

TEST_F(Spawn, UselessReportsOfAKnownAircraftAreDropped) {
    struct Row {
        const char* what;
        f64 gap, speed, track;
        bool airborne, kept;
    };
    const Row rows[] = {
        {"a second newer", 1.0, 300, 90, true, false},
        {"450 m ahead in three seconds", 2.9, 300, 90, true, false},
        {"further than 450 m", 3.0, 300, 90, true, true},
        {"on a turn", 1.1, 300, 92, true, true},
        {"ten times as fast", 5, 3000, 90, true, false},
        {"suddenly nearly standing", 5, 30, 90, true, false},
        {"slow enough to be seen always", 1.1, 119, 90, true, true},
    };
    for (const Row& row : rows) {
        TearDown();
        SetUp();
        TrafficReport first = Flight{}.at(0);
        first.timestamp = 1000;
        gf_decodeReport(first);
        TrafficReport next = Flight{}.at(row.gap);
        next.timestamp = 1000 + row.gap;
        next.sample.speed = row.speed;
        next.sample.track = row.track;
        gf_decodeReport(next);
        EXPECT_EQ(gLiveAcs[0].stream.size(), row.kept ? 2U : 1U) << row.what;
    }
}

TEST_F(Spawn, ReportForAnAircraftThatIsLeavingMakesNoSecondRecord) {
    fly(Flight{}, 33);
    removeAircraftFromSim(gLiveAcs[0]);
    const std::size_t samples = gLiveAcs[0].stream.size();
    TrafficReport late = Flight{}.at(40);
    late.timestamp = 1e12;
    gf_decodeReport(late);
    ASSERT_EQ(gLiveAcs.size(), 1U);
    EXPECT_EQ(gLiveAcs[0].stream.size(), samples);
    runTo(34, [] { return gLiveAcs.empty(); });
    EXPECT_TRUE(gLiveAcs.empty());
}

TEST_F(Spawn, NewNameRespawnsInPlace) {
    Flight flight;
    GUID_CHANGES.current = true;
    fly(flight, 40);
    const PositionBlock old = object("KLM1023")->writes.back();
    flight.callsign = "KLM99";
    report(flight.at(now()));
    runTo(41, [] { return gLiveAcs[0].lifeState == LifeState::liveryrespawn; });
    ASSERT_EQ(gLiveAcs[0].lifeState, LifeState::liveryrespawn);
    ASSERT_TRUE(runTo(42, [this] { return object("KLM99") != nullptr; }));
    EXPECT_NE(object("KLM1023")->goneAt, 0);
    const PositionBlock& after = object("KLM99")->created;
    EXPECT_LT(distanceNm(old.lat, old.lon, after.lat, after.lon), 0.02);
    EXPECT_EQ(after.alt, old.alt);
    EXPECT_NEAR(gLiveAcs[0].heading, old.heading, 0.01);
    EXPECT_TRUE(logHas("respawns"));
    fly(flight, 60);
    EXPECT_EQ(gLiveAcs[0].lifeState, LifeState::active);
}

TEST_F(Spawn, WithoutGuidChangesTheNewNameIsTakenSilently) {
    Flight flight;
    GUID_CHANGES.current = false;
    fly(flight, 40);
    flight.callsign = "KLM99";
    fly(flight, 44);
    EXPECT_EQ(gLiveAcs[0].callsign, "KLM99");
    EXPECT_EQ(gLiveAcs[0].lifeState, LifeState::active);
}

TEST_F(Spawn, OwnFormerNameMakesNobodyAGhost) {
    GUID_CHANGES.current = false;
    Flight flight;
    flight.callsign = "KLM1023_";
    fly(flight, 40);
    for (const char* name : {"KLM1023", "KLM1023_"}) {
        flight.callsign = name;
        fly(flight, now() + 4);
        ASSERT_EQ(gLiveAcs.size(), 1U);
        EXPECT_EQ(gLiveAcs[0].callsign, name);
        EXPECT_EQ(gLiveAcs[0].lifeState, LifeState::active);
    }
    EXPECT_TRUE(gGhosts.empty());
}

TEST_F(Spawn, RegistrationWhoseRecordTellsNothingNewChangesNoLook) {
    GUID_CHANGES.current = true;
    dbaseRecords.add("PHBXA", {"", "", "", false});
    dbaseRecords.add("PHBXB", {"KLM", "", "", false});
    for (const char* registration : {"PHBXA", "PHBXB"}) {
        Flight flight;
        fly(flight, now() + 40);
        flight.registration = registration;
        fly(flight, now() + 4);
        EXPECT_EQ(gLiveAcs[0].registration, registration);
        EXPECT_FALSE(logHas("respawns"));
        gLiveAcs.clear();
        objects.clear();
    }
}

TEST_F(Spawn, AirlineIsReadFromThreeLettersAndADigit) {
    EXPECT_EQ(gf_airlineOfCallsign("klm1"), "KLM");
    for (const char* none : {"", "KLM", "KL12", "KLMA1", "1KLM", "\xc3\x84KL1"}) {
        EXPECT_EQ(gf_airlineOfCallsign(none), "") << none;
    }
}

TEST_F(Spawn, NobodyAppearsStraightAheadOfTheUser) {
    COLLISION_USER_AIR.current = true;
    gUserOnGround = false;
    placeUser({52, 4}, 12000, 12000);
    LiveAc& ac = activeAc(sampleAt({52.05, 4}, 12500, 300, simTick));
    ac.stream.push_back(sampleAt({52.1, 4}, 12500, 300, simTick + 500));
    ac.targetHeading = 0;
    EXPECT_TRUE(lf_userConflict(ac));
    EXPECT_EQ(ac.stream.size(), 1U);
    LiveAc& above = activeAc(sampleAt({52.05, 4}, 16000, 300, simTick), 501);
    EXPECT_FALSE(lf_userConflict(above));
    COLLISION_USER_AIR.current = false;
    EXPECT_FALSE(lf_userConflict(ac));
}

}  // namespace
}  // namespace hcr::test
