#pragma once

#include <vector>

#include "sim/sim_message.h"

namespace hcr {

/// Objects that exist but aren't active yet; counted up once per pass. Worker.
extern std::vector<SimMessage> gPendingObjects;
/// One pass of the waiting list: lights at 50 and 100, initial state and active at 200.
void gf_passPendingObjects();
/// Empties the list, with room for the usual number.
void gf_resetPendingObjects();

}  // namespace hcr
