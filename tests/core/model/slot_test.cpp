#include "core/model/slot.h"

#include <gtest/gtest.h>

#include <limits>

#include "core/model/run_state.h"
#include "platform/clock.h"

namespace hcr {
namespace {

struct SlotRow {
    const char* name;
    i64 unixSeconds;
    HalfHourSlot slot;
};

constexpr SlotRow kRows[] = {
    {"the epoch, a Thursday", 0, {4, 0}},     {"the second before it", -31, {3, 47}},
    {"Sunday 23:59:29", 1795391969, {7, 47}}, {"Sunday 23:59:40 keeps its weekday", 1795391980, {7, 0}},
    {"Monday 00:00:00", 1795392000, {1, 0}},  {"Monday 00:29:29", 1795393769, {1, 0}},
    {"Monday 00:29:30", 1795393770, {1, 1}},  {"Saturday 12:45", 1795869900, {6, 25}},
};

TEST(Slot, BeginsHalfAMinuteEarlyAndKeepsTheWeekday) {
    for (const SlotRow& row : kRows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(slotOf(row.unixSeconds).day, row.slot.day);
        EXPECT_EQ(slotOf(row.unixSeconds).halfHour, row.slot.halfHour);
    }
    EXPECT_EQ((HalfHourSlot{1, 0}.weekScale()), 0);
    EXPECT_EQ((HalfHourSlot{7, 47}.weekScale()), 335);
}

struct HeldClock {
    HeldClock() { gf_holdClock(1795869900); }
    ~HeldClock() {
        gf_releaseClock();
        gFeedClock = false;
        gLastTimestamp = 0;
    }
};

TEST(Slot, TheFeedsTimeCountsOnlyWhenItIsAskedForAndKnown) {
    const HeldClock clock;
    const HalfHourSlot here{6, 25};
    gLastTimestamp = 1795393770.5;
    EXPECT_EQ(currentSlot(), here);
    gFeedClock = true;
    EXPECT_EQ(currentSlot(), (HalfHourSlot{1, 1}));
    for (const f64 none :
         {0.0, 1e300, -1e300, std::numeric_limits<f64>::infinity(), std::numeric_limits<f64>::quiet_NaN()}) {
        gLastTimestamp = none;
        EXPECT_EQ(currentSlot(), here) << none;
    }
}

}  // namespace
}  // namespace hcr
