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

struct Session : SessionTest {
    Session() {
        gSimHandle = nullptr;
        gf_speedClock(50);
    }
    ~Session() override { gf_releaseClock(); }
};

Bytes lf_openMessage(const char* name) {
    auto open = messageOf<SIMCONNECT_RECV_OPEN>(SIMCONNECT_RECV_ID_OPEN);
    std::strncpy(open.szApplicationName, name, sizeof(open.szApplicationName) - 1);
    return bytesOf(open);
}

Bytes lf_quitMessage() {
    return bytesOf(messageOf<SIMCONNECT_RECV_QUIT>(SIMCONNECT_RECV_ID_QUIT));
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
