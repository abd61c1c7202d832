#include "sim/port/sandbox/calls_session.h"

#include <atomic>

#include "platform/clock.h"
#include "sim/port/sandbox/port_call.h"
#include "sim/port/sandbox/timeline.h"

namespace hcr {
namespace {

std::atomic<std::uintptr_t> gLiveHandle{0};  // the open session's, read without the lock between two messages

void lf_sendOpen(SandboxWorld& world) {
    auto* message = gf_sandboxAdd<SIMCONNECT_RECV_OPEN>(world.session.waiting, SIMCONNECT_RECV_ID_OPEN);
    if (!message) return;
    const Scenario& s = world.scenario;
    gf_sandboxCopyText(message->szApplicationName, sizeof message->szApplicationName, s.applicationName);
    message->dwApplicationVersionMajor = s.versionMajor;
    message->dwApplicationVersionMinor = s.versionMinor;
    message->dwApplicationBuildMajor = s.buildMajor;
    message->dwApplicationBuildMinor = s.buildMinor;
    message->dwSimConnectVersionMajor = s.versionMajor;
    message->dwSimConnectVersionMinor = s.versionMinor;
    message->dwSimConnectBuildMajor = s.buildMajor;
    message->dwSimConnectBuildMinor = s.buildMinor;
}

bool lf_canOpen(SandboxWorld& world) {
    if (static_cast<f64>(gf_steadyUs() - world.startUs) / 1e6 < world.scenario.openAfter) return false;
    gf_sandboxAdvance(world);
    if (world.gone && world.now < world.backAt) return false;
    return !world.session.open || world.gone;
}

void lf_beginTime(SandboxWorld& world) {
    if (world.openUs < 0) {
        world.openUs = gf_steadyUs();
        world.utcAtZero = world.scenario.utcAtOpen > 0 ? world.scenario.utcAtOpen : gf_utcSeconds();
    }
    world.gone = false;
    if (!world.flight && world.flightAt == kNever) world.flightAt = world.now + world.scenario.flightAfter;
}

}  // namespace

SimResult lf_open(SimHandle* handle, const char* name, void*, u32, void*, u32) {
    const std::scoped_lock lock(gSandboxMutex);
    SandboxWorld& world = gSandbox;
    if (!handle || !name) return kSandboxBadArgument;
    *handle = nullptr;
    if (!world.started || gf_sandboxFails(world, "SimConnect_Open") || !lf_canOpen(world)) return kSandboxFail;
    static std::uintptr_t lastHandle = 0;
    lf_beginTime(world);
    world.session = SandboxSession{};
    world.session.open = true;
    world.session.handle = ++lastHandle;
    gLiveHandle = world.session.handle;
    *handle = reinterpret_cast<SimHandle>(world.session.handle);
    gf_sandboxTraceLine(world.trace, world.now, "call", "SimConnect_Open", "name", name);
    lf_sendOpen(world);
    return kSandboxOk;
}

SimResult lf_close(SimHandle handle) {
    const std::scoped_lock lock(gSandboxMutex);
    SandboxWorld& world = gSandbox;
    if (!gf_sandboxHandleValid(world, handle) || gf_sandboxFails(world, "SimConnect_Close")) return kSandboxFail;
    gf_sandboxTraceLine(world.trace, world.now, "call", "SimConnect_Close");
    gf_sandboxTraceFlush(world.trace);
    gLiveHandle = 0;
    world.session = SandboxSession{};
    gf_sandboxForgetAircraft(world);
    return kSandboxOk;
}

SimResult lf_callDispatch(SimHandle handle, SimDispatch dispatch, void* context) {
    SandboxOutbox delivered;
    {
        const std::scoped_lock lock(gSandboxMutex);
        SandboxWorld& world = gSandbox;
        if (!gf_sandboxHandleValid(world, handle)) return kSandboxFail;
        if (!dispatch) return kSandboxBadArgument;
        if (gf_sandboxFails(world, "SimConnect_CallDispatch")) return kSandboxFail;
        SandboxSession& session = world.session;
        if (world.gone && session.waiting.bytes.empty()) return kSandboxFail;
        delivered.bytes = std::move(session.spare);
        delivered.bytes.clear();
        delivered.bytes.swap(session.waiting.bytes);
        gf_sandboxAdvance(world);
    }
    gf_sandboxDeliver(delivered, dispatch, context, [handle] { return gLiveHandle == gf_sandboxNumber(handle); });
    const std::scoped_lock lock(gSandboxMutex);
    if (gf_sandboxHandleValid(gSandbox, handle)) gSandbox.session.spare = std::move(delivered.bytes);
    return kSandboxOk;
}

SimResult lf_getLastSentPacketId(SimHandle handle, u32* packetId) {
    const std::scoped_lock lock(gSandboxMutex);
    if (!gf_sandboxHandleValid(gSandbox, handle) || gf_sandboxFails(gSandbox, "SimConnect_GetLastSentPacketID")) {
        return kSandboxFail;
    }
    if (!packetId) return kSandboxBadArgument;
    *packetId = gSandbox.session.packet;
    return kSandboxOk;
}

}  // namespace hcr
