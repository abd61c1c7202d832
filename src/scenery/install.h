#pragma once

#include <string>

namespace hcr {

/// Package folder of the chosen simulator as the settings hold it, empty when they hold none.
std::string gf_simulatorPath();
/// Finds the package folder of the chosen simulator by itself; empty when nothing was found. Detection isn't part of
/// the program yet: it finds nothing.
std::string gf_detectInstallPath();

}  // namespace hcr
