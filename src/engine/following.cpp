#include "engine/following.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <stdexcept>

#include "core/model/aircraft_class.h"
#include "core/model/geo.h"
#include "core/model/labels.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "engine/air_leg.h"
#include "engine/extension.h"
#include "engine/ground.h"
#include "engine/landing.h"
#include "engine/leg.h"
#include "engine/reappearance.h"
#include "engine/spawn.h"
#include "engine/take_off.h"
#include "shell/log.h"
#include "sim/aircraft.h"
#include "sim/drain.h"

namespace hcr {
namespace {

constexpr f64 kFlarePitchLimit = -0.06981317007977318;  // -4 degrees: a tail strike otherwise
constexpr i32 kExtendTries = 16;                        // more than any rule asks for in one go
constexpr i32 kFailurePauseCs = 100;                    // failures further apart are not one row of failures
constexpr i32 kFailureLogCs = 6000;                     // a failing aircraft is logged once a minute
constexpr i32 kNeverSeenCs = 6000;                      // an object is seen within seconds of its creation
constexpr i32 kFailureLimitCs = 3000;                   // one that fails for 30 s without a break is given up

/// A row of failures of one aircraft, so that a leg that can't be planned neither floods the log nor stands for ever.
struct FailureRow {
    u32 hexid = 0;
    i32 first = 0, last = 0, logged = 0;  // simTick
};
std::vector<FailureRow> gFailures;

FailureRow& lf_failureRow(u32 hexid, i32 tick) {
    for (FailureRow& row : gFailures) {
        if (row.hexid != hexid) continue;
        if (tick - row.last > kFailurePauseCs) row.first = tick;
        row.last = tick;
        return row;
    }
    std::erase_if(gFailures, [tick](const FailureRow& row) { return tick - row.last > kFailureLogCs; });
    return gFailures.emplace_back(FailureRow{hexid, tick, tick, tick});
}

void lf_logFailure(const char* operation, const char* text, const LiveAc& ac) {
    const i32 tick = simTick;
    FailureRow& row = lf_failureRow(ac.hexid, tick);
    if (row.logged != tick && tick - row.logged < kFailureLogCs) return;
    row.logged = tick;
    gf_logError(fmt::format("{}: {} {}, sz:{}, fs:{}, st:{}", operation, text, liveAcLabel(ac), ac.stream.size(),
                            flightStateName(ac.flightState), lifeStateName(ac.lifeState)));
}

/// The failure of this cycle, once nothing more can throw.
void lf_onFailure(LiveAc& ac, const char* text) {
    lf_logFailure("updateLiveAc", text, ac);
    const FailureRow& row = lf_failureRow(ac.hexid, simTick);
    if (row.last - row.first < kFailureLimitCs) return;
    if (ac.lifeState == LifeState::active || ac.lifeState == LifeState::buffer) removeAircraftFromSim(ac);
}

void lf_reportEmptyStream(LiveAc& ac) {
    gf_logError(fmt::format("{} stream empty ? {}, hexid:{}, objectid:{}, alt:{:.0f} ft, lalo:{}, TAS:{:.0f}",
                            "updateLiveAc", liveAcLabel(ac), ac.hexid, ac.objectId, ac.alt,
                            fmt::format("{:.6f},{:.6f}", ac.lat, ac.lon), ac.tas));
    removeAircraftFromSim(ac);
}

void lf_reportNoObject(LiveAc& ac) {
    gf_logError(fmt::format("{} objectid=0? hexid: {},cs:{}, reg:{}, aimo:{} sz:{}", "updateLiveAc", ac.hexid,
                            ac.callsign, ac.registration, airlineModel(ac), ac.stream.size()));
    removeAircraftFromSim(ac);
}

void lf_updateActive(LiveAc& ac, i32 tick) {
    if (ac.stream.empty()) {
        lf_reportEmptyStream(ac);
        return;
    }
    if (tick >= ac.stream.front().time) {
        nextPosMain(ac);
        if (ac.lifeState != LifeState::active) return;
        ac.vsFtPerSec = ac.targetVs / 60.0;
        ac.tas = ac.stream.front().stationary ? 0.0 : ac.targetSpeed;
    }
    if (!ac.stream.front().stationary) lf_stepPosition(ac);
    if (ac.objectId != 0) {
        gPosQueueBack.push_back(PositionCommand{ac.position(), ac.objectId});
    } else {
        lf_reportNoObject(ac);
    }
}

/// Whose object was never seen, since it came into being beyond the range or vanished before, mustn't hold a place for
/// ever. Should the object show itself later, it finds no record and is removed.
void lf_giveUpUnseen(LiveAc& ac) {
    if (ac.objectId == 0 && simTick - ac.createdTick > kNeverSeenCs) ac.eraseLive = true;
}

/// Makes the stream at least two samples long, with an S2 to which the aircraft can move. False: nothing left to fly.
bool lf_provideNextSample(LiveAc& ac) {
    i32 tries = 0;
    for (;;) {
        if (ac.stream.size() >= 2) {
            if (ac.onGround || !ac.stream[1].stationary || ac.acClass == Rotorcraft) return true;
            ac.stream.erase(ac.stream.begin() + 1);  // an aircraft in the air doesn't stop
        } else if (++tries > kExtendTries || !lf_tryExtend(ac)) {
            return false;
        }
    }
}

void lf_nextPos(LiveAc& ac) {
    if (needsALeap(ac)) {  // asked before the plan moves times and puts samples in
        startAnew(ac);
        return;
    }
    ac.curve = GroundCurve{};
    ac.curveT = 0;
    PosSample& s2 = ac.stream[1];
    const PosSample& s1 = ac.stream[0];
    if (!s2.stationary && samePosition(s1.lat, s1.lon, s2.lat, s2.lon)) s2.stationary = true;
    if (!s2.stationary) ac.targetHeading = bearingRad(s1.lat, s1.lon, s2.lat, s2.lon);

    if (ac.onGround) {
        nextPosGround(ac);
    } else {
        lf_nextPosAir(ac);
    }

    if (ac.stream[1].stationary) {
        ac.dLat = ac.dLon = 0;
        if (!ac.rollOut && !ac.takeOffRun) decayLimits(ac);
    } else {
        if (ac.onGround) {
            lf_groundDeltas(ac);
        } else {
            lf_airDeltas(ac);
        }
        // Behind the deltas, for they may choose a later S2.
        const PosSample& target = ac.stream[1];
        const f64 dt = legTicksLeft(ac);
        ac.dLat = (target.lat - ac.lat) / dt;
        ac.dLon = shortWay(target.lon - ac.lon) / dt;
        if (!std::isfinite(ac.dLat + ac.dLon + ac.dAlt + ac.dPitch + ac.dBank + ac.dHeading)) {
            ac.dLat = ac.dLon = ac.dAlt = ac.dPitch = ac.dBank = ac.dHeading = 0;
            throw std::range_error("leg without finite increments");
        }
    }
    ac.stream.erase(ac.stream.begin());
}

f64 lf_wrapHeading(f64 radians) {
    if (radians >= 2 * kPi) {
        radians -= 2 * kPi;
    } else if (radians < 0) {
        radians += 2 * kPi;
    }
    return radians >= 0 && radians < 2 * kPi ? radians : wrapTwoPi(radians);
}

f64 lf_limitPi(f64 radians) {
    return std::clamp(radians, -kPi, kPi);
}

void lf_moveStraight(LiveAc& ac) {
    ac.lat += ac.dLat;
    ac.lon += ac.dLon;
}

void lf_moveAhead(LiveAc& ac) {
    ac.heading = lf_wrapHeading(ac.heading + ac.dHeading);
    lf_moveStraight(ac);
}

void lf_stepHorizontally(LiveAc& ac) {
    // An aircraft in the air never has a curve, and nearly all of them are there.
    if (ac.flightState == FlightState::flying) {
        lf_moveAhead(ac);
        return;
    }
    if (!ac.curve.absent()) {
        stepGround(ac);
        return;
    }
    switch (ac.flightState) {
        case FlightState::pushing_back:
        case FlightState::taxi:
        case FlightState::parking:
            stepGround(ac);
            lf_moveStraight(ac);
            break;
        case FlightState::pushed_back:
            stepGround(ac);
            break;
        default:
            lf_moveAhead(ac);
            break;
    }
}

void lf_lowerNose(LiveAc& ac) {
    ac.pitch += ac.dPitch;
    const bool down = ac.dPitch < 0 ? ac.pitch <= ac.groundPitch : ac.pitch >= ac.groundPitch;
    if (!down) {
        ac.bank += ac.dBank;
        return;
    }
    ac.pitch = ac.groundPitch;
    ac.dPitch = ac.bank = ac.dBank = 0;
    ac.flarePhase = 0;
    ac.rollOutFlare = false;
}

void lf_stepVertically(LiveAc& ac) {
    if (ac.landing && !ac.onGround) lf_flareStep(ac);
    if (ac.rollOutFlare) {
        lf_lowerNose(ac);
    } else if (ac.flarePhase != 0) {
        ac.bank = lf_limitPi(ac.bank + ac.dBank);
        ac.pitch = std::max(ac.pitch + ac.dPitch, kFlarePitchLimit);
        ac.alt += ac.dAlt;
    } else if (ac.onGround) {
        ac.pitch = ac.groundPitch;
        ac.bank = 0;
    } else {
        ac.bank += ac.dBank;
        ac.pitch += ac.dPitch;
        ac.alt += ac.dAlt;
    }
}

void lf_normalise(LiveAc& ac) {
    if (ac.lat > 90.0 || ac.lat < -90.0) {
        ac.lat = (ac.lat > 0 ? 180.0 : -180.0) - ac.lat;
        ac.lon += 180.0;
        ac.dLat = -ac.dLat;  // over the pole the way leads down again
    }
    if (ac.lon > 180.0) {
        ac.lon -= 360.0;
    } else if (ac.lon < -180.0) {
        ac.lon += 360.0;
    }
    if (ac.lon > 180.0 || ac.lon < -180.0) ac.lon = std::remainder(ac.lon, 360.0);
}

}  // namespace

void lf_stepPosition(LiveAc& ac) {
    lf_stepHorizontally(ac);
    if (ac.flightState == FlightState::take_off) {
        lf_takeOffStep(ac);
    } else {
        lf_stepVertically(ac);
    }
    lf_normalise(ac);
}

void nextPosMain(LiveAc& ac) {
    try {
        if (!lf_provideNextSample(ac)) {
            if (ac.lifeState == LifeState::active) removeAircraftFromSim(ac);
            return;
        }
        lf_nextPos(ac);
    } catch (const std::exception& failure) {
        lf_logFailure("nextPosMain", failure.what(), ac);
        throw;
    }
}

bool updateLiveAc(LiveAc& ac) {
    try {
        if (ac.lifeState == LifeState::active) {
            lf_updateActive(ac, simTick.load(std::memory_order_relaxed));
        } else if (ac.lifeState == LifeState::buffer) {
            lf_spawnCheck(ac);
        } else if (ac.lifeState == LifeState::adding2sim) {
            lf_giveUpUnseen(ac);
        }
    } catch (const std::exception& failure) {
        lf_onFailure(ac, failure.what());
    }
    return ac.eraseLive || ac.erase;
}

void gf_updateAllLive() {
    bool anyToErase = false;
    for (LiveAc& ac : gLiveAcs) {
        if (updateLiveAc(ac)) anyToErase = true;
    }
    if (anyToErase) std::erase_if(gLiveAcs, [](const LiveAc& ac) { return ac.eraseLive || ac.erase; });
    gf_swapPositionBuffers();
}

void gf_resetFollowing() {
    gFailures = {};
}

}  // namespace hcr
