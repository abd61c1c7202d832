#pragma once

#include <string_view>

#include "core/model/aircraft.h"

namespace hcr {

// Ghosts, same flights and collisions. Run thread.

/// An aircraft of ours that is shown under this callsign and "_" is a ghost: it leaves, and its name is kept in
/// gGhosts.
void lf_findGhost(std::string_view callsign);
/// Whether this is the name of a ghost.
bool lf_isGhostName(std::string_view callsign);
/// True: S1 was removed from the stream, and the spawn waits. The user is in the way.
bool lf_userConflict(LiveAc& ac);
/// Removes the static aircraft that have the registration or one of the callsigns of this one.
void gf_checkSameFlight(LiveAc& ac, bool onGround);
/// The same for all live aircraft; called every five seconds.
void gf_removeStaticOfSameFlight();
/// Removes what stands on the reserved stand.
void gf_clearUserStand();
/// Removes one aircraft on the ground that has come too near to a user on the ground, live ones first.
void lf_userGroundConflict();
/// Removes one live aircraft that has come too near to a flying user.
void lf_userAirConflict();
/// Removes the first static aircraft that is in the way of this one, which isn't on a runway.
void lf_checkStaticCollision(LiveAc& ac);
/// Forgets where the user was last looked at; between two runs.
void gf_resetConflicts();

}  // namespace hcr
