#pragma once

#include "platform/types.h"

namespace hcr {

// Both readers of the feed together.

/// The lamp check. Worker.
void gf_checkReaders();
/// The lamps go from receiving to silent; RealTraffic has gone, and until it is back nobody checks them. Worker.
void gf_showFeedSilent();
/// QNH, timestamp, collected callsigns, stop flags and the lamps' alive marks back to the start. Run thread.
void gf_resetFeed();
/// All that they keep of a run back to its start, what gf_resetFeed does included. Run thread.
void gf_resetReaders();
/// Ports other than the real ones, for tests and for several sandboxes on one machine; 0 = the real one. While no
/// reader runs.
void gf_setFeedPorts(u16 traffic, u16 weather);

}  // namespace hcr
