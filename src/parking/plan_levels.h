#pragma once

#include "core/model/slot.h"

namespace hcr {

// How many aircraft stand at the park airport, and who. Run thread.

/// Sets and returns gMaxParked.
i32 gf_wantedParked();
/// Fills the queue for a slot up to the wanted number, `existing` of which are there: real options of the day first,
/// then, as the settings allow, of the week, soft ones of the day, and soft ones of the week.
void lf_planAllLevels(const HalfHourSlot& slot, i32 wanted, i32 existing);

}  // namespace hcr
