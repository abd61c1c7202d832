#pragma once

#include "core/model/aircraft.h"

namespace hcr {

// A stream of timed samples becomes a position in each 10 ms cycle. Run thread.
//
// Between two legs the front of the stream is the sample that is being flown to. While a leg is planned the front is
// the sample last reached (S1) and the next element the one to be flown to (S2); S1 leaves the stream at the end.

/// Adds one decoded sample to the stream. What goes wrong inside is logged and passed on.
void decodeExisting(LiveAc& ac, PosSample sample);
/// Brings what a report may claim within what can be reckoned with.
void limitSample(PosSample& sample);
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
/// Sets the time of S2 to `legTicks` from now, within the limits; std::range_error when no i32 can hold it.
void lf_setArrival(LiveAc& ac, i32 legTicks);
/// Ticks of the leg from S1 to S2 at a speed in knots, at least 25; std::range_error when no i32 can hold them.
i32 legTicksAt(const LiveAc& ac, f64 speed);
f64 lf_legSpeed(const LiveAc& ac);
/// Turn behind S2: from the heading of now to the bearing from S2 to S3, +-pi; 0 without an S3.
f64 lf_turnAngle(const LiveAc& ac);
/// maxEarly and maxLate above 1000 go down by 100.
void decayLimits(LiveAc& ac);
/// A difference of longitudes in degrees by the short way round the earth.
f64 shortWay(f64 degrees);
/// A sample on the straight way between two others, with the means of what changes evenly and the rest of the first;
/// their times must differ.
PosSample sampleBetween(const PosSample& s1, const PosSample& s2, i32 time);
/// Changes flightState, keeping the old one in prevFlightState.
void setFlightState(LiveAc& ac, FlightState state);
/// Rounds to the nearest integer; throws std::range_error for what no i32 can hold.
i32 roundToTicks(f64 value);
/// Pitch in radians of a flight that climbs or sinks by so many feet per minute.
f64 airPitch(f64 verticalSpeed);
/// Throttle index of an aircraft with `index`, 4 for rotorcraft, whose rotor keeps turning.
i32 throttleFor(const ParkedAc& ac, i32 index);

/// Leg planning in the air: the time of arrival at S2.
void lf_nextPosAir(LiveAc& ac);
/// The leg behind the one that is flown has become known in mid-leg: the turn towards it begins now.
void planTurnAnew(LiveAc& ac);
/// Increments of a leg in the air, and the configuration that belongs to its height.
void lf_airDeltas(LiveAc& ac);

}  // namespace hcr
