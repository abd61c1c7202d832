#pragma once

#include <filesystem>
#include <vector>

#include "sim/port/sandbox/object.h"
#include "sim/port/sandbox/scenario.h"

namespace hcr {

// A simulator of our own behind SimPort, good enough to catch what the real one would punish. It has no thread: its
// world moves on to the clock's present time whenever SimConnect_CallDispatch is called. Its functions may be called
// from any thread, one lock guards them.

/// Starts a fresh sandbox with this scenario and puts it behind gSimPort. With a trace path calls, events and once a
/// second the state of each AI object are written there, one JSON object per line; of the streams only a count is
/// told: position writes appear as "writes" in the state lines, frames and dispatches not at all. Throws
/// std::runtime_error when the trace can't be written.
void gf_startSandbox(const Scenario& scenario, const std::filesystem::path& trace = {});
/// Ends the trace and forgets everything.
void gf_stopSandbox();

// What tests, the demo and its picture look at.

std::vector<SandboxObject> gf_sandboxObjects();

SandboxCounters gf_sandboxCounters();

/// The user's aircraft; its lights, gear and so on are those of a parked trainer.
SandboxObject gf_sandboxUserObject();

/// Seconds on the sandbox's clock since the first session opened, 0 before. A later session doesn't begin anew, so
/// that neither the user's path nor a fault is played twice.
f64 gf_sandboxSeconds();

/// Called for every position write that takes effect, under the sandbox's lock; for tests and for the demo's picture.
/// It must not call the simulator. Null ends it.
void gf_setSandboxPositionHook(SandboxPositionHook hook, void* context);

/// Plays one fault now, as if the scenario had it at this moment.
void gf_playSandboxFault(const ScenarioFault& fault);
/// Sets the simulator's clock, Unix seconds; it goes on from there.
void gf_setSandboxUtc(f64 unixSeconds);
/// Moves the user's aircraft at once and takes it off its path: it stays where it is told to be. On the ground it
/// stands on the terrain whatever `alt` is. Degrees, feet, knots.
void gf_placeSandboxUser(f64 lat, f64 lon, f64 alt, f64 heading, f64 groundSpeed, bool onGround);

}  // namespace hcr
