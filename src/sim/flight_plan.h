#pragma once

#include "core/model/aircraft.h"

namespace hcr {

// Small flight-plan files, one per simulator object, in the folder orig_dest. Run thread.

/// Makes the folder; false, logged, when that fails.
bool gf_createFlightPlanFolder();
/// Writes the file of the aircraft's object and hands it to MSFS 2020; sets hasFlightPlan. Nothing without a route.
void gf_makeFlightPlan(LiveAc& ac);
/// Deletes the file of an object; a failure is logged.
void gf_removeFlightPlan(u32 objectId);
/// Deletes the folder with its files; a failure is logged.
void gf_removeFlightPlanFolder();

}  // namespace hcr
