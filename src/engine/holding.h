#pragma once

#include "core/model/aircraft.h"

namespace hcr {

/// The stream of an aircraft on the ground has run out: true when it was extended by a hold, false when it is to go.
bool lf_holdOnGround(LiveAc& ac);

}  // namespace hcr
