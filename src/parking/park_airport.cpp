#include "parking/park_airport.h"

#include <algorithm>
#include <atomic>
#include <cmath>

#include "core/model/tables.h"
#include "feed/traffic_reader.h"
#include "parking/plan.h"
#include "shell/parameters.h"
#include "shell/controls.h"
#include "shell/window_state.h"
#include "sim/aircraft.h"
#include "sim/session.h"

namespace hcr {
namespace {

constexpr i32 kRangeOnGroundNm = 10, kRangeHighNm = 100, kRangeCruiseNm = 40;
constexpr f64 kNearNm = 7, kFarNm = 37;  // distances to the airport between which the range follows
constexpr f64 kNoAirportNm = 10000;
constexpr u32 kMetresPerMile = 1852;

struct RangeStep {
    i32 distance;  // nm, rounded, from which on ...
    i32 range;     // ... this range holds
};
constexpr RangeStep kRangeSteps[] = {{33, 35}, {28, 30}, {23, 25}, {19, 20}, {17, 18},
                                     {15, 16}, {13, 14}, {11, 12}, {9, 10},  {0, 8}};

std::atomic<u32> lf_rangeMetres{40 * kMetresPerMile};

f64 lf_firstAirportNm(const UserAircraftData& user) {
    const std::lock_guard lock(gParkAirportsMutex);
    if (gParkAirports.empty()) return kNoAirportNm;
    return distanceNm(user.lat, user.lon, gParkAirports.front().lat, gParkAirports.front().lon);
}

i32 lf_approachRange(const UserAircraftData& user) {
    const f64 distance = lf_firstAirportNm(user);
    if (distance <= kNearNm) return kRangeOnGroundNm;
    if (!(distance < kFarNm)) return kRangeCruiseNm;
    const auto rounded = static_cast<i32>(std::lround(distance));
    for (const RangeStep& step : kRangeSteps) {
        if (rounded >= step.distance) return step.range;
    }
    return kRangeOnGroundNm;
}

bool lf_standsSomewhere(const LiveAc& ac) {
    switch (ac.flightState) {
        case FlightState::parked:
        case FlightState::pushing_back:
        case FlightState::pushed_back:
        case FlightState::taxi:
        case FlightState::take_off:
            return true;
        default:
            return false;
    }
}

}  // namespace

std::mutex gParkAirportsMutex;
std::vector<ParkAirportEntry> gParkAirports;
AirportEntry gParkAirport;
std::string gSelectedStand;

bool gf_hasParkAirport() {
    return !gParkAirport.code.empty();
}

f64 gf_parkAirportAlt(f64 without) {
    return gf_hasParkAirport() ? gParkAirport.alt : without;
}

void gf_setRange(i32 nm) {
    RANGE.current = std::clamp(nm, RANGE.lower, RANGE.upper);
    if (std::find(RANGE.values.begin(), RANGE.values.end(), RANGE.current) != RANGE.values.end()) {
        gf_showInControl(RANGE);
    }
    gTrafficReader.rangeNm = nm;
    lf_rangeMetres = static_cast<u32>(std::max(nm, 0)) * kMetresPerMile;
}

void gf_autoRange() {
    if (gUserOnGround) {
        gf_setRange(kRangeOnGroundNm);
        return;
    }
    const UserAircraftData user = gf_lastUserPosition();
    if (user.agl > AR_ABOVE_HEIGHT.current) {
        gf_setRange(kRangeHighNm);
    } else if (user.agl > AIRP_HEIGHT.current) {
        gf_setRange(kRangeCruiseNm);
    } else {
        gf_setRange(lf_approachRange(user));
    }
}

u32 gf_rangeMetres() {
    return lf_rangeMetres;
}

bool lf_readMyParkAirports() {
    const std::lock_guard lock(gParkAirportsMutex);
    gParkAirports.clear();
    return true;
}

bool gf_reReadParkAirports(bool, std::string& message) {
    if (!lf_readMyParkAirports()) return false;
    if (message.empty()) message = "park airports and stands are okay";
    return true;
}

void gf_setDestination(const std::string& code, LatLon position) {
    const std::lock_guard lock(gParkAirportsMutex);
    const auto known = std::find_if(gParkAirports.begin(), gParkAirports.end(),
                                    [&code](const ParkAirportEntry& entry) { return entry.code == code; });
    if (known != gParkAirports.end()) {
        std::rotate(gParkAirports.begin(), known, known + 1);
    } else {
        gParkAirports.insert(gParkAirports.begin(), ParkAirportEntry{code, {}, position.lat, position.lon, 0});
    }
}

std::string gf_standUnderUser(LatLon) {
    return {};
}

void gf_rememberUserStand() {}

void gf_clearSelectedStand() {
    const auto stand =
        std::find_if(gStands.begin(), gStands.end(), [](const ParkPos& s) { return s.id == gSelectedStand; });
    const u32 number = stand == gStands.end() ? 0 : stand->number;
    if (number == 0) return;
    for (ParkedAc& ac : gParkedAcs) {
        if (ac.standId != number || ac.lifeState != LifeState::active) continue;
        removeAircraftFromSim(ac);
        return;
    }
    for (LiveAc& ac : gLiveAcs) {
        if (ac.standId != number || ac.lifeState != LifeState::active || ac.flightState != FlightState::parked)
            continue;
        removeAircraftFromSim(ac);
        return;
    }
}

void lf_leaveAirport() {
    gParkPlanQueue.clear();
    gf_removeAllStatic();
    for (LiveAc& ac : gLiveAcs) {
        if (!lf_standsSomewhere(ac)) continue;
        ac.standId = 0;
        ac.standCargo = false;
        if (ac.lifeState == LifeState::active || ac.lifeState == LifeState::adding2sim) removeAircraftFromSim(ac);
    }
    std::erase_if(gLiveAcs, [](const LiveAc& ac) { return ac.erase; });
    gf_leaveAirportState();
}

void gf_leaveAirportState() {
    gParkAirport = AirportEntry{};
    gSelectedStand.clear();
    gParkPlanQueue.clear();
    gStands.clear();
    gWindow.parkAirport.set("");
    gf_repaint(Band::parking);
}

}  // namespace hcr
