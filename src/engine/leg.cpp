#include "engine/leg.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "core/model/aircraft_class.h"
#include "core/model/geo.h"
#include "core/model/run_state.h"

namespace hcr {
namespace {

constexpr i32 kShortestLegCs = 25;            // a leg never takes less, however late it is
constexpr f64 kTicksPerNmAtOneKnot = 360000;  // cs in an hour
constexpr i32 kNormalLimitCs = 1000;          // maxEarly and maxLate fall back to this
constexpr i32 kLimitDecayCs = 100;
constexpr f64 kSpeedFactor = 2, kSpeedOnTopKt = 100;  // who has a path to make good isn't seen to rush
constexpr f64 kUnknownSpeedKt = 600;
constexpr i32 kCatchUpFactor = 2;  // so many times faster than reported flies who is beyond its limit ...
constexpr i32 kLatestCs = 3000;    // ... but not for ever
constexpr i32 kRaisedLimitCs = 3000, kTakeOffLateCs = 5000;

/// The latest moment at which S2 may be reached. Who is later than that already hurries, at twice its speed, rather
/// than leaping there.
i64 lf_latest(const LiveAc& ac, const PosSample& s2, i64 hurrying) {
    const i64 latest = i64{s2.time} + ac.maxLate;
    if (hurrying <= latest) return latest;
    return std::max(latest, std::min(hurrying, i64{s2.time} + kLatestCs));
}

}  // namespace

i32 roundToTicks(f64 value) {
    const f64 rounded = std::round(value);
    if (!(rounded >= std::numeric_limits<i32>::min() && rounded <= std::numeric_limits<i32>::max())) {
        throw std::range_error(fmt::format("{} ticks can't be counted", value));
    }
    return static_cast<i32>(rounded);
}

f64 legTicksLeft(const LiveAc& ac) {
    const i64 left = i64{ac.stream[1].time} - simTick;
    return static_cast<f64>(std::max<i64>(left, kShortestLegCs));
}

f64 highestLegSpeed(const LiveAc& ac) {
    const f64 told = std::max(ac.stream[0].speed, ac.stream[1].speed);
    return told > 0 ? told * kSpeedFactor + kSpeedOnTopKt : kUnknownSpeedKt;
}

f64 longestLegTicks(const LiveAc& ac) {
    const i64 latest = i64{ac.stream[1].time} + std::max(ac.maxLate, kLatestCs);
    return static_cast<f64>(std::max<i64>(latest - simTick, kShortestLegCs));
}

i32 legTicksAt(const LiveAc& ac, f64 speed) {
    const PosSample& s1 = ac.stream[0];
    const PosSample& s2 = ac.stream[1];
    const f64 ticks = distanceNm(s1.lat, s1.lon, s2.lat, s2.lon) * kTicksPerNmAtOneKnot / speed;
    return std::max(kShortestLegCs, roundToTicks(ticks));
}

void lf_setArrival(LiveAc& ac, i32 legTicks) {
    const i64 now = simTick;
    PosSample& s2 = ac.stream[1];
    i64 arrival = now + legTicks;
    if (ac.extendCount < 1) {
        arrival = std::min(arrival, lf_latest(ac, s2, now + legTicks / kCatchUpFactor));
        arrival = std::max(arrival, i64{s2.time} - ac.maxEarly);
    }
    const f64 way = distanceNm(ac.lat, ac.lon, s2.lat, s2.lon) * kTicksPerNmAtOneKnot;
    const f64 soonest = static_cast<f64>(now) + (s2.stationary ? 0 : std::ceil(way / highestLegSpeed(ac)));
    s2.time = roundToTicks(std::max(static_cast<f64>(arrival), soonest));
}

f64 lf_legSpeed(const LiveAc& ac) {
    const PosSample& s1 = ac.stream[0];
    const PosSample& s2 = ac.stream[1];
    if (s1.speed != 0 || s2.speed != 0) return (s1.speed + s2.speed) / 2;
    const i64 ticks = std::max<i64>(i64{s2.time} - s1.time, kShortestLegCs);
    return std::max(distanceNm(s1.lat, s1.lon, s2.lat, s2.lon) * kTicksPerNmAtOneKnot / static_cast<f64>(ticks), 1.0);
}

f64 lf_turnAngle(const LiveAc& ac) {
    if (ac.stream.size() < 3) return 0;
    const PosSample& s2 = ac.stream[1];
    const PosSample& s3 = ac.stream[2];
    return wrapPi(bearingRad(s2.lat, s2.lon, s3.lat, s3.lon) - ac.heading);
}

void decayLimits(LiveAc& ac) {
    for (i32* limit : {&ac.maxEarly, &ac.maxLate}) {
        if (*limit > kNormalLimitCs) *limit = std::max(*limit - kLimitDecayCs, kNormalLimitCs);
    }
}

f64 shortWay(f64 degrees) {
    if (degrees > 180.0) return degrees - 360.0;
    if (degrees < -180.0) return degrees + 360.0;
    return degrees;
}

PosSample sampleBetween(const PosSample& s1, const PosSample& s2, f64 part, i32 time) {
    const auto mix = [part](f64 from, f64 to) { return from + (to - from) * part; };
    PosSample sample = s1;
    sample.lat = mix(s1.lat, s2.lat);
    sample.lon = std::remainder(s1.lon + shortWay(s2.lon - s1.lon) * part, 360.0);
    sample.alt = mix(s1.alt, s2.alt);
    sample.speed = mix(s1.speed, s2.speed);
    sample.vs = mix(s1.vs, s2.vs);
    sample.tas = mix(s1.tas, s2.tas);
    sample.time = time;
    return sample;
}

void setFlightState(LiveAc& ac, FlightState state) {
    ac.prevFlightState = ac.flightState;
    ac.flightState = state;
}

i32 throttleFor(const ParkedAc& ac, i32 index) {
    return ac.acClass == Rotorcraft ? 4 : index;
}

void setLimits(LiveAc& ac) {
    ac.maxEarly = kRaisedLimitCs;
    ac.maxLate = ac.takeOffRun ? kTakeOffLateCs : kRaisedLimitCs;
}

}  // namespace hcr
