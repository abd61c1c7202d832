#pragma once

namespace hcr {

// The end of a run. Run thread.

/// Ends the session and the readers; what is to be kept is stored.
void lf_closingDown();
/// Counts down in the message line before a run begins anew; a stop by the user ends it.
void gf_showRestartCountdown();

}  // namespace hcr
