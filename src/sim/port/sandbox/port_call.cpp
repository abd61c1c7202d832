#include "sim/port/sandbox/port_call.h"

namespace hcr {

std::uintptr_t gf_sandboxNumber(SimHandle handle) {
    return reinterpret_cast<std::uintptr_t>(handle);
}

bool gf_sandboxHandleValid(const SandboxWorld& world, SimHandle handle) {
    return world.started && world.session.open && gf_sandboxNumber(handle) == world.session.handle;
}

bool gf_sandboxFails(SandboxWorld& world, const char* name) {
    if (world.failing.empty()) return false;
    const auto found = world.failing.find(name);
    if (found == world.failing.end()) return false;
    if (--found->second <= 0) world.failing.erase(found);
    return true;
}

SandboxCall gf_sandboxBegin(const char* name, SimHandle handle, bool valid) {
    SandboxCall call{std::unique_lock(gSandboxMutex), gSandbox, gSandbox.session};
    if (!gf_sandboxHandleValid(call.world, handle) || call.world.gone || gf_sandboxFails(call.world, name)) {
        call.result = kSandboxFail;
        if (call.world.started) {
            gf_sandboxTraceLine(call.world.trace, call.world.now, "call", name, "result", call.result);
        }
        return call;
    }
    if (!valid) {
        call.result = kSandboxBadArgument;
        return call;
    }
    call.packet = ++call.session.packet;
    ++call.world.counters.calls;
    return call;
}

SimResult gf_sandboxRefuse(SandboxCall& call, SimException exception, u32 index) {
    gf_sandboxSendException(call.world, exception, call.packet, index);
    return kSandboxOk;
}

}  // namespace hcr
