#pragma once

#include "shell/version.h"

namespace hcr {

/// A newer program was announced. True when it was fetched and the program must end; the program doesn't fetch
/// itself yet, so that the answer is always false.
bool gf_updateProgram(const VersionData& webVersion);

}  // namespace hcr
