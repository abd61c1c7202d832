#pragma once

#include "core/model/aircraft.h"

namespace hcr {

/// Leg planning in the air: the time of arrival at S2.
void lf_nextPosAir(LiveAc& ac);
/// The leg behind the one that is flown has become known in mid-leg: the turn towards it begins now.
void planTurnAnew(LiveAc& ac);
/// Increments of a leg in the air, and the configuration that belongs to its height.
void lf_airDeltas(LiveAc& ac);
/// Pitch in radians of a flight that climbs or sinks by so many feet per minute.
f64 airPitch(f64 verticalSpeed);

}  // namespace hcr
