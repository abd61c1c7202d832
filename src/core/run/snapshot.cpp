#include "core/run/snapshot.h"

#include <atomic>
#include <mutex>

#include "core/model/geo.h"
#include "core/model/tables.h"
#include "liveries/match_memory.h"
#include "sim/session.h"

namespace hcr {
namespace {

std::atomic<bool> gSnapshotWanted{false};
std::mutex gSnapshotMutex;
std::vector<AircraftRow> gRows;

AircraftRow lf_rowOf(const LiveAc& ac, const UserAircraftData& user) {
    AircraftRow row;
    row.callsign = ac.callsign;
    row.model = ac.model;
    row.registration = ac.registration;
    row.title = ac.liveryTitle;
    row.matchStep = ac.liveryTitle.empty() ? -1 : gf_matchStepOf(ac.hexid);
    const bool placed = ac.lifeState != LifeState::buffer;
    row.lat = placed || ac.stream.empty() ? ac.lat : ac.stream.front().lat;
    row.lon = placed || ac.stream.empty() ? ac.lon : ac.stream.front().lon;
    row.alt = placed || ac.stream.empty() ? ac.alt : ac.stream.front().alt;
    row.tas = placed || ac.stream.empty() ? ac.tas : ac.stream.front().tas;
    row.distance = distanceNm(user.lat, user.lon, row.lat, row.lon);
    row.lifeState = ac.lifeState;
    row.flightState = ac.flightState;
    return row;
}

}  // namespace

void gf_wantSnapshot(bool wanted) {
    gSnapshotWanted = wanted;
}

void gf_takeSnapshot() {
    if (!gSnapshotWanted) return;
    const UserAircraftData user = gf_lastUserPosition();
    std::vector<AircraftRow> rows;
    rows.reserve(gLiveAcs.size());
    for (const LiveAc& ac : gLiveAcs) rows.push_back(lf_rowOf(ac, user));
    const std::lock_guard lock(gSnapshotMutex);
    gRows = std::move(rows);
}

void gf_forgetSnapshot() {
    const std::lock_guard lock(gSnapshotMutex);
    gRows = {};
}

std::vector<AircraftRow> gf_snapshot() {
    const std::lock_guard lock(gSnapshotMutex);
    return gRows;
}

}  // namespace hcr
