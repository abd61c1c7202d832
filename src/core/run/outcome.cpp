#include "core/run/outcome.h"

namespace hcr {

bool gRestart = false;
i32 gExitCode = 0;
bool gProduction = false;

void gf_resetOutcome() {
    gRestart = gProduction = false;
    gExitCode = 0;
}

}  // namespace hcr
