#pragma once

#include <string>
#include <string_view>

#include "parking/airport_file.h"

namespace hcr {

/// Loads the park airport's file, and what was learned there, into gStands, the globals of the airport and `info`; the
/// error text, empty when it worked. Throws UserErrorException 65, 93 and 94. Run thread.
std::string gf_readApf(std::string_view path, AirportFile& info);

}  // namespace hcr
