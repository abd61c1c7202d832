#pragma once

#include "core/model/aircraft.h"

namespace hcr {

/// A change of flight or tail number seen in the feed; false when the report must not go on.
bool lf_checkIdentity(LiveAc& ac, const TrafficReport& report);

}  // namespace hcr
