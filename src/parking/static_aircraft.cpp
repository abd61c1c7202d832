#include "parking/static_aircraft.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/model/geo.h"
#include "core/model/labels.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "liveries/class_values.h"
#include "liveries/matching.h"
#include "parking/history_search.h"
#include "shell/log.h"
#include "shell/window_state.h"
#include "sim/aircraft.h"

namespace hcr {

u32 gParkedCounter = 0;

namespace {

bool lf_isBeside(const ParkPos& stand, u32 number) {
    return std::find(stand.adjacent.begin(), stand.adjacent.end(), number) != stand.adjacent.end();
}

/// True when a live aircraft that parks or is parked takes the place of an entry, which is logged.
bool lf_liveIsInTheWay(const ParkPos& stand, const ParkPlanEntry& entry) {
    for (const LiveAc& ac : gLiveAcs) {
        if (ac.flightState != FlightState::parking && ac.flightState != FlightState::parked) continue;
        if (ac.standId == stand.number) {
            gf_log(fmt::format("{:8}: no static parking for {}, live aircraft {} standing here", stand.id, entry.cs1,
                               ac.callsign));
            return true;
        }
        if (!lf_isBeside(stand, ac.standId)) continue;
        gf_log(fmt::format("{:8}: no static parking for {}, live aircraft {} is adjacent at {}, possibly colliding",
                           stand.id, entry.cs1, ac.callsign, standName(ac.standId)));
        return true;
    }
    return false;
}

enum class Way { free, taken, wait };

/// Whether another static aircraft is in the way: for good, or leaving.
Way lf_wayPastStatics(const ParkPos& stand, const ParkPlanEntry& entry) {
    Way way = Way::free;
    for (const ParkedAc& ac : gParkedAcs) {
        if (ac.standId != stand.number && !lf_isBeside(stand, ac.standId)) continue;
        if (ac.lifeState == LifeState::removingfromsim) {
            way = Way::wait;
            continue;
        }
        gf_log(fmt::format("{:8}: no static parking for {}, static aircraft {} is adjacent at {}, possibly colliding",
                           stand.id, entry.cs1, ac.callsign, standName(ac.standId)));
        return Way::taken;
    }
    return way;
}

/// The next number that no static aircraft has; 0 means no aircraft of ours.
u32 lf_nextNumber() {
    do {
        gParkedCounter = (gParkedCounter + 1) % kLastStaticId;
    } while (gParkedCounter == 0 || findParkedByHexid(gParkedCounter) != nullptr);
    return gParkedCounter;
}

/// Who stays goes by its inbound name, who is about to leave by its outbound one; "*" marks static aircraft.
std::string lf_callsignOf(const ParkPlanEntry& entry, u32 number) {
    if (entry.cs1.empty()) return fmt::format("{}{}{}", entry.airline, number, "*");
    std::string callsign = entry.stay || entry.cs2.empty() ? entry.cs1 : entry.cs2;
    while (callsign.ends_with('_')) callsign.pop_back();
    if (!callsign.empty() && !callsign.ends_with('*')) callsign += '*';
    return callsign;
}

ParkedAc lf_aircraftOf(const ParkPlanEntry& entry, const ParkPos& stand, std::string callsign, u32 number) {
    ParkedAc ac;
    ac.airline = entry.airline;
    ac.model = entry.type;
    ac.coupledCs1 = entry.cs1;
    ac.coupledCs2 = entry.cs2;
    ac.registration = entry.reg;
    ac.callsign = std::move(callsign);
    ac.hexid = number;
    ac.standLat = stand.lat;
    ac.standLon = stand.lon;
    ac.standHeading = stand.heading;
    ac.standId = stand.number;
    ac.standCargo = stand.cargo;
    setClassValues(ac);
    return ac;
}

AiCreateRequest lf_requestFor(const ParkedAc& ac) {
    AiCreateRequest request;
    request.lat = ac.standLat;
    request.lon = ac.standLon;
    request.heading = ac.standHeading * kRadToDeg;
    request.onGround = 1;
    request.callsign = ac.callsign;
    request.title = ac.liveryTitle;
    request.id = ac.hexid;
    return request;
}

void lf_create(const ParkPlanEntry& entry, const ParkPos& stand) {
    const u32 number = lf_nextNumber();
    std::string callsign = lf_callsignOf(entry, number);
    if (callsign.empty()) {
        gf_logError(fmt::format("{} callsign is empty..", "lf_detcs"));
        return;
    }
    ParkedAc ac = lf_aircraftOf(entry, stand, std::move(callsign), number);
    if (!gf_matchParkedLivery(ac, stand)) return;
    ac.parkedSince = gf_slotBefore(gSlot, entry.fit);
    ac.lifeState = LifeState::adding2sim;
    gParkedAdding.push_back(lf_requestFor(ac));
    gParkedAcs.push_back(std::move(ac));
}

void lf_showQueue() {
    gWindow.queuedStatics = gParkPlanQueue.size();
    gf_repaint(Band::parking);
}

}  // namespace

void lf_detcs() {
    if (gParkPlanQueue.empty() || gStands.empty()) return;
    ParkPlanEntry entry = std::move(gParkPlanQueue.back());
    gParkPlanQueue.pop_back();
    const ParkPos* stand = findStand(entry.standNumber);
    if (stand == nullptr) {
        gf_log(fmt::format("stand with id {} not found", entry.standNumber));
    } else if (!lf_liveIsInTheWay(*stand, entry)) {
        switch (lf_wayPastStatics(*stand, entry)) {
            case Way::free:
                lf_create(entry, *stand);
                break;
            case Way::wait:
                gParkPlanQueue.insert(gParkPlanQueue.begin(), std::move(entry));
                break;
            case Way::taken:
                break;
        }
    }
    lf_showQueue();
}

void gf_removeAllStatic() {
    for (ParkedAc& ac : gParkedAcs) {
        const bool adding = ac.lifeState == LifeState::adding2sim && !ac.removeWhenCreated;
        if (adding || ac.lifeState == LifeState::active) removeAircraftFromSim(ac);
    }
    std::erase_if(gParkedAcs, [](const ParkedAc& ac) { return ac.erase; });
}

}  // namespace hcr
