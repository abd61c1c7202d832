#pragma once

#include <string>

#include "core/model/geo.h"
#include "core/model/park_state.h"

namespace hcr {

// Any thread.

/// The range that belongs to the user's height and to the way to the first airport.
void gf_autoRange();

// Choice of the park airport. No airport file can be read yet, so that none is ever chosen.

bool lf_readMyParkAirports();
/// Re-reads the list; the text for the message line in `message`.
bool gf_reReadParkAirports(bool checkStand, std::string& message);
/// Puts the destination in front of the list. Any thread.
void gf_setDestination(const std::string& code, LatLon position);
void gf_clearSelectedStand();
/// Empties the airport of its aircraft and leaves it.
void lf_leaveAirport();
void gf_leaveAirportState();

}  // namespace hcr
