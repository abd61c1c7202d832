#pragma once

#include <atomic>

namespace hcr {

// Commands of the window thread, each taken by the tick.
extern std::atomic<bool> gFlushStaticCmd, gReReadCmd, gRefreshCsListCmd, gShowSelectionCmd, gBlockCmd, gClearNoMatchCmd;

/// None is asked for any more.
void gf_resetWindowCommands();

}  // namespace hcr
