#include "sim/sim_client.h"

#include <fmt/format.h>

#include <exception>
#include <utility>

#include "core/model/park_state.h"
#include "platform/clock.h"
#include "platform/timer_resolution.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"
#include "shell/time_text.h"
#include "shell/version.h"
#include "shell/window_state.h"
#include "sim/definitions.h"
#include "sim/dispatch.h"
#include "sim/session.h"

namespace hcr {
namespace {

constexpr i64 kOpenRetryMs = 100;          // the simulator takes minutes to start; this is soon enough
constexpr i64 kDispatchIntervalUs = 1000;  // short against a frame at any frame rate

/// SimClient's own marks.
struct ClientMarks {
    bool waitAnnounced = false;
    std::exception_ptr dispatchFailure{};
};
ClientMarks gClient;

struct TimerResolution {
    TimerResolution() { gf_beginTimerResolution(); }
    ~TimerResolution() { gf_endTimerResolution(); }
    TimerResolution(const TimerResolution&) = delete;
    TimerResolution& operator=(const TimerResolution&) = delete;
};

/// The frames between CallDispatch and this function belong to a foreign library, which no exception may cross: it is
/// kept until CallDispatch has returned, and what else was waiting is passed over.
void lf_guardedDispatch(SIMCONNECT_RECV* message, u32 size, void* context) {
    if (gClient.dispatchFailure) return;
    try {
        gf_dispatch(message, size, context);
    } catch (...) {
        gClient.dispatchFailure = std::current_exception();
    }
}

void lf_announceWait() {
    if (gClient.waitAnnounced) return;
    gClient.waitAnnounced = true;
    gf_showMessage(fmt::format("Waiting for MSFS 20{} ...", gf_sim2024Chosen() ? "24" : "20"), true);
    gf_logFlush();
    gf_repaint(Band::whole);
}

bool lf_openSession() {
    lf_announceWait();
    SimHandle handle = nullptr;
    const SimResult result = gSimPort.SimConnect_Open(&handle, kProgramName, nullptr, 0, nullptr, 0);
    if (result < 0 || handle == nullptr) return false;
    // Under the lock, so that no request of the worker comes before the definition that it names.
    const std::lock_guard lock(gSimMutex);
    gSimHandle = handle;
    gf_registerDefinitions();
    return true;
}

void lf_simulatorGone() {
    if (gf_stopAsked()) return;
    gf_log(fmt::format("{} Flight Simulator no longer connected, {} will stop ...", gf_timeOfDay(), kProgramName));
    gf_requestStop(ExitReason::simWasClosed, 0);
}

void lf_dispatchWaiting() {
    // The result isn't looked at: a client library may well give a negative one when nothing waits.
    gSimPort.SimConnect_CallDispatch(gSimHandle, lf_guardedDispatch, nullptr);
    if (gClient.dispatchFailure) std::rethrow_exception(std::exchange(gClient.dispatchFailure, nullptr));
}

void lf_runSession(const std::stop_token& stop) {
    while (!gf_stopAsked() && !stop.stop_requested()) {
        if (!gf_pumpSimClient()) {
            gf_sleepMs(kOpenRetryMs);
            continue;
        }
        const TimerResolution resolution;
        while (!stop.stop_requested() && gSimHandle != nullptr) {
            gf_pumpSimClient();
            gf_sleepUntilUs(gf_steadyUs() + kDispatchIntervalUs);
        }
    }
}

const char* lf_textOf(const std::exception& exception) {
    return *exception.what() != '\0' ? exception.what() : "Unknown exception";
}

void lf_clearFlightRunning() {
    gFlightRunning = false;
    gWindow.flightRunning = false;
    gf_repaint(Band::simulator);
}

}  // namespace

void SimClient(std::stop_token stop) {
    try {
        lf_runSession(stop);
    } catch (const UserErrorException& exception) {
        gf_showError(lf_textOf(exception));
    } catch (const std::exception& exception) {
        gf_showError(lf_textOf(exception));
        lf_clearFlightRunning();
        lf_simulatorGone();
    } catch (...) {
        gf_showError(fmt::format("Exception in {}", "SimClient"));
        lf_clearFlightRunning();
        lf_simulatorGone();
    }
    gf_endSimClient();
}

bool gf_pumpSimClient() {
    if (gSimHandle == nullptr) return !gf_stopAsked() && lf_openSession();
    lf_dispatchWaiting();
    if (gf_takeQuit()) {
        lf_simulatorGone();
        gf_endSimClient();
    }
    return true;
}

void gf_endSimClient() {
    try {
        gf_rememberUserStand();
    } catch (const std::exception& exception) {
        gf_logError(fmt::format("{}: {}", "gf_rememberUserStand", exception.what()));
    }
    gWindow.simConnected = false;
    // No session, no flight: what still runs must not go on asking a simulator that isn't there.
    lf_clearFlightRunning();
    const std::lock_guard lock(gSimMutex);
    if (gSimHandle == nullptr) return;
    if (gSimPort.SimConnect_Close(gSimHandle) < 0) {
        gf_logError("Closing SimConnect failed?!");
    } else {
        gf_log("SimConnect closed ok");
    }
    gSimHandle = nullptr;
}

void gf_resetSimClient() {
    gClient = {};
}

}  // namespace hcr
