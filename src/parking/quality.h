#pragma once

#include <utility>
#include <vector>

#include "core/model/stand.h"

namespace hcr {

/// How much is known of the stands by real and by soft options, 0..100 each; -1 for both when no stand has an option.
/// Run thread.
std::pair<i32, i32> gf_qualityFactor(const std::vector<ParkPos>& stands);
/// Of gStands.
std::pair<i32, i32> gf_qualityFactor();

}  // namespace hcr
