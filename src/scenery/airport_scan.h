#pragma once

namespace hcr {

/// Scans add-on airports. Not part of the program yet.
void gf_scanAirports();

}  // namespace hcr
