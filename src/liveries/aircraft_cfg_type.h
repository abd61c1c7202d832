#pragma once

#include <string>

#include "liveries/aircraft_cfg_file.h"

namespace hcr {

/// The type of all sections; empty, and reported, if there is none that can be used.
std::string lf_typeFromFile(CfgFile& file);
/// The type that the folder of a file of the IVAO package is named for; empty for other paths, without a report.
std::string lf_typeFromIvaoPath(CfgFile& file);

}  // namespace hcr
