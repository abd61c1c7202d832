#include "parking/park_limits.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/model/labels.h"
#include "core/model/tables.h"
#include "parking/plan.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "sim/aircraft.h"

namespace hcr {
namespace {

bool lf_isParkedLive(const LiveAc& ac) {
    return ac.flightState == FlightState::parked && ac.lifeState == LifeState::active;
}

bool lf_isShownStatic(const ParkedAc& ac) {
    return ac.lifeState == LifeState::active || ac.lifeState == LifeState::removingfromsim;
}

LiveAc* lf_longestParkedLive() {
    LiveAc* longest = nullptr;
    for (LiveAc& ac : gLiveAcs) {
        if (lf_isParkedLive(ac) && (longest == nullptr || ac.arrivedTicks < longest->arrivedTicks)) longest = &ac;
    }
    return longest;
}

ParkedAc* lf_longestParkedStatic() {
    ParkedAc* longest = nullptr;
    for (ParkedAc& ac : gParkedAcs) {
        if (!lf_isShownStatic(ac)) continue;
        if (longest == nullptr || ac.parkedSince.weekScale() < longest->parkedSince.weekScale()) longest = &ac;
    }
    return longest;
}

}  // namespace

void gf_checkMaxPark(i32 plusOne) {
    const auto live = static_cast<i32>(std::count_if(gLiveAcs.begin(), gLiveAcs.end(), lf_isParkedLive));
    gf_refreshCounters();
    const i32 max = gMaxParked;
    if (max < 1) return;
    if (!INITIAL_LOAD_ONLY.current && live + plusOne > max) {
        if (LiveAc* longest = lf_longestParkedLive()) {
            gf_log(fmt::format("{:8}: {} live max park exceeded, removed", standName(longest->standId),
                               longest->callsign));
            removeAircraftFromSim(*longest);
        }
    }
    const auto statics = static_cast<i32>(std::count_if(gParkedAcs.begin(), gParkedAcs.end(), lf_isShownStatic));
    if (statics + live + plusOne <= max) return;
    ParkedAc* longest = lf_longestParkedStatic();
    if (longest == nullptr || longest->lifeState != LifeState::active) return;
    gf_log(fmt::format("{:8}: {} static max park exceeded, removed", standName(longest->standId), longest->callsign));
    removeAircraftFromSim(*longest);
}

void gf_removeLongestParked(i32 count) {
    for (i32 i = 0; i < count; ++i) {
        LiveAc* longest = lf_longestParkedLive();
        if (longest == nullptr) return;
        gf_log(fmt::format("live parked {} at {} removed", liveAcLabel(*longest), standName(longest->standId)));
        removeAircraftFromSim(*longest);
    }
}

}  // namespace hcr
