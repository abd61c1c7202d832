#pragma once

#include "core/model/aircraft.h"
#include "core/model/stand.h"

namespace hcr {

// From a plan entry to a static aircraft and away again. Run thread.

/// Number last given to a static aircraft, 1..10000.
extern u32 gParkedCounter;

/// Takes the last entry of gParkPlanQueue and has its aircraft created, unless somebody is in its way.
void lf_detcs();
/// Every static aircraft leaves.
void gf_removeAllStatic();

}  // namespace hcr
