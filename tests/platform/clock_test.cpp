#include "platform/clock.h"

#include <gtest/gtest.h>

using namespace hcr;

namespace {

struct ReleaseBehind {
    ~ReleaseBehind() { gf_releaseClock(); }
};

}  // namespace

TEST(Clock, HeldItMovesWithSleepsAndByHandOnly) {
    const ReleaseBehind release;
    gf_holdClock(1'700'000'000.5);
    const i64 start = gf_steadyUs();
    EXPECT_EQ(gf_steadyUs(), start);
    EXPECT_DOUBLE_EQ(gf_utcSeconds(), 1'700'000'000.5);
    gf_sleepMs(3'600'000);
    gf_turnClock(500'000);
    gf_sleepMs(-5);
    gf_sleepUntilUs(start);
    EXPECT_EQ(gf_steadyUs() - start, 3'600'500'000);
    EXPECT_EQ(gf_utcTicks100ns(), 17'000'036'010'000'000);
    EXPECT_EQ(gf_clockFactor(), 1.0);
}

TEST(Clock, EachHeldRunShowsTheSameTimes) {
    const ReleaseBehind release;
    gf_holdClock(0);
    const i64 first = gf_steadyUs();
    gf_sleepMs(10);
    gf_holdClock(100);  // a new time of day must not turn steady time back
    EXPECT_EQ(gf_steadyUs(), first + 10'000);
    EXPECT_EQ(gf_utcSeconds(), 100);
    gf_releaseClock();
    gf_holdClock(0);
    EXPECT_EQ(gf_steadyUs(), first);
}

TEST(Clock, SpedItSleepsLongInAShortTime) {
    const ReleaseBehind release;
    const i64 before = gf_steadyUs();
    gf_speedClock(100'000);
    EXPECT_GE(gf_steadyUs(), before);
    const f64 utc = gf_utcSeconds();
    gf_sleepMs(1'000'000);  // some 17 minutes: the test would not end without the speed
    EXPECT_GE(gf_utcSeconds() - utc, 1'000.0);
    EXPECT_EQ(gf_clockFactor(), 100'000);
    gf_releaseClock();
    EXPECT_EQ(gf_clockFactor(), 1.0);
}
