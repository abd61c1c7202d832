#pragma once

#include "sim/port/sim_port.h"

namespace hcr {

/// The sandbox's side of every operation of the port.
SimPort gf_sandboxPort();

}  // namespace hcr
