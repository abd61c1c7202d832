#pragma once

#include <mutex>

#include "sim/port/sandbox/world.h"

namespace hcr {

// The frame of every call: lock, check of the handle, packet id. Inside the sandbox only.

inline constexpr SimResult kSandboxOk = 0;
inline constexpr SimResult kSandboxFail = static_cast<SimResult>(0x80004005u);         // E_FAIL
inline constexpr SimResult kSandboxBadArgument = static_cast<SimResult>(0x80070057u);  // E_INVALIDARG

/// A call that is being carried out; holds the lock. Only with `result` kSandboxOk was it sent and has a packet id.
struct SandboxCall {
    std::unique_lock<std::mutex> lock;
    SandboxWorld& world;
    SandboxSession& session;
    SimResult result = kSandboxOk;
    u32 packet = 0;

    bool sent() const { return result == kSandboxOk; }
};

/// Begins a call that is sent to the simulator. `valid` false: an argument that the client library itself refuses.
SandboxCall gf_sandboxBegin(const char* name, SimHandle handle, bool valid = true);
/// The call is refused by an exception message: parameter `index`, counted from 1 behind the handle.
SimResult gf_sandboxRefuse(SandboxCall& call, SimException exception, u32 index);
/// True when a fault makes this call fail now.
bool gf_sandboxFails(SandboxWorld& world, const char* name);
bool gf_sandboxHandleValid(const SandboxWorld& world, SimHandle handle);

// The calls, by subject.
SimResult lf_open(SimHandle* handle, const char* name, void* window, u32 userEvent, void* eventHandle, u32 config);
SimResult lf_close(SimHandle handle);
SimResult lf_callDispatch(SimHandle handle, SimDispatch dispatch, void* context);
SimResult lf_getLastSentPacketId(SimHandle handle, u32* packetId);

SimResult lf_addToDataDefinition(SimHandle handle, u32 definition, const char* variable, const char* unit, u32 type,
                                 f32 epsilon, u32 datumId);
SimResult lf_requestData(SimHandle handle, u32 request, u32 definition, u32 object, u32 period, u32 flags, u32 origin,
                         u32 interval, u32 limit);
SimResult lf_requestDataByType(SimHandle handle, u32 request, u32 definition, u32 radiusMetres, u32 objectType);
SimResult lf_setData(SimHandle handle, u32 definition, u32 object, u32 flags, u32 arrayCount, u32 unitSize, void* data);

SimResult lf_mapClientEvent(SimHandle handle, u32 event, const char* name);
SimResult lf_addClientEventToGroup(SimHandle handle, u32 group, u32 event, i32 maskable);
SimResult lf_setGroupPriority(SimHandle handle, u32 group, u32 priority);
SimResult lf_subscribe(SimHandle handle, u32 event, const char* name);
SimResult lf_transmit(SimHandle handle, u32 object, u32 event, u32 data, u32 group, u32 flags);

SimResult lf_createAircraft(SimHandle handle, const char* title, const char* tailNumber,
                            SIMCONNECT_DATA_INITPOSITION position, u32 request);
SimResult lf_releaseControl(SimHandle handle, u32 object, u32 request);
SimResult lf_removeObject(SimHandle handle, u32 object, u32 request);
SimResult lf_setFlightPlan(SimHandle handle, u32 object, const char* path, u32 request);

}  // namespace hcr
