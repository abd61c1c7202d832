#include "engine/take_off.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/model/aircraft_class.h"
#include "core/model/geo.h"
#include "core/model/labels.h"
#include "engine/leg.h"
#include "shell/log.h"
#include "sim/aircraft.h"

namespace hcr {
namespace {

constexpr f64 kClimbingVs = 256;       // feet per minute: samples above it are in a climb
constexpr f64 kLeastRise = 0.1;        // feet
constexpr f64 kEndOfTakeOffAgl = 800;  // feet
constexpr i32 kGearUpCount = -300;     // cs behind the lift-off, counted down
constexpr i32 kLastCount = -1000;      // further down nothing changes any more
constexpr Lights kTakeOffLights{.nav = 1, .beacon = 1, .landing = 1, .taxi = 1, .strobes = 1, .logo = 1};

template <typename Test>
bool lf_allAhead(const LiveAc& ac, Test test) {
    return std::all_of(ac.stream.begin() + 1, ac.stream.end(), test);
}

/// Part of the full rate at which the aircraft climbs so many cs behind the lift-off.
f64 lf_climbShare(i32 count) {
    if (count >= 0) return 0;
    if (count > -100) return 0.1;
    if (count > -200) return 0.2;
    if (count > -300) return 0.5;
    return 1;
}

void lf_endTakeOff(LiveAc& ac) {
    ac.dPitch = 0;
    if (ac.agl < kEndOfTakeOffAgl) return;
    gf_setThrottle(ac, throttleFor(ac, 3));
    setFlightState(ac, FlightState::flying);
    ac.groundRunCount = 1;
}

void lf_climbOut(LiveAc& ac) {
    const i32 count = ac.groundRunCount;
    ac.bank = std::clamp(ac.bank + ac.dBank, -kPi, kPi);
    if (ac.pitch > ac.climbPitch) ac.pitch += (ac.climbPitch - ac.rotationPitch) / ac.climbPitchTicks;
    ac.alt += ac.dAlt * lf_climbShare(count);
    if (count == kGearUpCount) gf_setGear(ac, false);
    if (count < kGearUpCount && ac.pitch <= ac.climbPitch) lf_endTakeOff(ac);
}

}  // namespace

void lf_startTakeOffRun(LiveAc& ac) {
    if (ac.towed) gf_logError(fmt::format("towed aircraft takes-off? {}", liveAcLabel(ac)));
    ac.takeOffRun = true;
    gf_setThrottle(ac, 0);
    gf_setSpoilers(ac, false);
    gf_setFlaps(ac, 1);
    ac.landing = ac.landedHere = ac.cleanConfig = false;
    gf_setLights(ac.objectId, kTakeOffLights);
    setLimits(ac);
}

void lf_startRotation(LiveAc& ac) {
    ac.groundRunCount = std::max(ac.rotationTicks, 1);
    ac.bank = ac.dBank = 0;
    ac.dPitch = (ac.rotationPitch - ac.pitch) / ac.groundRunCount;
    if (!ac.takeOffRun) lf_startTakeOffRun(ac);
    setFlightState(ac, FlightState::take_off);
    ac.tookOffHere = true;
    ac.dHeading = 0;
    ac.curve = GroundCurve{};
    if (!ac.rollOut) return;
    // A go-around from the runway: the spoilers of the touchdown go down with it.
    ac.rollOut = false;
    ac.landing = ac.landedHere = false;
    gf_setSpoilers(ac, false);
    gf_setThrottle(ac, 4);
    gf_setFlaps(ac, 1);
}

void lf_checkRotation(LiveAc& ac) {
    const bool climbing = lf_allAhead(ac, [](const PosSample& s) { return s.vs > kClimbingVs; });
    const bool airborne = lf_allAhead(ac, [](const PosSample& s) { return s.airborne; });
    if (!climbing) {
        const f64 least = classValue(kTakeOffMinSpeed, ac.acClass);
        if (!lf_allAhead(ac, [least](const PosSample& s) { return s.speed >= least; }) || !airborne) return;
        ac.dAlt = ac.maxClimbPerCs;
    } else if (!airborne) {
        ac.dAlt = ac.maxClimbPerCs;
    } else {
        ac.dAlt = std::max(ac.stream[1].alt - ac.alt, kLeastRise) / legTicksLeft(ac);
    }
    lf_startRotation(ac);
}

void lf_takeOffStep(LiveAc& ac) {
    ac.groundRunCount = std::max(ac.groundRunCount - 1, kLastCount);
    if (ac.groundRunCount >= 1) {
        ac.onGround = false;
        if (ac.pitch > ac.rotationPitch) ac.pitch += ac.dPitch;
    } else {
        lf_climbOut(ac);
    }
}

void lf_touchAndGo(LiveAc& ac) {
    ac.flightState = FlightState::taxi;
    ac.takeOffRun = true;
    gf_setThrottle(ac, 3);
    gf_setSpoilers(ac, false);
    gf_setFlaps(ac, 1);
    ac.landing = ac.landedHere = ac.cleanConfig = false;
    gf_setLights(ac.objectId, kTakeOffLights);
    setLimits(ac);
}

}  // namespace hcr
