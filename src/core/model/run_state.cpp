#include "core/model/run_state.h"

namespace hcr {

std::atomic<i32> simTick{0};
std::atomic<bool> gSecondPulse{false};
std::atomic<bool> gFeedClock{false};
std::atomic<bool> gRtOnThisPc{false};
std::atomic<i64> gSimTime{0};
std::atomic<i32> gQnh{1013};
std::atomic<f64> gLastTimestamp{0};
std::atomic<HalfHourSlot> gSlot{HalfHourSlot{}};
std::atomic<bool> gRenewStatics{false};

}  // namespace hcr
