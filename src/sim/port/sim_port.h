#pragma once

#include "sim/port/layouts.h"

namespace hcr {

/// Result of a call: negative = nothing was done. What the simulator itself refuses comes later as an exception
/// message with the call's packet id.
using SimResult = i32;
using SimHandle = void*;
using SimDispatch = void (*)(SIMCONNECT_RECV* message, u32 size, void* context);

/// The simulator, as the functions of its client library under their published names. The logic runs against
/// anything that serves this list. gSimPort is set once, before the first run.
struct SimPort {
    SimResult (*SimConnect_Open)(SimHandle* handle, const char* name, void* window, u32 userEvent, void* eventHandle,
                                 u32 configIndex) = nullptr;
    SimResult (*SimConnect_Close)(SimHandle handle) = nullptr;
    /// Calls `dispatch` for each waiting message, on the calling thread, and returns.
    SimResult (*SimConnect_CallDispatch)(SimHandle handle, SimDispatch dispatch, void* context) = nullptr;
    SimResult (*SimConnect_GetLastSentPacketID)(SimHandle handle, u32* packetId) = nullptr;
    SimResult (*SimConnect_AddToDataDefinition)(SimHandle handle, u32 definition, const char* variable,
                                                const char* unit, u32 type, f32 epsilon, u32 datumId) = nullptr;
    SimResult (*SimConnect_RequestDataOnSimObject)(SimHandle handle, u32 request, u32 definition, u32 object,
                                                   u32 period, u32 flags, u32 origin, u32 interval,
                                                   u32 limit) = nullptr;
    SimResult (*SimConnect_RequestDataOnSimObjectType)(SimHandle handle, u32 request, u32 definition, u32 radiusMetres,
                                                       u32 objectType) = nullptr;
    SimResult (*SimConnect_SetDataOnSimObject)(SimHandle handle, u32 definition, u32 object, u32 flags, u32 arrayCount,
                                               u32 unitSize, void* data) = nullptr;
    SimResult (*SimConnect_MapClientEventToSimEvent)(SimHandle handle, u32 event, const char* name) = nullptr;
    SimResult (*SimConnect_AddClientEventToNotificationGroup)(SimHandle handle, u32 group, u32 event,
                                                              i32 maskable) = nullptr;
    SimResult (*SimConnect_SetNotificationGroupPriority)(SimHandle handle, u32 group, u32 priority) = nullptr;
    SimResult (*SimConnect_SubscribeToSystemEvent)(SimHandle handle, u32 event, const char* name) = nullptr;
    SimResult (*SimConnect_TransmitClientEvent)(SimHandle handle, u32 object, u32 event, u32 data, u32 group,
                                                u32 flags) = nullptr;
    SimResult (*SimConnect_AICreateNonATCAircraft)(SimHandle handle, const char* title, const char* tailNumber,
                                                   SIMCONNECT_DATA_INITPOSITION position, u32 request) = nullptr;
    SimResult (*SimConnect_AIReleaseControl)(SimHandle handle, u32 object, u32 request) = nullptr;
    SimResult (*SimConnect_AIRemoveObject)(SimHandle handle, u32 object, u32 request) = nullptr;
    SimResult (*SimConnect_AISetAircraftFlightPlan)(SimHandle handle, u32 object, const char* path,
                                                    u32 request) = nullptr;
};

extern SimPort gSimPort;

}  // namespace hcr
