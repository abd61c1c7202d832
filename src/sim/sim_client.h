#pragma once

#include <stop_token>

namespace hcr {

/// Thread entry: opens the session, registers, dispatches until told to stop. Shows its own errors.
void SimClient(std::stop_token stop);
/// One turn of the thread's inner loop without the sleep: opens and registers when there is no session yet, else
/// dispatches; ends session and run after a quit message. False when opening failed or isn't wanted any more. Passes
/// the exceptions of gf_dispatch on. SimClient, or a single-threaded test.
bool gf_pumpSimClient();
/// The end of the thread's work: closes the session. SimClient calls it by itself.
void gf_endSimClient();

/// SimClient's own marks back to the start. While no SimClient runs.
void gf_resetSimClient();

}  // namespace hcr
