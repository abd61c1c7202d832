#pragma once

#include "platform/types.h"

namespace hcr {

// The program's only source of time. Normally it is the system's clock. A test turns it by hand (every sleep then
// moves the hand and returns at once) or lets it run faster than the wall, with real threads. Any thread may call.

/// Steady time in microseconds; its zero has no meaning.
i64 gf_steadyUs();
/// Time of day in seconds since 1970, UTC, with fraction.
f64 gf_utcSeconds();
/// Time of day in units of 100 ns since 1970, UTC.
i64 gf_utcTicks100ns();

/// Until a moment of the steady clock in microseconds, or for a time; scaled by gf_clockFactor.
void gf_sleepUntilUs(i64 steadyUs);
void gf_sleepMs(i64 milliseconds);

/// Clock by hand: steady time and UTC stand still but for sleeps and gf_turnClock. `utcSeconds` is the time of day
/// shown at first. For single-threaded tests.
void gf_holdClock(f64 utcSeconds);
void gf_turnClock(i64 microseconds);
/// Lets the clock run `factor` times as fast as the wall, sleeps and time-outs included.
void gf_speedClock(f64 factor);
/// Back to the system's clock.
void gf_releaseClock();
/// The factor in force, 1 with the system's clock and with the clock held.
f64 gf_clockFactor();

}  // namespace hcr
