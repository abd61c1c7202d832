#pragma once

#include "sim/port/layouts.h"

namespace hcr {

// What the worker asks of the simulator; each call takes gSimMutex. Nothing is sent without a session and after a
// request error; a refused request raises that error.

/// The user's aircraft as the last reply told; sends request 109 for the next one.
UserAircraftData gf_fetchUserPosition();
/// Requests 106 and 107. Once per flight.
void gf_requestUserIdentity();
/// Request 108, once a second from now on; the reply drives gSecondPulse.
void gf_requestUserOnGround();
/// Requests 101 and 111: all aircraft within the range of the moment, helicopters being a type of their own. Every
/// 20th tick.
void gf_requestAircraftInRange();
/// Request 102 for a new AI object.
void gf_requestStaticData(u32 objectId);

}  // namespace hcr
