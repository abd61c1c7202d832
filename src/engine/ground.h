#pragma once

#include <optional>

#include "core/model/aircraft.h"

namespace hcr {

// Movement on the ground. Ground traffic is only shown at a park airport, and none can be set yet: what stands here
// keeps an aircraft that touches the ground far from any park airport on its reported line.

/// Plans the leg to S2 on the ground.
void nextPosGround(LiveAc& ac);
/// Increments of a leg on the ground.
void lf_groundDeltas(LiveAc& ac);
/// Timing of a leg on the ground that isn't a movement.
void lf_groundTiming(LiveAc& ac);
/// One cycle of a turn or of a curve on the ground.
void stepGround(LiveAc& ac);
/// The stand on which an aircraft appears, if it appears on one.
std::optional<u32> lf_standAtSpawn(LiveAc& ac);
void lf_arriveAtStand(LiveAc& ac);
void lf_clearCargo(LiveAc& ac);

}  // namespace hcr
