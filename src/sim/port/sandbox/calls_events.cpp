#include "sim/port/sandbox/calls_events.h"

#include "sim/port/sandbox/port_call.h"

namespace hcr {
namespace {

constexpr u32 kGroupIsPriority = 0x10;  // flag of a transmit call: the group argument is a priority

template <class... Fields>
void lf_trace(SandboxCall& call, const char* name, const Fields&... fields) {
    gf_sandboxTraceLine(call.world.trace, call.world.now, "call", name, fields..., "packet", call.packet);
}

}  // namespace

SimResult lf_mapClientEvent(SimHandle handle, u32 event, const char* name) {
    constexpr const char* kName = "SimConnect_MapClientEventToSimEvent";
    SandboxCall call = gf_sandboxBegin(kName, handle, name != nullptr);
    if (!call.sent()) return call.result;
    lf_trace(call, kName, "event", event, "name", name);
    SandboxSimEvent simEvent{};
    if (!gf_sandboxSimEvent(name, simEvent)) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_NAME_UNRECOGNIZED, 2);
    if (!call.session.events.emplace(event, simEvent).second) {
        return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_EVENT_ID_DUPLICATE, 1);
    }
    return kSandboxOk;
}

SimResult lf_addClientEventToGroup(SimHandle handle, u32 group, u32 event, i32 maskable) {
    constexpr const char* kName = "SimConnect_AddClientEventToNotificationGroup";
    SandboxCall call = gf_sandboxBegin(kName, handle);
    if (!call.sent()) return call.result;
    lf_trace(call, kName, "group", group, "event", event, "maskable", maskable);
    if (!call.session.events.contains(event)) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_UNRECOGNIZED_ID, 2);
    if (!call.session.groups[group].insert(event).second) {
        return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_DUPLICATE_ID, 2);
    }
    return kSandboxOk;
}

SimResult lf_setGroupPriority(SimHandle handle, u32 group, u32 priority) {
    constexpr const char* kName = "SimConnect_SetNotificationGroupPriority";
    SandboxCall call = gf_sandboxBegin(kName, handle);
    if (!call.sent()) return call.result;
    lf_trace(call, kName, "group", group, "priority", priority);
    if (!call.session.groups.contains(group)) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_UNRECOGNIZED_ID, 1);
    return kSandboxOk;
}

SimResult lf_subscribe(SimHandle handle, u32 event, const char* name) {
    constexpr const char* kName = "SimConnect_SubscribeToSystemEvent";
    SandboxCall call = gf_sandboxBegin(kName, handle, name != nullptr);
    if (!call.sent()) return call.result;
    lf_trace(call, kName, "event", event, "name", name);
    SandboxSession& session = call.session;
    SandboxSystemEvent systemEvent{};
    if (!gf_sandboxSystemEvent(name, systemEvent)) {
        return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_NAME_UNRECOGNIZED, 2);
    }
    const auto index = static_cast<std::size_t>(systemEvent);
    if (session.subscribes[index]) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_ALREADY_SUBSCRIBED, 2);
    for (std::size_t i = 0; i < kSandboxSystemEvents; ++i) {
        if (session.subscribes[i] && session.subscribed[i] == event) {
            return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_EVENT_ID_DUPLICATE, 1);
        }
    }
    session.subscribes[index] = true;
    session.subscribed[index] = event;
    if (systemEvent == SandboxSystemEvent::sim) {  // the present state comes at once
        gf_sandboxSendEvent(call.world, systemEvent, gf_sandboxRuns(call.world) ? 1 : 0);
    }
    return kSandboxOk;
}

SimResult lf_transmit(SimHandle handle, u32 object, u32 event, u32 data, u32 group, u32 flags) {
    constexpr const char* kName = "SimConnect_TransmitClientEvent";
    SandboxCall call = gf_sandboxBegin(kName, handle);
    if (!call.sent()) return call.result;
    SandboxSession& session = call.session;
    lf_trace(call, kName, "object", object, "event", event, "data", data, "group", group, "flags", flags);
    SandboxAircraft* ac = gf_sandboxFind(call.world, object);
    if (!ac) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_UNRECOGNIZED_ID, 1);
    const auto mapped = session.events.find(event);
    if (mapped == session.events.end()) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_UNRECOGNIZED_ID, 2);
    if ((flags & kGroupIsPriority) == 0 && !session.groups.contains(group)) {
        return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_UNRECOGNIZED_ID, 4);
    }
    ++call.world.counters.events;
    gf_sandboxApplyEvent(*ac, mapped->second, data, call.world.now);
    return kSandboxOk;
}

}  // namespace hcr
