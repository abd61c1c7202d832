#pragma once

namespace hcr {

// What a new version of the program makes of the settings of an older one. Run thread, or before it.

/// Conversion across versions; true when the old file is too old to convert.
bool updateOptions();
/// The start-up step: loads the parameters and converts an existing file; true when there was none and a new one was
/// made with default values. `keepCurrent` as gf_loadParameters has it, for a run that follows another one.
bool updateOptionsWrapped(bool keepCurrent = false);

}  // namespace hcr
