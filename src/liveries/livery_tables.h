#pragma once

#include <string_view>
#include <vector>

#include "liveries/livery_data.h"

namespace hcr {

// Steps of the loading of the scan results. Run thread.

/// The liveries of one airline and type in liveryIndex, where none of the three moves any more.
struct LiveryGroup {
    std::string_view airline, type;
    const std::vector<IndexedLivery>* liveries = nullptr;
};

/// Builds liveryIndex from the sorted scan list, whose titles go over into it: only entries with an atcid keep theirs.
/// The groups come in the order of the list.
std::vector<LiveryGroup> gf_buildLiveryIndex();
void gf_buildAirlineTitles(const std::vector<LiveryGroup>& groups);
void gf_buildGenericTitles(const std::vector<LiveryGroup>& groups);

/// Empties all tables of the liveries and what is remembered of live aircraft.
void gf_emptyLiveryTables();

/// Logs what is installed of each class and of airline "ZZZ", fills the pools, and turns the parameters of classes off
/// of which nothing is installed.
void gf_reportCategories();

}  // namespace hcr
