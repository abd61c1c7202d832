#include "core/model/run_state.h"

#include <cmath>

#include "platform/clock.h"

namespace hcr {
namespace {

constexpr f64 kLargestTime = 2.5e11;  // seconds; some year 9900, all that a clock or a feed can mean

}  // namespace

std::atomic<i32> simTick{0};
std::atomic<bool> gSecondPulse{false};
std::atomic<bool> gFeedClock{false};
std::atomic<bool> gRtOnThisPc{false};
std::atomic<i64> gSimTime{0};
std::atomic<i32> gQnh{kStandardQnh};
std::atomic<f64> gLastTimestamp{0};
std::atomic<HalfHourSlot> gSlot{HalfHourSlot{}};
std::atomic<bool> gRenewStatics{false};

void gf_resetRunState() {
    gSecondPulse = gFeedClock = gRtOnThisPc = gRenewStatics = false;
    gSimTime = 0;
    gQnh = kStandardQnh;
    gLastTimestamp = 0;
    gSlot = HalfHourSlot{};
}

HalfHourSlot currentSlot() {
    f64 seconds = gf_utcSeconds();
    if (gFeedClock) {
        const f64 feed = gLastTimestamp;
        if (feed != 0 && std::fabs(feed) < kLargestTime) seconds = feed;
    }
    return slotOf(static_cast<i64>(std::floor(seconds)));
}

}  // namespace hcr
