#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "core/model/geo.h"
#include "parking/catalogue.h"

namespace hcr {

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

bool gf_hasParkAirport();
/// Elevation of the park airport in feet, or `without` when none is set.
f64 gf_parkAirportAlt(f64 without);

// Any thread.

/// Sets the range of the moment: RANGE, the decoder's range, the radius of the simulator requests.
void gf_setRange(i32 nm);
void gf_autoRange();
/// Range of the moment in metres.
u32 gf_rangeMetres();

// Choice of the park airport. No airport file can be read yet, so that none is ever chosen.

bool lf_readMyParkAirports();
/// Re-reads the list; the text for the message line in `message`.
bool gf_reReadParkAirports(bool checkStand, std::string& message);
/// Puts the destination in front of the list. Any thread.
void gf_setDestination(const std::string& code, LatLon position);
std::string gf_standUnderUser(LatLon position);
void gf_rememberUserStand();
void gf_clearSelectedStand();
/// Empties the airport of its aircraft and leaves it.
void lf_leaveAirport();
void gf_leaveAirportState();

}  // namespace hcr
