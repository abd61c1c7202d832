#include "sim/session.h"

#include "core/model/range.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/run_stop.h"
#include "sim/aircraft.h"
#include "sim/definitions.h"
#include "sim/dispatch.h"
#include "sim/drain.h"
#include "sim/sim_client.h"
#include "sim/user_aircraft.h"

namespace hcr {

std::mutex gSimMutex;
SimHandle gSimHandle = nullptr;
std::atomic<bool> gFlightRunning{false};
std::atomic<bool> gRequestError{false};
std::atomic<u32> gUserObjectId{0};
std::atomic<f32> gFrameRate{0};
std::atomic<bool> gUserOnGround{false}, gUserOnGroundKnown{false};

std::mutex gSimEventMutex;
std::vector<SimMessage> gSimEvents;

namespace {

constexpr std::size_t kReservedEvents = 256;    // news of one worker cycle, with room for a full sky
constexpr i32 kRequestErrorRestartSeconds = 9;  // time for the simulator to come back to itself

// The user's aircraft as SimClient stored it last. A lock of its own: it is read by threads that must never wait for
// the simulator.
std::mutex gUserPositionMutex;
UserAircraftData gUserPosition{};

bool lf_mayRequest() {
    return gSimHandle != nullptr && !gRequestError;
}

void lf_requestFailed(std::string_view text) {
    gf_log(text);
    gf_raiseRequestError();
}

/// One data request on one object; gSimMutex is held by the caller.
void lf_requestData(u32 request, u32 definition, u32 object, u32 period, std::string_view failure) {
    if (!lf_mayRequest()) return;
    if (gSimPort.SimConnect_RequestDataOnSimObject(gSimHandle, request, definition, object, period, 0, 0, 0, 0) < 0) {
        lf_requestFailed(failure);
    }
}

/// One request by type; gSimMutex is held by the caller.
void lf_requestInRange(u32 request, u32 radiusMetres, u32 objectType) {
    if (!lf_mayRequest()) return;
    if (gSimPort.SimConnect_RequestDataOnSimObjectType(gSimHandle, request, kDefAiStatus, radiusMetres, objectType) <
        0) {
        lf_requestFailed("SimConnect request ac within range fails");
    }
}

}  // namespace

void gf_storeUserPosition(const UserAircraftData& position) {
    const std::lock_guard lock(gUserPositionMutex);
    gUserPosition = position;
}

UserAircraftData gf_lastUserPosition() {
    const std::lock_guard lock(gUserPositionMutex);
    return gUserPosition;
}

UserAircraftData gf_fetchUserPosition() {
    {
        const std::lock_guard lock(gSimMutex);
        lf_requestData(kReqUserPosition, kDefUserPosition, SIMCONNECT_OBJECT_ID_USER, SIMCONNECT_PERIOD_ONCE,
                       "SimConnect request user ac position fails");
    }
    return gf_lastUserPosition();
}

void gf_requestUserIdentity() {
    const std::lock_guard lock(gSimMutex);
    lf_requestData(kReqTitle, kDefTitle, SIMCONNECT_OBJECT_ID_USER, SIMCONNECT_PERIOD_ONCE,
                   "SimConnect request user ac title fails");
    lf_requestData(kReqModel, kDefModel, SIMCONNECT_OBJECT_ID_USER, SIMCONNECT_PERIOD_ONCE,
                   "SimConnect reques user ac model fails");
}

void gf_requestUserOnGround() {
    const std::lock_guard lock(gSimMutex);
    lf_requestData(kReqOnGround, kDefOnGround, SIMCONNECT_OBJECT_ID_USER, SIMCONNECT_PERIOD_SECOND,
                   "SimConnect request ac gnd/air fails");
}

void gf_requestAircraftInRange() {
    const u32 radius = gf_rangeMetres();
    const std::lock_guard lock(gSimMutex);
    lf_requestInRange(kReqInRange, radius, SIMCONNECT_SIMOBJECT_TYPE_AIRCRAFT);
    lf_requestInRange(kReqHelicoptersInRange, radius, SIMCONNECT_SIMOBJECT_TYPE_HELICOPTER);
}

void gf_requestStaticData(u32 objectId) {
    const std::lock_guard lock(gSimMutex);
    lf_requestData(kReqStaticData, kDefStaticData, objectId, SIMCONNECT_PERIOD_ONCE,
                   "SimConnect request StaticCG fails");
}

void gf_raiseRequestError() {
    gf_showMessage("SimConnect request error", true);
    gf_logFlush();
    gRequestError = true;
    gf_requestStop(ExitReason::simConnectError, kRequestErrorRestartSeconds);
}

void gf_pushSimMessage(const SimMessage& message) {
    const std::lock_guard lock(gSimEventMutex);
    gSimEvents.push_back(message);
}

void gf_resetSimSession() {
    gf_resetQueues();
    {
        const std::lock_guard lock(gSimMutex);
        gSimHandle = nullptr;
    }
    {
        const std::lock_guard lock(gSimEventMutex);
        gSimEvents.clear();
        gSimEvents.reserve(kReservedEvents);
    }
    gPendingObjects.clear();
    gPendingObjects.reserve(kReservedEvents);
    gFlightRunning = false;
    gRequestError = false;
    gUserObjectId = 0;
    gFrameRate = 0;
    gUserOnGround = false;
    gUserOnGroundKnown = false;
    gSelectedObject = 0;
    gf_storeUserPosition({});
    gf_resetDispatch();
    gf_resetUserAircraft();
    gf_resetSimClient();
}

}  // namespace hcr
