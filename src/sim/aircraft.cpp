#include "sim/aircraft.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "core/model/aircraft_class.h"
#include "core/model/labels.h"
#include "core/model/tables.h"
#include "liveries/match_memory.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/parameters.h"
#include "shell/random.h"
#include "shell/run_stop.h"
#include "sim/definitions.h"
#include "sim/drain.h"
#include "sim/session.h"

namespace hcr {

std::atomic<u32> gSelectedObject{0};

namespace {

constexpr u32 kFullScale = 16383;  // of the simulator's axis events
constexpr std::array<u32, 5> kFlapsValues = {0, 3072, 10240, kFullScale, 0};
constexpr std::array<u32, 5> kThrottleValues = {0, 4914, 8191, 11468, kFullScale};
constexpr std::size_t kTooManyFailedTitles = 20;  // so many point to a wrong or broken installation

/// gSimMutex is held by the caller.
void lf_pushEvent(u32 objectId, u32 event, u32 data) {
    gEventQueue.push_back({objectId, event, data});
}

void lf_queueEvent(u32 objectId, u32 event, u32 data) {
    const std::lock_guard lock(gSimMutex);
    lf_pushEvent(objectId, event, data);
}

bool lf_isLive(const ParkedAc& ac) {
    return ac.hexid > kLastStaticId;
}

template <typename Queue>
bool lf_takeRequest(Queue& queue, std::string_view callsign) {
    const auto found = std::find_if(queue.begin(), queue.end(), [callsign](const AiCreateRequest& request) {
        return request.callsign == callsign;
    });
    if (found == queue.end()) return false;
    queue.erase(found);
    return true;
}

/// True when the aircraft's creation was still on its way to the simulator and has been called off.
bool lf_callOffCreate(const ParkedAc& ac) {
    if (lf_takeRequest(gLiveAdding, ac.callsign) || lf_takeRequest(gParkedAdding, ac.callsign)) return true;
    if (const auto found = std::find(gAddingStack.begin(), gAddingStack.end(), ac.hexid); found != gAddingStack.end()) {
        gAddingStack.erase(found);
        return true;
    }
    const std::lock_guard lock(gSimMutex);
    return lf_takeRequest(gCreateQueue, ac.callsign);
}

void lf_clearSelection(const ParkedAc& ac) {
    if (lf_isLive(ac) && ac.objectId != 0) {
        u32 selected = ac.objectId;
        gSelectedObject.compare_exchange_strong(selected, 0);
    }
}

void lf_removeObject(ParkedAc& ac) {
    // An object is asked away once only: its number may belong to another one by the time of a second request.
    const bool asked = ac.lifeState == LifeState::liveryrespawn || ac.lifeState == LifeState::removingfromsim;
    if (lf_isLive(ac) && ac.standId != 0) {
        if (ParkPos* stand = findStand(ac.standId)) stand->takenByLive = false;
    }
    ac.lifeState = LifeState::removingfromsim;
    lf_clearSelection(ac);
    if (asked) return;
    if (ac.objectId != 0) {
        gRemovedObjects.push_back(ac.objectId);
    } else {
        gf_logError(fmt::format("{} removing act {}, with objectid=0 ?", "removeAircraftFromSim", liveAcLabel(ac)));
    }
}

}  // namespace

void gf_resetSelection() {
    gSelectedObject = 0;
}

void removeAircraftFromSim(ParkedAc& ac) {
    switch (ac.lifeState) {
        case LifeState::buffer:
            (lf_isLive(ac) ? ac.eraseLive : ac.erase) = true;
            break;
        case LifeState::adding2sim:
            if (lf_callOffCreate(ac)) {
                ac.erase = true;
            } else {
                ac.removeWhenCreated = true;
            }
            break;
        default:
            if (!ac.removeWhenCreated) lf_removeObject(ac);
    }
}

void gf_engineStart(u32 objectId) {
    lf_queueEvent(objectId, ENGINE_AUTO_START, 0);
}

void gf_engineStop(u32 objectId) {
    lf_queueEvent(objectId, ENGINE_AUTO_SHUTDOWN, 0);
}

void gf_setLights(u32 objectId, const Lights& lights) {
    const std::lock_guard lock(gSimMutex);
    lf_pushEvent(objectId, NAV_LIGHTS_SET, lights.nav);
    lf_pushEvent(objectId, BEACON_LIGHTS_SET, lights.beacon);
    lf_pushEvent(objectId, LANDING_LIGHTS_SET, lights.landing);
    lf_pushEvent(objectId, TAXI_LIGHTS_SET, lights.taxi);
    lf_pushEvent(objectId, STROBES_SET, lights.strobes);
    lf_pushEvent(objectId, LOGO_LIGHTS_SET, lights.logo);
    lf_pushEvent(objectId, CABIN_LIGHTS_SET, lights.cabin);
}

void gf_setNavLight(u32 objectId, bool on) {
    lf_queueEvent(objectId, NAV_LIGHTS_SET, on ? 1 : 0);
}

void gf_setCabinLight(u32 objectId, bool on) {
    lf_queueEvent(objectId, CABIN_LIGHTS_SET, on ? 1 : 0);
}

void gf_setGear(const ParkedAc& ac, bool down) {
    if (ac.acClass != Rotorcraft) lf_queueEvent(ac.objectId, GEAR_SET, down ? 1 : 0);
}

void gf_setSpoilers(const ParkedAc& ac, bool on) {
    if (ac.acClass != Rotorcraft) lf_queueEvent(ac.objectId, SPOILERS_SET, on ? kFullScale : 0);
}

void gf_setFlaps(ParkedAc& ac, i32 index) {
    if (index == ac.flapsIndex) return;
    ac.flapsIndex = index;
    if (ac.acClass == Rotorcraft) return;
    if (index < 0 || index >= static_cast<i32>(kFlapsValues.size())) {
        gf_logError("gf_setFlaps: invalid flaps index");
        return;
    }
    lf_queueEvent(ac.objectId, FLAPS_SET, kFlapsValues[static_cast<std::size_t>(index)]);
}

void gf_setThrottle(ParkedAc& ac, i32 index) {
    if (index == ac.throttleIndex) return;
    ac.throttleIndex = index;
    if (index < 0 || index >= static_cast<i32>(kThrottleValues.size())) return;
    lf_queueEvent(ac.objectId, THROTTLE_SET, kThrottleValues[static_cast<std::size_t>(index)]);
}

void gf_applyParkedState(ParkedAc& ac) {
    gf_setThrottle(ac, 0);
    gf_setFlaps(ac, 0);
    gf_engineStop(ac.objectId);
    Lights lights;
    lights.nav = NAV_LIGHTS_WHILE_PARKED.current ? 1 : 0;
    lights.logo = 1;
    // One aircraft in ten stays dark; without RANDOM the draw is 0, and all are lit.
    lights.cabin = !ac.standCargo && gf_randomBelow(10) < 9 ? 1 : 0;
    gf_setLights(ac.objectId, lights);
}

void gf_setFreeze(u32 objectId) {
    lf_pushEvent(objectId, FREEZE_LATITUDE_LONGITUDE_SET, 1);
    lf_pushEvent(objectId, FREEZE_ALTITUDE_SET, 1);
    lf_pushEvent(objectId, FREEZE_ATTITUDE_SET, 1);
}

void gf_allLightsToggle(u32 objectId) {
    const std::lock_guard lock(gSimMutex);
    if (gSimHandle == nullptr || gRequestError) return;
    if (gSimPort.SimConnect_TransmitClientEvent(gSimHandle, objectId, ALL_LIGHTS_TOGGLE, 0, kEventGroup, 0) < 0) {
        gf_log("SimConnect gf_allLightsToggle fails");
    }
}

void gf_writeThrottleSpoilers(u32 objectId, f64 spoilers, f64 lever1, f64 lever2) {
    std::array<f64, 3> percent = {spoilers, lever1, lever2};
    const std::lock_guard lock(gSimMutex);
    if (gSimHandle == nullptr || gRequestError) return;
    gSimPort.SimConnect_SetDataOnSimObject(gSimHandle, kDefThrottleSpoilers, objectId, 0, 0, sizeof(percent),
                                           percent.data());
}

void gf_onCreateFailed(const ParkedAc& ac) {
    if (!gf_stopAsked()) {
        gf_showMessage(fmt::format("{} '{}' could not be created by your Sim!", ac.callsign, ac.liveryTitle), true);
    }
    failedTitles.emplace(ac.liveryTitle);
    failedModels.insert(fmt::format("{} {}", ac.model, ac.airline));
    if (failedTitles.size() < kTooManyFailedTitles) return;
    const std::string text = fmt::format("There are too many liveries that could not be created by {}!", "MSFS");
    gf_log(fmt::format("\n{}Error 81, {}\n", "===> ", text));
    throw UserErrorException(81, fmt::format("{}, see Log.txt", text));
}

std::string_view gf_refusedTitle(std::string_view logLine) {
    constexpr std::string_view kBefore = " '", kBehind = "' could not be created by your Sim!";
    const std::size_t begin = logLine.find(kBefore);
    if (begin == std::string_view::npos || !logLine.ends_with(kBehind)) return {};
    const std::size_t first = begin + kBefore.size(), end = logLine.size() - kBehind.size();
    return first < end ? logLine.substr(first, end - first) : std::string_view{};
}

}  // namespace hcr
