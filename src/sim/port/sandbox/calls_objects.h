#pragma once

#include "sim/port/sim_port.h"

namespace hcr {

// The port's calls about AI objects. Each takes the sandbox's lock.

SimResult lf_createAircraft(SimHandle handle, const char* title, const char* tailNumber,
                            SIMCONNECT_DATA_INITPOSITION position, u32 request);
SimResult lf_releaseControl(SimHandle handle, u32 object, u32 request);
SimResult lf_removeObject(SimHandle handle, u32 object, u32 request);
SimResult lf_setFlightPlan(SimHandle handle, u32 object, const char* path, u32 request);

}  // namespace hcr
