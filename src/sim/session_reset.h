#pragma once

namespace hcr {

/// All that sim keeps of a session back to the start; before a run's SimClient starts, and at a run's end.
void gf_resetSimSession();

}  // namespace hcr
