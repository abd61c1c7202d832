#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "core/model/geo.h"

namespace hcr {

// What every part of the program may ask of the park airport and of the user's stand; parking itself fills it.

/// One airport that the program knows.
struct AirportEntry {
    std::string code;  ///< ICAO code, the key
    std::string iata;
    f64 lat = 0, lon = 0;  ///< degrees
    f64 alt = 0;           ///< field elevation, feet
    i32 stands = 0;        ///< 0: no archived airport file; 1 or more: there is one
};

/// An airport at which the user may find static parking, nearest first.
struct ParkAirportEntry {
    std::string code;
    std::string stand;     ///< the user's stand there; empty = none kept
    f64 lat = 0, lon = 0;  ///< degrees
    f64 distance = 0;      ///< nm from the user
};

/// The destination that the user types comes from the window's thread; no other lock is taken while this one is held.
extern std::mutex gParkAirportsMutex;
extern std::vector<ParkAirportEntry> gParkAirports;  ///< under gParkAirportsMutex
extern AirportEntry gParkAirport;                    ///< code empty without a park airport
extern std::string gSelectedStand;                   ///< the reserved stand, empty when there is none

/// No park airport and no stand. Run thread.
void gf_resetParkState();
/// Whether a park airport is set. Run thread.
bool gf_hasParkAirport();
/// Elevation of the park airport in feet, or `without` when none is set.
f64 gf_parkAirportAlt(f64 without);
/// Name of the stand under the user's aircraft, empty for none. SimClient.
std::string gf_standUnderUser(LatLon position);
/// Keeps the stand on which the user's aircraft stands for the next run. SimClient.
void gf_rememberUserStand();

}  // namespace hcr
