#pragma once

#include <cstdint>
#include <mutex>

#include "sim/port/sandbox/world.h"
#include "sim/port/sim_port.h"

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
/// The number that a session's handle is.
std::uintptr_t gf_sandboxNumber(SimHandle handle);

}  // namespace hcr
