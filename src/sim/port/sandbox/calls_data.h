#pragma once

#include "sim/port/sim_port.h"

namespace hcr {

// The port's calls about data. Each takes the sandbox's lock.

SimResult lf_addToDataDefinition(SimHandle handle, u32 definition, const char* variable, const char* unit, u32 type,
                                 f32 epsilon, u32 datumId);
SimResult lf_requestData(SimHandle handle, u32 request, u32 definition, u32 object, u32 period, u32 flags, u32 origin,
                         u32 interval, u32 limit);
SimResult lf_requestDataByType(SimHandle handle, u32 request, u32 definition, u32 radiusMetres, u32 objectType);
SimResult lf_setData(SimHandle handle, u32 definition, u32 object, u32 flags, u32 arrayCount, u32 unitSize, void* data);

}  // namespace hcr
