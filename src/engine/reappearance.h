#pragma once

#include "core/model/aircraft.h"

namespace hcr {

/// True when no aircraft could fly to S2 in the time that there is, before the leg is planned: it needs more than twice
/// the greater of the speeds reported at its ends and 100 kt on top, or more than 600 kt when none is known. Run
/// thread.
bool needsALeap(const LiveAc& ac);
/// Takes the aircraft out of the simulator; it appears anew from the samples behind S1, by the rules of a new one and
/// in the same livery. Run thread.
void startAnew(LiveAc& ac);
/// Takes the aircraft out of the simulator to be created again in place with another title or name. Run thread.
void liveryRespawn(LiveAc& ac);

}  // namespace hcr
