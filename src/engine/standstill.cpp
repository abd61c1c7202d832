#include "engine/standstill.h"

#include <cmath>

#include "core/model/aircraft_class.h"
#include "core/model/geo.h"

namespace hcr {
namespace {

constexpr f64 kStandstillDegrees = 0.00015;              // about 15 m: positions of a standing aircraft scatter as far
constexpr f64 kStandstillSpeed = 50, kRepeatSpeed = 30;  // knots: a take-off run may repeat a position above these

bool lf_within(f64 a, f64 b, f64 bound) {
    return std::abs(a - b) <= bound;
}

}  // namespace

bool lf_checkGroundSample(LiveAc& ac, PosSample& sample) {
    if (ac.stream.empty()) return true;
    const PosSample& last = ac.stream.back();
    const bool equal = samePosition(last.lat, last.lon, sample.lat, sample.lon);
    sample.stationary = equal;
    if (ac.acClass == Rotorcraft) return true;

    const bool inAir = sample.airborne || (ac.lifeState == LifeState::active && !ac.onGround);
    const bool running = ac.takeOffRun && sample.speed > 0;
    if (equal) {
        if (inAir || (running && last.speed >= kRepeatSpeed)) return false;
        sample.speed = 0;
        return true;
    }
    if (lf_within(last.lat, sample.lat, kStandstillDegrees) && lf_within(last.lon, sample.lon, kStandstillDegrees)) {
        if (inAir || (running && last.speed >= kStandstillSpeed)) return false;
        const i32 time = sample.time;
        sample = last;
        sample.time = time;
        sample.speed = 0;
        sample.stationary = true;
        return true;
    }
    if (sample.speed != 0 || (!ac.takeOffRun && !sample.airborne)) return true;
    return last.speed < kStandstillSpeed;
}

}  // namespace hcr
