#include "liveries/cfg_content.h"

#include <utility>

namespace hcr {

void gf_takeOver(CfgContent content, std::vector<LiveryData>& liveries) {
    for (ReportLine& line : content.reports) line.list->push_back(std::move(line.text));
    for (FoundLivery& found : content.liveries) {
        if (seenTitles.insert(found.livery.title).second) {
            liveries.push_back(std::move(found.livery));
        } else {
            gIncompleteSections.push_back(std::move(found.doubled));
        }
    }
}

}  // namespace hcr
