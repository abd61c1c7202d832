#pragma once

#include <string>

#include "tools/replay/flight_log.h"

namespace hcr {

/// A table with a line for each aircraft, and one of all of them beside the plain interpolation of the same reports.
std::string measureText(const FlightLog& log);

}  // namespace hcr
