#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "liveries/livery_data.h"

namespace hcr {

// Which types stand in for which, as far as there are liveries of them. Run thread.

extern TextMap<std::vector<std::string>> similarTypes;  ///< type to types with a generic livery

/// A copy of the list, shuffled with RANDOM on.
std::vector<std::string> gf_shuffled(const std::vector<std::string>& list);
/// Types whose generic liveries may stand in for this one.
std::vector<std::string> gf_similarTypes(std::string_view type);
/// Types of which the airline has a livery and that may stand in for this one, of which it has none.
std::vector<std::string> gf_similarForAirline(std::string_view airline, std::string_view type);
/// Fills similarTypes from the tables of the loaded liveries.
void gf_buildSimilarTables();

}  // namespace hcr
