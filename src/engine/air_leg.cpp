#include "engine/air_leg.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/model/aircraft_class.h"
#include "core/model/geo.h"
#include "core/model/park_state.h"
#include "core/model/run_state.h"
#include "engine/ground.h"
#include "engine/landing.h"
#include "engine/leg.h"
#include "sim/aircraft.h"

namespace hcr {
namespace {

constexpr f64 kSpeedOnFinal = 100;          // knots, for an approach whose speed isn't known
constexpr f64 kHighAgl = 1000;              // feet; a take-off here doesn't sink before it is above
constexpr f64 kNeverSinkAgl = 100;          // feet; nobody sinks below without landing
constexpr f64 kLowestClimbPerCs = 0.2;      // feet per cs, about 1200 feet per minute
constexpr f64 kMostAhead = 45 * kDegToRad;  // so far the nose may point off the leg towards the next one
constexpr f64 kCatchUp = 0.1;               // share of a delay that is made good in one leg ...
constexpr f64 kCatchUpMost = 0.03;          // ... and of the leg's time that this may take ...
constexpr f64 kCatchUpMostLate = 0.1;       // ... while the aircraft is so late that it was seen to turn back or wait
constexpr f64 kVeryLateCs = 1000;
constexpr f64 kSharpCorner = 20 * kDegToRad;        // from here on a turn isn't spread over the whole leg
constexpr f64 kCornerRate = 6 * kDegToRad / 100;    // radians per cs of such a turn
constexpr f64 kLongLegs = 1.25;                     // only a leg so many times as long as the turn is split
constexpr f64 kFastestTurn = 15 * kDegToRad / 100;  // radians per cs; on a very short leg the nose doesn't snap round
constexpr f64 kShortestReplanCs = 100;  // what is left of a leg for a turn of which the report comes in its midst
constexpr f64 kRateMargin = 1.2;        // a reported climb or descent is followed so much faster than it is told
constexpr f64 kLowestSinkPerCs = -5000 / 6000.0;  // feet per cs, when no steeper descent is told
constexpr f64 kNoLongerSinkingVs = 100;           // feet per minute
constexpr f64 kTicksPerMinute = 6000;
constexpr f64 kLandingVs = -601;  // feet per minute
constexpr f64 kShortFinalVs = -600;
constexpr f64 kShortFinalAgl = 100;                // feet
constexpr f64 kTakeOffVs = 601;                    // feet per minute
constexpr i32 kStandardQnh = 1013;                 // hPa
constexpr f64 kStandardPressure = 1013.25;         // hPa
constexpr f64 kSinkPerHpa = 6;                     // feet per minute; the feed's altitudes are barometric
constexpr f64 kLevelPitch = -0.05235987755982989;  // 3 degrees nose up
constexpr f64 kPitchStepVs = 600;                  // feet per minute for each kPitchStepDeg
constexpr f64 kPitchStepDeg = 2.2;
constexpr f64 kSteepestDescent = -3000, kSteepestClimb = 2400;  // feet per minute, for the pitch
constexpr f64 kHeadingAgl = 1000, kHeadingAglLanding = 2000;    // feet; below, a reported true heading leads
constexpr f64 kHighAltitude = 10000;                            // feet
constexpr i32 kFirstSkip = 3, kLastSkip = 10;                   // samples looked at for a jump into the air

f64 lf_climbRate(const LiveAc& ac) {
    const PosSample& s2 = ac.stream[1];
    if (!(s2.alt > ac.alt)) return 0;
    return std::min((s2.alt - ac.alt) / legTicksLeft(ac), ac.maxClimbPerCs);
}

f64 lf_descentRate(const LiveAc& ac) {
    if (ac.agl <= kShortFinalAgl) return kShortFinalVs;
    const f64 mean = (ac.stream[0].vs + ac.stream[1].vs) / 2;
    return std::min(kLandingVs, mean) - (gQnh - kStandardPressure) * kSinkPerHpa;
}

void lf_descend(LiveAc& ac) {
    const f64 rate = lf_descentRate(ac);
    ac.stream[1].vs = ac.targetVs = rate;
    ac.dAlt = rate / kTicksPerMinute;
}

/// Makes sample k-1 of the stream the new S2 if it is in the air.
bool lf_skipTo(LiveAc& ac, std::size_t k) {
    if (ac.stream.size() < k || !ac.stream[k - 1].airborne) return false;
    for (std::size_t i = 2; i < k && ac.stream.size() >= 3; ++i) ac.stream.erase(ac.stream.begin() + 1);
    lf_setArrival(ac, legTicksAt(ac, lf_legSpeed(ac)));
    ac.targetVs = ac.stream[1].vs;
    ac.targetSpeed = ac.stream[1].tas;
    ac.dAlt = lf_climbRate(ac);
    return true;
}

bool lf_skipIntoTheAir(LiveAc& ac) {
    const std::size_t last = std::min<std::size_t>(kLastSkip, ac.stream.size() - 1);
    for (std::size_t k = kFirstSkip; k <= last; ++k) {
        if (lf_skipTo(ac, k)) return true;
    }
    return false;
}

/// Feet per cs below which the aircraft isn't to go whatever its reports say: right after take-off it climbs, and away
/// from an approach it doesn't sink into the ground.
f64 lf_lowestRate(const LiveAc& ac) {
    if (ac.tookOffHere) return kLowestClimbPerCs;
    if (ac.agl > kNeverSinkAgl) {
        const f64 told = std::min(ac.stream[0].vs, ac.stream[1].vs) / kTicksPerMinute;
        return std::min(kLowestSinkPerCs, told * kRateMargin);
    }
    return std::min(kLowestClimbPerCs, (kNeverSinkAgl - ac.agl) / legTicksLeft(ac));
}

f64 lf_highestRate(const LiveAc& ac) {
    const f64 told = std::max(ac.stream[0].vs, ac.stream[1].vs) / kTicksPerMinute;
    return std::max(ac.maxClimbPerCs, told * kRateMargin);
}

void lf_inAirToAir(LiveAc& ac) {
    const PosSample& s1 = ac.stream[0];
    const PosSample& s2 = ac.stream[1];
    const f64 rate = (s2.alt - ac.alt) / legTicksLeft(ac);
    if (!ac.landing) {
        ac.dAlt = std::min(std::max(rate, lf_lowestRate(ac)), lf_highestRate(ac));
    } else if (s1.alt != s2.alt || ac.agl > kHighAgl || s1.vs + s2.vs > kNoLongerSinkingVs) {
        ac.dAlt = rate;
    } else {
        lf_descend(ac);
    }
}

void lf_airToGround(LiveAc& ac) {
    if (gf_hasParkAirport() && gQnh <= kStandardQnh) {
        ac.dAlt = (gf_parkAirportAlt(0) - ac.alt) / legTicksLeft(ac);
    } else if (gQnh > kStandardQnh) {
        lf_descend(ac);
    } else {
        ac.stream[1].vs = ac.targetVs = kLandingVs;
        ac.dAlt = kLandingVs / kTicksPerMinute;
    }
    gf_setGear(ac, true);
}

void lf_groundToGround(LiveAc& ac) {
    f64 climb = 0;
    for (const PosSample& sample : ac.stream) climb += sample.vs;
    if (ac.landing || !(climb > kNoLongerSinkingVs)) {
        lf_descend(ac);
    } else if (!lf_skipIntoTheAir(ac)) {
        PosSample& s2 = ac.stream[1];
        s2.vs = ac.targetVs = std::max(s2.vs, kTakeOffVs);
        ac.dAlt = s2.vs / kTicksPerMinute;
    }
    gf_setGear(ac, true);
}

void lf_planHeight(LiveAc& ac) {
    const bool fromAir = ac.stream[0].airborne, toAir = ac.stream[1].airborne;
    if (fromAir && toAir) {
        lf_inAirToAir(ac);
    } else if (fromAir) {
        lf_airToGround(ac);
    } else if (toAir) {
        ac.dAlt = lf_climbRate(ac);
    } else {
        lf_groundToGround(ac);
    }
}

void lf_planPitch(LiveAc& ac) {
    const f64 limit = classValue(kPitchRate, ac.acClass);
    ac.dPitch = std::clamp((airPitch(ac.stream[1].vs) - ac.pitch) / legTicksLeft(ac), -limit, limit);
}

/// Turn of the leg to `target`: towards the leg behind it, but not far from the way that the aircraft goes; while no
/// such leg is known, along this one.
f64 lf_turnInAir(const LiveAc& ac, const PosSample& target, const PosSample* next) {
    f64 ahead = 0;
    if (next != nullptr) ahead = wrapPi(bearingRad(target.lat, target.lon, next->lat, next->lon) - ac.targetHeading);
    return wrapPi(ac.targetHeading + std::clamp(ahead, -kMostAhead, kMostAhead) - ac.heading);
}

void lf_planHeadingAndBank(LiveAc& ac, const PosSample& target, const PosSample* next, f64 dt) {
    const bool low = ac.agl < (ac.landing ? kHeadingAglLanding : kHeadingAgl);
    const bool reported = target.adsb && target.rollValid && target.trueHeadingValid && low;
    const f64 turn = reported ? wrapPi(target.trueHeading - ac.heading) : lf_turnInAir(ac, target, next);
    ac.dHeading = std::clamp(turn / dt, -kFastestTurn, kFastestTurn);
    if (target.rollValid) {
        // A roll is any number that a transponder may send; more than half a turn means the same as less.
        ac.dBank = (std::remainder(target.roll, 2 * kPi) - ac.bank) / dt;
        return;
    }
    const f64 maxBank = classValue(kMaxBank, ac.acClass), maxRate = classValue(kBankRate, ac.acClass);
    const f64 wanted = -std::clamp(turn, -maxBank, maxBank);
    ac.dBank = std::clamp((wanted - ac.bank) / dt, -maxRate, maxRate);
}

/// The time of a leg, a little shorter or longer so that an aircraft that is late or early comes back to its reports.
i32 lf_towardsSchedule(const LiveAc& ac, i32 ticks) {
    if (ac.extendCount >= 1) return ticks;
    const f64 late = static_cast<f64>(i64{simTick} + ticks - ac.stream[1].time);
    const f64 most = ticks * (late > kVeryLateCs ? kCatchUpMostLate : kCatchUpMost);
    return roundToTicks(ticks - std::clamp(late * kCatchUp, -most, most));
}

/// Behind a sharp corner the first piece of a long leg takes the whole turn: spread over all of it, the aircraft would
/// fly sideways for most of the way.
void lf_splitBehindCorner(LiveAc& ac) {
    const PosSample& s2 = ac.stream[1];
    if (s2.stationary || !s2.airborne || !ac.stream[0].airborne) return;  // an altitude of 0 is no altitude to mix
    const f64 turn = std::abs(wrapPi(ac.targetHeading - ac.heading)) / kCornerRate;
    const f64 leg = legTicksAt(ac, lf_legSpeed(ac));
    if (turn * kCornerRate < kSharpCorner || turn * kLongLegs > leg) return;
    PosSample here = ac.stream[0];
    here.lat = ac.lat;
    here.lon = ac.lon;
    // Who is late at the end of the leg is as late at the corner.
    PosSample corner = sampleBetween(here, s2, turn / leg, roundToTicks(s2.time - (leg - turn)));
    corner.adsb = corner.rollValid = corner.trueHeadingValid = false;
    ac.stream.insert(ac.stream.begin() + 1, corner);
}

void lf_highAltitudeConfig(LiveAc& ac) {
    if (ac.above10000Done) return;
    ac.above10000Done = true;
    ac.climbLightsDone = false;
    gf_setLights(ac.objectId, Lights{.nav = 1, .beacon = 1, .cabin = 1});
    gf_setThrottle(ac, throttleFor(ac, 3));
    gf_setGear(ac, false);
    gf_setFlaps(ac, 0);
}

}  // namespace

f64 airPitch(f64 verticalSpeed) {
    const f64 v =
        verticalSpeed < 0 ? std::max(verticalSpeed, kSteepestDescent) / 2 : std::min(verticalSpeed, kSteepestClimb);
    return kLevelPitch - v / kPitchStepVs * kPitchStepDeg * kDegToRad;
}

void lf_nextPosAir(LiveAc& ac) {
    lf_splitBehindCorner(ac);
    const PosSample& s1 = ac.stream[0];
    const PosSample& s2 = ac.stream[1];
    if (s2.stationary) {
        if (ac.acClass == Rotorcraft) lf_groundTiming(ac);
        return;
    }
    const bool touchingDown = ac.landing && !s2.airborne;
    const f64 speed = touchingDown ? (s1.speed > 0 ? s1.speed : kSpeedOnFinal) : lf_legSpeed(ac);
    const i32 ticks = legTicksAt(ac, speed);
    lf_setArrival(ac, touchingDown ? ticks : lf_towardsSchedule(ac, ticks));
}

void planTurnAnew(LiveAc& ac) {
    const f64 left = static_cast<f64>(i64{ac.stream[0].time} - simTick);
    if (left >= kShortestReplanCs) lf_planHeadingAndBank(ac, ac.stream[0], &ac.stream[1], left);
}

void lf_airDeltas(LiveAc& ac) {
    if (ac.flightState != FlightState::take_off && ac.flightState != FlightState::flying) {
        setFlightState(ac, FlightState::flying);
    }
    if (ac.agl > kHighAgl) ac.tookOffHere = false;
    ac.targetVs = ac.stream[1].vs;
    ac.targetSpeed = ac.stream[1].tas;
    if (ac.flarePhase == 0) lf_planHeight(ac);
    if (ac.flightState != FlightState::take_off) lf_planPitch(ac);
    lf_planHeadingAndBank(ac, ac.stream[1], ac.stream.size() < 3 ? nullptr : &ac.stream[2], legTicksLeft(ac));
    if (ac.stream[0].alt < kHighAltitude) {
        lf_lowAltitudeConfig(ac);
    } else {
        decayLimits(ac);
        lf_highAltitudeConfig(ac);
    }
}

}  // namespace hcr
