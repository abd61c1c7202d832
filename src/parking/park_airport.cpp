#include "parking/park_airport.h"

#include <algorithm>
#include <cmath>

#include "core/model/range.h"
#include "core/model/tables.h"
#include "parking/plan.h"
#include "parking/static_aircraft.h"
#include "shell/controls.h"
#include "shell/parameters.h"
#include "shell/window_state.h"
#include "sim/aircraft.h"
#include "sim/session.h"

namespace hcr {
namespace {

constexpr i32 kRangeOnGroundNm = 10, kRangeHighNm = 100, kRangeCruiseNm = 40;
constexpr f64 kNearNm = 7, kFarNm = 37;  // distances to the airport between which the range follows
constexpr f64 kNoAirportNm = 10000;

struct RangeStep {
    i32 distance;  // nm, rounded, from which on ...
    i32 range;     // ... this range holds
};
constexpr RangeStep kRangeSteps[] = {{33, 35}, {28, 30}, {23, 25}, {19, 20}, {17, 18},
                                     {15, 16}, {13, 14}, {11, 12}, {9, 10},  {0, 8}};

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
