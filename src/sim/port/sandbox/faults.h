#pragma once

#include "sim/port/sandbox/world.h"

namespace hcr {

// What happens to the simulator by itself. Inside the sandbox only, under its lock.

/// Lets a fault of the scenario happen.
void gf_sandboxPlay(SandboxWorld& world, const ScenarioFault& fault);
/// The flight stands still, for `seconds` or until it is resumed.
void gf_sandboxPause(SandboxWorld& world, f64 seconds);
void gf_sandboxResume(SandboxWorld& world);
/// Frames per second from now on.
void gf_sandboxSetFrameRate(SandboxWorld& world, f64 rate);
/// The simulator ends, for `seconds` or for ever.
void gf_sandboxQuit(SandboxWorld& world, f64 seconds);

}  // namespace hcr
