#pragma once

namespace hcr {

/// Everything that the simulator thread has told since the last call, then one pass of the waiting list. Run thread.
void gf_handleSimMessages();

}  // namespace hcr
