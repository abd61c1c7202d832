#pragma once

#include <atomic>

#include "platform/types.h"

namespace hcr {

/// Workers of the scan that run. The walker counts a worker, which lowers the count itself as its last act.
extern std::atomic<i32> scanThreadsActive;
/// Number of hardware threads, read at a run's start: so many workers may run at once.
extern i32 scanThreadLimit;

/// Walks the AI packages and writes LiveriesScanned.xml. Run thread; throws UserErrorException when nothing is found.
void gf_scanLiveries();

}  // namespace hcr
