#pragma once

#include <atomic>

#include "platform/types.h"

namespace hcr {

extern std::atomic<f64> gRangeNm;  ///< range of the moment around the user, nautical miles; gf_setRange writes it

/// Sets the range of the moment: RANGE, the decoder's range, the radius of the simulator requests. Any thread.
void gf_setRange(i32 nm);
/// Back to the start of a run; RANGE stays. Run thread.
void gf_resetRange();
/// Range of the moment in metres. Any thread.
u32 gf_rangeMetres();

}  // namespace hcr
