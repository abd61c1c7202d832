#include "engine/spawn.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "core/model/geo.h"
#include "core/model/labels.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "engine/air_leg.h"
#include "engine/conflicts.h"
#include "engine/extension.h"
#include "engine/ground.h"
#include "engine/leg.h"
#include "liveries/dbase.h"
#include "liveries/match_memory.h"
#include "liveries/matching.h"
#include "parking/learned.h"
#include "parking/park_limits.h"
#include "platform/clock.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "sim/aircraft.h"
#include "sim/session.h"

namespace hcr {
namespace {

constexpr i32 kLeadOnGroundCs = 300;  // a taxiing aircraft needs its path three seconds early
constexpr i32 kLeadCs = 100;
constexpr std::size_t kBusyQueue = 10;  // with more creations under way a newcomer waits, with a fresh first sample
constexpr i32 kUntilActiveCs = 200;     // from the call that creates an aircraft until it follows its path
constexpr i32 kBetweenCreationsCs = 50;
constexpr i32 kExchangeCs = 100;       // a far aircraft makes room for a near one at most once in this time ...
constexpr i32 kShownAtLeastCs = 1000;  // ... and never one that has just come
constexpr f64 kNearerByNm = 0.1;       // who takes another's place is nearer by more than this
constexpr std::size_t kLongestCallsign = 8;
constexpr f64 kGroundSpawnPitch = 0.6 * kDegToRad;  // nose down

i32 lf_lastExchange = 0;  // simTick, 0 = none yet

bool lf_isDue(const PosSample& s1) {
    const bool taxiing = !s1.airborne && s1.speed != 0;
    return simTick >= s1.time - (taxiing ? kLeadOnGroundCs : kLeadCs);
}

/// Told again and again in its first place.
bool lf_isStillReported(const LiveAc& ac) {
    return ac.repeats > 0 && ac.stream.front().airborne && ac.stream.front().speed > 0;
}

bool lf_isRemovedGhost(const LiveAc& ac) {
    return ac.callsign.ends_with('_') && std::find(gGhosts.begin(), gGhosts.end(), ac.callsign) != gGhosts.end();
}

void lf_dropFirst(LiveAc& ac) {
    ac.stream.erase(ac.stream.begin());
}

/// Creations that wait on their way to the simulator.
std::size_t lf_creationsWaiting() {
    return gAddingStack.size() + gLiveAdding.size();
}

/// Who had to wait appears where its reports are by now. False: only later samples are left, for which it waits.
bool lf_freshenFirst(LiveAc& ac) {
    if (ac.spawnHeadingValid) return true;  // a respawn goes on in place
    // The earliest moment that is possible: who comes later flies on from there, who came sooner would hang in the air.
    const i32 appearsAt = simTick + kUntilActiveCs + static_cast<i32>(gLiveAdding.size()) * kBetweenCreationsCs;
    while (ac.stream.size() >= 2 && ac.stream[1].time <= appearsAt) lf_dropFirst(ac);
    if (ac.stream.size() < 2) return false;
    const PosSample& s1 = ac.stream[0];
    const PosSample& s2 = ac.stream[1];
    if (s2.stationary || s1.airborne != s2.airborne || s1.time >= appearsAt) return lf_isDue(s1);
    const f64 part = static_cast<f64>(i64{appearsAt} - s1.time) / static_cast<f64>(i64{s2.time} - s1.time);
    ac.stream.front() = sampleBetween(s1, s2, part, appearsAt);
    return true;
}

/// The moment of take-off or landing.
bool lf_changesGround(const SampleStream& stream) {
    const bool first = stream.front().airborne;
    return std::any_of(stream.begin(), stream.end(), [first](const PosSample& s) { return s.airborne != first; });
}

enum class Room { none, later, here };

/// Takes the furthest aircraft out of the simulator for one at `distance` nm. None: nobody is further away.
Room lf_makeRoom(f64 distance, const UserAircraftData& user) {
    LiveAc* furthest = nullptr;
    f64 bound = distance + kNearerByNm;
    bool anyFurther = false;
    for (LiveAc& ac : gLiveAcs) {
        if (ac.lifeState != LifeState::active) continue;
        const f64 away = distanceNm(user.lat, user.lon, ac.lat, ac.lon);
        if (away <= bound) continue;
        anyFurther = true;
        if (simTick - ac.createdTick < kShownAtLeastCs) continue;
        bound = away;
        furthest = &ac;
    }
    if (furthest == nullptr) return anyFurther ? Room::later : Room::none;
    if (simTick - lf_lastExchange < kExchangeCs && lf_lastExchange != 0) return Room::later;
    lf_lastExchange = simTick;
    removeAircraftFromSim(*furthest);
    return Room::here;
}

/// Whoever is in the simulator, on the way there or away for a moment has a place.
bool lf_hasPlace(const LiveAc& ac) {
    return ac.lifeState == LifeState::active || ac.lifeState == LifeState::adding2sim ||
           ac.lifeState == LifeState::liveryrespawn;
}

Room lf_findRoom(const LiveAc& ac) {
    const auto count = std::count_if(gLiveAcs.begin(), gLiveAcs.end(), lf_hasPlace);
    if (count < MAX_LIVE_SEL.current) return Room::here;
    const UserAircraftData user = gf_lastUserPosition();
    const PosSample& s1 = ac.stream.front();
    return lf_makeRoom(distanceNm(user.lat, user.lon, s1.lat, s1.lon), user);
}

bool lf_isValidCallsign(const std::string& callsign) {
    return !callsign.empty() && callsign.size() <= kLongestCallsign && callsign != "@@@@@@@@";
}

/// True when this aircraft is never to be shown as it is.
bool lf_isUnwanted(LiveAc& ac) {
    if (!BLOCK_CALLSIGN.current.empty() && BLOCK_CALLSIGN.current.equals(ac.callsign)) return true;
    lf_completeTexts(ac);
    if (!lf_isValidCallsign(ac.callsign)) return true;
    if (!noMatchAircraft.empty() && noMatchAircraft.contains(gf_noMatchText(ac))) return true;
    return ac.callsign.ends_with('_') && lf_isGhostName(ac.callsign);
}

/// A livery for the aircraft; false when there is none.
bool lf_chooseLivery(LiveAc& ac) {
    if (!ac.liveryTitle.empty()) return true;
    ac.liveryTitle = gf_rememberedLivery(ac.hexid);
    if (!ac.liveryTitle.empty()) {
        ac.fsltlModel = ac.liveryTitle.find("FSLTL_") != std::string_view::npos;
        return true;
    }
    gf_matchLiveLivery(ac);
    if (ac.liveryTitle.empty()) {
        if (!ac.registration.empty()) noMatchAircraft.insert(gf_noMatchText(ac));
        return false;
    }
    rememberedLiveries.insert_or_assign(ac.hexid, ac.liveryTitle);
    return true;
}

void lf_appearOnStand(LiveAc& ac, const ParkPos& stand) {
    ac.standLat = stand.lat;
    ac.standLon = stand.lon;
    ac.standHeading = stand.heading;
    ac.standId = stand.number;
    ac.standCargo = stand.cargo;
    setFlightState(ac, FlightState::parked);
    ac.arrivedTicks = gf_utcTicks100ns();
    ac.lastStandDist = 0;
    ac.retreatCount = 0;
    lf_clearCargo(ac);
    ac.stream.resize(1);
    PosSample& s1 = ac.stream.front();
    s1.lat = stand.lat;
    s1.lon = stand.lon;
    s1.track = stand.heading * kRadToDeg;
    lf_addRealStandOption(ac.standId, ac, 1);
    gf_checkMaxPark(1);
}

/// Livery and state of an aircraft that appears for the first time; false when it isn't to be created now.
bool lf_giveBirth(LiveAc& ac) {
    if (!lf_chooseLivery(ac)) {
        ac.eraseLive = true;
        return false;
    }
    if (ac.stream.front().airborne) {
        setFlightState(ac, FlightState::flying);
        return true;
    }
    const std::optional<u32> standId = lf_standAtSpawn(ac);
    const ParkPos* stand = standId ? findStand(*standId) : nullptr;
    if (stand != nullptr) {
        lf_appearOnStand(ac, *stand);
    } else if (ac.stream[1].stationary) {
        lf_dropFirst(ac);  // it waits for its first movement
        return false;
    } else {
        setFlightState(ac, FlightState::taxi);
    }
    return true;
}

f64 lf_spawnHeading(const LiveAc& ac) {
    if (ac.spawnHeadingValid) return ac.spawnHeading;
    if (ac.flightState == FlightState::parked) return ac.standHeading;
    const PosSample& s1 = ac.stream.front();
    if (ac.stream.size() < 2 || ac.stream[1].stationary) return s1.track * kDegToRad;
    return bearingRad(s1.lat, s1.lon, ac.stream[1].lat, ac.stream[1].lon);
}

void lf_placeOnFirstSample(LiveAc& ac) {
    gCoupledQueue.push_back(ac.hexid);
    const PosSample& s1 = ac.stream.front();
    ac.lat = s1.lat;
    ac.lon = s1.lon;
    ac.alt = s1.alt;
    ac.vsFtPerSec = s1.vs;
    ac.tas = s1.tas;
    ac.bank = s1.rollValid ? std::remainder(s1.roll, 2 * kPi) : 0;
    ac.pitch = s1.airborne ? airPitch(s1.vs) : kGroundSpawnPitch;
    ac.heading = wrapTwoPi(lf_spawnHeading(ac));
    ac.dHeading = s1.airborne ? 0 : ac.heading;
    ac.userConflictSkip = false;
}

}  // namespace

void gf_forgetExchanges() {
    lf_lastExchange = 0;
}

void lf_completeTexts(LiveAc& ac) {
    if (!ac.registration.empty() && !lf_isValidCallsign(ac.callsign)) ac.callsign = ac.registration;
    if (const DbaseRecord* record = ac.registration.empty() ? nullptr : gf_dbaseRecord(ac.registration)) {
        if (!record->airl.empty()) ac.airline = record->airl;
        if (!record->type.empty()) ac.model = record->type;
        if (!record->opr.empty()) ac.airline = record->opr;
        ac.cargo = record->cargo;
    }
    if (ac.airline.empty()) ac.airline = gf_airlineOfCallsign(ac.callsign);
    if (ac.airline.empty()) ac.airline = "PVT";
}

void lf_spawnCheck(LiveAc& ac) {
    if (ac.stream.empty()) {
        ac.eraseLive = true;
        return;
    }
    if (!lf_isDue(ac.stream.front())) return;
    if (ac.stream.size() == 1 && lf_isStillReported(ac)) extendAtBirth(ac);
    if (ac.stream.size() == 1 || lf_isRemovedGhost(ac)) {
        ac.eraseLive = true;
        return;
    }
    if (ac.flightState == FlightState::birth) {
        if (lf_creationsWaiting() > kBusyQueue) return;
        if (simTick > ac.stream.front().time && !lf_freshenFirst(ac)) return;
    }
    if (lf_changesGround(ac.stream)) {
        lf_dropFirst(ac);
        return;
    }
    if (lf_userConflict(ac)) return;
    const Room room = MAX_LIVE_SEL.current == 0 ? Room::none : lf_findRoom(ac);
    if (room == Room::later) return;
    if (room == Room::none || lf_isUnwanted(ac)) {
        ac.eraseLive = true;
        return;
    }
    spawnLiveAc(ac);
}

void spawnLiveAc(LiveAc& ac) {
    if (ac.stream.size() < 2) {
        if (gf_mayLog(LogKind::emptyStream)) {
            gf_logError(fmt::format("{} sz:{}", "spawnLiveAc", ac.stream.size()));
        }
        return;
    }
    PosSample& s1 = ac.stream[0];
    s1.stationary = ac.stream[1].stationary;
    if (s1.stationary) {
        s1.speed = ac.stream[1].speed = 0;
        if (ac.stream.size() > 2 && ac.stream[2].stationary) ac.stream[2].speed = 0;
    }
    if (ac.flightState == FlightState::birth && !lf_giveBirth(ac)) return;
    if (ac.eraseLive) return;
    lf_placeOnFirstSample(ac);
    ac.lifeState = LifeState::adding2sim;
    ac.createdTick = simTick;
    gAddingStack.push_back(ac.hexid);
    if (!ac.callsign.ends_with('_')) lf_findGhost(ac.callsign);
}

}  // namespace hcr
