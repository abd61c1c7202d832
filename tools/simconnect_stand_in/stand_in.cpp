// The simulator's client library with the built-in simulator inside, so that a program can be driven through the very
// interface of the real one. HALCYRANE_STAND_IN_SCENARIO names a scenario file, without it the built-in scenario is
// flown; HALCYRANE_STAND_IN_TRACE names a file for the trace. The simulator starts with the first SimConnect_Open.

#include <cstdio>
#include <exception>

#include "platform/environment.h"
#include "shell/text.h"
#include "sim/port/sandbox/calls.h"
#include "sim/port/sandbox/sandbox.h"
#include "sim/port/sim_port.h"

namespace {

using namespace hcr;

const SimPort kPort = gf_sandboxPort();

void lf_start() {
    const std::string scenario = gf_environmentText("HALCYRANE_STAND_IN_SCENARIO");
    const std::string trace = gf_environmentText("HALCYRANE_STAND_IN_TRACE");
    gf_startSandbox(scenario.empty() ? gf_defaultScenario() : gf_readScenario(gf_pathFromUtf8(scenario)),
                    gf_pathFromUtf8(trace));
}

/// False when the scenario or the trace is of no use, which is told once; the client then finds no simulator.
bool lf_started() {
    static const bool isStarted = [] {
        try {
            lf_start();
            return true;
        } catch (const std::exception& e) {
            std::fprintf(stderr, "SimConnect stand-in: %s\n", e.what());
            return false;
        }
    }();
    return isStarted;
}

}  // namespace

extern "C" {

SimResult SimConnect_Open(SimHandle* handle, const char* name, void* window, u32 userEvent, void* eventHandle,
                          u32 configIndex) {
    constexpr SimResult kFail = -1;
    return lf_started() ? kPort.SimConnect_Open(handle, name, window, userEvent, eventHandle, configIndex) : kFail;
}

SimResult SimConnect_Close(SimHandle handle) {
    return kPort.SimConnect_Close(handle);
}

SimResult SimConnect_CallDispatch(SimHandle handle, SimDispatch dispatch, void* context) {
    return kPort.SimConnect_CallDispatch(handle, dispatch, context);
}

SimResult SimConnect_GetLastSentPacketID(SimHandle handle, u32* packetId) {
    return kPort.SimConnect_GetLastSentPacketID(handle, packetId);
}

SimResult SimConnect_AddToDataDefinition(SimHandle handle, u32 definition, const char* variable, const char* unit,
                                         u32 type, f32 epsilon, u32 datumId) {
    return kPort.SimConnect_AddToDataDefinition(handle, definition, variable, unit, type, epsilon, datumId);
}

SimResult SimConnect_RequestDataOnSimObject(SimHandle handle, u32 request, u32 definition, u32 object, u32 period,
                                            u32 flags, u32 origin, u32 interval, u32 limit) {
    return kPort.SimConnect_RequestDataOnSimObject(handle, request, definition, object, period, flags, origin, interval,
                                                   limit);
}

SimResult SimConnect_RequestDataOnSimObjectType(SimHandle handle, u32 request, u32 definition, u32 radiusMetres,
                                                u32 objectType) {
    return kPort.SimConnect_RequestDataOnSimObjectType(handle, request, definition, radiusMetres, objectType);
}

SimResult SimConnect_SetDataOnSimObject(SimHandle handle, u32 definition, u32 object, u32 flags, u32 arrayCount,
                                        u32 unitSize, void* data) {
    return kPort.SimConnect_SetDataOnSimObject(handle, definition, object, flags, arrayCount, unitSize, data);
}

SimResult SimConnect_MapClientEventToSimEvent(SimHandle handle, u32 event, const char* name) {
    return kPort.SimConnect_MapClientEventToSimEvent(handle, event, name);
}

SimResult SimConnect_AddClientEventToNotificationGroup(SimHandle handle, u32 group, u32 event, i32 maskable) {
    return kPort.SimConnect_AddClientEventToNotificationGroup(handle, group, event, maskable);
}

SimResult SimConnect_SetNotificationGroupPriority(SimHandle handle, u32 group, u32 priority) {
    return kPort.SimConnect_SetNotificationGroupPriority(handle, group, priority);
}

SimResult SimConnect_SubscribeToSystemEvent(SimHandle handle, u32 event, const char* name) {
    return kPort.SimConnect_SubscribeToSystemEvent(handle, event, name);
}

SimResult SimConnect_TransmitClientEvent(SimHandle handle, u32 object, u32 event, u32 data, u32 group, u32 flags) {
    return kPort.SimConnect_TransmitClientEvent(handle, object, event, data, group, flags);
}

SimResult SimConnect_AICreateNonATCAircraft(SimHandle handle, const char* title, const char* tailNumber,
                                            SIMCONNECT_DATA_INITPOSITION position, u32 request) {
    return kPort.SimConnect_AICreateNonATCAircraft(handle, title, tailNumber, position, request);
}

SimResult SimConnect_AIReleaseControl(SimHandle handle, u32 object, u32 request) {
    return kPort.SimConnect_AIReleaseControl(handle, object, request);
}

SimResult SimConnect_AIRemoveObject(SimHandle handle, u32 object, u32 request) {
    return kPort.SimConnect_AIRemoveObject(handle, object, request);
}

SimResult SimConnect_AISetAircraftFlightPlan(SimHandle handle, u32 object, const char* path, u32 request) {
    return kPort.SimConnect_AISetAircraftFlightPlan(handle, object, path, request);
}

}  // extern "C"
