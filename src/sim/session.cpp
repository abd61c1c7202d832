#include "sim/session.h"

#include "shell/log.h"
#include "shell/messages.h"
#include "shell/run_stop.h"

namespace hcr {

std::mutex gSimMutex;
SimHandle gSimHandle = nullptr;
std::atomic<bool> gFlightRunning{false};
std::atomic<bool> gRequestError{false};
std::atomic<u32> gUserObjectId{0};
std::atomic<f32> gFrameRate{0};
std::atomic<bool> gUserOnGround{false}, gUserOnGroundKnown{false};

namespace {

constexpr i32 kRequestErrorRestartSeconds = 9;  // time for the simulator to come back to itself

// The user's aircraft as SimClient stored it last. A lock of its own: it is read by threads that must never wait for
// the simulator.
std::mutex gUserPositionMutex;
UserAircraftData gUserPosition{};

}  // namespace

void gf_storeUserPosition(const UserAircraftData& position) {
    const std::lock_guard lock(gUserPositionMutex);
    gUserPosition = position;
}

UserAircraftData gf_lastUserPosition() {
    const std::lock_guard lock(gUserPositionMutex);
    return gUserPosition;
}

void gf_resetSession() {
    {
        const std::lock_guard lock(gSimMutex);
        gSimHandle = nullptr;
    }
    gFlightRunning = gRequestError = gUserOnGround = gUserOnGroundKnown = false;
    gUserObjectId = 0;
    gFrameRate = 0;
    const std::lock_guard lock(gUserPositionMutex);
    gUserPosition = {};
}

void gf_raiseRequestError() {
    gf_showMessage("SimConnect request error", true);
    gf_logFlush();
    gRequestError = true;
    gf_requestStop(ExitReason::simConnectError, kRequestErrorRestartSeconds);
}

}  // namespace hcr
