#include "engine/extension.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/model/aircraft_class.h"
#include "core/model/geo.h"
#include "core/model/park_state.h"
#include "core/model/range.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "engine/ground.h"
#include "engine/holding.h"
#include "engine/leg.h"
#include "shell/parameters.h"
#include "sim/session.h"

namespace hcr {
namespace {

constexpr i32 kStepsInAir = 8, kStepsOnGround = 10, kStepsParked = 1;
constexpr i32 kLegInAirS = 8, kLegOnGroundS = 3;
constexpr i32 kLongestBlindCs = 12000;  // what is told without news for longer isn't believed to fly any more
constexpr i32 kStepsToReport = 5;       // more than the 30 seconds between a report and its playing
constexpr i32 kLegParkedS = 604800;     // a week: a parked aircraft stays
constexpr f64 kRangeMarginNm = 0.5;     // who is lost at the edge of the range has left it
constexpr f64 kNearGroundFt = 1000;     // with traffic in the air only, nobody is extended towards the runway
constexpr f64 kSlowDownInAir = 0.95, kSlowDownOnFinal = 0.9;
constexpr f64 kSlowestKt = 1.0;
constexpr i32 kFinalSlowsFromStep = 4;
constexpr f64 kFinalVs = -667, kFinalFtPerS = 10.005;
constexpr f64 kTakeOffVs = 1500, kTakeOffFtPerS = 25;

struct RunSpeed {
    f64 bound;  // knots
    f64 speed;  // knots
    f64 vs;     // feet per minute
};
// Take-off run: up to the bound the next speed is ...
constexpr std::array<RunSpeed, 5> kTakeOffRun{
    {{30, 40, 0}, {60, 80, 0}, {100, 110, 0}, {140, 150, 600}, {160, 170, 1200}}};
constexpr RunSpeed kTakeOffRunEnd{0, 180, 2400};
// Roll-out: from the bound on the next speed is ...
constexpr std::array<RunSpeed, 4> kRollOut{{{140, 100, 0}, {100, 80, 0}, {80, 60, 0}, {60, 30, 0}}};
constexpr f64 kRollOutEndKt = 20;

bool lf_mayExtendInAir(const LiveAc& ac) {
    const UserAircraftData user = gf_lastUserPosition();
    if (positionKnown(user.lat, user.lon) &&
        distanceNm(user.lat, user.lon, ac.lat, ac.lon) >= gRangeNm - kRangeMarginNm) {
        return false;
    }
    return !AIRBORNE_ONLY.current || std::abs(ac.alt - gf_parkAirportAlt(0)) >= kNearGroundFt;
}

void lf_speedUp(PosSample& sample) {
    for (const RunSpeed& row : kTakeOffRun) {
        if (sample.speed > row.bound) continue;
        sample.speed = row.speed;
        if (row.vs != 0) sample.vs = row.vs;
        return;
    }
    sample.speed = kTakeOffRunEnd.speed;
    sample.vs = kTakeOffRunEnd.vs;
}

void lf_slowDown(PosSample& sample) {
    sample.vs = 0;
    for (const RunSpeed& row : kRollOut) {
        if (sample.speed < row.bound) continue;
        sample.speed = row.speed;
        return;
    }
    sample.speed = kRollOutEndKt;
}

void lf_stop(PosSample& sample) {
    sample.stationary = true;
    sample.speed = 0;
}

void lf_changeSpeed(const LiveAc& ac, PosSample& sample, i32 steps) {
    if (sample.stationary || ac.flightState == FlightState::parked) {
        lf_stop(sample);
    } else if (!ac.onGround) {
        if (!ac.landing && ac.repeats > 0) return;  // it is still told, at this speed
        if (!ac.landing) {
            sample.speed = std::max(sample.speed * kSlowDownInAir, kSlowestKt);
        } else if (steps >= kFinalSlowsFromStep) {
            sample.speed = std::max(sample.speed * kSlowDownOnFinal, kSlowestKt);
        }
    } else if (ac.takeOffRun) {
        lf_speedUp(sample);
    } else if (ac.rollOut) {
        lf_slowDown(sample);
    } else {
        lf_stop(sample);
    }
}

void lf_changePlace(const LiveAc& ac, PosSample& sample, i32 leg) {
    if (sample.stationary) return;
    const PosSample& s1 = ac.stream.front();
    const f64 feet = leg * 100.0 * sample.speed * kFeetPerNm / 360000.0;
    const LatLon place = destinationPoint(s1.lat, s1.lon, ac.heading, feet);
    sample.lat = place.lat;
    sample.lon = place.lon;
    sample.stationary = samePosition(s1.lat, s1.lon, sample.lat, sample.lon);
}

void lf_changeHeight(const LiveAc& ac, PosSample& sample, i32 leg) {
    if (ac.landing && ac.flarePhase == 0) {
        sample.vs = kFinalVs;
        sample.alt -= leg * kFinalFtPerS;
    } else if (ac.flightState == FlightState::take_off) {
        sample.vs = kTakeOffVs;
        sample.alt += leg * kTakeOffFtPerS;
    }
    sample.airborne = sample.alt > 0;
    if (!sample.airborne) sample.alt = 0;
}

}  // namespace

void lf_extendStream(LiveAc& ac, i32 steps) {
    if (ac.stream.empty()) return;
    const bool parked = ac.flightState == FlightState::parked;
    const i32 leg = parked ? kLegParkedS : ac.onGround ? kLegOnGroundS : kLegInAirS;
    ac.extendCount = steps;
    PosSample sample = ac.stream.front();
    lf_changeSpeed(ac, sample, steps);
    lf_changePlace(ac, sample, leg);
    lf_changeHeight(ac, sample, leg);
    sample.time = roundToTicks(static_cast<f64>(ac.stream.front().time) + leg * 100.0);
    ac.stream.push_back(sample);
    if (parked) {
        ac.parkReportSeen = false;
        if (ParkPos* stand = findStand(ac.standId)) stand->takenByLive = false;
    }
}

void keepExtending(LiveAc& ac) {
    // On final the speed falls with the count of steps, and the ground ends the flight soon enough.
    if (ac.extendCount <= 0 || ac.onGround || ac.landing || simTick - ac.reportTick > kLongestBlindCs) return;
    ac.extendCount = std::max(ac.extendCount, kStepsToReport);
}

void extendAtBirth(LiveAc& ac) {
    PosSample sample = ac.stream.front();
    const f64 feet = kLegInAirS * 100.0 * sample.speed * kFeetPerNm / 360000.0;
    const LatLon place = destinationPoint(sample.lat, sample.lon, sample.track * kDegToRad, feet);
    sample.lat = place.lat;
    sample.lon = place.lon;
    sample.time = roundToTicks(static_cast<f64>(sample.time) + kLegInAirS * 100.0);
    ac.stream.push_back(sample);
}

bool lf_tryExtend(LiveAc& ac) {
    if (ac.stream.empty()) return false;
    if (ac.flightState == FlightState::parking) {
        lf_arriveAtStand(ac);
        if (ac.lifeState != LifeState::active) return false;
    } else if (ac.flightState == FlightState::pushed_back ||
               (ac.flightState == FlightState::taxi && !ac.takeOffRun && !ac.rollOut)) {
        return lf_holdOnGround(ac);
    }
    if (ac.extendCount < 0) return false;
    if (ac.extendCount == 1) {
        ac.extendCount = -1;
        return false;
    }
    if (ac.extendCount > 1) {
        lf_extendStream(ac, ac.extendCount - 1);
        return true;
    }
    if (!classShown(ac.acClass)) return false;
    i32 steps = kStepsInAir;
    if (ac.onGround) {
        steps = ac.flightState == FlightState::parked ? kStepsParked : kStepsOnGround;
    } else if (!lf_mayExtendInAir(ac)) {
        return false;
    }
    lf_extendStream(ac, steps);
    return true;
}

}  // namespace hcr
