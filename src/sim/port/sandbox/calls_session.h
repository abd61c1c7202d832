#pragma once

#include "sim/port/sim_port.h"

namespace hcr {

// The port's calls of the session itself. Each takes the sandbox's lock.

SimResult lf_open(SimHandle* handle, const char* name, void* window, u32 userEvent, void* eventHandle, u32 config);
SimResult lf_close(SimHandle handle);
SimResult lf_callDispatch(SimHandle handle, SimDispatch dispatch, void* context);
SimResult lf_getLastSentPacketId(SimHandle handle, u32* packetId);

}  // namespace hcr
