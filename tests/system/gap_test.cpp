#include <gtest/gtest.h>

#include <algorithm>

#include "core/model/geo.h"
#include "core/model/tables.h"
#include "platform/clock.h"
#include "sim/port/sandbox/sandbox.h"
#include "tests/support/flight_recorder.h"
#include "tests/support/world.h"

// Traffic in cruise, on final and on the ground of the park airport, with a gap of any kind in its midst. Nobody may
// rush or leap to make up for it; afterwards the sky is as full as before, in the same liveries.

namespace hcr::test {
namespace {

enum class Gap { pausedFlight, silentFeed, sleepingComputer };

struct GapCase {
    const char* name;
    Gap gap;
    f64 seconds;
};

const AirportEntry kAirport{"EHAM", "AMS", 52.3086, 4.7639, -11, 0};

std::map<std::string, std::string> lf_liveries() {
    std::map<std::string, std::string> titles;
    for (const LiveAc& ac : gLiveAcs) {
        if (ac.lifeState == LifeState::active) titles[ac.callsign] = ac.liveryTitle;
    }
    return titles;
}

void lf_makeGap(World& world, const GapCase& given) {
    if (given.gap == Gap::pausedFlight) {
        gf_playSandboxFault({.kind = FaultKind::pause, .seconds = given.seconds});
        world.run(given.seconds);
    } else if (given.gap == Gap::sleepingComputer) {
        gf_turnClock(static_cast<i64>(given.seconds * 1e6));  // the datagrams of this time all come at once
    } else {
        const f64 until = world.lines[world.nextLine].time + given.seconds;
        while (world.nextLine < world.lines.size() && world.lines[world.nextLine].time < until) ++world.nextLine;
        world.run(given.seconds);
    }
}

/// Over each second in the same object.
f64 lf_fastestKt(const FlownAircraft& flown) {
    f64 fastest = 0;
    for (std::size_t i = 1; i < flown.path.size(); ++i) {
        const SandboxObject& a = flown.path[i - 1];
        const SandboxObject& b = flown.path[i];
        const f64 hours = (flown.pathTimes[i] - flown.pathTimes[i - 1]) / 3600;
        if (a.id == b.id) fastest = std::max(fastest, distanceNm(a.lat, a.lon, b.lat, b.lon) / hours);
    }
    return fastest;
}

struct AfterAGap : testing::TestWithParam<GapCase> {};

}  // namespace

TEST_P(AfterAGap, NobodyRushesAndTheSkyFillsAgain) {
    World world{{.rangeNm = 40}};
    useParkAirport(kAirport);
    const GapCase& given = GetParam();
    GenerateOptions traffic;
    traffic.minutes = 12 + given.seconds / 60;
    traffic.aircraft = 120;
    traffic.elevationFt = kAirport.alt;
    FlightRecorder recorder;
    std::map<std::string, f64> fastest;
    const FeedPlan plan = generatePlan(traffic);
    world.onReport = [&fastest](const TrafficReport& report) {
        f64& speed = fastest[report.callsign];
        speed = std::max(speed, report.sample.speed);
    };
    world.feed(plan.lines);
    ASSERT_TRUE(world.run(300));
    const std::size_t before = gf_sandboxObjects().size();
    const auto liveries = lf_liveries();
    ASSERT_GT(before, 20U);
    lf_makeGap(world, given);
    ASSERT_TRUE(world.run(200));
    EXPECT_GT(gf_sandboxObjects().size(), before / 2);
    for (const auto& [callsign, title] : lf_liveries()) {
        const auto known = liveries.find(callsign);
        EXPECT_TRUE(known == liveries.end() || known->second == title) << callsign;
    }
    for (const auto& [callsign, flown] : recorder.aircraft) {
        EXPECT_LE(lf_fastestKt(flown), 2 * fastest[callsign] + 110) << callsign;
        EXPECT_LT(flown.worstJumpM, 60) << callsign << " at " << flown.worstJumpAt;
    }
}

TEST(Gap, WhatWasReceivedBeforeALongOneIsDropped) {
    for (const f64 seconds : {4.0, 6.0}) {
        World world;
        ASSERT_TRUE(world.run(1));
        world.line(FeedLine{}.text());
        gf_turnClock(static_cast<i64>(seconds * 1e6));
        world.cycle();
        EXPECT_EQ(gLiveAcs.size(), seconds < 5 ? 1U : 0U) << seconds;
    }
}

INSTANTIATE_TEST_SUITE_P(
    System, AfterAGap,
    testing::Values(GapCase{"Pause20s", Gap::pausedFlight, 20}, GapCase{"Pause2min", Gap::pausedFlight, 120},
                    GapCase{"Pause30min", Gap::pausedFlight, 1800}, GapCase{"Silence45s", Gap::silentFeed, 45},
                    GapCase{"Silence10min", Gap::silentFeed, 600}, GapCase{"Sleep60s", Gap::sleepingComputer, 60},
                    GapCase{"Sleep30min", Gap::sleepingComputer, 1800}),
    [](const auto& test) { return test.param.name; });

}  // namespace hcr::test
