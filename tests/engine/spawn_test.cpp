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
    Flight flight;
    for (i32 i = 0; i < 29; ++i) {
        world->line(flight.lineAt(now()).text());
        cycles(100);
    }
    ASSERT_EQ(gLiveAcs.size(), 1U);
    EXPECT_EQ(gLiveAcs[0].lifeState, LifeState::buffer);
    EXPECT_EQ(gLiveAcs[0].stream.size(), 10U);  // one in three: the others are too near to tell anything
    cycle();
    EXPECT_EQ(gLiveAcs[0].lifeState, LifeState::adding2sim);
    EXPECT_EQ(gLiveAcs[0].flightState, FlightState::flying);
    ASSERT_FALSE(gLiveAdding.empty());
    EXPECT_EQ(gLiveAdding[0].title, "Boeing 737-800 - KLM");
}

TEST_F(Spawn, OneReportInThirtySecondsIsNeverShown) {
    world->line(Flight{}.lineAt(0).text());
    runTo(28.99);
    EXPECT_EQ(gLiveAcs.size(), 1U);
    cycles(2);
    EXPECT_TRUE(gLiveAcs.empty());
}

TEST_F(Spawn, ARegistrationStandsForACallsignThatIsTooLong) {
    Flight flight{.callsign = "KLM1023456"};
    decide(flight);
    EXPECT_TRUE(gLiveAcs.empty());
    flight.registration = "PH-BXA";
    fly(flight, now() + 34);
    ASSERT_NE(flown("PH-BXA"), nullptr);
    flight.registration = "PH-ZZZ";  // and while it is late, it gets another name
    fly(flight, now() + 32, 6);
    EXPECT_EQ(gLiveAcs.size(), 1U);
}

TEST_F(Spawn, WhoIsNotWantedIsDropped) {
    struct Row {
        const char* what;
        std::function<void(Flight&)> prepare;
    };
    const Row rows[] = {
        {"blocked", [](Flight&) { BLOCK_CALLSIGN.current.set("KLM1023"); }},
        {"no room at all", [](Flight&) { MAX_LIVE_SEL.current = 0; }},
        {"no livery",
         [](Flight& flight) {
             MATCHING_DEPTH.current = 2;
             flight.callsign = "QQQ1023";
             flight.registration = "FGQQQ";
         }},
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
        begin();
        Flight flight;
        row.prepare(flight);
        decide(flight);
        EXPECT_TRUE(gLiveAcs.empty()) << row.what;
        EXPECT_TRUE(gLiveAdding.empty()) << row.what;
        EXPECT_EQ(noMatchAircraft.contains("QQQ B738 FGQQQ"), row.what == std::string("no livery"));
    }
}

TEST_F(Spawn, WaitsWhileTheStreamShowsATakeOff) {
    Flight flight;
    flight.speed = 140;
    useParkAirport({"EHAM", "AMS", 52, 4, -11, 0});
    FeedLine rolling = flight.lineAt(0);
    rolling.alt = 0;
    world->line(rolling.text());
    cycles(400);
    fly(flight, 32);
    EXPECT_TRUE(recorder->creates.empty());
    fly(flight, 40);
    ASSERT_FALSE(recorder->creates.empty());
    EXPECT_GT(f64{recorder->creates[0].position.Altitude}, 0);
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
    EXPECT_TRUE(logHas("KLM1023_ is a ghost and will be removed, continue with KLM1023"));
}

TEST_F(Spawn, SecondAddressOfAFlightMakesNoSecondAircraft) {
    world->line(Flight{}.lineAt(0).text());
    world->line(Flight{.hexid = 4740001}.lineAt(0).text());
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
        begin();
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
    dbaseRecords.add("PHZZA", {"", "", "", false});
    dbaseRecords.add("PHZZB", {"KLM", "", "", false});
    Flight flight;
    fly(flight, 40);
    for (const char* registration : {"PHZZA", "PHZZB"}) {
        flight.registration = registration;
        fly(flight, now() + 4);
        EXPECT_EQ(gLiveAcs[0].registration, registration);
        EXPECT_FALSE(logHas("respawns"));
    }
}

TEST_F(Spawn, AirlineIsReadFromThreeLettersAndADigit) {
    EXPECT_EQ(gf_airlineOfCallsign("klm1"), "KLM");
    for (const char* none : {"", "KLM", "KL12", "KLMA1", "1KLM", "\xc3\x84KL1"}) {
        EXPECT_EQ(gf_airlineOfCallsign(none), "") << none;
    }
}

}  // namespace
}  // namespace hcr::test
