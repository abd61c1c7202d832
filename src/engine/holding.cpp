#include "engine/holding.h"

#include "core/model/geo.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "shell/parameters.h"

namespace hcr {
namespace {

constexpr f64 kInTheWaySpans = 1.2;  // of both half wing spans together
constexpr i32 kTicksPerMinute = 6000;
constexpr i32 kHoldStepCs = 300;

bool lf_isInTheWay(const LiveAc& ac) {
    for (const LiveAc& other : gLiveAcs) {
        if (other.lifeState != LifeState::active || !other.onGround || other.flightState != FlightState::taxi ||
            other.objectId == ac.objectId) {
            continue;
        }
        const f64 bound = (ac.halfSpanNm + other.halfSpanNm) * kInTheWaySpans;
        if (distanceNm(ac.lat, ac.lon, other.lat, other.lon) <= bound) return true;
    }
    return false;
}

}  // namespace

bool lf_holdOnGround(LiveAc& ac) {
    if (ac.stream.empty()) return false;
    if (lf_isInTheWay(ac)) {
        ac.holding = false;
        ac.holdStartTick = 0;
        return false;
    }
    if (ac.holding) {
        const i32 minutes = (simTick - ac.holdStartTick) / kTicksPerMinute;
        if (AIRBORNE_ONLY.current || minutes > MAX_HOLDING_MINUTES.current) return false;
    } else {
        ac.holdStartTick = simTick;
    }
    ac.holding = true;
    PosSample sample = ac.stream.front();
    sample.time += kHoldStepCs;
    sample.speed = 0;
    sample.stationary = true;
    ac.stream.push_back(sample);
    ac.extendCount = 1;
    return true;
}

}  // namespace hcr
