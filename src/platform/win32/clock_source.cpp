#include "platform/clock_source.h"

#include "platform/win32/windows_header.h"

namespace hcr {
namespace {

constexpr i64 kTicksFrom1601To1970 = 116444736000000000;  // FILETIME counts 100 ns since 1601

i64 lf_counterFrequency() {
    static const i64 frequency = [] {
        LARGE_INTEGER value{};
        QueryPerformanceFrequency(&value);
        return static_cast<i64>(value.QuadPart);
    }();
    return frequency;
}

}  // namespace

i64 gf_systemSteadyUs() {
    LARGE_INTEGER counter{};
    QueryPerformanceCounter(&counter);
    const i64 frequency = lf_counterFrequency();
    const i64 count = counter.QuadPart;
    // Whole seconds first: the product of the whole count would overflow after some ten days.
    return count / frequency * 1'000'000 + count % frequency * 1'000'000 / frequency;
}

i64 gf_systemUtcTicks100ns() {
    FILETIME now{};
    GetSystemTimePreciseAsFileTime(&now);
    const u64 ticks = (u64{now.dwHighDateTime} << 32U) | now.dwLowDateTime;
    return static_cast<i64>(ticks) - kTicksFrom1601To1970;
}

void gf_systemSleepUntilUs(i64 steadyUs) {
    // Sleep counts whole milliseconds and may end early by a part of one.
    constexpr i64 kLongestSleepMs = 60'000;
    for (i64 left = steadyUs - gf_systemSteadyUs(); left > 0; left = steadyUs - gf_systemSteadyUs()) {
        const i64 milliseconds = (left + 999) / 1'000;
        Sleep(static_cast<DWORD>(milliseconds < kLongestSleepMs ? milliseconds : kLongestSleepMs));
    }
}

}  // namespace hcr
