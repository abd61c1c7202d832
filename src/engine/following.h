#pragma once

#include "core/model/aircraft.h"

namespace hcr {

// A stream of timed samples becomes a position in each 10 ms cycle. Run thread.

/// Adds one decoded sample to the stream. What goes wrong inside is logged and passed on.
void decodeExisting(LiveAc& ac, PosSample sample);
/// Sets the sample's `stationary` against the back of the stream; false when it is to be dropped.
bool lf_checkGroundSample(LiveAc& ac, PosSample& sample);
/// One cycle of all live aircraft, erasure and the hand-over of the positions included.
void gf_updateAllLive();
/// One aircraft, one cycle; true when the record is to be erased.
bool updateLiveAc(LiveAc& ac);
/// S2 was reached: it becomes S1, and the leg to the next one is planned.
void nextPosMain(LiveAc& ac);
void lf_stepPosition(LiveAc& ac);

// Pieces that ground movement, landing and take-off use too.

/// Time left to S2 in cs, at least 25.
f64 legTicksLeft(const LiveAc& ac);
/// Sets the time of S2 to `legTicks` from now, within the limits.
void lf_setArrival(LiveAc& ac, i32 legTicks);
f64 lf_legSpeed(const LiveAc& ac);
/// maxEarly and maxLate above 1000 go down by 100.
void decayLimits(LiveAc& ac);
/// Changes flightState, keeping the old one in prevFlightState.
void setFlightState(LiveAc& ac, FlightState state);
/// Rounds to the nearest integer; throws std::range_error for what no i32 can hold.
i32 roundToTicks(f64 value);
f64 airPitch(f64 verticalSpeed);

}  // namespace hcr
