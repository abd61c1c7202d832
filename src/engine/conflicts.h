#pragma once

#include <string_view>

#include "core/model/aircraft.h"

namespace hcr {

// Ghosts, same flights and collisions. Run thread.

void lf_findGhost(std::string_view callsign);
bool lf_isGhostName(std::string_view callsign);
/// True: S1 was removed from the stream, and the spawn waits. The user is in the way.
bool lf_userConflict(LiveAc& ac);
void gf_checkSameFlight(LiveAc& ac, bool onGround);
void gf_removeStaticOfSameFlight();
void gf_clearUserStand();
void lf_userGroundConflict();
void lf_userAirConflict();
void lf_checkStaticCollision(LiveAc& ac);

}  // namespace hcr
