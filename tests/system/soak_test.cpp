#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>

#include "core/model/tables.h"
#include "core/model/validate.h"
#include "platform/system.h"
#include "tests/support/world.h"

// Hours of dense traffic in simulated time. The full day runs in the optimised build (HALCYRANE_SOAK_HOURS=24); with
// the sanitizers a shorter one looks for what only time brings.

namespace hcr::test {
namespace {

constexpr int kHourMinutes = 60;
constexpr int kShortMinutes = 20;  // without a wish
constexpr u64 kMegabyte = 1024 * 1024;

i32 lf_hours() {
    const char* text = std::getenv("HALCYRANE_SOAK_HOURS");
    return text == nullptr ? 0 : std::atoi(text);
}

TEST(Soak, AtThreeHundredAircraftNothingGoesWrongAndMemoryStaysFlat) {
    WorldOptions options;
    options.scenario = gf_defaultScenario();
    options.scenario.frameRate = 5;
    World world(options);
    GenerateOptions traffic;
    traffic.minutes = 60;
    traffic.aircraft = 1600;  // some three hundred of them at a time are in range
    traffic.parked = traffic.vehicles = traffic.helicopters = 0;
    // Two different hours take turns. Both are made beforehand, so that only the program's memory changes.
    std::array<std::vector<TimedLine>, 2> feeds;
    for (u32 i = 0; i < feeds.size(); ++i) {
        traffic.seed = i + 1;
        feeds[i] = generateFeed(traffic);
    }
    std::size_t most = 0;
    u64 afterFirstHour = 0;
    const i32 hours = lf_hours();
    for (i32 hour = 0; hour < std::max(hours, 1); ++hour) {
        world.feed(feeds[static_cast<std::size_t>(hour % 2)]);
        for (int minute = 0; minute < (hours == 0 ? kShortMinutes : kHourMinutes); ++minute) {
            ASSERT_TRUE(world.run(60)) << world.log();
            most = std::max(most, gLiveAcs.size());
        }
        ASSERT_EQ(validateLiveTable(), "");
        if (hour == 1) afterFirstHour = gf_residentBytes();
    }
    EXPECT_GE(most, 280U);
    const std::string log = world.log();
    EXPECT_EQ(countOf(log, "\n==> "), 0);
    if (hours > 2) {
        EXPECT_LT(gf_residentBytes(), afterFirstHour + kMegabyte);
    }
}

}  // namespace
}  // namespace hcr::test
