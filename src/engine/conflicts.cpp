#include "engine/conflicts.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "core/model/geo.h"
#include "core/model/labels.h"
#include "core/model/tables.h"
#include "parking/park_airport.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "sim/aircraft.h"
#include "sim/session.h"
#include "sim/user_aircraft.h"

namespace hcr {
namespace {

constexpr f64 kSlowKt = 8;
constexpr f64 kClearOfUserNm = 500 / kMetresPerNm;
constexpr f64 kBesideUserNm = 150 / kMetresPerNm;
constexpr f64 kAheadNm = 6, kAheadFt = 3000, kAheadAsideFt = 4000;
constexpr f64 kRunwayNm = 1.5, kRunwayAgl = 1000, kRunwayAsideFt = 500;
constexpr f64 kGroundSpans = 1.15, kStaticSpans = 1.1;
constexpr f64 kTouchNm = 1, kTouchAgl = 500, kTouchAsideFt = 50;
constexpr f64 kCrashNm = 4, kCrashFt = 1000, kCrashAsideFt = 700;

LatLon lf_lastUserCheck;  // user's position at the last check against static aircraft

/// The name in front of the last character; empty when there is none.
std::string_view lf_base(std::string_view callsign) {
    return callsign.substr(0, callsign.empty() ? 0 : callsign.size() - 1);
}

/// How far aside of a line a point lies, in feet, when it is seen at `angle` from the line at `nm`.
f64 lf_asideFt(f64 angle, f64 nm) {
    return std::sin(std::abs(wrapPi(angle))) * nm * kFeetPerNm;
}

bool lf_isActive(const ParkedAc& ac) {
    return ac.lifeState == LifeState::active;
}

LiveAc* lf_findShown(std::string_view callsign) {
    for (LiveAc& ac : gLiveAcs) {
        if (ac.callsign == callsign && ac.lifeState != LifeState::removingfromsim) return &ac;
    }
    return nullptr;
}

bool lf_namesFlight(const ParkedAc& parked, std::string_view callsign) {
    return parked.coupledCs1 == callsign || parked.coupledCs2 == callsign;
}

bool lf_isSameFlight(const ParkedAc& parked, const LiveAc& ac) {
    return lf_namesFlight(parked, ac.callsign) || (!ac.coupledCs2.empty() && lf_namesFlight(parked, ac.coupledCs2)) ||
           (ac.callsign.ends_with('_') && lf_namesFlight(parked, lf_base(ac.callsign)));
}

bool lf_blocksUserOnGround(const LiveAc& ac, const PosSample& s1, const UserAircraftData& user) {
    const f64 distance = distanceNm(user.lat, user.lon, s1.lat, s1.lon);
    if (ac.userConflictSkip) {
        if (user.groundSpeed > kSlowKt) return true;
        if (!s1.airborne) return !(s1.speed <= kSlowKt && distance >= kClearOfUserNm);
    }
    if (s1.airborne || !COLLISION_USER_GND.current) return false;
    return distance < kBesideUserNm;
}

/// Where the aircraft is going to fly: a record that waits to appear has no heading of its own yet.
f64 lf_firstCourse(const LiveAc& ac) {
    const PosSample& s1 = ac.stream.front();
    if (ac.stream.size() < 2) return s1.track * kDegToRad;
    return bearingRad(s1.lat, s1.lon, ac.stream[1].lat, ac.stream[1].lon);
}

bool lf_blocksUserInAir(LiveAc& ac, const PosSample& s1, const UserAircraftData& user) {
    if (!COLLISION_USER_AIR.current) return false;
    const f64 distance = distanceNm(user.lat, user.lon, s1.lat, s1.lon);
    const f64 bearing = bearingRad(user.lat, user.lon, s1.lat, s1.lon);
    if (s1.airborne) {
        if (distance <= kAheadNm && std::abs(s1.alt - user.alt) < kAheadFt &&
            lf_asideFt(lf_firstCourse(ac) - bearing, distance) <= kAheadAsideFt) {
            ac.userConflictSkip = true;
        }
    } else if (distance <= kRunwayNm && user.agl < kRunwayAgl &&
               lf_asideFt(bearing - user.heading, distance) <= kRunwayAsideFt) {
        ac.userConflictSkip = true;
    }
    return ac.userConflictSkip;
}

bool lf_crashesIntoUser(const LiveAc& ac, const UserAircraftData& user) {
    const f64 distance = distanceNm(user.lat, user.lon, ac.lat, ac.lon);
    const f64 bearing = bearingRad(user.lat, user.lon, ac.lat, ac.lon);
    if (ac.onGround && user.agl < kTouchAgl && distance <= kTouchNm &&
        lf_asideFt(bearing - user.heading, distance) <= kTouchAsideFt) {
        return true;
    }
    return distance <= kCrashNm && std::abs(ac.alt - user.alt) < kCrashFt &&
           lf_asideFt(ac.heading - bearing, distance) <= kCrashAsideFt;
}

}  // namespace

void lf_findGhost(std::string_view callsign) {
    std::string name(callsign);
    name += '_';
    LiveAc* ghost = lf_findShown(name);
    if (ghost == nullptr) return;
    const bool mayLog = gf_mayLog(LogKind::ghost);
    if (mayLog && ghost->flightState == FlightState::parked) {
        gf_log(fmt::format("{:8}: {:8} is a ghost and will be removed, continue with {}", standName(ghost->standId),
                           ghost->callsign, callsign));
    } else if (mayLog) {
        gf_log(
            fmt::format("          {:8} is a ghost and will be removed, continue with {}", ghost->callsign, callsign));
    }
    if (std::find(gGhosts.begin(), gGhosts.end(), name) == gGhosts.end()) gGhosts.push_back(std::move(name));
    removeAircraftFromSim(*ghost);
}

bool lf_isGhostName(std::string_view callsign) {
    const std::string_view plain = lf_base(callsign);
    return !plain.empty() && lf_findShown(plain) != nullptr;
}

bool lf_userConflict(LiveAc& ac) {
    const UserAircraftData user = gf_lastUserPosition();
    const PosSample& s1 = ac.stream.front();
    const bool conflict = gUserOnGround ? lf_blocksUserOnGround(ac, s1, user) : lf_blocksUserInAir(ac, s1, user);
    if (conflict) ac.stream.erase(ac.stream.begin());
    return conflict;
}

void gf_checkSameFlight(LiveAc& ac, bool onGround) {
    if (ac.callsign.empty()) return;
    const char* place = onGround ? "on ground" : "airborne";
    for (ParkedAc& parked : gParkedAcs) {
        if (!lf_isActive(parked)) continue;
        if (!ac.registration.empty() && ac.registration == parked.registration) {
            gf_log(fmt::format("{:8}: {:8} {} removed, new {} '{}' has same regcode {}", standName(parked.standId),
                               parked.callsign, parked.registration, place, ac.callsign, ac.registration));
        } else if (lf_isSameFlight(parked, ac)) {
            gf_log(fmt::format("{:8}: {:8} '{}' '{}' removed, new {} {} '{}' '{}' has {} callsign",
                               standName(parked.standId), parked.callsign, parked.coupledCs1, parked.coupledCs2, place,
                               ac.callsign, ac.coupledCs1, ac.coupledCs2,
                               parked.coupledCs1 == ac.callsign ? "same" : "coupled"));
        } else {
            continue;
        }
        removeAircraftFromSim(parked);
        return;
    }
}

void gf_removeStaticOfSameFlight() {
    for (const LiveAc& ac : gLiveAcs) {
        if (!lf_isActive(ac) || !ac.onGround) continue;
        for (ParkedAc& parked : gParkedAcs) {
            if (!lf_isActive(parked)) continue;
            const bool sameName = parked.callsign.ends_with('*') && lf_base(parked.callsign) == ac.callsign;
            if (!sameName && (ac.registration.empty() || parked.registration != ac.registration)) continue;
            removeAircraftFromSim(parked);
            return;
        }
    }
}

void gf_clearUserStand() {
    gf_clearSelectedStand();
}

void lf_userGroundConflict() {
    const UserAircraftData user = gf_lastUserPosition();
    const f64 userSpan = userHalfWingSpan;
    for (LiveAc& ac : gLiveAcs) {
        if (!lf_isActive(ac) || !ac.onGround) continue;
        if ((userSpan + ac.halfSpanNm) * kGroundSpans < distanceNm(user.lat, user.lon, ac.lat, ac.lon)) continue;
        removeAircraftFromSim(ac);
        return;
    }
    if (samePosition(user.lat, user.lon, lf_lastUserCheck.lat, lf_lastUserCheck.lon)) return;
    lf_lastUserCheck = {user.lat, user.lon};
    for (ParkedAc& parked : gParkedAcs) {
        if (!lf_isActive(parked)) continue;
        const f64 distance = distanceNm(user.lat, user.lon, parked.standLat, parked.standLon);
        if ((userSpan + parked.halfSpanNm) * kStaticSpans < distance) continue;
        removeAircraftFromSim(parked);
        return;
    }
}

void lf_userAirConflict() {
    const UserAircraftData user = gf_lastUserPosition();
    for (LiveAc& ac : gLiveAcs) {
        if (!lf_isActive(ac) || !lf_crashesIntoUser(ac, user)) continue;
        removeAircraftFromSim(ac);
        return;
    }
}

void lf_checkStaticCollision(LiveAc& ac) {
    if (ac.rollOut || ac.takeOffRun) return;
    ac.lastCollisionLat = ac.lat;
    ac.lastCollisionLon = ac.lon;
    for (ParkedAc& parked : gParkedAcs) {
        if (!lf_isActive(parked) || parked.callsign == ac.callsign) continue;
        const f64 bound = (parked.halfSpanNm + ac.halfSpanNm) * kStaticSpans;
        if (bound < distanceNm(ac.lat, ac.lon, parked.standLat, parked.standLon)) continue;
        gf_log(fmt::format("{:8}: {:8} removed for collision avoidance with static {}", standName(parked.standId),
                           parked.callsign, ac.callsign));
        removeAircraftFromSim(parked);
        return;
    }
}

void gf_resetConflicts() {
    lf_lastUserCheck = {};
}

}  // namespace hcr
