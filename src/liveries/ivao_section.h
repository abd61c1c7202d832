#pragma once

#include <optional>
#include <string_view>

#include "liveries/aircraft_cfg_file.h"

namespace hcr {

/// The livery of one section by the rules of the IVAO package; nothing if it has none that can be used. An exception,
/// for want of memory say, ends the file.
std::optional<FoundLivery> lf_ivaoSection(CfgFile& file, std::string_view text);

}  // namespace hcr
