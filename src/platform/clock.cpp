#include "platform/clock.h"

#include <atomic>
#include <cmath>
#include <deque>
#include <mutex>

#include "platform/clock_source.h"

namespace hcr {
namespace {

constexpr f64 kTicksPerSecond = 1e7;
constexpr i64 kTicksPerUs = 10;
/// Steady time of a clock that is held for the first time: any number will do, as long as each run starts with it.
constexpr i64 kHeldStartUs = 1'000'000'000;
/// A sped sleep looks at the clock again after so much wall time, in case it was released meanwhile.
constexpr i64 kSpedSliceUs = 50'000;

/// One way of reading the time. Never changed once it is published, so that readers need no lock.
struct ClockSetting {
    bool held = false;
    f64 factor = 1.0;
    bool isSystem = true;
    i64 systemBaseUs = 0;  ///< system's steady time at which this setting began
    i64 steadyBaseUs = 0;  ///< steady time shown then
    i64 utcBaseTicks = 0;  ///< time of day shown then
};

const ClockSetting kSystemClock;
std::atomic<const ClockSetting*> gSetting{&kSystemClock};
std::atomic<i64> gHandUs{kHeldStartUs};  // steady time of the held clock

std::mutex gSettingsMutex;  // guards gSettings; settings change in tests only, and old ones stay readable
std::deque<ClockSetting> gSettings;

const ClockSetting& lf_setting() {
    return *gSetting.load(std::memory_order_acquire);
}

void lf_publish(const ClockSetting& setting) {
    const std::lock_guard lock(gSettingsMutex);
    gSetting.store(&gSettings.emplace_back(setting), std::memory_order_release);
}

i64 lf_elapsedUs(const ClockSetting& setting) {
    if (setting.held) return gHandUs.load() - setting.steadyBaseUs;
    const auto wall = static_cast<f64>(gf_systemSteadyUs() - setting.systemBaseUs);
    return std::llround(wall * setting.factor);
}

void lf_moveHandTo(i64 steadyUs) {
    i64 hand = gHandUs.load();
    while (hand < steadyUs && !gHandUs.compare_exchange_weak(hand, steadyUs)) {
    }
}

i64 lf_steadyUs(const ClockSetting& setting) {
    return setting.isSystem ? gf_systemSteadyUs() : setting.steadyBaseUs + lf_elapsedUs(setting);
}

/// Sleeps as long as this setting is in force: a time of one setting means nothing in another.
void lf_sleepSped(const ClockSetting& setting, i64 steadyUs) {
    while (&lf_setting() == &setting) {
        const i64 left = steadyUs - lf_steadyUs(setting);
        if (left <= 0) return;
        const f64 wallUs = std::ceil(static_cast<f64>(left) / setting.factor);
        const i64 sliceUs = wallUs < static_cast<f64>(kSpedSliceUs) ? static_cast<i64>(wallUs) : kSpedSliceUs;
        gf_systemSleepUntilUs(gf_systemSteadyUs() + sliceUs);
    }
}

void lf_sleepUntilUs(const ClockSetting& setting, i64 steadyUs) {
    if (setting.isSystem) {
        gf_systemSleepUntilUs(steadyUs);
    } else if (setting.held) {
        lf_moveHandTo(steadyUs);
    } else {
        lf_sleepSped(setting, steadyUs);
    }
}

}  // namespace

i64 gf_steadyUs() {
    return lf_steadyUs(lf_setting());
}

i64 gf_utcTicks100ns() {
    const ClockSetting& setting = lf_setting();
    if (setting.isSystem) return gf_systemUtcTicks100ns();
    return setting.utcBaseTicks + lf_elapsedUs(setting) * kTicksPerUs;
}

f64 gf_utcSeconds() {
    return static_cast<f64>(gf_utcTicks100ns()) / kTicksPerSecond;
}

void gf_sleepUntilUs(i64 steadyUs) {
    lf_sleepUntilUs(lf_setting(), steadyUs);
}

void gf_sleepMs(i64 milliseconds) {
    if (milliseconds <= 0) return;
    const ClockSetting& setting = lf_setting();
    lf_sleepUntilUs(setting, lf_steadyUs(setting) + milliseconds * 1'000);
}

void gf_holdClock(f64 utcSeconds) {
    ClockSetting setting;
    setting.isSystem = false;
    setting.held = true;
    if (!lf_setting().held) gHandUs = kHeldStartUs;
    setting.steadyBaseUs = gHandUs;
    setting.utcBaseTicks = std::llround(utcSeconds * kTicksPerSecond);
    lf_publish(setting);
}

void gf_turnClock(i64 microseconds) {
    gHandUs += microseconds;
}

void gf_speedClock(f64 factor) {
    ClockSetting setting;
    setting.isSystem = false;
    setting.factor = factor > 0 ? factor : 1.0;
    setting.steadyBaseUs = gf_steadyUs();
    setting.utcBaseTicks = gf_utcTicks100ns();
    setting.systemBaseUs = gf_systemSteadyUs();
    lf_publish(setting);
}

void gf_releaseClock() {
    gSetting.store(&kSystemClock, std::memory_order_release);
}

f64 gf_clockFactor() {
    return lf_setting().factor;
}

}  // namespace hcr
