#pragma once

#include <string>

#include "core/model/aircraft.h"

namespace hcr {

/// Callsign, registration and route of a record, as log lines name it.
std::string flightLabel(const FlightTexts& ac);
/// flightLabel with airline and type.
std::string liveAcLabel(const FlightTexts& ac);
/// "{:3} {:4}" of airline and type.
std::string airlineModel(const FlightTexts& ac);
/// The stand's name; "sid==0?" for 0, "sid==?" when there is no such stand.
std::string standName(u32 standId);

/// Name of the flight read as an airline: three letters and a digit; empty when it isn't that.
std::string gf_airlineOfCallsign(const std::string& callsign);

}  // namespace hcr
