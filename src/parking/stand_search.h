#pragma once

#include "core/model/aircraft.h"
#include "core/model/geo.h"
#include "core/model/stand.h"

namespace hcr {

/// The stand at which an aircraft stops near a point, or null; `maxDist` in nautical miles. With `allowCallsignMatch`
/// one whose history knows the flight, or its airline and type, may be up to 85 m away. A stand that is too narrow for
/// the aircraft in its middle learns its size. Run
/// thread.
ParkPos* gf_findStand(LatLon point, const LiveAc& ac, f64 maxDist, bool allowCallsignMatch);

}  // namespace hcr
