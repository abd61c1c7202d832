#pragma once

#include "core/model/aircraft.h"

namespace hcr {

/// Begins the run on the runway: throttle, spoilers, flaps, lights, limits. Run thread, like all here.
void lf_startTakeOffRun(LiveAc& ac);
/// Begins the rotation; out of a roll-out it is a go-around.
void lf_startRotation(LiveAc& ac);
/// Begins the rotation when all samples ahead climb, or are airborne at the least speed of the class.
void lf_checkRotation(LiveAc& ac);
/// One cycle, 10 ms, of the rotation and of the climb behind it.
void lf_takeOffStep(LiveAc& ac);
/// A rolled-out aircraft that is told in the air again takes off.
void lf_touchAndGo(LiveAc& ac);

}  // namespace hcr
