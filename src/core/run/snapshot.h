#pragma once

#include <string>
#include <vector>

#include "core/model/aircraft.h"

namespace hcr {

/// One live aircraft as a face of the program shows it.
struct AircraftRow {
    std::string callsign, model, registration, title;
    i32 matchStep = -1;    ///< of the livery, -1 = none
    f64 lat = 0, lon = 0;  ///< degrees
    f64 alt = 0;           ///< feet
    f64 tas = 0;           ///< knots
    f64 distance = 0;      ///< nm from the user
    LifeState lifeState = LifeState::buffer;
    FlightState flightState = FlightState::birth;
};

/// Turns the once-a-second copy on or off; off at the start, so that a program that shows no table pays nothing.
void gf_wantSnapshot(bool wanted);
/// Copies the live table; run thread.
void gf_takeSnapshot();
/// The table is empty from now on, until the next copy; run thread.
void gf_forgetSnapshot();
/// The last copy; any thread.
std::vector<AircraftRow> gf_snapshot();

}  // namespace hcr
