#include "core/run/worker.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <thread>

#include "core/model/geo.h"
#include "core/model/range.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "core/run/tick.h"
#include "feed/control_channel.h"
#include "feed/qnh_reader.h"
#include "feed/readers.h"
#include "feed/traffic_reader.h"
#include "parking/park_airport.h"
#include "parking/plan.h"
#include "platform/clock.h"
#include "platform/timer_resolution.h"
#include "shell/controls.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"
#include "shell/window_state.h"
#include "sim/requests.h"
#include "sim/session.h"
#include "sim/session_reset.h"
#include "sim/sim_client.h"

namespace hcr {

CycleStats gCycleStats;

namespace {

constexpr i64 kCycleUs = 10'000;         // one tick of simTick
constexpr i64 kShortestSleepUs = 1'000;  // below this a sleep would overshoot
constexpr i64 kStopPollMs = 100;         // a stop is seen in every wait within 200 ms
constexpr i64 kFlightPollMs = 100;
constexpr i64 kPositionPollMs = 500;
constexpr i64 kIdentityPollMs = 200;
constexpr i64 kReaderPauseMs = 2'000;  // the weather reader gets a head start on the traffic reader
constexpr i64 kTimestampPollMs = 100;
constexpr i32 kTimestampPolls = 150;

std::jthread gSimClientThread;
std::atomic<i32> gReaderThreads{0};

/// Sleeps in short steps; false as soon as a stop is asked for.
bool lf_pause(i64 milliseconds) {
    for (i64 slept = 0; slept < milliseconds; slept += kStopPollMs) {
        if (gf_stopAsked()) return false;
        gf_sleepMs(std::min(kStopPollMs, milliseconds - slept));
    }
    return !gf_stopAsked();
}

void lf_startSimClient() {
    gf_joinSimClient();
    gf_resetSimSession();
    gSimClientThread = std::jthread(SimClient);
}

void lf_prepareStart() {
    gWindow.rtConnected = false;
    gWindow.simConnected = false;
    gWindow.rtLampDark = false;
    gWaitingForRt = true;
    gf_reserveTables();
    gf_repaint(Band::whole);
}

bool lf_meetRealTraffic() {
    const bool psxMode = AEROWINX.current;
    if (gRtOnThisPc && !psxMode) {
        gf_startServer(PORT_NUMBER.current.get());
    } else {
        gWindow.rtConnected = true;
        gWaitingForRt = false;
        gf_repaint(Band::realTraffic);
    }
    if (gf_stopAsked()) return false;
    if (psxMode) {
        gFeedClock = false;
    } else {
        lf_waitForRealTraffic();
        if (gFeedClock) gf_sendQs123(gSimTime);
    }
    return !gf_stopAsked();
}

void lf_startReader(UdpReader& reader) {
    ++gReaderThreads;
    std::thread([&reader] {
        lf_readerThread(reader);
        --gReaderThreads;
    }).detach();
}

bool lf_startReaders() {
    gf_wantReports(false);
    gf_handPositionToDecoder();
    lf_startReader(gQnhReader);
    if (!lf_pause(kReaderPauseMs)) return false;
    lf_startReader(gTrafficReader);
    gf_sendQs121();
    return !gf_stopAsked();
}

bool lf_awaitFirstTimestamp() {
    gf_handPositionToDecoder();
    for (i32 poll = 0; poll < kTimestampPolls && gLastTimestamp == 0; ++poll) {
        if (!lf_pause(kTimestampPollMs)) return false;
    }
    if (gLastTimestamp == 0) gf_log("No traffic in this region?");
    return !gf_stopAsked();
}

void lf_openTheGate() {
    gf_wantReports(true);
    gf_enableControl(BLOCK_CALLSIGN, true);
    gf_enableControl(gBlockButton, true);
    gf_enableControl(gUnblockButton, true);
}

bool lf_timedTick() {
    const i64 before = gf_steadyUs();
    const bool goOn = gf_tick();
    const i64 took = gf_steadyUs() - before;
    ++gCycleStats.cycles;
    if (took > gCycleStats.worstUs) gCycleStats.worstUs = took;
    if (took > kCycleUs) ++gCycleStats.lateCycles;
    return goOn;
}

void lf_cycle(i64 start) {
    i64 next = start + kCycleUs;
    while (lf_timedTick()) {
        const i64 now = gf_steadyUs();
        if (next - now >= kShortestSleepUs) {
            gf_sleepUntilUs(next);
        } else if (now - next >= kCycleUs) {
            next = now;  // the lost cycles aren't made up for: simTick falls behind instead
        }
        if (gSecondPulse) next = gf_steadyUs();
        next += kCycleUs;
    }
}

}  // namespace

void gf_joinSimClient() {
    if (!gSimClientThread.joinable()) return;
    gSimClientThread.request_stop();
    gSimClientThread.join();
}

bool gf_readersEnded() {
    return gReaderThreads == 0;
}

bool gf_waitForFlight() {
    while (!gFlightRunning || gRequestError) {
        if (!lf_pause(kFlightPollMs)) return false;
    }
    gf_requestUserOnGround();
    const auto known = [] {
        const UserAircraftData user = gf_fetchUserPosition();
        return positionKnown(user.lat, user.lon);
    };
    while (!known() || !gUserOnGroundKnown) {
        if (!lf_pause(kPositionPollMs)) return false;
    }
    gf_requestUserIdentity();
    while (!known()) {
        if (!lf_pause(kIdentityPollMs)) return false;
    }
    return true;
}

void gf_runWorker() {
    lf_prepareStart();
    lf_startSimClient();
    if (!gf_waitForFlight()) return;
    if (AUTO_RANGE.current) {
        gf_autoRange();
    } else {
        gf_setRange(RANGE.current);
    }
    if (!lf_meetRealTraffic() || !lf_startReaders() || !lf_awaitFirstTimestamp()) return;
    gSlot = currentSlot();
    gf_parkTick(true);
    gf_checkReaders();
    gSeconds = 0;
    const i64 start = gf_steadyUs();
    gSlot = currentSlot();
    lf_openTheGate();
    gf_beginTimerResolution();
    try {
        lf_cycle(start);
    } catch (...) {
        gf_endTimerResolution();
        throw;
    }
    gf_endTimerResolution();
}

}  // namespace hcr
