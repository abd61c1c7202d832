#pragma once

#include <vector>

#include "core/model/stand.h"

namespace hcr {

/// Numbers the stands from 1 in their order and lists for each the ones that overlap it: two stands do when their radii
/// add up to more than 1.1 times their distance. Rises with the count of stands times their neighbours. Run thread.
void gf_numberStands(std::vector<ParkPos>& stands);

}  // namespace hcr
