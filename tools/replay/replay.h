#pragma once

#include "tools/replay/options.h"

namespace hcr {

/// Flies the recording and writes what was asked for. Returns the process' exit code; throws std::runtime_error with a
/// text for the user.
int replay(const ReplayOptions& options);

}  // namespace hcr
