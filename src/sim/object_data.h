#pragma once

#include "sim/port/layouts.h"

namespace hcr {

// Replies to the data requests. SimClient thread. `size` is the count of bytes that can be read; what is shorter than
// its request's record is dropped.

void gf_onObjectData(const SIMCONNECT_RECV_SIMOBJECT_DATA& message, u32 size);
void gf_onObjectDataByType(const SIMCONNECT_RECV_SIMOBJECT_DATA& message, u32 size);

/// An aircraft was announced or has gone.
void gf_onObjectAdded(u32 objectId);
void gf_onObjectRemoved(u32 objectId);

/// A user position was received and isn't at 0, 0.
bool gf_simUserPositionKnown();
/// Forgets what the last session told. Run thread, between two sessions.
void gf_resetObjectData();

/// Unix seconds of the simulator's clock.
i64 gf_simUnixSeconds(i64 zuluYear, i64 zuluDay, i64 zuluTime);

}  // namespace hcr
