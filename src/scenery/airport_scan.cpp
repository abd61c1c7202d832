#include "scenery/airport_scan.h"

namespace hcr {

void gf_scanAirports() {}

}  // namespace hcr
