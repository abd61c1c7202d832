#pragma once

#include <atomic>

#include "core/model/slot.h"
#include "platform/types.h"

namespace hcr {

// State of a run that several threads see; core/run owns it.

inline constexpr i32 kStandardQnh = 1013;  ///< hPa; gQnh while no weather has come

extern std::atomic<i32> simTick;         ///< counter of 10 ms cycles; rises through the life of the process
extern std::atomic<bool> gSecondPulse;   ///< one per simulator second; set by SimClient, taken by the tick
extern std::atomic<bool> gFeedClock;     ///< the feed's time stands for the time of day
extern std::atomic<bool> gRtOnThisPc;    ///< RealTraffic is installed on this computer
extern std::atomic<i64> gSimTime;        ///< the simulator's clock, Unix seconds
extern std::atomic<i32> gQnh;            ///< sea-level pressure, hPa
extern std::atomic<f64> gLastTimestamp;  ///< timestamp of the latest line of the feed, 0 until the first one
extern std::atomic<HalfHourSlot> gSlot;  ///< half-hour slot of now, refreshed each second

extern std::atomic<bool> gRenewStatics;  ///< a renewal of the static parking was asked for

/// All of it back to the start of a run, but for simTick. Run thread.
void gf_resetRunState();
/// The slot of now; with gFeedClock the feed's latest timestamp stands for the time of day. Any thread.
HalfHourSlot currentSlot();

}  // namespace hcr
