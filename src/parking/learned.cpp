#include "parking/learned.h"

namespace hcr {

void lf_addRealStandOption(u32, LiveAc&, i32) {}

void lf_searchForCoupledCsAroundThisTime(const HalfHourSlot&, LiveAc&) {}

}  // namespace hcr
