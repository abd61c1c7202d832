#pragma once

#include <atomic>

#include "platform/types.h"

namespace hcr {

/// What went to the simulator since process start, for the summary at the end. SimClient writes, any thread reads.
struct SimTraffic {
    std::atomic<u64> created{0};  ///< create calls that were sent
    std::atomic<u64> refused{0};  ///< of them refused by the simulator
    std::atomic<u64> removed{0};  ///< removal calls
    std::atomic<u64> positionWrites{0};
    std::atomic<u64> events{0};  ///< light, gear, flaps ... events
};

inline SimTraffic gSimTraffic;

}  // namespace hcr
