#pragma once

#include "core/model/slot.h"

namespace hcr {

/// The plan again, with as few changes as may be. Run thread, like the steps below.
void gf_renewParking();
/// Decides for each static aircraft whether it stays.
void lf_judgeStatics(const HalfHourSlot& slot);
/// Takes aircraft off the plan, then off those that stay, then live ones, until no more than the wanted number are
/// left.
void lf_cutToWanted(i32 wanted);

}  // namespace hcr
