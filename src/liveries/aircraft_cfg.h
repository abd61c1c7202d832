#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "liveries/livery_data.h"
#include "liveries/reports.h"

namespace hcr {

/// A livery, and its line for the report if another section has shown the title before.
struct FoundLivery {
    LiveryData livery;
    std::string doubled;
};
struct ReportLine {
    ReportList* list;
    std::string text;
};
/// What a file gives; it counts when gf_takeOver has taken it over, so that the order of the walk decides and not which
/// worker ends first.
struct CfgContent {
    std::vector<FoundLivery> liveries;
    std::vector<ReportLine> reports;
};
/// Adds the reports to their lists, and the liveries whose titles are new. Run thread.
void gf_takeOver(CfgContent content, std::vector<LiveryData>& liveries);

// Readers of one aircraft.cfg. Any number of threads at once, while nobody writes the reference data and dontUseTitles.
// What is wrong in the file is reported; nothing is thrown. Each lowers scanThreadsActive as its last act.

/// The liveries of the usable [fltsim.x] sections; `folderOrder` is the place of the package folder.
CfgContent lf_searchLiveriesinFile(i32 folderOrder, const std::filesystem::path& path);
/// The same for a file of the IVAO package, whose type stands in the folder's name and whose airline in the title.
CfgContent lf_searchLiveriesinIVAOFile(i32 folderOrder, const std::filesystem::path& path);

}  // namespace hcr
