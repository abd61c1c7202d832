#pragma once

#include <string_view>
#include <vector>

#include "liveries/livery_data.h"
#include "liveries/results.h"

namespace hcr {

// Steps of the loading of the scan results. Run thread.

/// The liveries of one airline and type; all of it stands in liveryIndex.
struct LiveryGroup {
    std::string_view airline, type;
    const LiveryList* liveries = nullptr;
};

/// Builds liveryIndex, which takes copies of the texts, from the sorted list. The groups come in the order of the list.
std::vector<LiveryGroup> gf_buildLiveryIndex(const std::vector<ScannedLivery>& liveries);
void gf_buildAirlineTitles(const std::vector<LiveryGroup>& groups);
void gf_buildGenericTitles(const std::vector<LiveryGroup>& groups);
/// A copy of a text that lives as long as the tables.
std::string_view gf_keepText(std::string_view text);
/// Empties all tables of the liveries and what is remembered of live aircraft.
void gf_emptyLiveryTables();

/// Logs what is installed of each class and of airline "ZZZ", fills the pools, and turns the parameters of classes off
/// of which nothing is installed.
void gf_reportCategories();

}  // namespace hcr
