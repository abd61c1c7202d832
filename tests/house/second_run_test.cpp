#include <gtest/gtest.h>

#include "core/model/range.h"
#include "core/model/run_state.h"
#include "core/run/tick.h"
#include "core/run/window_commands.h"
#include "liveries/match_memory.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"
#include "sim/port/sandbox/sandbox.h"
#include "tests/support/world.h"
#include "tools/replay/command_log.h"

// A run that follows another one in the same process orders what it would order as the first.

namespace hcr::test {
namespace {

struct Orders {
    u64 hash = 0, creations = 0, events = 0, writes = 0;
    bool operator==(const Orders&) const = default;
};

std::vector<TimedLine> lf_feed() {
    return generateFeed({.minutes = 3, .aircraft = 60, .seed = 5});
}

Orders lf_fly(SimulatedRun& run) {
    const CommandLog commands;
    useParkAirport({"EHAM", "AMS", 52.3086, 4.7639, -11, 0});
    run.feed(lf_feed());
    EXPECT_TRUE(run.run(200));
    return {commands.hash, commands.creations, commands.events, commands.writes};
}

/// The same aircraft in other circumstances, with all that can happen in a flight, ended in the middle of it.
void lf_flyOtherwise(SimulatedRun& run) {
    run.line(feedWeatherLine("EHAM", 987));
    run.feed(lf_feed());
    EXPECT_TRUE(run.run(36));
    for (const SandboxObject& object : gf_sandboxObjects()) {
        gf_playSandboxFault({.kind = FaultKind::refuseTitle, .text = object.title});
    }
    gf_setRange(60);
    gf_playSandboxFault({.kind = FaultKind::slowFrames, .rate = 12});
    gRenewStatics = gShowSelectionCmd = gBlockCmd = gRefreshCsListCmd = gFeedClock = true;
    run.run(90);
    EXPECT_FALSE(failedTitles.empty());
    gf_placeSandboxUser(51.1481, -0.1903, 203, 90, 0, true);  // so far away that it is another flight
    run.run(20);
    EXPECT_EQ(gExitReason, ExitReason::newFlight);
    gf_playSandboxFault({.kind = FaultKind::pause});
    run.run(3);
    gReReadCmd = gClearNoMatchCmd = true;
}

/// The second of two flights of this kind with another one between them.
Orders lf_again(bool restarts, Orders& first) {
    const WorldFolder folder({});
    const auto options = [restarts](bool last) { return SimulatedRunOptions{.restarts = restarts && !last}; };
    {
        SimulatedRun run(options(false));
        first = lf_fly(run);
    }
    {
        SimulatedRun run(options(false));
        lf_flyOtherwise(run);
    }
    simTick = 0;  // rises through the life of the process
    SimulatedRun run(options(true));
    return lf_fly(run);
}

}  // namespace

TEST(SecondRun, OrdersWhatTheFirstDid) {
    for (const bool restarts : {true, false}) {
        Orders first;
        const Orders second = lf_again(restarts, first);
        EXPECT_GT(first.creations, 20U);
        EXPECT_GT(first.writes, 10'000U);
        EXPECT_EQ(second.creations, first.creations) << restarts;
        EXPECT_EQ(second.events, first.events) << restarts;
        EXPECT_EQ(second.writes, first.writes) << restarts;
        EXPECT_EQ(second.hash, first.hash) << restarts;
    }
}

}  // namespace hcr::test
