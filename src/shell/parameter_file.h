#pragma once

#include <pugixml.hpp>

#include "shell/parameters.h"

namespace hcr {

// parameters.xml. Each of these works on the file in the configuration folder (gFiles().settings), one at a time:
// they may be called from any thread.

/// Reads the file into the parameters; true when it made a new one with default values. A file that can't be read is
/// kept as parameters0.xml before anything takes its place, here and in gf_storeParameter; all this is told.
/// `keepCurrent`: in place of a damaged file the values in force are saved, not the defaults.
bool gf_loadParameters(bool keepCurrent = false);
/// The same without touching the file; false when there is none that can be read, and the values are as they were.
bool gf_peekParameters();
/// Takes the values of a document over and adds the items that it lacks. False when it has no list of parameters.
bool gf_readParameters(pugi::xml_document& document);
/// Writes the whole file anew, with the defaults, which then are the current values too, or with the current values.
/// False when that can't be done, which is told.
bool gf_saveParameters(bool useDefaults);
/// Writes one value into the file on disk; the thread that changed the value calls. In place of a file that has become
/// damaged meanwhile all values in force are written. False when that can't be done, which is told.
bool gf_storeParameter(const BoolParameter& parameter);
bool gf_storeParameter(const IntParameter& parameter);
bool gf_storeParameter(const StringParameter& parameter);
/// Gives a file of the old shape, without a root, the shape of today.
bool gf_placeRootLevel();
/// Deletes the item of that name.
void gf_removeParameter(const std::string& name);

}  // namespace hcr
