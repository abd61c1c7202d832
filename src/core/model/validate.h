#pragma once

#include <string>

namespace hcr {

/// The invariants of the live table as a text that names the first one broken; empty when all hold. Debug builds ask
/// each second and end at a fault, tests after each cycle. Run thread.
std::string validateLiveTable();

}  // namespace hcr
