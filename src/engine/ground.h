#pragma once

#include <optional>

#include "core/model/aircraft.h"

namespace hcr {

// Movement on the ground: corners are cut by curves, changes of speed come in steps. Stands come with the airport
// file, which isn't read yet, so that nobody parks or leaves a stand.

/// Plans the leg to S2 on the ground.
void nextPosGround(LiveAc& ac);
/// Increments of a leg on the ground.
void lf_groundDeltas(LiveAc& ac);
/// Time of arrival at S2 of a leg on the ground, and the rate at which the aircraft turns on it.
void lf_groundTiming(LiveAc& ac);
/// One cycle of a turn or of a curve on the ground.
void stepGround(LiveAc& ac);
/// The stand on which an aircraft appears, if it appears on one.
std::optional<u32> lf_standAtSpawn(LiveAc& ac);
/// Puts an aircraft that has reached its stand into `parked`.
void lf_arriveAtStand(LiveAc& ac);
/// A passenger aircraft stands on a cargo stand: the stand loses that mark.
void lf_clearCargo(LiveAc& ac);

}  // namespace hcr
