#include "core/run/tick.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>

#include "core/model/geo.h"
#include "core/model/labels.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "core/model/validate.h"
#include "core/run/snapshot.h"
#include "core/run/window_commands.h"
#include "engine/conflicts.h"
#include "engine/following.h"
#include "engine/life_cycle.h"
#include "engine/sim_news.h"
#include "feed/control_channel.h"
#include "feed/readers.h"
#include "feed/traffic_reader.h"
#include "liveries/match_memory.h"
#include "parking/learned.h"
#include "parking/park_airport.h"
#include "parking/plan.h"
#include "parking/renewal.h"
#include "parking/static_aircraft.h"
#include "platform/clock.h"
#include "shell/controls.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/parameter_file.h"
#include "shell/run_stop.h"
#include "shell/text.h"
#include "shell/time_text.h"
#include "shell/version.h"
#include "shell/window_state.h"
#include "sim/aircraft.h"
#include "sim/drain.h"
#include "sim/requests.h"
#include "sim/session.h"

namespace hcr {

i64 gLastTickUs = 0;
u32 gSeconds = 0;
bool gFlightStopped = false;
i32 gNotRunningCycles = kNotRunningCycles;
bool gRenewPhase = false;

namespace {

constexpr int kReportsPerCycle = 2;
constexpr i32 kInRangeTicks = 20;    // status of all AI aircraft, five times a second
constexpr i32 kPositionTicks = 100;  // user's position, once a second
constexpr i32 kMessageSeconds = 25;  // a message stays this long in its line
constexpr u32 kSecondsPerDay = 86400;
constexpr i64 kUsPerSecond = 1'000'000;
constexpr f64 kLongestGapUs = 5e6;  // between two cycles; a longer one is a pause

WindowText gCallsigns;  // written by the run thread, read by the window's selector

bool lf_takeReport(TrafficReport& report) {
    const std::lock_guard lock(gReportMutex);
    if (gReports.empty()) return false;
    std::swap(report, gReports.front());
    gReports.pop_front();
    return true;
}

// The reports are handled without the lock, so that the Traffic Reader never waits for it.
void lf_takeReports() {
    TrafficReport report;
    for (int i = 0; i < kReportsPerCycle && lf_takeReport(report); ++i) gf_decodeReport(report);
}

void lf_requestCreationOfNewest() {
    if (gAddingStack.empty()) return;
    const u32 hexid = gAddingStack.back();
    gAddingStack.pop_back();
    const LiveAc* ac = findLiveByHexid(hexid);
    if (ac == nullptr) return;
    if (ac->callsign.empty()) {
        gf_logError(fmt::format("{} {} objectid = 0?", "lf_handleAddingStack", liveAcLabel(*ac)));
        return;
    }
    AiCreateRequest request;
    request.lat = ac->lat;
    request.lon = ac->lon;
    request.alt = ac->alt;
    request.pitch = ac->pitch * kRadToDeg;
    request.bank = ac->bank * kRadToDeg;
    request.heading = ac->heading * kRadToDeg;
    request.callsign = ac->callsign;
    request.title = ac->liveryTitle;
    request.id = ac->hexid;
    gLiveAdding.push_back(std::move(request));
}

void lf_takeReRead() {
    if (gRenewalRunning || !gReReadCmd.exchange(false)) return;
    std::string message;
    gf_reReadParkAirports(true, message);
    if (!message.empty()) gf_showMessage(message, true);
    gf_enableControl(gReReadButton, true);
    gf_enableControl(DESTINATION, true);
}

void lf_resumeAfterStop() {
    if (!gFlightStopped) return;
    gFlightStopped = false;
    gf_log(fmt::format("{} Flight resumed", gf_timeOfDay()));
    gf_wantReports(true);
}

void lf_ageMessage() {
    const i32 now = ++gWindow.secondsCounter;
    const i32 shownAt = gWindow.messageShownAt;
    if (shownAt != 0 && now - shownAt >= kMessageSeconds) gf_clearMessage();
}

void lf_checkNextSameFlight() {
    if (gCoupledQueue.empty()) return;
    const u32 hexid = gCoupledQueue.front();
    gCoupledQueue.pop_front();
    LiveAc* ac = findLiveByHexid(hexid);
    if (ac == nullptr) return;
    if (!ac->coupledSearched) {
        lf_searchForCoupledCsAroundThisTime(gSlot, *ac);
        ac->coupledSearched = true;
    }
    gf_checkSameFlight(*ac, ac->onGround);
}

LiveAc* lf_findActive(const std::string& callsign) {
    const auto it = std::find_if(gLiveAcs.begin(), gLiveAcs.end(), [&](const LiveAc& ac) {
        return ac.lifeState == LifeState::active && ac.callsign == callsign;
    });
    return it == gLiveAcs.end() ? nullptr : &*it;
}

void lf_showSelection() {
    if (!gShowSelectionCmd.exchange(false)) return;
    if (const LiveAc* ac = lf_findActive(CALLSIGN_2_OBJECTID.current.get())) {
        gSelectedObject = ac->objectId;
        gWindow.selectionText.set(fmt::format("= {}", ac->objectId));
    } else {
        gWindow.selectionText.set("has left");
    }
    gf_repaint(Band::liveTraffic);
}

void lf_flushStatic() {
    if (!gFlushStaticCmd.exchange(false)) return;
    gf_removeAllStatic();
    if (INITIAL_LOAD_ONLY.current) return;
    INITIAL_LOAD_ONLY.current = true;
    gf_storeParameter(INITIAL_LOAD_ONLY);
    gf_showInControl(INITIAL_LOAD_ONLY);
}

void lf_refreshCallsignList() {
    if (!gRefreshCsListCmd.exchange(false)) return;
    std::vector<std::string_view> names;
    for (const LiveAc& ac : gLiveAcs) {
        if (ac.lifeState == LifeState::active && ac.flightState != FlightState::parked) names.push_back(ac.callsign);
    }
    std::sort(names.begin(), names.end());
    gCallsigns.set(fmt::format("{}", fmt::join(names, "\n")));
    CALLSIGN_2_OBJECTID.current.set("");
    gf_showInControl(CALLSIGN_2_OBJECTID);
    gShowSelectionCmd = true;
}

void lf_checkCollisions() {
    if (gUserOnGround) {
        if (COLLISION_USER_GND.current) lf_userGroundConflict();
    } else if (COLLISION_USER_AIR.current) {
        lf_userAirConflict();
    }
    if (!COLLISION_LIVE_PARKED_GND.current || gParkedAcs.empty()) return;
    for (LiveAc& ac : gLiveAcs) {
        const bool moves = ac.flightState == FlightState::taxi || ac.flightState == FlightState::parking;
        if (ac.lifeState != LifeState::active || !ac.onGround || !moves) continue;
        if (!samePosition(ac.lat, ac.lon, ac.lastCollisionLat, ac.lastCollisionLon)) lf_checkStaticCollision(ac);
    }
}

void lf_takeBlock() {
    if (!gBlockCmd.exchange(false)) return;
    const std::string callsign = BLOCK_CALLSIGN.current.get();
    if (callsign.empty()) return;
    if (LiveAc* ac = lf_findActive(callsign)) removeAircraftFromSim(*ac);
}

/// A renewal has two stages 15 seconds apart: first the callsigns of the real traffic are collected, then it runs.
void lf_driveRenewal() {
    if (!gRenewStatics) return;
    if (!gRenewPhase) {
        gRenewPhase = true;
        gf_beginRenewal();
        gf_collectCallsigns(true);
        return;
    }
    gRenewPhase = false;
    gf_collectCallsigns(false);  // what was collected belongs to the renewal now; without one it must not grow
    gf_clearMessage();
    if (gf_hasParkAirport() && !gStands.empty()) gf_renewParking();
    gf_logFlush();
    gRenewStatics = false;
}

void lf_announceRenewal() {
    gf_beginRenewal();
    const u32 left = 15 - gSeconds % 15;
    gf_showMessage(fmt::format("{} will update static parking in {} second{} ...", kProgramName, left, gf_plural(left)),
                   false);
    gRenewStatics = true;
}

void lf_countDownRenewal() {
    const bool due = --gRenewalMinutes < 1;
    if (due) gRenewalMinutes = kMinutesBetweenRenewals;
    gWindow.minutesToRenewal = gRenewalMinutes;
    gf_repaint(Band::parking);
    if (!due || gStands.empty()) return;
    if (!INITIAL_LOAD_ONLY.current && !gRenewalRunning && !gRenewStatics) lf_announceRenewal();
}

/// A computer that was asleep, or a program that was halted: as in a pause of the flight, traffic stands where it was,
/// and what was received before is too old to be shown now.
void lf_noticeGap() {
    const i64 now = gf_steadyUs();
    const i64 gap = gLastTickUs == 0 ? 0 : now - gLastTickUs;
    gLastTickUs = now;
    if (static_cast<f64>(gap) <= kLongestGapUs * gf_clockFactor()) return;
    gf_log(fmt::format("{} No cycle for {} seconds, what was received before is dropped", gf_timeOfDay(),
                       gap / kUsPerSecond));
    const std::lock_guard lock(gReportMutex);
    gReports.clear();
}

void lf_everyFifthSecond() {
    gf_handPositionToDecoder();
    if (gFeedClock) gf_sendQs123(gSimTime);
    if (!gSelectedStand.empty()) gf_clearUserStand();
    lf_takeReRead();
    if (gSeconds % 15 == 0) gf_every15Seconds();
}

}  // namespace

std::string gf_callsignList() {
    return gCallsigns.get();
}

bool gf_tick() {
    lf_noticeGap();
    if (!gFlightRunning || gRequestError) {
        gf_flightNotRunning();
        return !gf_stopAsked();
    }
    lf_handleAddingStack();
    if (!gSecondPulse.exchange(false)) return !gf_stopAsked();  // a silent simulator gives no pulse
    gf_everySecond();
    if (gf_stopAsked()) return false;
    if (gSeconds % 5 == 0) {
        lf_everyFifthSecond();
        return true;
    }
    if (gSeconds % 16 == 0 && !gRenewPhase) gf_parkTick(false);
    if (gSeconds % 59 == 0) gf_checkReaders();
    if (gSeconds % 61 == 0) gf_removeStaticOfSameFlight();
    return true;
}

void gf_handPositionToDecoder() {
    const UserAircraftData user = gf_lastUserPosition();
    gTrafficReader.userLat = user.lat;
    gTrafficReader.userLon = user.lon;
}

void gf_resetTick() {
    gLastTickUs = 0;
    gSeconds = 0;
    gFlightStopped = false;
    gNotRunningCycles = kNotRunningCycles;
    gRenewPhase = false;
    gCallsigns.set("");
}

void lf_handleAddingStack() {
    gf_handleSimMessages();
    gf_updateAllLive();
    const i32 tick = simTick;
    if (gf_paceQueues(tick) && !gParkPlanQueue.empty()) lf_detcs();
    lf_takeReports();
    lf_requestCreationOfNewest();
    if (tick % kInRangeTicks == 0 && !gRequestError) gf_requestAircraftInRange();
    if (tick % kPositionTicks == 0) {
        gf_sendQs121();
        gf_fetchUserPosition();
    }
    ++simTick;
}

void gf_everySecond() {
#ifdef HALCYRANE_VALIDATE
    if (const std::string fault = validateLiveTable(); !fault.empty()) {
        gf_logError(fault);
        gf_logFlush();
        std::abort();
    }
#endif
    lf_resumeAfterStop();
    lf_ageMessage();
    gf_refreshCounters();
    gf_takeSnapshot();
    gSlot = currentSlot();
    ++gSeconds;
    lf_checkNextSameFlight();
    lf_showSelection();
    lf_flushStatic();
    lf_refreshCallsignList();
    lf_checkCollisions();
    lf_takeBlock();
    if (gRenewalRunning) {
        gWindow.queuedStatics = gParkPlanQueue.size();
        gf_repaint(Band::parking);
    }
}

void gf_every15Seconds() {
    lf_driveRenewal();
    if (gWindow.trafficLamp == kLampSilent || gWindow.weatherLamp == kLampSilent) gf_checkReaders();
    if (gSeconds % 30 != 0) return;
    if (gClearNoMatchCmd.exchange(false)) noMatchAircraft.clear();
    if (AUTO_RANGE.current) gf_autoRange();
    if (gSeconds % 60 == 0) lf_countDownRenewal();
    if (gSeconds % 1200 == 0) gf_logNoMatchList();
    if (gSeconds % kSecondsPerDay == 0) {
        gSeconds = 0;
        gf_logMatchSummary();
        gf_forgetLiveries();
    }
    gf_logFlush();
}

void gf_flightNotRunning() {
    if (!gFlightStopped) {
        gf_wantReports(false);
        gFlightStopped = true;
        gNotRunningCycles = kNotRunningCycles;
        gf_clearPositionBuffers();
        gf_log(fmt::format("{} Flight not running", gf_timeOfDay()));
    }
    gf_handleSimMessages();
    --gNotRunningCycles;
    if (gNotRunningCycles % kNotRunningCycles == 0) {
        lf_takeReRead();
        gf_sendQs121();
    }
    if (gNotRunningCycles < 1) {
        gNotRunningCycles = kNotRunningCycles;
        gf_refreshCounters();
        gf_takeSnapshot();
        gSlot = currentSlot();
    }
}

}  // namespace hcr
