#pragma once

#include <atomic>

#include "platform/types.h"

namespace hcr {

// The worker: it meets the simulator and RealTraffic, then runs cycle after cycle until a stop. Run thread.

/// Cycles of 10 ms until a stop is asked for. Throws UserErrorException.
void gf_runWorker();
/// Waits for a flight and for the user's aircraft in it; false on a stop.
bool gf_waitForFlight();

/// Ends and joins the SimClient thread if there is one.
void gf_joinSimClient();
/// Whether every reader thread that was started has ended.
bool gf_readersEnded();

/// Worst and count of worker cycles since the worker began, microseconds; for the summary.
struct CycleStats {
    std::atomic<i64> cycles{0}, worstUs{0}, lateCycles{0};
};
/// Written by the run thread, read by any.
extern CycleStats gCycleStats;

}  // namespace hcr
