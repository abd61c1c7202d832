#pragma once

#include "core/model/aircraft.h"
#include "core/model/geo.h"

namespace hcr {

/// A quadratic curve that leaves `origin` towards `control` and ends in `end`.
GroundCurve makeCurve(LatLon origin, LatLon control, LatLon end);
/// Position in degrees and direction of travel in 0..2 pi at parameter `t`; false when the curve is absent or `t` lies
/// outside of it.
bool lf_evaluateCurve(const GroundCurve& curve, f64 t, LatLon& position, f64& angle);

}  // namespace hcr
