#include "platform/clock_source.h"

#include <time.h>

#include <cerrno>

namespace hcr {
namespace {

constexpr clockid_t kSteadyClock = CLOCK_BOOTTIME;  // goes on while the computer sleeps

}  // namespace

i64 gf_systemSteadyUs() {
    timespec now{};
    clock_gettime(kSteadyClock, &now);
    return i64{now.tv_sec} * 1'000'000 + now.tv_nsec / 1'000;
}

i64 gf_systemUtcTicks100ns() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return i64{now.tv_sec} * 10'000'000 + now.tv_nsec / 100;
}

void gf_systemSleepUntilUs(i64 steadyUs) {
    if (steadyUs <= 0) return;
    timespec until{};
    until.tv_sec = static_cast<time_t>(steadyUs / 1'000'000);
    until.tv_nsec = static_cast<long>(steadyUs % 1'000'000 * 1'000);
    while (clock_nanosleep(kSteadyClock, TIMER_ABSTIME, &until, nullptr) == EINTR) {
    }
}

}  // namespace hcr
