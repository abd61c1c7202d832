#pragma once

#include <string>

#include "core/model/aircraft.h"
#include "core/model/stand.h"

namespace hcr {

// Which installed livery an aircraft gets. Run thread.

/// Finds a livery for an aircraft that has no title: sets ac.liveryTitle, which stays empty when nothing fits, and
/// ac.fsltlModel.
void gf_matchLiveLivery(LiveAc& ac);
/// The same for an aircraft that is to stand on `stand`, whose cargo flag it takes; a title that it has already stays.
/// True if ac.liveryTitle is set afterwards.
bool gf_matchParkedLivery(ParkedAc& ac, const ParkPos& stand);
/// Text of noMatchAircraft: "{:3} {:4}" of airline and type, a blank, the registration.
std::string gf_noMatchText(const FlightTexts& ac);

}  // namespace hcr
