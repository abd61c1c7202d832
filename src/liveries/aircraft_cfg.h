#pragma once

#include <filesystem>

#include "liveries/aircraft_cfg_file.h"
#include "liveries/cfg_content.h"

namespace hcr {

// Readers of one aircraft.cfg. Any number of threads at once, while nobody writes the reference data and dontUseTitles.
// What is wrong in the file is reported; nothing is thrown. Each lowers scanThreadsActive as its last act.

/// The liveries of the usable [fltsim.x] sections; `folderOrder` is the place of the package folder.
CfgContent lf_searchLiveriesinFile(i32 folderOrder, const std::filesystem::path& path);
/// The same for a file of the IVAO package, whose type stands in the folder's name and whose airline in the title.
CfgContent lf_searchLiveriesinIVAOFile(i32 folderOrder, const std::filesystem::path& path);

/// What the two readers of files do with the text, which is there; that of the IVAO package with the type, too.
void lf_readSections(CfgFile& file);
void lf_readIvaoSections(CfgFile& file);

}  // namespace hcr
