#pragma once

#include <atomic>

#include "platform/types.h"

namespace hcr {

/// Workers of the scan that run. The one that takes a file counts itself; its reader lowers the count as its last act.
extern std::atomic<i32> scanThreadsActive;
/// Number of hardware threads, read at a run's start: so many workers may run at once.
extern i32 scanThreadLimit;

/// Sets the two above, at a run's start.
void gf_prepareScans();

}  // namespace hcr
