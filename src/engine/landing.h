#pragma once

#include "core/model/aircraft.h"
#include "sim/sim_message.h"

namespace hcr {

// Approach, flare and touchdown. The moments that need a park airport wait for one; the rest is what every aircraft in
// the air passes through. Run thread.

void lf_lowAltitudeConfig(LiveAc& ac);
void lf_flareStep(LiveAc& ac);
void lf_onAiStatus(LiveAc& ac, const SimMessage& message);

}  // namespace hcr
