#pragma once

#include "platform/types.h"

namespace hcr {

// What becomes of the process. Run thread, and the window thread while none runs.

extern bool gRestart;     ///< close-down decided on a new run
extern i32 gExitCode;     ///< of the process
extern bool gProduction;  ///< --production: the run ends behind the data load

/// As at the start of the process.
void gf_resetOutcome();

}  // namespace hcr
