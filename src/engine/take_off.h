#pragma once

#include "core/model/aircraft.h"

namespace hcr {

void lf_startTakeOffRun(LiveAc& ac);
void lf_startRotation(LiveAc& ac);
void lf_checkRotation(LiveAc& ac);
void lf_takeOffStep(LiveAc& ac);
void lf_touchAndGo(LiveAc& ac);

}  // namespace hcr
