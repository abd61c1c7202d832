#pragma once

#include "core/model/aircraft.h"

namespace hcr {

/// The stream has run out: extends it, or says false when the aircraft is to be removed.
bool lf_tryExtend(LiveAc& ac);
/// Appends one sample a leg ahead of the front, the first of this many; speed, place and height by what the aircraft
/// does.
void lf_extendStream(LiveAc& ac, i32 steps);
/// An aircraft in the air is reported without news: an extension under way goes on until that report is due.
void keepExtending(LiveAc& ac);
/// One report and its repetitions are all that is known of an aircraft in the air: adds a second sample, straight on.
void extendAtBirth(LiveAc& ac);

}  // namespace hcr
