#pragma once

#include "core/model/aircraft.h"

namespace hcr {

/// Decides whether an aircraft in `buffer` goes to the simulator now; once per cycle.
void lf_spawnCheck(LiveAc& ac);
/// Forgets when the last aircraft made room for another one; between two runs.
void gf_forgetExchanges();
/// Livery, state and place of an aircraft that is to be created; puts it on gAddingStack.
void spawnLiveAc(LiveAc& ac);
/// Fills the record's operator, type, cargo flag and name from what is known of its airframe, and the operator from
/// the name of the flight when nothing is.
void lf_completeTexts(LiveAc& ac);

}  // namespace hcr
