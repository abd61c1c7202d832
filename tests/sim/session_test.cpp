#include "sim/session.h"

#include <algorithm>
#include <thread>

#include "platform/clock.h"
#include "session_fixture.h"
#include "shell/messages.h"
#include "shell/run_stop.h"
#include "shell/window_state.h"
#include "sim/drain.h"
#include "sim/requests.h"
#include "sim/sim_client.h"

namespace hcr::test {
namespace {

using Calls = std::vector<std::string>;

struct Session : SessionTest {
    Session() {
        gSimHandle = nullptr;
        gf_speedClock(50);
    }
    ~Session() override { gf_releaseClock(); }

    static Calls callsOf(const std::string& name) {
        Calls calls;
        std::copy_if(gRecorded.calls.begin(), gRecorded.calls.end(), std::back_inserter(calls),
                     [&name](const std::string& call) { return call.starts_with(name + ' '); });
        return calls;
    }
};

Bytes lf_openMessage(const char* name) {
    auto open = messageOf<SIMCONNECT_RECV_OPEN>(SIMCONNECT_RECV_ID_OPEN);
    std::strncpy(open.szApplicationName, name, sizeof(open.szApplicationName) - 1);
    return bytesOf(open);
}

Bytes lf_quitMessage() {
    return bytesOf(messageOf<SIMCONNECT_RECV_QUIT>(SIMCONNECT_RECV_ID_QUIT));
}

Bytes lf_simEvent(u32 running) {
    auto event = messageOf<SIMCONNECT_RECV_EVENT>(SIMCONNECT_RECV_ID_EVENT);
    event.uEventID = kEventSim;
    event.dwData = running;
    return bytesOf(event);
}

TEST_F(Session, OpensWhenTheSimulatorIsUpAndRegistersEverythingInOrder) {
    gRecorded.failing = "Open";
    EXPECT_FALSE(gf_pumpSimClient());
    EXPECT_FALSE(gf_pumpSimClient());
    EXPECT_EQ(logCount("Waiting for MSFS 2020 ..."), 1U);
    gRecorded.failing.clear();
    takeCalls();
    EXPECT_TRUE(gf_pumpSimClient());
    EXPECT_EQ(gRecorded.calls.front(), "Open Halcyrane");
    EXPECT_EQ(callsOf("Subscribe"),
              (Calls{"Subscribe 201 Sim", "Subscribe 202 ObjectAdded", "Subscribe 203 ObjectRemoved",
                     "Subscribe 205 FlightLoaded", "Subscribe 204 Frame"}));
    const Calls defines = callsOf("Define");
    EXPECT_EQ(defines.size(), 32U);
    EXPECT_EQ(defines.front(), "Define 407 TITLE - 11");
    EXPECT_EQ(defines.back(), "Define 401 GENERAL ENG THROTTLE LEVER POSITION:2 percent 4");
    EXPECT_EQ(callsOf("Map").size(), 17U);
    const Calls group = callsOf("Group");
    EXPECT_EQ(group.size(), 16U);
    EXPECT_EQ(group.front(), "Group 301 207 1");
    EXPECT_EQ(group.back(), "Group 301 216 1");
    EXPECT_EQ(std::count(group.begin(), group.end(), "Group 301 220 1"), 0);
    EXPECT_EQ(gRecorded.calls.back(), "Priority 301 1");
    gf_endSimClient();
    EXPECT_TRUE(logHas("\nSimConnect closed ok\n"));
}

TEST_F(Session, RequestsGoOutWithTheirNumbersAndAFailureIsTold) {
    gf_requestUserIdentity();
    EXPECT_TRUE(takeCalls().empty());  // no session
    gf_pumpSimClient();
    takeCalls();
    gf_requestUserIdentity();
    gf_requestUserOnGround();
    gf_fetchUserPosition();
    gf_requestStaticData(77);
    gf_requestAircraftInRange();
    EXPECT_EQ(takeCalls(),
              (Calls{"Request 106 407 0 1", "Request 107 408 0 1", "Request 108 409 0 4", "Request 109 403 0 1",
                     "Request 102 405 77 1", "RequestType 101 404 2", "RequestType 111 404 3"}));
    struct Row {
        void (*request)();
        const char* line;
    };
    gRecorded.failing = "Request";
    for (const Row& row : {Row{gf_requestUserIdentity, "SimConnect request user ac title fails"},
                           Row{gf_requestUserOnGround, "SimConnect request ac gnd/air fails"},
                           Row{[] { gf_fetchUserPosition(); }, "SimConnect request user ac position fails"},
                           Row{[] { gf_requestStaticData(9); }, "SimConnect request StaticCG fails"}}) {
        gRequestError = false;
        row.request();
        EXPECT_TRUE(logHas(row.line));
        EXPECT_TRUE(gRequestError);
    }
    EXPECT_EQ(takeCalls().size(), 4U);  // of title and model only the first was tried
    EXPECT_EQ(gExitReason, ExitReason::simConnectError);
}

TEST_F(Session, AQuittingSimulatorEndsSessionAndRun) {
    gf_pumpSimClient();
    gRecorded.waiting = {lf_openMessage("KittyHawk"), lf_simEvent(1)};
    gf_pumpSimClient();
    EXPECT_TRUE(gFlightRunning);
    EXPECT_TRUE(gWindow.simConnected);
    gRecorded.waiting = {lf_quitMessage()};
    gf_pumpSimClient();
    EXPECT_FALSE(gFlightRunning);
    EXPECT_FALSE(gWindow.flightRunning);
    EXPECT_FALSE(gWindow.simConnected);
    EXPECT_EQ(gSimHandle, nullptr);
    EXPECT_EQ(gExitReason, ExitReason::simWasClosed);
    EXPECT_EQ(gRestartSeconds, 0);
    EXPECT_TRUE(logHas(" Flight Simulator no longer connected, Halcyrane will stop ..."));
    takeCalls();
    EXPECT_FALSE(gf_pumpSimClient());  // no new session in a run that ends
    EXPECT_TRUE(takeCalls().empty());
}

TEST_F(Session, TheThreadEndsByItselfForEachKindOfTrouble) {
    struct Row {
        const char* name;
        std::vector<Bytes> messages;
        i32 throwing;
        const char* shown;
        ExitReason reason;
    };
    for (const Row& row :
         {Row{"wrong simulator",
              {lf_openMessage("SunRise"), lf_quitMessage()},
              0,
              "71: MSFS 2024 is running ..., switch Simulator, or select the right sim in the drop down list above",
              ExitReason::notYetSet},
          Row{"quit", {lf_openMessage("KittyHawk"), lf_quitMessage()}, 0, "", ExitReason::simWasClosed},
          Row{"exception", {}, 1, "the library fell over", ExitReason::simWasClosed},
          Row{"anything", {}, 2, "Exception in SimClient", ExitReason::simWasClosed}}) {
        resetSessionGlobals();
        gRecorded.waiting = row.messages;
        gRecorded.throwing = row.throwing;
        std::jthread(SimClient).join();
        EXPECT_EQ(gWindow.fatalMessage, row.shown) << row.name;
        EXPECT_EQ(gExitReason, row.reason) << row.name;
        EXPECT_EQ(gSimHandle, nullptr) << row.name;
        EXPECT_EQ(gRecorded.calls.back(), "Close") << row.name;
    }
}

bool lf_isOpen() {
    const std::lock_guard lock(gSimMutex);
    return gSimHandle != nullptr;
}

TEST_F(Session, TheThreadStopsWhenToldWhetherTheSimulatorIsUpOrNot) {
    gRecorded.failing = "Open";
    {
        std::jthread thread(SimClient);
        while (!logHas("Waiting for MSFS 2020 ...")) gf_sleepMs(10);
    }
    EXPECT_FALSE(logHas("SimConnect closed ok"));
    gRecorded.failing.clear();
    {
        std::jthread thread(SimClient);
        while (!lf_isOpen()) gf_sleepMs(10);
        gf_requestStop(ExitReason::newSettings, 3);
        gf_sleepMs(300);
        EXPECT_TRUE(lf_isOpen());  // the session lasts until close-down ends it
    }
    EXPECT_TRUE(logHas("SimConnect closed ok"));
    EXPECT_EQ(gExitReason, ExitReason::newSettings);
}

}  // namespace
}  // namespace hcr::test
