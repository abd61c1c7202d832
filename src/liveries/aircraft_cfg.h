#pragma once

#include <filesystem>
#include <vector>

#include "liveries/livery_data.h"

namespace hcr {

// Readers of one aircraft.cfg. Any number of threads at once, while nobody writes the reference data and dontUseTitles.
// What is wrong in the file goes to the report lists; nothing is thrown. Each lowers scanThreadsActive as its last act.

/// The liveries of the usable [fltsim.x] sections; `folderOrder` is the place of the package folder.
std::vector<LiveryData> lf_searchLiveriesinFile(i32 folderOrder, const std::filesystem::path& path);
/// The same for a file of the IVAO package, whose type stands in the folder's name and whose airline in the title.
std::vector<LiveryData> lf_searchLiveriesinIVAOFile(i32 folderOrder, const std::filesystem::path& path);

}  // namespace hcr
