#pragma once

#include "sim/port/sandbox/world.h"

namespace hcr {

/// Goes on to the clock's present time, in the order of what is due. Inside the sandbox only, under its lock.
void gf_sandboxAdvance(SandboxWorld& world);

}  // namespace hcr
