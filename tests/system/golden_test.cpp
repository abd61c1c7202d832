#include <gtest/gtest.h>

#include "tests/support/world.h"
#include "tools/replay/command_log.h"

// Half an hour of mixed traffic at a park airport: every order to the simulator, to the last bit. Who changes the
// flight model on purpose looks at what `halcyrane-replay --measure` says of it, and then takes the new numbers over.

namespace hcr::test {
namespace {

struct Golden {
    u64 hash, creations, removals, events, writes;
    f64 sum;
};
constexpr Golden kGolden{0xddbbc7c309481fab, 87, 76, 6219, 1933839, 35450517559.614029};

/// The numbers are those of a POSIX system's mathematical functions; Windows' own differ in the last bits.
constexpr bool kSameMathematics = std::filesystem::path::preferred_separator == '/';

}  // namespace

TEST(Golden, HalfAnHourOfTrafficGivesTheSameOrdersInEveryBuild) {
    World world{{.rangeNm = 40}};
    useParkAirport({"EHAM", "AMS", 52.3086, 4.7639, -11, 0});
    const CommandLog commands;
    std::vector<TimedLine> lines = generateFeed({.minutes = 30, .aircraft = 90, .seed = 5});
    const f64 silence = lines.front().time + 900;
    i32 number = 0;
    std::erase_if(lines, [&](const TimedLine& line) {  // with gaps as a real feed has them
        ++number;
        return (number / 3000 % 2 == 1 && number % 3 != 0) || (line.time > silence && line.time < silence + 40);
    });
    world.feed(lines);
    ASSERT_TRUE(world.run(1900));
    EXPECT_EQ(commands.creations, kGolden.creations);
    EXPECT_EQ(commands.removals, kGolden.removals);
    EXPECT_EQ(commands.events, kGolden.events);
    EXPECT_EQ(commands.writes, kGolden.writes);
    EXPECT_NEAR(commands.sum / kGolden.sum, 1, 1e-6) << fmt::format("{:.17g}", commands.sum);
    if (!kSameMathematics) return;
    EXPECT_EQ(commands.hash, kGolden.hash) << fmt::format("{:#018x}", commands.hash);
}

}  // namespace hcr::test
