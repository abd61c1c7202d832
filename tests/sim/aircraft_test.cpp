#include "sim/aircraft.h"

#include <fmt/format.h>

#include "core/model/aircraft_class.h"
#include "core/model/tables.h"
#include "liveries/match_memory.h"
#include "session_fixture.h"
#include "shell/messages.h"
#include "shell/parameters.h"
#include "shell/random.h"
#include "shell/run_stop.h"
#include "sim/drain.h"
#include "sim/waiting_list.h"

namespace hcr::test {
namespace {

struct Operations : SessionTest {
    Operations() {
        ac.objectId = 9;
        ac.hexid = 4740001;
        ac.acClass = Large;
        ac.callsign = "KLM1";
    }

    /// What was queued since the last time, "event:data" each.
    static std::string takeEvents() {
        std::string events;
        for (const EventCommand& command : gEventQueue) {
            EXPECT_EQ(command.objectId, 9U);
            events += fmt::format("{}{}:{}", events.empty() ? "" : " ", command.eventId, command.data);
        }
        gEventQueue.clear();
        return events;
    }

    ParkedAc ac;
};

TEST_F(Operations, SettingsAreSentWhenTheyChangeAndTheClassHasThem) {
    for (const i32 index : {1, 1, 3, 5, -1, 0, 0}) gf_setFlaps(ac, index);
    EXPECT_EQ(takeEvents(), "217:3072 217:16383 217:0");
    EXPECT_EQ(logCount("==> gf_setFlaps: invalid flaps index"), 2U);
    ac.acClass = Rotorcraft;
    gf_setFlaps(ac, 2);
    EXPECT_EQ(ac.flapsIndex, 2);
    gf_setGear(ac, true);
    gf_setSpoilers(ac, true);
    for (const i32 index : {0, 0, 4}) gf_setThrottle(ac, index);
    EXPECT_EQ(takeEvents(), "222:0 222:16383");
}

TEST_F(Operations, OneParkedCabinInTenIsDarkUnlessRandomIsOff) {
    i32 lit = 0;
    gf_seedRandom(1);
    for (int n = 0; n < 1000; ++n) {
        gf_applyParkedState(ac);
        lit += takeEvents().ends_with("206:0 210:0 208:0 209:0 212:1 211:1") ? 1 : 0;
    }
    EXPECT_NEAR(lit, 900, 50);
    RANDOM.current = false;
    gf_applyParkedState(ac);
    EXPECT_TRUE(takeEvents().ends_with("211:1"));
    ac.standCargo = true;
    gf_applyParkedState(ac);
    EXPECT_TRUE(takeEvents().ends_with("211:0"));
}

TEST_F(Operations, WhatHasNoObjectYetLeavesWithoutTheSimulator) {
    removeAircraftFromSim(ac);
    EXPECT_TRUE(ac.eraseLive);
    ParkedAc fixed;
    fixed.hexid = 17;
    removeAircraftFromSim(fixed);
    EXPECT_TRUE(fixed.erase);
    EXPECT_FALSE(fixed.eraseLive);

    // Wherever its request waits, from the engine's stack to the queue that the next frame drains.
    const AiCreateRequest request = createRequest(ac.hexid, ac.callsign);
    for (int place = 0; place < 4; ++place) {
        if (place == 0) gAddingStack = {1, ac.hexid, 2};
        if (place == 1) gLiveAdding = {request};
        if (place == 2) gParkedAdding = {request};
        if (place == 3) gCreateQueue = {createRequest(17, "OTHER*"), request};
        ac.lifeState = LifeState::adding2sim;
        ac.erase = false;
        removeAircraftFromSim(ac);
        EXPECT_TRUE(ac.erase) << place;
        EXPECT_FALSE(ac.removeWhenCreated) << place;
    }
    EXPECT_EQ(gAddingStack, (std::vector<u32>{1, 2}));
    EXPECT_TRUE(gLiveAdding.empty() && gParkedAdding.empty());
    EXPECT_EQ(gCreateQueue.size(), 1U);
    EXPECT_TRUE(gRemovedObjects.empty());
}

TEST_F(Operations, AnActiveAircraftIsAskedAwayOnceAndFreesStandAndSelection) {
    gStands.emplace_back();
    gStands.back().number = 3;
    gStands.back().takenByLive = true;
    ac.standId = 3;
    gSelectedObject = 9;
    ac.lifeState = LifeState::active;
    removeAircraftFromSim(ac);
    removeAircraftFromSim(ac);
    EXPECT_EQ(ac.lifeState, LifeState::removingfromsim);
    EXPECT_EQ(gRemovedObjects, (std::deque<u32>{9}));
    EXPECT_FALSE(gStands.back().takenByLive);
    EXPECT_EQ(gSelectedObject, 0U);

    ac.lifeState = LifeState::active;
    ac.objectId = 0;
    removeAircraftFromSim(ac);
    EXPECT_EQ(gRemovedObjects.size(), 1U);
    EXPECT_TRUE(logHas("==> removeAircraftFromSim removing act KLM1"));
}

TEST_F(Operations, TheWaitingListSetsANewAircraftUpAtItsTwoHundredthPass) {
    struct Row {
        bool airborne;
        f64 alt, agl;
        FlightState state;
        i32 acClass;
        const char* events;
    };
    const std::vector<Row> rows = {
        {true, 10000, 2000, FlightState::flying, Large, "220:0 218:0 207:1 206:1 210:1 208:0 209:1 212:1 211:1"},
        {true, 10001, 1999, FlightState::flying, Large, "220:0 218:0 207:1 206:1 210:0 208:0 209:1 212:0 211:0"},
        {false, 0, 9, FlightState::taxi, Large, "218:0 220:0 207:1 206:1 210:0 208:1 209:0 212:1 211:1 222:0 217:3072"},
        {false, 0, 9, FlightState::parked, Large, "218:0 221:0 207:0 206:0 210:0 208:0 209:0 212:1 211:1 222:0 217:0"},
        {false, 0, 9, FlightState::pushed_back, Rotorcraft,
         "220:0 207:1 206:1 210:0 208:0 209:0 212:1 211:1 222:16383"},
    };
    NAV_LIGHTS_WHILE_PARKED.current = false;
    for (const Row& row : rows) {
        gLiveAcs.clear();
        LiveAc& live = gLiveAcs.emplace_back();
        static_cast<ParkedAc&>(live) = ac;
        live.lifeState = LifeState::adding2sim;
        live.acClass = row.acClass;
        live.flightState = row.state;
        live.agl = row.agl;
        live.stream.resize(1);
        live.stream.back().airborne = row.airborne;
        live.stream.back().alt = row.alt;
        SimMessage created;
        created.object = 9;
        created.id = ac.hexid;
        gPendingObjects = {created};
        for (int pass = 1; pass < 200; ++pass) {
            gf_passPendingObjects();
            const auto calls = takeCalls();
            EXPECT_EQ(calls.size(), pass == 50 || pass == 100 ? 1U : 0U) << pass;
            if (!calls.empty()) {
                EXPECT_EQ(calls[0], "Event 9 213 0");
            }
        }
        EXPECT_TRUE(gEventQueue.empty());
        EXPECT_EQ(live.lifeState, LifeState::adding2sim);
        gf_passPendingObjects();
        EXPECT_EQ(live.lifeState, LifeState::active);
        EXPECT_EQ(takeEvents(), row.events) << row.alt << flightStateName(row.state);
        EXPECT_TRUE(gPendingObjects.empty());
    }
}

TEST_F(Operations, AStaticAircraftGetsItsObjectFromTheWaitingListAndLeavesAtOnceIfAsked) {
    for (const u32 hexid : {17U, 18U, 19U}) {
        ParkedAc& fixed = gParkedAcs.emplace_back();
        fixed.hexid = hexid;
        fixed.callsign = "KLM" + std::to_string(hexid) + "*";
        fixed.lifeState = LifeState::adding2sim;
    }
    removeAircraftFromSim(gParkedAcs[1]);
    EXPECT_TRUE(gParkedAcs[1].removeWhenCreated);
    gParkedAcs[2].standId = 44;
    for (const u32 hexid : {17U, 18U, 19U, 20U}) {
        SimMessage created;
        created.object = hexid + 100;
        created.id = hexid;
        created.kind = SimKind::staticCreated;
        gPendingObjects.push_back(created);
    }
    for (int pass = 0; pass < 200; ++pass) gf_passPendingObjects();
    EXPECT_EQ(gParkedAcs[0].objectId, 117U);
    EXPECT_EQ(gParkedAcs[0].lifeState, LifeState::active);
    EXPECT_EQ(gParkedAcs[1].lifeState, LifeState::removingfromsim);
    EXPECT_EQ(gRemovedObjects, (std::deque<u32>{118}));
    EXPECT_TRUE(gPendingObjects.empty());
    EXPECT_TRUE(takeCalls().empty());  // no toggles for parked aircraft
    EXPECT_TRUE(logHas("\nsid==0? : KLM17*   parked\n"));
    EXPECT_TRUE(logHas("\nsid==?  : KLM19*   parked\n"));
}

TEST_F(Operations, TheTwentiethTitleThatCannotBeCreatedStopsTheRun) {
    ac.model = "A320";
    ac.airline = "KLM";
    std::string title = "Livery 1";
    ac.liveryTitle = title;
    gf_onCreateFailed(ac);
    gf_onCreateFailed(ac);
    EXPECT_EQ(failedTitles.size(), 1U);
    EXPECT_TRUE(failedModels.contains("A320 KLM"));
    EXPECT_TRUE(logHas("KLM1 'Livery 1' could not be created by your Sim!"));
    for (int n = 2; n <= 19; ++n) {
        title = "Livery " + std::to_string(n);
        ac.liveryTitle = title;
        EXPECT_NO_THROW(gf_onCreateFailed(ac));
    }
    gf_requestStop(ExitReason::newFlight, 45);
    title = "Livery 20";
    ac.liveryTitle = title;
    try {
        gf_onCreateFailed(ac);
        FAIL() << "twenty titles were taken";
    } catch (const UserErrorException& exception) {
        EXPECT_STREQ(exception.what(),
                     "81: There are too many liveries that could not be created by MSFS!, see Log.txt");
    }
    EXPECT_TRUE(logHas("\n===> Error 81, There are too many liveries that could not be created by MSFS!\n"));
    EXPECT_FALSE(logHas("'Livery 20'"));
}

}  // namespace
}  // namespace hcr::test
