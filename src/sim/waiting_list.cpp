#include "sim/waiting_list.h"

#include <fmt/format.h>

#include "core/model/aircraft_class.h"
#include "core/model/labels.h"
#include "core/model/tables.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "sim/aircraft.h"

namespace hcr {

std::vector<SimMessage> gPendingObjects;

namespace {

// Passes of the waiting list, one per worker cycle. A new object takes no settings before the simulator has loaded its
// model, which takes some two seconds; the toggles wake its lights up.
constexpr i32 kFirstTogglePass = 50;
constexpr i32 kSecondTogglePass = 100;
constexpr i32 kReadyPass = 200;

constexpr std::size_t kReservedObjects = 256;  // room for a full sky

constexpr f64 kLandingLightsFt = 10000;  // lights off above it
constexpr f64 kCabinDarkBelowFt = 2000;  // cabin lights are dimmed for the last part of an approach

void lf_startInAir(LiveAc& ac, f64 altitude) {
    gf_engineStart(ac.objectId);
    gf_setSpoilers(ac, false);
    Lights lights;
    lights.nav = lights.beacon = lights.strobes = 1;
    lights.landing = lights.logo = altitude > kLandingLightsFt ? 0 : 1;
    lights.cabin = ac.agl < kCabinDarkBelowFt ? 0 : 1;
    gf_setLights(ac.objectId, lights);
}

void lf_startOnGround(LiveAc& ac) {
    const bool parked = ac.flightState == FlightState::parked;
    const bool taxi = ac.flightState == FlightState::taxi;
    gf_setSpoilers(ac, false);
    Lights lights;
    if (parked) {
        gf_engineStop(ac.objectId);
        lights.nav = NAV_LIGHTS_WHILE_PARKED.current ? 1 : 0;
    } else {
        gf_engineStart(ac.objectId);
        lights.nav = 1;
        lights.beacon = 1;
    }
    lights.taxi = taxi ? 1 : 0;
    lights.logo = lights.cabin = 1;
    gf_setLights(ac.objectId, lights);
    gf_setThrottle(ac, ac.acClass == Rotorcraft ? 4 : 0);
    gf_setFlaps(ac, taxi ? 1 : 0);
}

void lf_removeIfAsked(ParkedAc& ac) {
    if (!ac.removeWhenCreated) return;
    ac.removeWhenCreated = false;
    removeAircraftFromSim(ac);
}

void lf_liveReady(const SimMessage& waiting) {
    LiveAc* ac = findLiveByHexid(waiting.id);
    // A record of the same address may be a later one, whose own object is still to come.
    if (ac == nullptr || ac->objectId != waiting.object) return;
    const bool inAir = ac->stream.empty() ? !ac->onGround : ac->stream.back().airborne;
    if (inAir) {
        lf_startInAir(*ac, ac->stream.empty() ? ac->alt : ac->stream.back().alt);
    } else {
        lf_startOnGround(*ac);
    }
    ac->lifeState = LifeState::active;
    lf_removeIfAsked(*ac);
}

void lf_staticReady(const SimMessage& waiting) {
    ParkedAc* ac = findParkedByHexid(waiting.id);
    if (ac == nullptr) return;
    ac->objectId = waiting.object;
    ac->lifeState = LifeState::active;
    gf_applyParkedState(*ac);
    gf_log(fmt::format("{:8}: {:8} parked", standName(ac->standId), ac->callsign));
    lf_removeIfAsked(*ac);
}

/// One pass of one entry; true when it has done its time.
bool lf_pass(SimMessage& waiting) {
    ++waiting.counter;
    const bool live = waiting.kind == SimKind::liveCreated;
    if (live && (waiting.counter == kFirstTogglePass || waiting.counter == kSecondTogglePass)) {
        gf_allLightsToggle(waiting.object);
    }
    if (waiting.counter < kReadyPass) return false;
    if (live) {
        lf_liveReady(waiting);
    } else {
        lf_staticReady(waiting);
    }
    return true;
}

}  // namespace

void gf_passPendingObjects() {
    std::size_t kept = 0;
    for (SimMessage& waiting : gPendingObjects) {
        if (!lf_pass(waiting)) gPendingObjects[kept++] = waiting;
    }
    gPendingObjects.resize(kept);
}

void gf_resetPendingObjects() {
    gPendingObjects = {};
    gPendingObjects.reserve(kReservedObjects);
}

}  // namespace hcr
