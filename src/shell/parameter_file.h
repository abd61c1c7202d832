#pragma once

#include <pugixml.hpp>

#include "shell/parameters.h"

namespace hcr {

// parameters.xml. Each of these works on the file in the configuration folder (gFiles().settings), one at a time:
// they may be called from any thread.

/// Reads the file into the parameters; true when it made a new one with default values.
bool gf_loadParameters();
/// Takes the values of a document over and adds the items that it lacks. False when it has no list of parameters.
bool gf_readParameters(pugi::xml_document& document);
/// Writes the whole file anew, with the defaults, which then are the current values too, or with the current values.
void gf_saveParameters(bool useDefaults);
/// Writes one value into the file on disk; the thread that changed the value calls.
void gf_storeParameter(const BoolParameter& parameter);
void gf_storeParameter(const IntParameter& parameter);
void gf_storeParameter(const StringParameter& parameter);
/// Gives a file of the old shape, without a root, the shape of today.
void gf_placeRootLevel();
/// Deletes the item of that name.
void gf_removeParameter(const std::string& name);

/// Conversion across versions; true when the old file is too old to convert.
bool updateOptions();
/// The start-up step: loads the parameters and converts an existing file.
void updateOptionsWrapped();

}  // namespace hcr
