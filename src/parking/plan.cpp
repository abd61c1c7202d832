#include "parking/plan.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "parking/airport_file.h"
#include "parking/airport_parameters.h"
#include "parking/history_search.h"
#include "parking/plan_levels.h"
#include "parking/plan_steps.h"
#include "parking/static_aircraft.h"
#include "shell/controls.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "shell/text.h"
#include "shell/window_state.h"

namespace hcr {
namespace {

constexpr i32 kMinutesAfterRenewal = 19;

ParameterControl* const kRenewalControls[] = {&parking_percentage, &WEEK,         &PARK_SOFT,         &MAX_FIT_FL,
                                              &MAX_PARK_SEL,       &MAX_LIVE_SEL, &gFlushStaticButton};

/// Count of parked aircraft and the half hours that they have been there, added up.
struct ParkedTime {
    u64 count = 0;
    f64 halfHours = 0;

    void add(const ParkedAc& ac, const HalfHourSlot& now) {
        ++count;
        if (ac.parkedSince <= now) halfHours += now.weekScale() - ac.parkedSince.weekScale();
    }
    f32 meanHours() const {
        if (count == 0) return 0;
        return static_cast<f32>(halfHours / (2.0 * static_cast<f64>(count)) + 0.5);
    }
};

/// True when the field changed.
template <typename Value>
bool lf_set(std::atomic<Value>& field, Value value) {
    return field.exchange(value) != value;
}

bool lf_refreshStatics(const HalfHourSlot& now) {
    ParkedTime time;
    for (const ParkedAc& ac : gParkedAcs) {
        if (ac.lifeState == LifeState::active || ac.lifeState == LifeState::removingfromsim) time.add(ac, now);
    }
    bool changed = lf_set(gWindow.staticCount, time.count);
    if (!gWindow.planWeek) changed = lf_set(gWindow.fitStatic, time.meanHours()) || changed;
    return changed;
}

}  // namespace

void gf_parkTick(bool) {}

void gf_beginRenewal() {
    gRenewalRunning = true;
    for (ParameterControl* control : kRenewalControls) gf_enableControl(*control, false);
    if (!INITIAL_LOAD_ONLY.current) gf_enableControl(gNowButton, false);
    gf_enableControl(gReReadButton, false);
}

void gf_endRenewal() {
    gRenewalRunning = false;
    if (lf_set(gWindow.minutesToRenewal, kMinutesAfterRenewal)) gf_repaint(Band::parking);
    for (ParameterControl* control : kRenewalControls) gf_enableControl(*control, true);
    if (!INITIAL_LOAD_ONLY.current) gf_enableControl(gNowButton, true);
    gf_enableControl(gReReadButton, true);
}

void gf_planParking() {
    const HalfHourSlot slot = beginPlan();
    gf_beginRenewal();
    gWindow.fitStatic = gWindow.fitLive = -1.0F;
    const i32 wanted = gf_wantedParked();
    if (wanted > static_cast<i32>(gParkPlanQueue.size())) lf_planAllLevels(slot, wanted, 0);
    sortByFit(gParkPlanQueue, true);
    gParkPlanQueue.resize(std::min(gParkPlanQueue.size(), static_cast<std::size_t>(std::max(wanted, 0))));
    if (gParkPlanQueue.empty()) {
        gf_log("no parking positions found");
        gf_endRenewal();
        return;
    }
    const auto found = static_cast<i64>(gParkPlanQueue.size());
    gf_log(fmt::format("{} positions ({}% vs wanted {}%, with Max fit={:.1F} hours)\n", found,
                       gf_percentage(found, static_cast<i64>(gStands.size())), parking_percentage.current.load(),
                       MAX_FIT_FL.current.load()));
    sortByFit(gParkPlanQueue, false);  // taken from the end: the best fits first
}

void gf_saveStaticParked() {}

void gf_cancelPlanOf(u32 standId) {
    if (std::erase_if(gParkPlanQueue, [standId](const ParkPlanEntry& entry) { return entry.standNumber == standId; }) >
        0) {
        gWindow.queuedStatics = gParkPlanQueue.size();
        gf_repaint(Band::parking);
    }
}

void gf_refreshCounters() {
    u64 moving = 0;
    ParkedTime parked;
    const HalfHourSlot now = gSlot;
    for (const LiveAc& ac : gLiveAcs) {
        if (ac.lifeState != LifeState::active) continue;
        if (ac.flightState == FlightState::parked) {
            parked.add(ac, now);
        } else {
            ++moving;
        }
    }
    if (lf_set(gWindow.liveCount, moving)) gf_repaint(Band::liveTraffic);
    bool changed = lf_set(gWindow.parkedLiveCount, parked.count);
    changed = lf_set(gWindow.fitLive, parked.meanHours()) || changed;
    changed = lf_refreshStatics(now) || changed;
    if (changed) gf_repaint(Band::parking);
}

void gf_resetParking() {
    gf_resetPlanState();
    gf_resetAirportFile();
    gf_forgetAirportParameters();
    gRealCallsigns.clear();
    gParkedCounter = 0;
}

}  // namespace hcr
