#pragma once

#include "platform/types.h"

namespace hcr {

/// What the face on the terminal shows.
struct HeadlessOptions {
    i32 tableSeconds = 0;  ///< 0 = no table
    i64 seconds = 0;       ///< close by itself after so long, 0 = never
    bool alerts = false;   ///< shows the error that ended it where the user sees it behind the end of the console
};

/// The face without a window: starts the runs, prints message line and counters, and at the end a summary. Returns the
/// process exit code. Main thread.
i32 gf_runHeadless(const HeadlessOptions& options);

}  // namespace hcr
