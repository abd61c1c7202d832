#pragma once

namespace hcr {

// The run driver. The window thread (or the headless face) starts a run thread and serves two messages.

/// Entry of a run.
void gf_runThread();

}  // namespace hcr
