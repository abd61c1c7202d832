#pragma once

namespace hcr {

// What a run leaves behind. Each module has one function that puts back what it keeps of a run; these call all of them.
// While no other thread of a run is at work.

/// Everything that a run has made back to its start, but for simTick. True when the end was asked for by the user, even
/// at the last moment: then no new run may begin. Run thread.
bool gf_resetRun();

/// The same, and all that one run leaves to the next: the settings, the livery tables, the reference data, the
/// airports, simTick and what the process ends with. For tests and tools, which then find the program as it starts.
void resetProgram();

}  // namespace hcr
