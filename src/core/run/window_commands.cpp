#include "core/run/window_commands.h"

namespace hcr {

std::atomic<bool> gFlushStaticCmd{false}, gReReadCmd{false}, gRefreshCsListCmd{false}, gShowSelectionCmd{false},
    gBlockCmd{false}, gClearNoMatchCmd{false};

void gf_resetWindowCommands() {
    gFlushStaticCmd = gReReadCmd = gRefreshCsListCmd = gShowSelectionCmd = gBlockCmd = gClearNoMatchCmd = false;
}

}  // namespace hcr
