#pragma once

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

}  // namespace hcr
