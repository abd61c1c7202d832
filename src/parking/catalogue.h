#pragma once

#include <string_view>
#include <vector>

#include "core/model/park_state.h"

namespace hcr {

/// Sorted by code; filled once per process by gf_readAirports, read-only afterwards.
extern std::vector<AirportEntry> gAirports;

/// Reads airports.enc; true when the table holds rows. A second call only answers. Throws UserErrorException 88.
bool gf_readAirports();
/// The row of an ICAO code or null; good for the process. Any thread once the table is read.
const AirportEntry* gf_findAirport(std::string_view code);
/// Whether the code stands in the table. Any thread once it is read.
bool gf_airportKnown(std::string_view code);
/// Empties the table; for tests.
void gf_forgetAirports();

}  // namespace hcr
