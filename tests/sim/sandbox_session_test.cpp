#include <algorithm>
#include <thread>

#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "platform/clock.h"
#include "session_fixture.h"
#include "shell/run_stop.h"
#include "shell/window_state.h"
#include "sim/aircraft.h"
#include "sim/drain.h"
#include "sim/flight_plan.h"
#include "sim/port/sandbox/sandbox.h"
#include "sim/requests.h"
#include "sim/session.h"
#include "sim/sim_client.h"
#include "sim/waiting_list.h"

namespace hcr::test {
namespace {

constexpr u32 kLive = 4740001;
constexpr i64 kCycleUs = 10000;

/// The session and a worker with nothing but this module's part of its cycle, before the sandbox, in simulated time.
struct SessionOnSandbox : SessionTest {
    SessionOnSandbox() {
        gSimHandle = nullptr;
        gf_holdClock(1700000000);
        scenario.user = {UserPoint{0, 52.31, 4.76, 0, 90, 0, true}};
        scenario.refused = {"Refused Livery"};
    }
    ~SessionOnSandbox() override {
        gf_endSimClient();
        gf_stopSandbox();
        gf_releaseClock();
    }

    /// Until the flight runs and the user's position has come.
    void begin() {
        gf_startSandbox(scenario);
        ASSERT_TRUE(runUntil([] { return gFlightRunning.load(); }));
        gf_requestUserIdentity();
        gf_requestUserOnGround();
        ASSERT_TRUE(runUntil([] { return gUserObjectId != 0 && gUserOnGroundKnown; }));
    }

    void handleNews() {
        for (const SimMessage& news : takeNews()) {
            kinds.push_back(news.kind);
            if (news.kind == SimKind::liveCreated) {
                LiveAc* ac = findLiveByHexid(news.id);
                ac->objectId = news.object;
                gf_requestStaticData(news.object);
            }
            if (news.kind == SimKind::liveCreated || news.kind == SimKind::staticCreated) {
                gPendingObjects.push_back(news);
            }
            if (news.kind == SimKind::objectGone) gone.push_back(news.object);
        }
        if (!gPendingObjects.empty()) gf_passPendingObjects();
    }

    void cycle() {
        gf_pumpSimClient();
        handleNews();
        for (LiveAc& ac : gLiveAcs) {
            if (ac.lifeState != LifeState::active || ac.objectId == 0) continue;
            ac.lat += 1e-5;
            gPosQueueBack.push_back({ac.position(), ac.objectId});
        }
        gf_swapPositionBuffers();
        gf_paceQueues(tick);
        if (gUserObjectId != 0 && tick % 20 == 0) gf_requestAircraftInRange();
        if (tick % 100 == 0) gf_fetchUserPosition();
        ++tick;
        gf_turnClock(kCycleUs);
    }

    template <typename Condition>
    bool runUntil(Condition condition) {
        for (i32 n = 0; n < 3000; ++n) {
            if (condition()) return true;
            cycle();
        }
        return false;
    }

    void run(i32 cycles) {
        for (i32 n = 0; n < cycles; ++n) cycle();
    }

    LiveAc& addLive(const std::string& callsign = "KLM1", std::string_view title = "A320 House") {
        LiveAc& ac = gLiveAcs.emplace_back();
        ac.hexid = kLive + static_cast<u32>(gLiveAcs.size()) - 1;
        ac.callsign = callsign;
        ac.liveryTitle = title;
        ac.acClass = 2;
        ac.flightState = FlightState::flying;
        ac.lat = 52.4;
        ac.lon = 4.7;
        ac.alt = 3000;
        ac.tas = 160;
        ac.stream.resize(2);
        for (PosSample& sample : ac.stream) {
            sample.airborne = true;
            sample.alt = 3000;
        }
        ac.lifeState = LifeState::adding2sim;
        AiCreateRequest request = createRequest(ac.hexid, callsign, title);
        request.lat = ac.lat;
        request.lon = ac.lon;
        request.alt = ac.alt;
        gLiveAdding.push_back(request);
        return ac;
    }

    bool saw(SimKind kind) const { return std::find(kinds.begin(), kinds.end(), kind) != kinds.end(); }

    Scenario scenario;
    i32 tick = 0;
    std::vector<SimKind> kinds;
    std::vector<u32> gone;
};

TEST_F(SessionOnSandbox, TheUserIsKnownWhenTheFlightRuns) {
    begin();
    EXPECT_TRUE(gUserOnGround);
    run(200);
    EXPECT_NEAR(gf_lastUserPosition().lat, 52.31, 1e-6);
    EXPECT_EQ(gWindow.userAircraft.get(), scenario.userTitle);
    EXPECT_TRUE(logHas("KittyHawk (11.0.282174.999) connected"));
    EXPECT_GT(gSimTime, 1700000000 - 60);
    EXPECT_LT(gSimTime, 1700000000 + 120);
    i32 pulses = 0;
    for (i32 n = 0; n < 500; ++n) {
        cycle();
        pulses += gSecondPulse.exchange(false) ? 1 : 0;
    }
    EXPECT_NEAR(pulses, 5, 1);
    EXPECT_EQ(gf_sandboxCounters().exceptions, 0U);
}

TEST_F(SessionOnSandbox, ALiveAircraftIsMadeFrozenPlacedAndTakenAway) {
    begin();
    LiveAc& ac = addLive();
    ASSERT_TRUE(runUntil([&ac] { return ac.objectId != 0; }));
    EXPECT_EQ(ac.lifeState, LifeState::adding2sim);
    run(50);
    ASSERT_EQ(gf_sandboxObjects().size(), 1U);
    SandboxObject object = gf_sandboxObjects()[0];
    EXPECT_TRUE(object.released && object.frozenPosition && object.frozenAltitude && object.frozenAttitude);
    EXPECT_NEAR(object.alt, 3000, 100);
    EXPECT_EQ(object.positionWrites, 0);
    run(150);
    EXPECT_EQ(ac.lifeState, LifeState::active);
    run(100);
    object = gf_sandboxObjects()[0];
    EXPECT_GT(object.positionWrites, 20);
    EXPECT_NEAR(object.lat, ac.lat, 1e-4);
    EXPECT_EQ(object.alt, 3000);
    EXPECT_EQ(object.engines, 1U);
    EXPECT_EQ(object.landing, 1U);
    EXPECT_EQ(object.taxi, 0U);
    EXPECT_TRUE(saw(SimKind::staticData));
    EXPECT_FALSE(saw(SimKind::aiStatus));  // above 2500 feet

    const u32 objectId = ac.objectId;
    removeAircraftFromSim(ac);
    run(100);
    EXPECT_EQ(gone, (std::vector<u32>{objectId}));
    EXPECT_TRUE(gf_sandboxObjects().empty());
    EXPECT_EQ(gf_sandboxCounters().exceptions, 0U);
}

TEST_F(SessionOnSandbox, AnAircraftRemovedWhileItsRequestWaitsNeverAppears) {
    begin();
    while (tick % 50 != 1) cycle();
    LiveAc& ac = addLive();
    run(20);
    removeAircraftFromSim(ac);
    EXPECT_TRUE(ac.erase);
    run(400);
    EXPECT_EQ(gf_sandboxCounters().creates, 0U);
}

TEST_F(SessionOnSandbox, AnAircraftRemovedWhileItIsMadeGoesAfterTheWaitingList) {
    begin();
    LiveAc& ac = addLive();
    ASSERT_TRUE(runUntil([] { return !gPendingCreates.empty(); }));
    removeAircraftFromSim(ac);
    EXPECT_TRUE(ac.removeWhenCreated);
    ASSERT_TRUE(runUntil([&ac] { return ac.lifeState == LifeState::removingfromsim; }));
    run(100);
    EXPECT_EQ(gone.size(), 1U);
    EXPECT_TRUE(gf_sandboxObjects().empty());
}

TEST_F(SessionOnSandbox, ARefusedTitleIsReportedAndTheNextAircraftIsStillRecognised) {
    begin();
    addLive("KLM1", "Refused Livery");
    addLive("KLM2");
    ASSERT_TRUE(runUntil([] { return gLiveAcs[1].objectId != 0; }));
    EXPECT_TRUE(saw(SimKind::createRefused));
    EXPECT_EQ(gLiveAcs[0].objectId, 0U);
    EXPECT_TRUE(gPendingCreates.empty());
}

TEST_F(SessionOnSandbox, AThousandFramesOfPositionsReachTheSimulatorAcrossThreads) {
    // The real thread, the worker's side on this one, fifty times as fast as the clock on the wall.
    gf_releaseClock();
    gf_speedClock(50);
    gf_startSandbox(scenario);
    {
        std::jthread thread(SimClient);
        const auto workerCycle = [this] {
            std::vector<SimMessage> news;
            {
                const std::lock_guard lock(gSimEventMutex);
                news.swap(gSimEvents);
            }
            for (const SimMessage& message : news) {
                if (message.kind != SimKind::liveCreated) continue;
                gLiveAcs[0].objectId = message.object;
                gPendingObjects.push_back(message);
            }
            if (!gPendingObjects.empty()) gf_passPendingObjects();
            if (gLiveAcs[0].lifeState == LifeState::active) {
                gPosQueueBack.push_back({gLiveAcs[0].position(), gLiveAcs[0].objectId});
            }
            gf_swapPositionBuffers();
            gf_paceQueues(tick);
            if (gFlightRunning && tick % 20 == 0) gf_requestAircraftInRange();
            if (gFlightRunning && tick % 100 == 0) gf_fetchUserPosition();
            ++tick;
            gf_sleepMs(10);
        };
        addLive();
        for (i32 n = 0; n < 200000 && gf_sandboxCounters().positionWrites < 1000; ++n) workerCycle();
        EXPECT_GE(gf_sandboxCounters().positionWrites, 1000U);
        removeAircraftFromSim(gLiveAcs[0]);
        for (i32 n = 0; n < 200000 && !gf_sandboxObjects().empty(); ++n) workerCycle();
        EXPECT_TRUE(gf_sandboxObjects().empty());
    }
    EXPECT_TRUE(logHas("SimConnect closed ok"));
    EXPECT_EQ(gExitReason, ExitReason::notYetSet);
}

}  // namespace
}  // namespace hcr::test
