#pragma once

#include "platform/types.h"

namespace hcr {

/// The limit on parked aircraft: 1 when one is about to park from its start, 0 after it has arrived. Run thread.
void gf_checkMaxPark(i32 plusOne);
/// Takes the live aircraft that have been parked longest out of the simulator. Run thread.
void gf_removeLongestParked(i32 count);

}  // namespace hcr
