#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"

namespace hcr {

/// One airport that the program knows.
struct AirportEntry {
    std::string code;        ///< ICAO code, the key
    std::string iata;
    f64 lat = 0, lon = 0;    ///< degrees
    f64 alt = 0;             ///< field elevation, feet
    i32 stands = 0;          ///< 0: no archived airport file; 1 or more: there is one
};

/// Sorted by code; filled once per process by gf_readAirports, read-only afterwards.
extern std::vector<AirportEntry> gAirports;

/// Reads airports.enc; true when the table holds rows. A second call only answers. Throws UserErrorException 88.
bool gf_readAirports();
const AirportEntry* gf_findAirport(std::string_view code);
bool gf_airportKnown(std::string_view code);
/// Empties the table; for tests.
void gf_forgetAirports();

}  // namespace hcr
