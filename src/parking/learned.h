#pragma once

#include "core/model/aircraft.h"

namespace hcr {

// What live aircraft do on stands, kept per airport. Without a park airport there is nothing to learn.

void lf_addRealStandOption(u32 standId, LiveAc& ac, i32 kind);
void lf_searchForCoupledCsAroundThisTime(const HalfHourSlot& slot, LiveAc& ac);

}  // namespace hcr
