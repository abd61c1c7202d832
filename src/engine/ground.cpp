#include "engine/ground.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "core/model/aircraft_class.h"
#include "core/model/geo.h"
#include "core/model/run_state.h"
#include "engine/curve.h"
#include "engine/leg.h"
#include "engine/take_off.h"
#include "shell/log.h"
#include "sim/aircraft.h"

namespace hcr {
namespace {

constexpr f64 kStraightDeg = 3;  // below it a corner is none
constexpr f64 kSharpDeg = 45;
constexpr f64 kReversalDeg = 160;  // above it nobody turns: the feed jumped back
constexpr f64 kRightAngleDeg = 90;
constexpr f64 kLongLegNm = 50 / kMetresPerNm;  // before a sharp corner the leg is split, the curve comes late
constexpr i32 kLongLegCs = 600;
constexpr f64 kFastTaxiKt = 43;
constexpr f64 kSpeedStepKt = 5;  // a greater change of speed comes in two steps
constexpr f64 kSpeedStepNm = 100.0 / kMetresPerNm;
constexpr i32 kShortestLegCs = 25;
constexpr f64 kSlackTurn = 1.2;  // a leg that leaves more time than this lets the aircraft turn slower
constexpr f64 kGentleDeg = 10, kSteepDeg = 30;
constexpr f64 kTurnLegNm = 30 / kMetresPerNm;
constexpr i32 kTurnLimitCs = 2000;  // a right angle may take the aircraft so far off its times
constexpr f64 kCurveEnd = 0.999999;
constexpr f64 kHeadingTolerance = 0.5 * kDegToRad;
constexpr f64 kOffRunwayDeg = 15;
constexpr f64 kSpoilersDownKt = 90;
constexpr f64 kRotationCheckKt = 43;

struct ThrottleStep {
    f64 s1, s2;  // knots at S1 or at S2
    i32 index;
};
constexpr ThrottleStep kTakeOffThrottle[] = {{25, 30, 4}, {20, 25, 2}, {15, 20, 1}};

f64 lf_legNm(const LiveAc& ac) {
    const PosSample& s1 = ac.stream[0];
    const PosSample& s2 = ac.stream[1];
    return distanceNm(s1.lat, s1.lon, s2.lat, s2.lon);
}

void lf_insertMidpoint(LiveAc& ac) {
    const PosSample& s1 = ac.stream[0];
    const PosSample& s2 = ac.stream[1];
    PosSample middle = s1;
    middle.lat = (s1.lat + s2.lat) / 2;
    middle.lon = std::remainder(s1.lon + shortWay(s2.lon - s1.lon) / 2, 360.0);
    middle.alt = (s1.alt + s2.alt) / 2;
    middle.speed = (s1.speed + s2.speed) / 2;
    middle.time = roundToTicks((static_cast<f64>(s1.time) + s2.time) / 2);
    middle.airborne = middle.alt > 0;
    if (!middle.airborne) middle.alt = 0;
    middle.stationary = false;
    ac.stream.insert(ac.stream.begin() + 1, middle);
}

void lf_speedStep(LiveAc& ac) {
    const f64 v1 = ac.stream[0].speed, v2 = ac.stream[1].speed;
    if ((v1 > 0 || v2 > 0) && std::abs(v1 - v2) > kSpeedStepKt && lf_legNm(ac) >= kSpeedStepNm) lf_insertMidpoint(ac);
}

void lf_makeCurve(LiveAc& ac) {
    const PosSample& s2 = ac.stream[1];
    PosSample& s3 = ac.stream[2];
    if (s3.speed == 0) s3.speed = (ac.stream[0].speed + s2.speed) / 2;
    ac.curve = makeCurve({ac.lat, ac.lon}, {s2.lat, s2.lon}, {s3.lat, s3.lon});
    ac.stream.erase(ac.stream.begin() + 1);
}

void lf_planCorner(LiveAc& ac) {
    const f64 angle = std::abs(lf_turnAngle(ac)) * kRadToDeg;
    const PosSample& s1 = ac.stream[0];
    const PosSample& s2 = ac.stream[1];
    const PosSample& s3 = ac.stream[2];
    if (angle <= kStraightDeg) {
        lf_speedStep(ac);
    } else if (angle > kSharpDeg && lf_legNm(ac) > kLongLegNm && s1.speed <= kFastTaxiKt &&
               i64{s2.time} - s1.time >= kLongLegCs) {
        lf_insertMidpoint(ac);
    } else if (angle > kReversalDeg || samePosition(s1.lat, s1.lon, s3.lat, s3.lon)) {
        lf_speedStep(ac);
    } else {
        lf_makeCurve(ac);
        ac.curveAngle = angle;
    }
}

void lf_planMovement(LiveAc& ac) {
    if (ac.stream.size() >= 3 && !ac.stream[2].stationary) {
        lf_planCorner(ac);
    } else if (ac.stream.size() >= 3 || ac.extendCount < 1) {
        lf_speedStep(ac);
    }
    if (!ac.curve.absent()) {
        ac.turningToTarget = false;
        return;
    }
    ac.headingError = std::abs(wrapPi(ac.targetHeading - ac.heading)) * kRadToDeg;
    ac.turningToTarget = ac.headingError > kStraightDeg;
}

/// Turns faster or slower, so that the turn is as long as the leg.
void lf_fitTurnRate(LiveAc& ac, f64 legNm, i32 ticks) {
    const f64 turn = ac.turningToTarget ? ac.headingError : ac.curveAngle;
    const i32 need = std::max(1, roundToTicks(turn / ac.turnRate / 100));
    if (!(turn > 0) || !(legNm > 0)) return;
    const f64 q = static_cast<f64>(ticks) / need;
    if (turn > kSharpDeg) {
        ac.turnRate *= std::min(q, std::min(turn, kRightAngleDeg) / kSteepDeg);
        if (turn >= kRightAngleDeg) {
            ac.maxEarly = std::max(ac.maxEarly, kTurnLimitCs);
            ac.maxLate = std::max(ac.maxLate, kTurnLimitCs);
        }
    } else if (q >= kSlackTurn) {
        const f64 r = std::min({q, q * kGentleDeg / turn, q * kTurnLegNm / legNm});
        if (r > 0) ac.turnRate /= r;
    } else if (q > 0) {
        ac.turnRate /= q;
    }
}

void lf_clearLevers(LiveAc& ac) {
    gf_setSpoilers(ac, false);
    if (ac.acClass != Light) gf_writeThrottleSpoilers(ac.objectId, 0, 0, 0);
}

void lf_rollOut(LiveAc& ac) {
    const f64 off = std::abs(wrapPi(ac.heading - ac.touchdownHeading)) * kRadToDeg;
    if (off >= kOffRunwayDeg) {
        gf_setFlaps(ac, 0);
        ac.rollOut = false;
        ac.touchdownHeading = 0;
        gf_setThrottle(ac, throttleFor(ac, 0));
        lf_clearLevers(ac);
        gf_setLights(ac.objectId, Lights{.nav = 1, .beacon = 1, .taxi = 1, .logo = 1, .cabin = 1});
    } else if (ac.stream[0].speed <= kSpoilersDownKt) {
        lf_clearLevers(ac);
        gf_setFlaps(ac, 1);
    }
}

void lf_takeOffThrottle(LiveAc& ac) {
    for (const ThrottleStep& step : kTakeOffThrottle) {
        if (ac.stream[0].speed < step.s1 && ac.stream[1].speed < step.s2) continue;
        gf_setThrottle(ac, throttleFor(ac, step.index));
        return;
    }
    gf_setThrottle(ac, throttleFor(ac, 0));
}

void lf_turnTowards(LiveAc& ac, f64 wanted) {
    const f64 error = wrapPi(wanted - ac.heading);
    if (std::abs(error) <= kHeadingTolerance) return;
    ac.heading = wrapTwoPi(ac.heading + (error > 0 ? ac.turnRate : -ac.turnRate));
}

void lf_stepCurve(LiveAc& ac) {
    ac.curveT = std::clamp(ac.curveT + ac.curveDt, 0.0, kCurveEnd);
    LatLon position;
    f64 tangent = 0;
    if (!lf_evaluateCurve(ac.curve, ac.curveT, position, tangent)) {
        if (gf_mayLog(LogKind::curve)) {
            gf_log(fmt::format("{} error in curve at index: {:.2F}", ac.callsign, ac.curveT));
        }
        return;
    }
    ac.lat = position.lat;
    ac.lon = position.lon;
    if (ac.flightState == FlightState::pushing_back) tangent = wrapTwoPi(tangent + kPi);
    lf_turnTowards(ac, tangent);
}

}  // namespace

void nextPosGround(LiveAc& ac) {
    const bool onStand = ac.flightState == FlightState::parked || ac.flightState == FlightState::pushing_back;
    if (!onStand && !ac.stream[1].stationary) lf_planMovement(ac);
    lf_groundTiming(ac);
}

void lf_groundTiming(LiveAc& ac) {
    if (ac.stream[1].stationary) {
        const i64 s1Time = ac.stream[0].time;
        const i64 span = std::max<i64>(kShortestLegCs, ac.stream[1].time - s1Time);
        const i64 ticks = std::max<i64>(kShortestLegCs, s1Time - simTick + span);
        lf_setArrival(ac, roundToTicks(static_cast<f64>(ticks)));
        return;
    }
    ac.turnRate = ac.taxiTurnRate;
    const i32 ticks = legTicksAt(ac, lf_legSpeed(ac));
    if (!ac.curve.absent() || ac.turningToTarget) lf_fitTurnRate(ac, lf_legNm(ac), ticks);
    lf_setArrival(ac, ticks);
}

void lf_groundDeltas(LiveAc& ac) {
    // A record that lost its livery while it stayed in the simulator is in `birth`, and taxies like the others.
    if (ac.flightState == FlightState::flying || ac.flightState == FlightState::parked ||
        ac.flightState == FlightState::birth) {
        setFlightState(ac, FlightState::taxi);
    }
    if (ac.takeOffRun) {
        lf_takeOffThrottle(ac);
    } else if (ac.rollOut) {
        lf_rollOut(ac);
    } else {
        gf_setThrottle(ac, throttleFor(ac, 0));
    }
    if (!ac.rollOut && !ac.takeOffRun) decayLimits(ac);
    if (ac.flarePhase == 0 && ac.flightState != FlightState::take_off) {
        ac.pitch = ac.groundPitch;
        ac.bank = ac.dPitch = ac.dBank = 0;
    }
    if (!ac.curve.absent()) ac.curveDt = 1 / legTicksLeft(ac);
    const f64 speed = ac.stream[1].speed;
    ac.targetSpeed = ac.flightState == FlightState::pushing_back ? -speed : speed;
    if (ac.takeOffRun && ac.flightState != FlightState::take_off && ac.stream[0].speed >= kRotationCheckKt) {
        lf_checkRotation(ac);
    }
}

void stepGround(LiveAc& ac) {
    if (!ac.curve.absent()) {
        lf_stepCurve(ac);
    } else if (ac.flightState == FlightState::parking || ac.turningToTarget) {
        lf_turnTowards(ac, ac.targetHeading);
    }
}

std::optional<u32> lf_standAtSpawn(LiveAc&) {
    return std::nullopt;
}

void lf_arriveAtStand(LiveAc& ac) {
    setFlightState(ac, FlightState::taxi);
}

void lf_clearCargo(LiveAc&) {}

}  // namespace hcr
