#pragma once

#include "core/model/aircraft.h"

namespace hcr {

// A stream of timed samples becomes a position in each 10 ms cycle. Run thread.
//
// Between two legs the front of the stream is the sample that is being flown to. While a leg is planned the front is
// the sample last reached (S1) and the next element the one to be flown to (S2); S1 leaves the stream at the end.

/// One cycle of all live aircraft, erasure and the hand-over of the positions included.
void gf_updateAllLive();
/// One aircraft, one cycle; true when the record is to be erased.
bool updateLiveAc(LiveAc& ac);
/// S2 was reached: it becomes S1, and the leg to the next one is planned.
void nextPosMain(LiveAc& ac);
/// Adds the increments of one cycle, 10 ms.
void lf_stepPosition(LiveAc& ac);
/// Forgets which failures were logged; between two runs.
void gf_resetFollowing();

}  // namespace hcr
