#include "sim/port/sandbox/aircraft_state.h"

#include <algorithm>
#include <cmath>

#include "core/model/geo.h"

namespace hcr {
namespace {

constexpr f64 kTouchFt = 0.5;      // the gear touches while it is within this of standing height
constexpr f64 kSettleS = 2;        // the AI leaves a new or retaken aircraft alone for so long
constexpr f64 kAiMinSpeedKt = 60;  // an aircraft in the air doesn't stand still
constexpr f64 kAiCreepKt = 3;      // nor does one on the ground that nobody holds
constexpr f64 kAiSinkFtPerSec = 500.0 / 60;
constexpr f64 kFallFtPerSec = 1500.0 / 60;  // without AI and without a frozen altitude nobody flies it
constexpr f64 kAiTurnRadPerSec = 1 * kDegToRad;
constexpr f64 kAiBank = 5 * kDegToRad;

f64 lf_wrapLon(f64 lon) {
    if (lon > 180) return lon - 360;
    if (lon < -180) return lon + 360;
    return lon;
}

u32 lf_lightOf(SandboxSimEvent event) {
    switch (event) {
        case SandboxSimEvent::nav:
            return kLightNav;
        case SandboxSimEvent::beacon:
            return kLightBeacon;
        case SandboxSimEvent::landing:
            return kLightLanding;
        case SandboxSimEvent::taxi:
            return kLightTaxi;
        case SandboxSimEvent::strobes:
            return kLightStrobe;
        case SandboxSimEvent::logo:
            return kLightLogo;
        case SandboxSimEvent::cabin:
            return kLightCabin;
        default:
            return 0;
    }
}

void lf_setLight(u32& lights, u32 bit, bool on) {
    lights = on ? lights | bit : lights & ~bit;
}

i32 lf_fullScale(f64 percent) {
    return static_cast<i32>(std::lround(std::clamp(percent, -100.0, 100.0) * kSandboxFullScale / 100.0));
}

}  // namespace

f64 gf_sandboxGround(const Scenario& scenario, f64 lat, f64 lon) {
    for (const GroundDisc& disc : scenario.ground) {
        if (std::abs(lat - disc.lat) * 60 > disc.radiusNm + 1) continue;
        if (distanceNm(lat, lon, disc.lat, disc.lon) <= disc.radiusNm) return disc.elevation;
    }
    return scenario.elevation;
}

f64 gf_sandboxGroundUnder(const Scenario& scenario, SandboxAircraft& ac) {
    if (!ac.groundKnown) {
        ac.ground = gf_sandboxGround(scenario, ac.lat, ac.lon);
        ac.groundKnown = true;
    }
    return ac.ground;
}

bool gf_sandboxOnGround(const Scenario& scenario, SandboxAircraft& ac) {
    return ac.standing || ac.alt - gf_sandboxGroundUnder(scenario, ac) <= ac.staticCg + kTouchFt;
}

bool gf_sandboxHeld(const SandboxAircraft& ac) {
    return ac.released && ac.frozenPosition && ac.frozenAltitude && ac.frozenAttitude;
}

void gf_sandboxMoveLoose(const Scenario& scenario, SandboxAircraft& ac, f64 now, f64 dt) {
    if (gf_sandboxHeld(ac)) return;
    const bool ai = !ac.released;
    const bool settled = now - ac.looseSince >= kSettleS;
    const bool onGround = gf_sandboxOnGround(scenario, ac);
    if (onGround && !settled) return;
    if (ai || !ac.frozenPosition) {
        const f64 knots = onGround ? kAiCreepKt : std::max(ac.tas, kAiMinSpeedKt);
        const LatLon to = destinationPoint(ac.lat, ac.lon, ac.heading, knots * kFeetPerNm / 3600 * dt);
        ac.lat = to.lat;
        ac.lon = to.lon;
        ac.groundKnown = false;
    }
    const f64 standing = gf_sandboxGroundUnder(scenario, ac) + ac.staticCg;
    if (onGround) {
        if (ai || !ac.frozenAltitude) ac.alt = standing;
        return;
    }
    if (!settled) return;
    if (ai || !ac.frozenAltitude) {
        const f64 sink = ai ? kAiSinkFtPerSec : kFallFtPerSec;
        ac.alt = std::max(ac.alt - sink * dt, standing);
        ac.vs = -sink;
    }
    if (ai || !ac.frozenAttitude) {
        ac.heading = wrapTwoPi(ac.heading + std::fmod(kAiTurnRadPerSec * dt, 2 * kPi));
        ac.bank = kAiBank;
    }
}

void gf_sandboxApplyEvent(SandboxAircraft& ac, SandboxSimEvent event, u32 data, f64 now) {
    const bool wasHeld = gf_sandboxHeld(ac);
    const u32 scaled = std::min(data, kSandboxFullScale);
    const f64 percent = scaled * 100.0 / kSandboxFullScale;
    switch (event) {
        case SandboxSimEvent::gear:
            ac.gearDown = data != 0;
            break;
        case SandboxSimEvent::engineStart:
            ac.engines = true;
            break;
        case SandboxSimEvent::engineStop:
            ac.engines = false;
            break;
        case SandboxSimEvent::throttle:
            ac.throttle.fill(percent);
            break;
        case SandboxSimEvent::flaps:
            ac.flaps = scaled;
            ac.released = false;  // the simulator's AI takes control again
            break;
        case SandboxSimEvent::spoilers:
            ac.spoilers = percent;
            break;
        case SandboxSimEvent::allLights:
            ac.lights ^= kAllSandboxLights;
            break;
        case SandboxSimEvent::freezePosition:
            ac.frozenPosition = data != 0;
            break;
        case SandboxSimEvent::freezeAltitude:
            ac.frozenAltitude = data != 0;
            break;
        case SandboxSimEvent::freezeAttitude:
            ac.frozenAttitude = data != 0;
            break;
        default:
            lf_setLight(ac.lights, lf_lightOf(event), data != 0);
            break;
    }
    if (wasHeld && !gf_sandboxHeld(ac)) ac.looseSince = now;
}

void gf_sandboxSnapshot(const Scenario& scenario, SandboxAircraft& ac, SandboxObject& out) {
    out.id = ac.id;
    out.title = ac.title;
    out.tail = ac.tail;
    out.from = ac.from;
    out.to = ac.to;
    out.lat = ac.lat;
    out.lon = ac.lon;
    out.alt = ac.alt;
    out.pitch = ac.pitch * kRadToDeg;
    out.bank = ac.bank * kRadToDeg;
    out.heading = ac.heading * kRadToDeg;
    out.vs = ac.vs * 60;
    out.tas = ac.tas;
    out.agl = ac.alt - gf_sandboxGroundUnder(scenario, ac);
    out.onGround = gf_sandboxOnGround(scenario, ac);
    out.released = ac.released;
    out.frozenPosition = ac.frozenPosition;
    out.frozenAltitude = ac.frozenAltitude;
    out.frozenAttitude = ac.frozenAttitude;
    out.gear = ac.gearDown;
    out.flaps = ac.flaps;
    out.throttle = lf_fullScale(ac.throttle[0]);
    out.spoilers = static_cast<u32>(lf_fullScale(ac.spoilers));
    out.engines = ac.engines;
    out.nav = (ac.lights & kLightNav) != 0;
    out.beacon = (ac.lights & kLightBeacon) != 0;
    out.landing = (ac.lights & kLightLanding) != 0;
    out.taxi = (ac.lights & kLightTaxi) != 0;
    out.strobes = (ac.lights & kLightStrobe) != 0;
    out.logo = (ac.lights & kLightLogo) != 0;
    out.cabin = (ac.lights & kLightCabin) != 0;
    out.positionWrites = ac.positionWrites;
}

UserPoint gf_sandboxUserAt(const std::vector<UserPoint>& path, f64 seconds, f64* feetPerSecond) {
    *feetPerSecond = 0;
    const auto after = std::upper_bound(path.begin(), path.end(), seconds,
                                        [](f64 at, const UserPoint& point) { return at < point.at; });
    if (after == path.begin()) return path.front();
    if (after == path.end()) return path.back();
    const UserPoint& a = *(after - 1);
    const UserPoint& b = *after;
    const f64 span = b.at - a.at;
    const f64 part = (seconds - a.at) / span;
    UserPoint point = a;
    point.at = seconds;
    point.lat = a.lat + (b.lat - a.lat) * part;
    point.lon = lf_wrapLon(a.lon + lf_wrapLon(b.lon - a.lon) * part);
    point.alt = a.alt + (b.alt - a.alt) * part;
    const f64 turn = std::remainder(b.heading - a.heading, 360.0);
    point.heading = std::fmod(a.heading + turn * part + 360.0, 360.0);
    point.groundSpeed = a.groundSpeed + (b.groundSpeed - a.groundSpeed) * part;
    if (!a.onGround) *feetPerSecond = (b.alt - a.alt) / span;
    return point;
}

}  // namespace hcr
