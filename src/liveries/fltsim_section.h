#pragma once

#include <optional>
#include <string_view>

#include "liveries/aircraft_cfg_file.h"

namespace hcr {

/// The livery of one [fltsim.x] section, which starts with its header line; nothing if it has none that can be used.
/// Any thread, with a file of its own.
std::optional<FoundLivery> lf_procesFltSimSection(CfgFile& file, std::string_view text);

}  // namespace hcr
