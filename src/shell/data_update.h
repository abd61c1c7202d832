#pragma once

#include "shell/parameters.h"

namespace hcr {

/// Compares versions.json of the data server with what is held here and fetches what is newer. False when a new
/// program version was fetched and the program must end. Run thread, at the start of a run that is no restart.
/// Throws what the JSON parser throws on a damaged file.
bool gf_updateData();
bool gf_updateSimAddons(const VersionData& webVersion);

}  // namespace hcr
