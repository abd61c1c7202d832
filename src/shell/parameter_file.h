#pragma once

#include "shell/parameters.h"

namespace hcr {

// parameters.xml. Each of these works on the file in the configuration folder (gFiles().settings).

/// Reads the file into the parameters; true when it made a new one with default values.
bool gf_loadParameters();
/// Writes the whole file anew, with the defaults or the current values.
void gf_saveParameters(bool useDefaults);
/// Writes one value into the file on disk; the thread that changed the value calls.
void gf_storeParameter(const BoolParameter& parameter);
void gf_storeParameter(const IntParameter& parameter);
void gf_storeParameter(const StringParameter& parameter);
/// Deletes the item of that name.
void gf_removeParameter(const std::string& name);

/// Conversion across versions; true when the old file is too old to convert.
bool updateOptions();
/// The start-up step: loads the parameters and converts an existing file.
void updateOptionsWrapped();

}  // namespace hcr
