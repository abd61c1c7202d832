#pragma once

#include "core/model/aircraft.h"
#include "sim/sim_message.h"

namespace hcr {

// Approach, flare and touchdown. The moments that need a park airport wait for one; the rest is what every aircraft in
// the air passes through. Run thread.

/// Lights, flaps, spoilers and gear by the height above ground, asked at samples in the air.
void lf_lowAltitudeConfig(LiveAc& ac);
/// One cycle, 10 ms, of an approach: the next phase of the flare begins at its height.
void lf_flareStep(LiveAc& ac);
/// Takes the heights that the simulator told of the aircraft (feet; `a` the ground's, `b` above it); touchdown is seen
/// here.
void lf_onAiStatus(LiveAc& ac, const SimMessage& message);

}  // namespace hcr
