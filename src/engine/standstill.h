#pragma once

#include "core/model/aircraft.h"

namespace hcr {

/// Sets the sample's `stationary` against the back of the stream; false when it is to be dropped.
bool lf_checkGroundSample(LiveAc& ac, PosSample& sample);

}  // namespace hcr
