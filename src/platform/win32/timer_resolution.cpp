#include "platform/timer_resolution.h"

#include "platform/win32/windows_header.h"

namespace hcr {
namespace {

constexpr UINT kTimerPeriodMs = 1;  // the worker's cycle of 10 ms needs it

}  // namespace

void gf_beginTimerResolution() {
    timeBeginPeriod(kTimerPeriodMs);
}

void gf_endTimerResolution() {
    timeEndPeriod(kTimerPeriodMs);
}

}  // namespace hcr
