#pragma once

#include <string_view>
#include <vector>

#include "liveries/livery_data.h"
#include "liveries/results.h"

namespace hcr {

// Steps of the loading of the scan results. Run thread.

/// Builds liveryIndex from the sorted list. It takes copies of the texts, and the titles of the list then are those
/// copies.
void gf_buildLiveryIndex(std::vector<ScannedLivery>& liveries);
void gf_buildAirlineTitles();
void gf_buildGenericTitles();
/// A copy of a text that lives as long as the tables.
std::string_view gf_keepText(std::string_view text);
/// Empties all tables of the liveries and what is remembered of live aircraft.
void gf_emptyLiveryTables();

/// Logs what is installed of each class and of airline "ZZZ", fills the pools, and turns the parameters of classes off
/// of which nothing is installed.
void gf_reportCategories();

}  // namespace hcr
