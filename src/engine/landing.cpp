#include "engine/landing.h"

#include <algorithm>

#include "core/model/aircraft_class.h"
#include "core/model/geo.h"
#include "core/model/park_state.h"
#include "core/model/tables.h"
#include "engine/leg.h"
#include "sim/aircraft.h"

namespace hcr {
namespace {

constexpr f64 kApproachAglJet = 2050, kApproachAglOther = 625;  // feet
constexpr f64 kCleanAgl = 2400, kFlaps2Agl = 2000;              // feet
constexpr f64 kDescendingVs = -250, kClimbingVs = 400;          // feet per minute
constexpr f64 kLevelVs = 100, kGoAroundVs = 600;
constexpr f64 kNearAirportNm = 10;
constexpr f64 kFlareAgl = 400;                                 // feet; nothing of a flare happens above
constexpr f64 kFlarePitch = -0.06981317007977318;              // 4 degrees nose up
constexpr f64 kLeverReverse = 100, kLeverReverseFsltl = -100;  // percent

struct FlareStep {
    f64 height;  // feet above the height when standing
    f64 dAlt;    // feet per cs
    f64 vs;      // feet per minute
};
constexpr FlareStep kFlare[] = {{30, -0.1, -601}, {20, -0.075, -450}, {10, -0.05, -300}, {3, -0.025, -150}};

void lf_highConfig(LiveAc& ac) {
    decayLimits(ac);
    gf_setCabinLight(ac.objectId, true);
    ac.takeOffRun = ac.landing = false;
    const f64 vs = ac.stream[0].vs;
    if (vs <= kDescendingVs && ac.throttleIndex == 3) {
        gf_setThrottle(ac, throttleFor(ac, 2));
    } else if (vs > kClimbingVs && ac.throttleIndex == 4) {
        gf_setThrottle(ac, throttleFor(ac, 3));
    }
    if (ac.agl >= kCleanAgl) {
        gf_setGear(ac, false);
        gf_setFlaps(ac, 0);
    } else if (vs <= kLevelVs) {
        const i32 flaps = ac.flapsIndex;
        if (flaps == 0) {
            gf_setFlaps(ac, 1);
        } else if (flaps == 1 && ac.agl < kFlaps2Agl) {
            gf_setFlaps(ac, 2);
        }
    }
}

void lf_startApproach(LiveAc& ac) {
    gf_setThrottle(ac, throttleFor(ac, 1));
    gf_setFlaps(ac, 3);
    gf_setGear(ac, true);
    gCoupledQueue.push_back(ac.hexid);
    ac.landing = true;
    ac.cleanConfig = false;
    ac.standLat = ac.standLon = ac.standHeading = 0;
    ac.standId = 0;
    ac.standCargo = false;
    ac.groundRunCount = 1;
    setLimits(ac);
}

void lf_goOn(LiveAc& ac) {
    if (ac.cleanConfig) return;
    decayLimits(ac);
    gf_setThrottle(ac, 4);
    gf_setGear(ac, false);
    gf_setFlaps(ac, 0);
    ac.cleanConfig = true;
    ac.flarePhase = 0;
    ac.landing = false;
}

void lf_approachCheck(LiveAc& ac) {
    gf_setCabinLight(ac.objectId, false);
    const f64 vs = ac.stream[0].vs;
    const bool near =
        gf_hasParkAirport() && distanceNm(gParkAirport.lat, gParkAirport.lon, ac.lat, ac.lon) <= kNearAirportNm;
    if (vs <= kDescendingVs && !ac.landing && near) {
        lf_startApproach(ac);
    } else if (vs > kGoAroundVs || (vs > kDescendingVs && ac.landing && !near)) {
        lf_goOn(ac);
    }
}

/// Height that the step of the flare is judged by.
f64 lf_flareHeight(LiveAc& ac) {
    if (ac.flarePhase != 0) {
        ac.flareGroundValid = false;
        return ac.agl;
    }
    ac.flareGroundValid = gf_hasParkAirport();
    ac.flareGround = gf_parkAirportAlt(0);
    ac.fieldAltAgl = ac.flareGroundValid ? ac.alt - ac.flareGround : ac.agl;
    return std::min(ac.agl, ac.fieldAltAgl);
}

void lf_touchDown(LiveAc& ac) {
    ac.rollOutFlare = ac.rollOut = true;
    ac.touchdownHeading = ac.heading;
    ac.landing = ac.tookOffHere = false;
    ac.landedHere = true;
    gf_setSpoilers(ac, true);
    if (ac.acClass != Light) {
        const f64 lever = ac.fsltlModel ? kLeverReverseFsltl : kLeverReverse;
        gf_writeThrottleSpoilers(ac.objectId, 100, lever, lever);
    }
    ac.dBank = (0 - ac.bank) / ac.touchdownTicks;
    ac.dPitch = (ac.groundPitch - ac.pitch) / ac.touchdownTicks;
    gCoupledQueue.push_back(ac.hexid);
}

}  // namespace

void lf_lowAltitudeConfig(LiveAc& ac) {
    if (!ac.climbLightsDone) {
        ac.above10000Done = false;
        ac.climbLightsDone = true;
        gf_setLights(ac.objectId, Lights{1, 1, 1, 1, 1, 1, 1});
    }
    const bool jet = ac.acClass == Buzjets || ac.acClass == Large || ac.acClass == Heavy;
    if (ac.agl > (jet ? kApproachAglJet : kApproachAglOther)) {
        lf_highConfig(ac);
    } else {
        lf_approachCheck(ac);
    }
}

void lf_flareStep(LiveAc& ac) {
    if (!(ac.agl <= kFlareAgl) || !ac.landing || ac.onGround) return;
    const f64 height = lf_flareHeight(ac);
    if (ac.flarePhase < 0 || ac.flarePhase >= static_cast<i32>(std::size(kFlare))) return;
    const FlareStep& step = kFlare[ac.flarePhase];
    if (!(ac.staticCgFt + step.height >= height)) return;
    if (ac.flarePhase == 0) ac.dPitch = (kFlarePitch - ac.pitch) / ac.flareTicks;
    if (ac.flarePhase == 2) gf_setThrottle(ac, 0);
    ac.dAlt = step.dAlt;
    ac.stream.front().vs = step.vs;
    ++ac.flarePhase;
}

void lf_onAiStatus(LiveAc& ac, const SimMessage& message) {
    const bool touched = message.id == 1 && !ac.onGround && ac.groundRunCount <= 1 &&
                         ac.lifeState != LifeState::removingfromsim && ac.flightState != FlightState::take_off;
    if (touched) {
        if (ac.flarePhase != 0 || ac.landing) lf_touchDown(ac);
        ac.onGround = true;
        ac.dAlt = 0;
        ac.groundRunCount = 1;
    }
    ac.agl = message.b;
    if (ac.onGround || ac.groundRunCount >= 2) ac.alt = message.a + ac.staticCgFt;
}

}  // namespace hcr
