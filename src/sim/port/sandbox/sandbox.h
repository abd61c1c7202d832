#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "sim/port/sandbox/scenario.h"
#include "sim/port/sim_port.h"

namespace hcr {

// A simulator of our own behind SimPort, good enough to catch what the real one would punish. It has no thread: its
// world moves on to the clock's present time whenever SimConnect_CallDispatch is called. Its functions may be called
// from any thread, one lock guards them.

/// Starts a fresh sandbox with this scenario and puts it behind gSimPort. With a trace path every call, every event
/// and once a second the state of each AI object is written there, one JSON object per line. Throws
/// std::runtime_error when the trace can't be written.
void gf_startSandbox(const Scenario& scenario, const std::filesystem::path& trace = {});
/// Ends the trace and forgets everything.
void gf_stopSandbox();

// What tests, the demo and its picture look at.

struct SandboxObject {
    u32 id = 0;
    std::string title, tail;
    f64 lat = 0, lon = 0, alt = 0;           ///< degrees, feet
    f64 pitch = 0, bank = 0, heading = 0;    ///< degrees
    f64 vs = 0, tas = 0;                     ///< feet per minute, knots
    f64 agl = 0;                             ///< feet
    bool onGround = false;
    bool released = false;
    bool frozenPosition = false, frozenAltitude = false, frozenAttitude = false;
    u32 gear = 0, flaps = 0, throttle = 0, spoilers = 0, engines = 0;
    u32 nav = 0, beacon = 0, landing = 0, taxi = 0, strobes = 0, logo = 0, cabin = 0;  ///< lights
    i64 positionWrites = 0;                  ///< how often definition 402 was written
};
std::vector<SandboxObject> gf_sandboxObjects();

struct SandboxCounters {
    u64 creates = 0, refusals = 0, removals = 0, positionWrites = 0, events = 0, exceptions = 0, frames = 0,
        calls = 0;
};
SandboxCounters gf_sandboxCounters();

/// Seconds on the sandbox's clock since the session opened, 0 before.
f64 gf_sandboxSeconds();

/// Called for every position write that takes effect, under the sandbox's lock; for tests and for the demo's picture.
/// It must not call the simulator. Null ends it.
using SandboxPositionHook = void (*)(const SandboxObject& object, f64 seconds, void* context);
void gf_setSandboxPositionHook(SandboxPositionHook hook, void* context);

/// Plays one fault now, as if the scenario had it at this moment.
void gf_playSandboxFault(const ScenarioFault& fault);
/// Moves the user's aircraft at once (no teleport fault: it is where it is told to be).
void gf_placeSandboxUser(f64 lat, f64 lon, f64 alt, f64 heading, f64 groundSpeed, bool onGround);

}  // namespace hcr
