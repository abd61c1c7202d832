#include "sim/requests.h"

#include <string_view>

#include "core/model/range.h"
#include "shell/log.h"
#include "sim/definitions.h"
#include "sim/session.h"

namespace hcr {
namespace {

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

}  // namespace hcr
