#pragma once

#include "core/model/aircraft.h"

namespace hcr {

// How a report is judged against what the aircraft is doing at this moment. Run thread. True: the sample goes on into
// the stream.

bool checkExtendingSituations(LiveAc& ac, PosSample& sample);
bool checkNewPosDuringLanding(LiveAc& ac, PosSample& sample);

}  // namespace hcr
