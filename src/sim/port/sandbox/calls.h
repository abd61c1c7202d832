#pragma once

#include "sim/port/sim_port.h"

namespace hcr {

/// The sandbox's side of every operation of the port.
SimPort gf_sandboxPort();
/// A call of the port by its published name.
bool gf_sandboxHasCall(const char* name);

}  // namespace hcr
