#pragma once

#include "sim/port/layouts.h"

namespace hcr {

/// The dispatch function that SimConnect_CallDispatch calls, on the SimClient thread. Throws UserErrorException.
void gf_dispatch(SIMCONNECT_RECV* message, u32 size, void* context);
/// True once after a quit message. SimClient.
bool gf_takeQuit();
/// No frame was counted and no quit message has come. Before a session.
void gf_resetDispatch();

}  // namespace hcr
