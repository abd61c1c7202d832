#include "sim/drain.h"

#include <fmt/format.h>

#include <iterator>
#include <string>
#include <utility>

#include "core/model/tables.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/time_text.h"
#include "sim/definitions.h"
#include "sim/session.h"
#include "sim/traffic_counters.h"

namespace hcr {

std::vector<PositionCommand> gPosQueueFront, gPosQueueBack;
std::vector<EventCommand> gEventQueue;
std::vector<AiCreateRequest> gCreateQueue;
std::vector<u32> gRemovalQueue;
std::vector<PendingCreate> gPendingCreates;

namespace {

constexpr std::size_t kReservedCommands = 256;
constexpr i32 kRemovalTicks = 10;   // ten removals per second
constexpr i32 kCreationTicks = 50;  // two creations per second: a burst of them stalls the simulator
constexpr f32 kFastFrameRate = 50;  // above it the lock is free again so soon that waiting costs less than dropping

template <typename T>
void lf_prepare(std::vector<T>& queue) {
    queue = {};
    queue.reserve(kReservedCommands);
}

void lf_emptyQueues() {
    gPosQueueFront.clear();
    gEventQueue.clear();
    gCreateQueue.clear();
    gRemovalQueue.clear();
}

void lf_sendPositions() {
    const u32 user = gUserObjectId;
    u64 written = 0;
    for (PositionCommand& command : gPosQueueFront) {
        if (command.objectId <= user) continue;
        gSimPort.SimConnect_SetDataOnSimObject(gSimHandle, kDefPosition, command.objectId, 0, 0, sizeof(PositionBlock),
                                               &command.block);
        ++written;
    }
    gSimTraffic.positionWrites += written;
    gPosQueueFront.clear();
}

/// The simulator's AI takes an object back when its flaps are set; it is released on both sides of the event.
void lf_sendEvent(const EventCommand& command) {
    const bool flaps = command.eventId == FLAPS_SET;
    ++gSimTraffic.events;
    if (flaps) gSimPort.SimConnect_AIReleaseControl(gSimHandle, command.objectId, kReqRelease);
    if (gSimPort.SimConnect_TransmitClientEvent(gSimHandle, command.objectId, command.eventId, command.data,
                                                kEventGroup, 0) < 0) {
        gf_showMessage(fmt::format("SimConnect TransmitClientEvent: {} fails", command.eventId), false);
        return;
    }
    if (flaps) gSimPort.SimConnect_AIReleaseControl(gSimHandle, command.objectId, kReqRelease);
}

void lf_sendCreate(AiCreateRequest& request) {
    SIMCONNECT_DATA_INITPOSITION position{};
    position.Latitude = request.lat;
    position.Longitude = request.lon;
    position.Altitude = request.alt;
    position.Pitch = request.pitch;
    position.Bank = request.bank;
    position.Heading = request.heading;
    position.OnGround = request.onGround;
    position.Airspeed = request.airspeed;
    const std::string title(request.title);  // a view has no zero end
    if (gSimPort.SimConnect_AICreateNonATCAircraft(gSimHandle, title.c_str(), request.callsign.c_str(), position,
                                                   kReqCreate) < 0) {
        gf_logError(fmt::format("! Simcon call to create ac in sim failed, hexid:{}, liv: '{}', callsign: {})",
                                request.id, title, request.callsign));
        gf_raiseRequestError();
        return;
    }
    ++gSimTraffic.created;
    u32 packetId = 0;
    if (gSimPort.SimConnect_GetLastSentPacketID(gSimHandle, &packetId) < 0) {
        gf_logError("GetLastSentPacketID");
        packetId = 0;
    }
    gPendingCreates.push_back({packetId, request.id, std::move(request.callsign)});
}

void lf_sendRemoval(u32 objectId) {
    if (objectId <= gUserObjectId) {
        gf_log(fmt::format("SimConnect call to remove ac with objectid {}", objectId));
        return;
    }
    if (gSimPort.SimConnect_AIRemoveObject(gSimHandle, objectId, kReqRemove) < 0) {
        gf_logError(
            fmt::format("{} !SimConnect call to remove AI ac from sim failed, id {}?", gf_timeOfDay(), objectId));
        gf_raiseRequestError();
        return;
    }
    ++gSimTraffic.removed;
}

}  // namespace

PendingCreate gf_takePendingCreate(std::vector<PendingCreate>::iterator entry) {
    PendingCreate taken = std::move(*entry);
    if (entry != std::prev(gPendingCreates.end())) *entry = std::move(gPendingCreates.back());
    gPendingCreates.pop_back();
    return taken;
}

void gf_queueCreate(AiCreateRequest request) {
    const std::lock_guard lock(gSimMutex);
    gCreateQueue.push_back(std::move(request));
}

void gf_resetQueues() {
    const std::lock_guard lock(gSimMutex);
    lf_prepare(gPosQueueFront);
    lf_prepare(gPosQueueBack);
    lf_prepare(gEventQueue);
    lf_prepare(gCreateQueue);
    lf_prepare(gRemovalQueue);
    lf_prepare(gPendingCreates);
}

void gf_drainQueues() {
    const std::unique_lock lock(gSimMutex, std::try_to_lock);
    if (!lock.owns_lock()) return;
    if (gRequestError || gSimHandle == nullptr) {
        lf_emptyQueues();
        return;
    }
    lf_sendPositions();
    for (const EventCommand& command : gEventQueue) lf_sendEvent(command);
    gEventQueue.clear();
    // A refused create or removal raises the request error, after which nothing more goes out.
    for (AiCreateRequest& request : gCreateQueue) {
        if (!gRequestError) lf_sendCreate(request);
    }
    gCreateQueue.clear();
    for (const u32 objectId : gRemovalQueue) {
        if (!gRequestError) lf_sendRemoval(objectId);
    }
    gRemovalQueue.clear();
}

void gf_swapPositionBuffers() {
    std::unique_lock lock(gSimMutex, std::try_to_lock);
    if (!lock.owns_lock() && gFrameRate > kFastFrameRate) lock.lock();
    if (lock.owns_lock()) gPosQueueFront.swap(gPosQueueBack);
    gPosQueueBack.clear();
}

void gf_clearPositionBuffers() {
    const std::lock_guard lock(gSimMutex);
    gPosQueueFront.clear();
    gPosQueueBack.clear();
}

bool gf_paceQueues(i32 tick) {
    if (tick % kRemovalTicks == 0 && !gRemovedObjects.empty()) {
        const std::lock_guard lock(gSimMutex);
        gRemovalQueue.push_back(gRemovedObjects.front());
        gRemovedObjects.pop_front();
    }
    if (tick % kCreationTicks != 0) return false;
    std::deque<AiCreateRequest>& waiting = gLiveAdding.empty() ? gParkedAdding : gLiveAdding;
    if (!waiting.empty()) {
        gf_queueCreate(std::move(waiting.front()));
        waiting.pop_front();
    }
    return true;
}

}  // namespace hcr
