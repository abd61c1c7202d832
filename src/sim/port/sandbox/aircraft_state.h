#pragma once

#include <array>
#include <string>
#include <vector>

#include "sim/port/layouts.h"
#include "sim/port/sandbox/object.h"
#include "sim/port/sandbox/scenario.h"
#include "sim/port/sandbox/variables.h"

namespace hcr {

// One aircraft of the sandbox and how it moves when nobody holds it. Everything under the sandbox's lock.

/// The user's aircraft or an AI object.
struct SandboxAircraft {
    u32 id = 0;
    u32 type = SIMCONNECT_SIMOBJECT_TYPE_AIRCRAFT;
    std::string title, model, tail;
    std::string from, to;                  ///< of its flight plan
    f64 lat = 0, lon = 0;                  ///< degrees
    f64 alt = 0;                           ///< feet
    f64 pitch = 0, bank = 0, heading = 0;  ///< radians
    f64 vs = 0;                            ///< feet per second
    f64 tas = 0;                           ///< knots
    f64 staticCg = 0, staticPitch = 0;     ///< feet, radians
    f64 ground = 0;                        ///< elevation under it, feet; valid while groundKnown
    bool groundKnown = false;
    bool standing = false;  ///< the user's aircraft: on the ground by its path
    bool foreign = false;   ///< not created by the client
    f64 shownAt = 0;        ///< seconds; before it nobody is told of it
    bool released = false;  ///< the simulator's AI doesn't control it
    bool frozenPosition = false, frozenAltitude = false, frozenAttitude = false;
    f64 looseSince = 0;  ///< seconds; when something began to move it
    bool gearDown = false, engines = false;
    u32 flaps = 0;                                ///< 0..16383
    f64 spoilers = 0;                             ///< percent
    std::array<f64, kSandboxEngines> throttle{};  ///< percent, below 0 is reverse
    u32 lights = 0;                               ///< SandboxLight bits
    i64 positionWrites = 0;
    i64 tracedWrites = 0;  ///< position writes that the trace has told of
};

/// Bits of the variable of the light states (published mask).
enum SandboxLight : u32 {
    kLightNav = 0x1,
    kLightBeacon = 0x2,
    kLightLanding = 0x4,
    kLightTaxi = 0x8,
    kLightStrobe = 0x10,
    kLightLogo = 0x100,
    kLightCabin = 0x200,
};
inline constexpr u32 kAllSandboxLights =
    kLightNav | kLightBeacon | kLightLanding | kLightTaxi | kLightStrobe | kLightLogo | kLightCabin;

/// Full scale of the event data of throttle, flaps and spoilers.
inline constexpr u32 kSandboxFullScale = 16383;

/// Elevation of the terrain in feet.
f64 gf_sandboxGround(const Scenario& scenario, f64 lat, f64 lon);
f64 gf_sandboxGroundUnder(const Scenario& scenario, SandboxAircraft& ac);
bool gf_sandboxOnGround(const Scenario& scenario, SandboxAircraft& ac);

/// Nothing moves it: no AI control and frozen on all axes.
bool gf_sandboxHeld(const SandboxAircraft& ac);
/// The sandbox's own AI, and gravity where an axis isn't frozen: moves the aircraft by `dt` seconds.
void gf_sandboxMoveLoose(const Scenario& scenario, SandboxAircraft& ac, f64 now, f64 dt);
/// What one simulator event does to an AI object.
void gf_sandboxApplyEvent(SandboxAircraft& ac, SandboxSimEvent event, u32 data, f64 now);
/// The aircraft as tests and the trace see it; reuses the texts' memory.
void gf_sandboxSnapshot(const Scenario& scenario, SandboxAircraft& ac, SandboxObject& out);

/// The user's aircraft on its path at `seconds`; at least one point.
UserPoint gf_sandboxUserAt(const std::vector<UserPoint>& path, f64 seconds, f64* feetPerSecond);

}  // namespace hcr
