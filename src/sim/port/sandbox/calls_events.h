#pragma once

#include "sim/port/sim_port.h"

namespace hcr {

// The port's calls about events. Each takes the sandbox's lock.

SimResult lf_mapClientEvent(SimHandle handle, u32 event, const char* name);
SimResult lf_addClientEventToGroup(SimHandle handle, u32 group, u32 event, i32 maskable);
SimResult lf_setGroupPriority(SimHandle handle, u32 group, u32 priority);
SimResult lf_subscribe(SimHandle handle, u32 event, const char* name);
SimResult lf_transmit(SimHandle handle, u32 object, u32 event, u32 data, u32 group, u32 flags);

}  // namespace hcr
