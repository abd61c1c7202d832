#pragma once

namespace hcr {

/// Raises the system's timer resolution to 1 ms; each call needs one gf_endTimerResolution. No effect on Linux. Any
/// thread.
void gf_beginTimerResolution();
void gf_endTimerResolution();

}  // namespace hcr
