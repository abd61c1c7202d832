#pragma once

#include "core/model/aircraft.h"
#include "core/model/samples.h"

namespace hcr {

// How a report becomes or updates a record, and what the simulator's news do to it. Run thread.

/// One report taken from gReports. Exceptions of the following are passed on.
void gf_decodeReport(TrafficReport& report);
/// Everything that the simulator thread has told since the last call, then one pass of the waiting list.
void gf_handleSimMessages();
/// Takes the aircraft out of the simulator to be created again in place with another title or name.
void liveryRespawn(LiveAc& ac);
/// The limit on parked aircraft: 1 when one is about to park from its start, 0 after it has arrived.
void gf_checkMaxPark(i32 plusOne);
void gf_removeLongestParked(i32 count);
/// True when the settings let aircraft of this class be shown; false for what is no class.
bool classShown(i32 acClass);
/// Name of the flight read as an airline: three letters and a digit; empty when it isn't that.
std::string gf_airlineOfCallsign(const std::string& callsign);

}  // namespace hcr
