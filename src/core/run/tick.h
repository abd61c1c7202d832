#pragma once

#include <string>

#include "platform/types.h"

namespace hcr {

// One cycle of the worker. Run thread, but for the callsigns.

extern i64 gLastTickUs;                        ///< steady time of the last tick, 0 before the first
extern u32 gSeconds;                           ///< seconds since the worker loop began, wraps to 0 at 86400
extern bool gFlightStopped;                    ///< the flight is not running now
extern i32 gNotRunningCycles;                  ///< counts down a second of cycles without a running flight
inline constexpr i32 kNotRunningCycles = 100;  ///< the second, in cycles
extern bool gRenewPhase;  ///< a renewal of the static parking collects callsigns; it runs 15 seconds later

/// Once per 10 ms cycle; false ends the cycle.
bool gf_tick();
/// The work of each cycle of a running flight.
void lf_handleAddingStack();
/// The duties of each second, and of each 15 seconds, of the worker.
void gf_everySecond();
void gf_every15Seconds();
/// What a cycle does while no flight runs.
void gf_flightNotRunning();
/// Gives the decoder the user's position for its range test.
void gf_handPositionToDecoder();
/// Names of all callsigns for the window's selector, as of the last "cs->oid:"; any thread.
std::string gf_callsignList();
/// Back to the start of a run.
void gf_resetTick();

}  // namespace hcr
