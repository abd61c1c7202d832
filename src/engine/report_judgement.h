#pragma once

#include "core/model/aircraft.h"

namespace hcr {

// How a report is judged against what the aircraft is doing at this moment. Run thread. True: the sample goes on into
// the stream.

/// For an aircraft that flies on without reports; the turn or the wait that it needs is planned.
bool checkExtendingSituations(LiveAc& ac, PosSample& sample);
/// For an aircraft in its approach, flare or roll-out.
bool checkNewPosDuringLanding(LiveAc& ac, PosSample& sample);

}  // namespace hcr
