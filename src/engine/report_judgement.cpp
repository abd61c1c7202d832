#include "engine/report_judgement.h"

#include <fmt/format.h>

#include <array>
#include <cmath>

#include "core/model/aircraft_class.h"
#include "core/model/geo.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "engine/extension.h"
#include "engine/leg.h"
#include "engine/standstill.h"
#include "parking/learned.h"
#include "platform/clock.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "sim/aircraft.h"

namespace hcr {
namespace {

constexpr f64 kMovedOffSpans = 6, kMovingAwaySpans = 2.75;  // half wing spans behind the end of a push
constexpr f64 kAtStandNm = 85 / kMetresPerNm;
constexpr f64 kElsewhereNm = 200 / kMetresPerNm;
constexpr f64 kRetreatNm = 3 / kMetresPerNm;
constexpr i32 kRetreats = 3;
constexpr f64 kRetreatSpans = 0.5;
constexpr i32 kWeekCs = 60480000;  // the extension of a parked aircraft
constexpr i32 kTurnaroundHeavyCs = 360000, kTurnaroundLargeCs = 150000, kTurnaroundBuzjetCs = 90000;
constexpr i32 kTurnStepS = 3;  // a turn back to the reports is flown in steps of so many seconds ...
// ... and so many degrees, at standard rate, or at more for a sample that lies inside of the circle
constexpr std::array kTurnStepsRad = {9 * kDegToRad, 18 * kDegToRad, 36 * kDegToRad};
constexpr f64 kBehindDeg = 100;  // a report this far off the heading lies behind
constexpr f64 kSameWayRad = 45 * kDegToRad;
constexpr f64 kLongestTurn = 2.5;  // times the angle at its begin, since the sample moves aside meanwhile
constexpr f64 kLeastTurnKt = 60;   // who is slower turns on the spot
constexpr i32 kTurnLateCs = 3000;  // what the turn may cost in time; the limit falls back leg by leg
constexpr f64 kBesideDeg = 90, kBackwardsDeg = 150;
constexpr f64 kRunwaySpeedKt = 40;  // a landed aircraft faster than this doesn't speed up

/// How far the sample is off the heading, seen from `from`, in degrees.
f64 lf_offHeading(const LiveAc& ac, LatLon from, const PosSample& sample) {
    return std::abs(wrapPi(bearingRad(from.lat, from.lon, sample.lat, sample.lon) - ac.heading)) * kRadToDeg;
}

LatLon lf_placeOf(const PosSample& sample) {
    return {sample.lat, sample.lon};
}

void lf_endExtension(LiveAc& ac) {
    ac.extendCount = 0;
    setLimits(ac);
}

void lf_endHold(LiveAc& ac) {
    ac.holding = false;
    ac.holdStartTick = 0;
}

bool lf_tooSoonToLeave(i32 acClass, i64 standingCs) {
    switch (acClass) {
        case Heavy:
            return standingCs < kTurnaroundHeavyCs;
        case Large:
            return standingCs < kTurnaroundLargeCs;
        case Buzjets:
            return standingCs < kTurnaroundBuzjetCs;
        default:
            return false;
    }
}

void lf_leaveStand(LiveAc& ac, PosSample& sample) {
    sample.stationary = false;
    ac.wantsToLeave = true;
    if (ac.prevFlightState == FlightState::parked) return;
    if (ac.extendCount >= 1) {
        if (ac.flightState == FlightState::parked && !ac.stream.empty()) {
            if (ac.landedHere) {
                const i64 standing = i64{simTick} - ac.stream.front().time + kWeekCs;
                if (lf_tooSoonToLeave(ac.acClass, standing)) ac.towed = true;
                ac.landedHere = false;
            }
            ac.stream.front().time = simTick + 1;
        }
        lf_endExtension(ac);
    }
    lf_addRealStandOption(ac.standId, ac, 2);
    if (ParkPos* stand = findStand(ac.standId)) stand->takenByLive = false;
    if (ac.flightState != FlightState::parked) setFlightState(ac, FlightState::parked);
}

void lf_readPushbackTurn(LiveAc& ac, const PosSample& sample) {
    if (STRAIGHT_PBS_ONLY.current || ac.pushbackPhase != 2) return;
    if (!sample.trueHeadingValid && sample.track == 0) return;
    const f64 reported = sample.trueHeadingValid ? sample.trueHeading : sample.track * kDegToRad;
    ac.pushbackClockwise = wrapPi(reported - ac.heading) > 0;
    ac.pushbackTurnKnown = true;
}

bool lf_judgePushedBack(LiveAc& ac, PosSample& sample) {
    const f64 distance = distanceNm(ac.lat, ac.lon, sample.lat, sample.lon);
    const bool movedOff = distance > ac.halfSpanNm * kMovedOffSpans ||
                          (distance > ac.halfSpanNm * kMovingAwaySpans && distance > ac.standDistance);
    if (!movedOff) {
        if (!ac.holding) {
            ac.holding = true;
            ac.holdStartTick = simTick;
        }
        ac.standDistance = distance;
        return false;
    }
    sample.stationary = false;
    if (ac.extendCount > 0) {
        if (!ac.stream.empty()) ac.stream.front().time = simTick + 1;
        lf_endExtension(ac);
    }
    ac.pushbackTurnKnown = false;
    ac.pushbackPhase = 0;
    setFlightState(ac, FlightState::taxi);
    ac.standLat = ac.standLon = ac.standHeading = 0;
    ac.standId = 0;
    ac.standCargo = false;
    lf_endHold(ac);
    return true;
}

/// A report within the bound of the stand: true when it shows that the aircraft is leaving.
bool lf_judgeAtStand(LiveAc& ac, PosSample& sample, f64 distance) {
    ac.arrivedTicks = gf_utcTicks100ns();
    if (ac.lastStandDist == 0) {
        ac.firstStandDist = ac.lastStandDist = distance;
        ac.retreatCount = 0;
    } else if (distance >= ac.lastStandDist + kRetreatNm) {
        ac.lastStandDist = distance;
        ++ac.retreatCount;
        const f64 moved = distance - ac.firstStandDist;
        if ((ac.retreatCount >= kRetreats && moved >= ac.halfSpanNm * kRetreatSpans) || moved > ac.halfSpanNm) {
            lf_leaveStand(ac, sample);
            return true;
        }
    } else if (ac.lastStandDist - kRetreatNm >= distance) {
        ac.retreatCount = 0;
    }
    ac.wantsToLeave = false;
    return false;
}

bool lf_judgeOnStand(LiveAc& ac, PosSample& sample) {
    if (ac.lifeState == LifeState::buffer || ac.lifeState == LifeState::adding2sim) return false;
    ac.parkReportSeen = true;
    const f64 distance = distanceNm(sample.lat, sample.lon, ac.standLat, ac.standLon);
    const f64 bound = ac.prevFlightState == FlightState::parking ? 2 * kAtStandNm : kAtStandNm;
    if (distance <= bound) return lf_judgeAtStand(ac, sample, distance);
    if (ac.flightState == FlightState::parking) {
        setFlightState(ac, FlightState::taxi);
        sample.stationary = false;
        return true;
    }
    if (distance > kElsewhereNm) {
        lf_addRealStandOption(ac.standId, ac, 3);
        removeAircraftFromSim(ac);
        return false;
    }
    lf_leaveStand(ac, sample);
    return true;
}

bool lf_reportEmpty(const char* operation) {
    if (gf_mayLog(LogKind::emptyStream)) gf_logError(fmt::format("{} empty sz?", operation));
    return false;
}

/// Adds the points of a turn of so many radians a step until the sample lies ahead. False, and none, when it lies
/// inside of the circle.
bool lf_addTurn(LiveAc& ac, const PosSample& sample, f64 stepRad) {
    PosSample point = ac.stream.front();
    const auto toSample = [&point, &sample] { return bearingRad(point.lat, point.lon, sample.lat, sample.lon); };
    f64 heading = ac.heading;
    const f64 feet = point.speed / 3600 * kTurnStepS * kFeetPerNm;
    const i32 most = static_cast<i32>(std::abs(wrapPi(toSample() - heading)) / stepRad * kLongestTurn) + 1;
    for (i32 step = 0;; ++step) {
        const f64 left = wrapPi(toSample() - heading);
        if (std::abs(left) <= stepRad) return true;
        if (step == most) break;
        heading += left > 0 ? stepRad : -stepRad;
        const LatLon place = destinationPoint(point.lat, point.lon, heading, feet);
        point.lat = place.lat;
        point.lon = place.lon;
        point.time += kTurnStepS * 100;
        ac.stream.push_back(point);
    }
    ac.stream.resize(1);
    return false;
}

/// The extension ends where the aircraft is; from there it flies a turn towards the sample and then straight to it.
void lf_turnFromHere(LiveAc& ac, const PosSample& sample) {
    ac.stream.resize(1);
    PosSample& here = ac.stream.front();
    here.lat = ac.lat;
    here.lon = ac.lon;
    here.alt = ac.alt;
    here.time = simTick + 1;
    here.stationary = here.adsb = here.rollValid = here.trueHeadingValid = false;
    if (ac.acClass == Rotorcraft || here.speed < kLeastTurnKt) return;
    for (const f64 step : kTurnStepsRad) {
        if (!lf_addTurn(ac, sample, step)) continue;
        if (ac.stream.size() > 1) ac.maxLate += kTurnLateCs;
        return;
    }
}

/// True when an extended aircraft has overtaken its reports: they come behind it the same way. It waits for them in
/// flight, a little slower with each step.
bool lf_isAheadOf(const LiveAc& ac, const PosSample& sample) {
    const f64 turned = std::abs(wrapPi(sample.track * kDegToRad - ac.heading));
    return turned <= kSameWayRad && lf_offHeading(ac, {ac.lat, ac.lon}, sample) >= kBehindDeg;
}

bool lf_judgeMoving(LiveAc& ac, PosSample& sample) {
    const bool usable = lf_checkGroundSample(ac, sample);
    if (!usable || ac.extendCount <= 0) return usable;
    if (ac.stream.empty()) return lf_reportEmpty("checkExtendingSituations");
    if (!ac.onGround && lf_isAheadOf(ac, sample)) {
        keepExtending(ac);
        return false;
    }
    lf_endExtension(ac);
    if (ac.onGround) {
        ac.stream.front().time = simTick + 1;
    } else {
        lf_turnFromHere(ac, sample);
    }
    lf_endHold(ac);
    return true;
}

/// The last samples of the stream that the new one would pull the aircraft back from.
void lf_dropOvertaken(LiveAc& ac, const PosSample& sample) {
    for (i32 i = 0; i < 2 && ac.stream.size() >= 2; ++i) {
        if (lf_offHeading(ac, lf_placeOf(ac.stream.back()), sample) < kBesideDeg) return;
        ac.stream.pop_back();
    }
}

/// Only the point flown to is left: false when the sample lies behind the aircraft.
bool lf_judgeAgainstOnly(LiveAc& ac, const PosSample& sample) {
    const f64 off = lf_offHeading(ac, lf_placeOf(ac.stream.front()), sample);
    if (ac.landing) return off < kBesideDeg;
    if (off < kBackwardsDeg) return true;
    if (ac.extendCount > 0) return false;
    PosSample& s1 = ac.stream.front();
    s1.lat = ac.lat;
    s1.lon = ac.lon;
    s1.time = simTick + 1;
    return true;
}

}  // namespace

bool checkExtendingSituations(LiveAc& ac, PosSample& sample) {
    switch (ac.flightState) {
        case FlightState::pushing_back:
            lf_readPushbackTurn(ac, sample);
            return false;
        case FlightState::pushed_back:
            return lf_judgePushedBack(ac, sample);
        case FlightState::parking:
        case FlightState::parked:
            return lf_judgeOnStand(ac, sample);
        default:
            return ac.landing || ac.rollOut ? checkNewPosDuringLanding(ac, sample) : lf_judgeMoving(ac, sample);
    }
}

bool checkNewPosDuringLanding(LiveAc& ac, PosSample& sample) {
    if (ac.stream.empty()) return lf_reportEmpty("checkNewPosDuringLanding");
    const auto repeats = [&ac, &sample] {
        const PosSample& last = ac.stream.back();
        return samePosition(last.lat, last.lon, sample.lat, sample.lon);
    };
    if (repeats()) return false;
    if (ac.stream.size() >= 2) {
        lf_dropOvertaken(ac, sample);
    } else if (!lf_judgeAgainstOnly(ac, sample)) {
        return false;
    }
    if (ac.extendCount > 0) lf_endExtension(ac);
    sample.stationary = repeats();
    if (sample.stationary) return true;
    const f64 lastSpeed = ac.stream.back().speed;
    if (sample.speed > lastSpeed && sample.speed > kRunwaySpeedKt) sample.speed = lastSpeed;
    return true;
}

}  // namespace hcr
