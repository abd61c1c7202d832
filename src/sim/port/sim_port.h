#pragma once

#include <cstddef>
#include <string_view>

#include "sim/port/layouts.h"

namespace hcr {

/// Result of a call: negative = nothing was done. What the simulator itself refuses comes later as an exception
/// message with the call's packet id.
using SimResult = i32;
using SimHandle = void*;
using SimDispatch = void (*)(SIMCONNECT_RECV* message, u32 size, void* context);

/// The simulator, as the functions of its client library under their published names. The logic runs against
/// anything that serves this list. gSimPort is set once, before the first run. "3" marks the functions whose parameters
/// are an assumption (assumptions.h); those of the others are documented.
struct SimPort {
    // 3
    SimResult (*SimConnect_Open)(SimHandle* handle, const char* name, void* window, u32 userEvent, void* eventHandle,
                                 u32 configIndex) = nullptr;
    // 3
    SimResult (*SimConnect_Close)(SimHandle handle) = nullptr;
    /// Calls `dispatch` for each waiting message, on the calling thread, and returns.
    SimResult (*SimConnect_CallDispatch)(SimHandle handle, SimDispatch dispatch, void* context) = nullptr;
    SimResult (*SimConnect_GetLastSentPacketID)(SimHandle handle, u32* packetId) = nullptr;
    // 3
    SimResult (*SimConnect_AddToDataDefinition)(SimHandle handle, u32 definition, const char* variable,
                                                const char* unit, u32 type, f32 epsilon, u32 datumId) = nullptr;
    SimResult (*SimConnect_RequestDataOnSimObject)(SimHandle handle, u32 request, u32 definition, u32 object,
                                                   u32 period, u32 flags, u32 origin, u32 interval,
                                                   u32 limit) = nullptr;
    // 3
    SimResult (*SimConnect_RequestDataOnSimObjectType)(SimHandle handle, u32 request, u32 definition, u32 radiusMetres,
                                                       u32 objectType) = nullptr;
    SimResult (*SimConnect_SetDataOnSimObject)(SimHandle handle, u32 definition, u32 object, u32 flags, u32 arrayCount,
                                               u32 unitSize, void* data) = nullptr;
    // 3
    SimResult (*SimConnect_MapClientEventToSimEvent)(SimHandle handle, u32 event, const char* name) = nullptr;
    // 3
    SimResult (*SimConnect_AddClientEventToNotificationGroup)(SimHandle handle, u32 group, u32 event,
                                                              i32 maskable) = nullptr;
    // 3
    SimResult (*SimConnect_SetNotificationGroupPriority)(SimHandle handle, u32 group, u32 priority) = nullptr;
    // 3
    SimResult (*SimConnect_SubscribeToSystemEvent)(SimHandle handle, u32 event, const char* name) = nullptr;
    SimResult (*SimConnect_TransmitClientEvent)(SimHandle handle, u32 object, u32 event, u32 data, u32 group,
                                                u32 flags) = nullptr;
    SimResult (*SimConnect_AICreateNonATCAircraft)(SimHandle handle, const char* title, const char* tailNumber,
                                                   SIMCONNECT_DATA_INITPOSITION position, u32 request) = nullptr;
    // 3
    SimResult (*SimConnect_AIReleaseControl)(SimHandle handle, u32 object, u32 request) = nullptr;
    // 3
    SimResult (*SimConnect_AIRemoveObject)(SimHandle handle, u32 object, u32 request) = nullptr;
    // 3
    SimResult (*SimConnect_AISetAircraftFlightPlan)(SimHandle handle, u32 object, const char* path,
                                                    u32 request) = nullptr;
};

/// Calls visit(name, function pointer) for every function of the list.
template <typename Port, typename Visit>
constexpr void gf_visitSimPort(Port& port, Visit visit) {
    visit("SimConnect_Open", port.SimConnect_Open);
    visit("SimConnect_Close", port.SimConnect_Close);
    visit("SimConnect_CallDispatch", port.SimConnect_CallDispatch);
    visit("SimConnect_GetLastSentPacketID", port.SimConnect_GetLastSentPacketID);
    visit("SimConnect_AddToDataDefinition", port.SimConnect_AddToDataDefinition);
    visit("SimConnect_RequestDataOnSimObject", port.SimConnect_RequestDataOnSimObject);
    visit("SimConnect_RequestDataOnSimObjectType", port.SimConnect_RequestDataOnSimObjectType);
    visit("SimConnect_SetDataOnSimObject", port.SimConnect_SetDataOnSimObject);
    visit("SimConnect_MapClientEventToSimEvent", port.SimConnect_MapClientEventToSimEvent);
    visit("SimConnect_AddClientEventToNotificationGroup", port.SimConnect_AddClientEventToNotificationGroup);
    visit("SimConnect_SetNotificationGroupPriority", port.SimConnect_SetNotificationGroupPriority);
    visit("SimConnect_SubscribeToSystemEvent", port.SimConnect_SubscribeToSystemEvent);
    visit("SimConnect_TransmitClientEvent", port.SimConnect_TransmitClientEvent);
    visit("SimConnect_AICreateNonATCAircraft", port.SimConnect_AICreateNonATCAircraft);
    visit("SimConnect_AIReleaseControl", port.SimConnect_AIReleaseControl);
    visit("SimConnect_AIRemoveObject", port.SimConnect_AIRemoveObject);
    visit("SimConnect_AISetAircraftFlightPlan", port.SimConnect_AISetAircraftFlightPlan);
}

extern SimPort gSimPort;

/// Whether the list has a function of this published name. Any thread.
bool gf_simPortHas(std::string_view name);

}  // namespace hcr
