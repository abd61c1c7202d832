#pragma once

#include "sim/port/layouts.h"

namespace hcr {

/// The dispatch function that SimConnect_CallDispatch calls, on the SimClient thread. Throws UserErrorException.
void gf_dispatch(SIMCONNECT_RECV* message, u32 size, void* context);
/// True once after a quit message. SimClient.
bool gf_takeQuit();
/// Forgets added objects, user position, once-only marks. Before a session.
void gf_resetDispatch();

/// Unix seconds of the simulator's clock.
i64 gf_simUnixSeconds(i64 zuluYear, i64 zuluDay, i64 zuluTime);

}  // namespace hcr
