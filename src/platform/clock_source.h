#pragma once

#include "platform/types.h"

namespace hcr {

// What each system gives the clock. Only clock.cpp calls these.

/// The system's steady time in microseconds.
i64 gf_systemSteadyUs();
/// The system's time of day in units of 100 ns since 1970, UTC.
i64 gf_systemUtcTicks100ns();
/// Sleeps until the system's steady time; returns at once when it has passed.
void gf_systemSleepUntilUs(i64 steadyUs);

}  // namespace hcr
