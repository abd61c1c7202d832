#pragma once

namespace hcr {

/// Reads the settings; at a very first start makes them, for the simulator that is found. Run thread, or before it.
void gf_loadSettings();
/// What a run loads before it looks for a flight; what stays the same for the process is loaded once. Run thread.
/// Throws std::runtime_error, UserErrorException 61, 88, 150.
void gf_loadAtStart();
/// The next load is the process's first one again; for tests.
void gf_resetLoad();

}  // namespace hcr
