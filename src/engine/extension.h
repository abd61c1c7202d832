#pragma once

#include "core/model/aircraft.h"

namespace hcr {

/// The stream has run out: extends it, or says false when the aircraft is to be removed.
bool lf_tryExtend(LiveAc& ac);
void lf_extendStream(LiveAc& ac, i32 steps);

}  // namespace hcr
