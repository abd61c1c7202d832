#pragma once

#include "core/model/aircraft.h"
#include "sim/sim_message.h"

namespace hcr {

// Approach, flare, touchdown, and how a report is judged against what the aircraft is doing. The moments that need a
// park airport wait for one; the rest is what every aircraft in the air passes through.

void lf_lowAltitudeConfig(LiveAc& ac);
void lf_flareStep(LiveAc& ac);
void lf_onAiStatus(LiveAc& ac, const SimMessage& message);
/// True: the sample goes on into the stream.
bool checkExtendingSituations(LiveAc& ac, PosSample& sample);
bool checkNewPosDuringLanding(LiveAc& ac, PosSample& sample);
/// maxEarly 3000, maxLate 5000 in a take-off run, else 3000.
void setLimits(LiveAc& ac);

}  // namespace hcr
