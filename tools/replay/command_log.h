#pragma once

#include "sim/port/sim_port.h"

namespace hcr {

/// Takes part in every call to the simulator as long as it lives, and keeps a fingerprint of what the program ordered:
/// creations, removals, events and positions with all their numbers. One at a time, on the run's thread, begun behind
/// the start of the simulator and ended before its end.
struct CommandLog {
    CommandLog();
    ~CommandLog();
    CommandLog(const CommandLog&) = delete;
    CommandLog& operator=(const CommandLog&) = delete;

    SimPort behind;  ///< who carries the calls out
    u64 hash = 0;    ///< of all commands in their order, to the last bit
    u64 creations = 0, removals = 0, releases = 0, events = 0, writes = 0;
    f64 sum = 0;  ///< of the magnitudes of all numbers; for systems whose functions differ in their last bits
};

}  // namespace hcr
