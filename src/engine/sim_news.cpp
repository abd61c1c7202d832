#include "engine/sim_news.h"

#include <fmt/format.h>

#include <mutex>
#include <utility>

#include "core/model/geo.h"
#include "core/model/labels.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "engine/landing.h"
#include "parking/plan.h"
#include "shell/log.h"
#include "sim/aircraft.h"
#include "sim/flight_plan.h"
#include "sim/requests.h"
#include "sim/sim_message.h"
#include "sim/waiting_list.h"

namespace hcr {
namespace {

constexpr std::size_t kUsualBatch = 256;  // messages between two cycles
constexpr u32 kFirstObject = 3;           // smaller ids are no objects
constexpr f64 kLowestCgFt = 1, kHighestCgFt = 35;
constexpr f64 kLowestPitch = -1 * kDegToRad, kHighestPitch = 2.5 * kDegToRad;
constexpr f64 kUsualGroundPitch = 0.7 * kDegToRad;

std::vector<SimMessage> lf_batch;  // kept for its memory

/// Puts the table's last record in the place of this one.
template <typename Record>
void lf_eraseBySwap(std::vector<Record>& table, Record* record) {
    if (record != &table.back()) *record = std::move(table.back());
    table.pop_back();
}

void lf_onParkedCreated(LiveAc& ac) {
    ac.parkedSince = gSlot;
    const std::string stand = standName(ac.standId);
    gf_log(fmt::format("{:8}: {:8} parks", stand, ac.callsign));
    gf_cancelPlanOf(ac.standId);
    for (ParkedAc& parked : gParkedAcs) {
        if (parked.standId != ac.standId || parked.lifeState != LifeState::active) continue;
        gf_log(fmt::format("{:8}: {:8} parks over static {} — static will be removed", stand, ac.callsign,
                           parked.callsign));
        removeAircraftFromSim(parked);
    }
}

void lf_onGroundCreated(LiveAc& ac) {
    ac.onGround = true;
    gf_setGear(ac, true);
    ac.dAlt = 0;
    ac.groundRunCount = 1;
    if (ac.flightState == FlightState::parked) lf_onParkedCreated(ac);
}

/// True when the message goes to the waiting list.
bool lf_onObjectCreated(const SimMessage& message) {
    if (message.object < kFirstObject) return false;
    LiveAc* ac = findLiveByHexid(message.id);
    if (ac == nullptr || ac->lifeState != LifeState::adding2sim) {
        gRemovedObjects.push_back(message.object);  // nobody would ever move it
        return false;
    }
    ac->objectId = message.object;
    ac->createdTick = simTick;
    ac->agl = message.b;
    if (!ac->stream.empty() && !ac->stream.front().airborne) lf_onGroundCreated(*ac);
    gf_makeFlightPlan(*ac);
    gf_requestStaticData(message.object);
    return true;
}

void lf_onObjectGone(u32 object) {
    if (object == 0) return;
    if (LiveAc* ac = findLiveByObject(object)) {
        if (ac->lifeState == LifeState::liveryrespawn) {
            ac->lifeState = LifeState::buffer;
            ac->throttleIndex = kNoThrottleSent;
            ac->flapsIndex = kNoFlapsSent;
            ac->objectId = 0;
            if (ac->hasFlightPlan) gf_removeFlightPlan(object);
            ac->hasFlightPlan = false;
            return;
        }
        if (ac->hasFlightPlan) gf_removeFlightPlan(object);
        lf_eraseBySwap(gLiveAcs, ac);
    } else if (ParkedAc* parked = findParkedByObject(object)) {
        lf_eraseBySwap(gParkedAcs, parked);
    }
}

void lf_onStaticData(const SimMessage& message) {
    ParkedAc* ac = findLiveByObject(message.object);
    if (ac == nullptr) ac = findParkedByObject(message.object);
    if (ac == nullptr) return;
    if (message.a >= kLowestCgFt && message.a <= kHighestCgFt) ac->staticCgFt = message.a;
    const bool usable = message.b > kLowestPitch && message.b <= kHighestPitch;
    ac->groundPitch = usable ? message.b : kUsualGroundPitch;
}

/// The record of an object that will never be. A live one frees its stand for the next.
void lf_dropUncreated(u32 hexid) {
    if (hexid <= kLastStaticId) {
        if (ParkedAc* parked = findParkedByHexid(hexid)) lf_eraseBySwap(gParkedAcs, parked);
    } else if (LiveAc* ac = findLiveByHexid(hexid)) {
        ParkPos* stand = ac->standId != 0 ? findStand(ac->standId) : nullptr;
        if (stand != nullptr) stand->takenByLive = false;
        lf_eraseBySwap(gLiveAcs, ac);
    }
}

void lf_createRefused(u32 hexid) {
    const ParkedAc* ac = hexid > kLastStaticId ? findLiveByHexid(hexid) : findParkedByHexid(hexid);
    if (ac == nullptr) return;
    gf_onCreateFailed(*ac);
    lf_dropUncreated(hexid);
}

void lf_handle(const SimMessage& message) {
    switch (message.kind) {
        case SimKind::liveCreated:
            if (lf_onObjectCreated(message)) gPendingObjects.push_back(message);
            break;
        case SimKind::staticCreated:
            gPendingObjects.push_back(message);
            break;
        case SimKind::objectGone:
            lf_onObjectGone(message.object);
            break;
        case SimKind::aiStatus:
            if (LiveAc* ac = message.object == 0 ? nullptr : findLiveByObject(message.object)) {
                lf_onAiStatus(*ac, message);
            }
            break;
        case SimKind::staticData:
            if (message.object != 0) lf_onStaticData(message);
            break;
        case SimKind::createRefused:
            lf_createRefused(message.id);
            break;
        case SimKind::noRoom:
            lf_dropUncreated(message.id);  // its next report begins anew, and may find room
            break;
    }
}

}  // namespace

void gf_handleSimMessages() {
    lf_batch.clear();
    lf_batch.reserve(kUsualBatch);
    {
        // Handled outside of the lock, so that the simulator's thread never waits for the engine.
        const std::lock_guard lock(gSimEventMutex);
        gSimEvents.swap(lf_batch);
    }
    for (const SimMessage& message : lf_batch) lf_handle(message);
    if (!gPendingObjects.empty()) gf_passPendingObjects();
}

}  // namespace hcr
