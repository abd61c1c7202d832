#pragma once

#include "core/model/aircraft.h"

namespace hcr {

// The tools of leg planning: S1 is the front of the stream, the sample last reached, S2 the one that is flown to, S3
// the one behind it. Run thread.

/// Time left to S2 in cs, at least 25.
f64 legTicksLeft(const LiveAc& ac);
/// Sets the time of S2 to `legTicks` from now, within the limits; std::range_error when no i32 can hold it.
void lf_setArrival(LiveAc& ac, i32 legTicks);
/// The highest speed in knots at which the leg to S2 may be flown: twice the greater of the speeds reported at its ends
/// and 100 on top, 600 when none is known.
f64 highestLegSpeed(const LiveAc& ac);
/// The longest time that the leg to S2 may take by S2's own time and the limits, at least 25 cs.
f64 longestLegTicks(const LiveAc& ac);
/// Ticks of the leg from S1 to S2 at a speed in knots, at least 25; std::range_error when no i32 can hold them.
i32 legTicksAt(const LiveAc& ac, f64 speed);
f64 lf_legSpeed(const LiveAc& ac);
/// Turn behind S2: from the heading of now to the bearing from S2 to S3, +-pi; 0 without an S3.
f64 lf_turnAngle(const LiveAc& ac);
/// maxEarly and maxLate above 1000 go down by 100.
void decayLimits(LiveAc& ac);
/// A difference of longitudes in degrees by the short way round the earth.
f64 shortWay(f64 degrees);
/// A sample on the straight way between two others at this part of it, 0..1: what changes evenly is mixed, the rest is
/// that of the first.
PosSample sampleBetween(const PosSample& s1, const PosSample& s2, f64 part, i32 time);
/// Changes flightState, keeping the old one in prevFlightState.
void setFlightState(LiveAc& ac, FlightState state);
/// Rounds to the nearest integer; throws std::range_error for what no i32 can hold.
i32 roundToTicks(f64 value);
/// Throttle index of an aircraft with `index`, 4 for rotorcraft, whose rotor keeps turning.
i32 throttleFor(const ParkedAc& ac, i32 index);
/// maxEarly 3000, maxLate 5000 in a take-off run, else 3000.
void setLimits(LiveAc& ac);

}  // namespace hcr
