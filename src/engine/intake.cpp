#include "engine/intake.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "core/model/aircraft_class.h"
#include "core/model/geo.h"
#include "core/model/run_state.h"
#include "engine/air_leg.h"
#include "engine/leg.h"
#include "engine/report_judgement.h"
#include "engine/standstill.h"
#include "engine/take_off.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "sim/aircraft.h"

namespace hcr {
namespace {

constexpr std::size_t kStuckStream = 200;  // so many samples ahead mean that nothing moves any more
constexpr std::size_t kTrimDepth = 7;      // samples looked back at
constexpr i32 kTrimCs = 1500;              // a stop shorter than this is cut out
constexpr f64 kTrimNm = 22 / kMetresPerNm;
constexpr f64 kWildestFt = 1e6, kWildestKt = 1e5;  // beyond it a report is noise, and sums of it would overflow
constexpr f64 kTakeOffSpeed = 43;                  // knots: nobody taxies as fast

/// Limits a value that strangers sent; NaN becomes the lower bound.
void lf_limit(f64& value, f64 bound) {
    value = value >= -bound ? std::min(value, bound) : -bound;
}

bool lf_leavesHold(LiveAc& ac, const PosSample& sample) {
    const PosSample& s1 = ac.stream.front();
    const f64 metres = distanceNm(s1.lat, s1.lon, sample.lat, sample.lon) * kMetresPerNm;
    return metres > HOLDING_THRESHOLD_METERS.current;
}

void lf_appendAtBirth(LiveAc& ac, PosSample& sample) {
    if (ac.stream.empty() || !lf_checkGroundSample(ac, sample)) return;
    sample.time = std::max(sample.time, ac.stream.back().time + 1);
    ac.stream.push_back(sample);
}

/// Standing time must not pile up at the back of the stream.
void lf_trimStops(SampleStream& stream, const PosSample& sample) {
    if (sample.stationary) {
        const auto standing = [](const PosSample& s) { return s.stationary; };
        if (std::all_of(stream.begin(), stream.end(), standing)) stream.resize(1);
        return;
    }
    if (stream.size() < 3) return;
    const std::size_t end = std::min(kTrimDepth, stream.size());
    for (std::size_t fromBack = 2; fromBack < end; ++fromBack) {
        const std::size_t index = stream.size() - fromBack;
        const PosSample& moving = stream[index];
        if (moving.stationary) continue;
        if (i64{stream.back().time} - moving.time < kTrimCs ||
            distanceNm(moving.lat, moving.lon, sample.lat, sample.lon) <= kTrimNm) {
            stream.resize(index + 1);
        }
        return;
    }
}

void lf_startRunOnGround(LiveAc& ac, const PosSample& sample) {
    const PosSample& last = ac.stream.back();
    if (ac.rollOut) {
        if (last.airborne && sample.airborne) lf_touchAndGo(ac);
    } else if (ac.flightState == FlightState::taxi) {
        if (sample.airborne || (sample.speed >= kTakeOffSpeed && last.speed >= kTakeOffSpeed)) lf_startTakeOffRun(ac);
    }
}

void lf_append(LiveAc& ac, PosSample& sample) {
    if (ac.stream.size() > kStuckStream) {
        removeAircraftFromSim(ac);
        return;
    }
    if (ac.holding && !ac.stream.empty() && lf_leavesHold(ac, sample)) {
        ac.holding = false;
        ac.holdStartTick = 0;
        removeAircraftFromSim(ac);
        return;
    }
    if (ac.flightState == FlightState::birth) {
        lf_appendAtBirth(ac, sample);
        return;
    }
    if (!checkExtendingSituations(ac, sample) || ac.stream.empty()) return;
    if (!sample.airborne && ac.stream.back().stationary) lf_trimStops(ac.stream, sample);
    sample.time = std::max(sample.time, ac.stream.back().time + 1);
    if (!ac.takeOffRun && ac.onGround && ac.lifeState == LifeState::active) lf_startRunOnGround(ac, sample);
    ac.stream.push_back(sample);
    if (ac.stream.size() == 2 && ac.flightState == FlightState::flying && ac.lifeState == LifeState::active &&
        !ac.onGround && !sample.stationary) {
        planTurnAnew(ac);
    }
    if (ac.stream.size() == 2 && ac.stream[0].stationary && ac.stream[1].stationary) {
        ac.stream[0].time = simTick + 1;
        ac.stream[0].speed = ac.stream[1].speed;
    }
}

}  // namespace

void limitSample(PosSample& sample) {
    lf_limit(sample.alt, kWildestFt);
    lf_limit(sample.vs, kWildestFt);
    lf_limit(sample.speed, kWildestKt);
    lf_limit(sample.tas, kWildestKt);
}

void decodeExisting(LiveAc& ac, PosSample sample) {
    try {
        limitSample(sample);
        lf_append(ac, sample);
    } catch (const std::exception& failure) {
        gf_logError(fmt::format("{} exception {}", "decodeExisting", failure.what()));
        throw;
    }
}

}  // namespace hcr
