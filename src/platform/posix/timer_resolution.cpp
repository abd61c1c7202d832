#include "platform/timer_resolution.h"

namespace hcr {

void gf_beginTimerResolution() {}
void gf_endTimerResolution() {}

}  // namespace hcr
