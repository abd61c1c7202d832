#include "engine/reappearance.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "core/model/geo.h"
#include "core/model/labels.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "engine/leg.h"
#include "shell/log.h"
#include "sim/aircraft.h"

namespace hcr {
namespace {

constexpr f64 kTicksPerNmAtOneKnot = 360000;

void lf_leaveStandBehind(LiveAc& ac) {
    if (ParkPos* stand = ac.standId == 0 ? nullptr : findStand(ac.standId)) stand->takenByLive = false;
    ac.standId = 0;
    ac.standLat = ac.standLon = ac.standHeading = 0;
    ac.standCargo = false;
}

/// A record as new, but for what is known of the aircraft itself and for its path.
LiveAc lf_freshRecord(LiveAc& ac) {
    LiveAc fresh;
    static_cast<ParkedAc&>(fresh) = std::move(static_cast<ParkedAc&>(ac));
    fresh.turnRate = fresh.taxiTurnRate;
    fresh.stream = std::move(ac.stream);
    fresh.lastTimestamp = ac.lastTimestamp;
    fresh.reportLat = ac.reportLat;
    fresh.reportLon = ac.reportLon;
    fresh.repeats = ac.repeats;
    fresh.reportTick = ac.reportTick;
    fresh.lat = ac.lat;
    fresh.lon = ac.lon;
    fresh.hasFlightPlan = ac.hasFlightPlan;
    return fresh;
}

/// The sample that a respawn goes on from, at the front of the stream.
PosSample lf_respawnSample(LiveAc& ac) {
    PosSample& s1 = ac.stream.front();
    if (ac.flightState == FlightState::parked) {
        ac.stream.resize(1);
        s1.stationary = true;
        s1.track = ac.heading * kRadToDeg;
        return s1;
    }
    s1.stationary = samePosition(s1.lat, s1.lon, ac.lat, ac.lon);
    PosSample sample = s1;
    sample.lat = ac.lat;
    sample.lon = ac.lon;
    sample.alt = ac.alt;
    sample.roll = ac.bank;
    sample.rollValid = true;
    return sample;
}

}  // namespace

bool needsALeap(const LiveAc& ac) {
    const PosSample& s2 = ac.stream[1];
    if (s2.stationary || ac.extendCount >= 1) return false;
    const f64 way = distanceNm(ac.lat, ac.lon, s2.lat, s2.lon) * kTicksPerNmAtOneKnot;
    return way > highestLegSpeed(ac) * longestLegTicks(ac);
}

void startAnew(LiveAc& ac) {
    lf_leaveStandBehind(ac);
    ac.stream.erase(ac.stream.begin());
    ac = lf_freshRecord(ac);
    ac.lifeState = LifeState::liveryrespawn;
    if (ac.objectId == 0) {
        ac.eraseLive = true;
        return;
    }
    u32 selected = ac.objectId;
    gSelectedObject.compare_exchange_strong(selected, 0);
    gRemovedObjects.push_back(ac.objectId);
}

void liveryRespawn(LiveAc& ac) {
    if (!ac.stream.empty()) {
        PosSample sample = lf_respawnSample(ac);
        sample.time = simTick + 1;
        ac.stream.insert(ac.stream.begin(), sample);
        // The former front may be due behind the sample that follows it, since its time was that of the arrival.
        if (ac.stream.size() >= 3) ac.stream[1].time = std::min(ac.stream[1].time, ac.stream[2].time - 1);
    }
    ac.lifeState = LifeState::liveryrespawn;
    ac.spawnHeading = ac.heading;
    ac.spawnHeadingValid = true;
    if (ac.objectId == 0) {
        gf_logError(fmt::format("{} removing act {} with objectid=0 ?", "liveryRespawn", liveAcLabel(ac)));
        return;
    }
    u32 selected = ac.objectId;
    gSelectedObject.compare_exchange_strong(selected, 0);
    gRemovedObjects.push_back(ac.objectId);
}

}  // namespace hcr
