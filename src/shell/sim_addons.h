#pragma once

#include "shell/version.h"

namespace hcr {

/// Fetches the link files of MSFS 2024 when the version is newer or there are none; true when they were replaced. Run
/// thread.
bool gf_updateSimAddons(const VersionData& webVersion);

}  // namespace hcr
