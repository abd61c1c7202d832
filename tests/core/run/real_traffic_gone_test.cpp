#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "core/run/reset.h"
#include "core/run/snapshot.h"
#include "core/run/tick.h"
#include "feed/control_channel.h"
#include "liveries/match_memory.h"
#include "shell/run_stop.h"
#include "shell/window_state.h"
#include "sim/port/sandbox/sandbox.h"
#include "tests/support/environment.h"
#include "tests/support/world.h"

namespace hcr::test {
namespace {

constexpr u32 kFirstHexid = 4740000;

/// Aircraft that fly east in rows around the user, reported every four seconds.
struct Sky {
    explicit Sky(int flying, WorldOptions options = {}) : world(std::move(options)), aircraft(flying) {}

    FeedLine lineOf(int index) const {
        FeedLine line;
        line.hexid = kFirstHexid + static_cast<u32>(index);
        line.callsign = fmt::format("KLM{}", 100 + index);
        line.registration = fmt::format("PH-X{}", 100 + index);
        line.alt = 10000 + 100 * index;
        line.lat = 52.0 + 0.02 * (index % 30);
        line.lon = 4.0 + 0.2 * (index / 30) + world.seconds() * line.speed / 3600.0 / 60.0 / 0.61;
        line.timestamp = world.startUtc + world.seconds();
        return line;
    }
    void run(int seconds) {
        for (int second = 0; second < seconds; ++second) {
            for (int i = 0; second % 4 == 0 && i < aircraft; ++i) world.line(lineOf(i).text());
            world.run(1);
        }
    }
    static std::size_t active() {
        return static_cast<std::size_t>(std::count_if(
            gLiveAcs.begin(), gLiveAcs.end(), [](const LiveAc& ac) { return ac.lifeState == LifeState::active; }));
    }
    static std::set<std::string> tails() {
        std::set<std::string> tails;
        for (const SandboxObject& object : gf_sandboxObjects()) tails.insert(object.tail);
        return tails;
    }

    World world;
    int aircraft;
};

/// A sky whose program has RealTraffic connected to its server.
struct ConnectedSky : Sky {
    ConnectedSky(int flying, WorldOptions options) : Sky(flying, std::move(options)) {
        gf_startServer("0");
        connect();
        EXPECT_TRUE(waitForClient());
        gWindow.rtConnected = true;
        gf_wantReports(true);
    }
    ~ConnectedSky() {
        gf_closeSocket(peer);
        gf_closeControlChannel();
    }
    void connect() {
        i32 error = 0;
        peer = gf_openTcp(error);
        ASSERT_EQ(gf_connect(peer, "127.0.0.1", gf_serverPort()), 0);
    }

    Socket peer;
};

ParkedAc& lf_park(const char* callsign) {
    ParkedAc& parked = gParkedAcs.emplace_back();
    parked.hexid = 17;
    parked.callsign = callsign;
    parked.lifeState = LifeState::adding2sim;
    AiCreateRequest request;
    request.lat = 52.31;
    request.lon = 4.77;
    request.onGround = 1;
    request.callsign = callsign;
    request.title = "Some Airliner";
    request.id = parked.hexid;
    gParkedAdding.push_back(request);
    return parked;
}

bool lf_reportsAccepted() {
    const std::lock_guard lock(gReportMutex);
    return gAcceptReports;
}

TEST(RealTrafficGone, EachLiveAircraftLeavesTheSimulatorAndTrafficComesBackWithRealTraffic) {
    constexpr int kAircraft = 120;
    const TempFolder traces;
    WorldOptions options;
    options.realTrafficHere = true;
    options.rangeNm = 100;
    options.trace = traces.path / "trace.jsonl";
    ConnectedSky sky(kAircraft, options);
    gf_wantSnapshot(true);
    lf_park("KLM1*");
    sky.run(100);
    ASSERT_EQ(Sky::active(), std::size_t{kAircraft});
    std::set<u32> objects;
    for (const LiveAc& ac : gLiveAcs) objects.insert(ac.objectId);
    sky.aircraft += 6;  // these are on every stage of their way into the simulator when RealTraffic goes
    sky.run(16);
    sky.aircraft += 6;
    sky.run(14);
    EXPECT_EQ(gf_snapshot().size(), gLiveAcs.size());

    gWindow.trafficLamp = gWindow.weatherLamp = 1;
    gf_closeSocket(sky.peer);
    sky.run(4);
    ASSERT_FALSE(gConnected);
    EXPECT_FALSE(gWindow.rtConnected);
    EXPECT_EQ(gWindow.trafficLamp, 2);
    EXPECT_EQ(gWindow.weatherLamp, 2);
    sky.run(40);  // datagrams may go on coming
    EXPECT_EQ(Sky::tails(), std::set<std::string>{"KLM1*"});
    EXPECT_TRUE(gLiveAcs.empty());
    EXPECT_EQ(gWindow.liveCount, 0U);
    EXPECT_EQ(gWindow.staticCount, 1U);
    EXPECT_NE(gf_currentMessage().find("RealTraffic gone? Wait for RealTraffic to re-connect ..."), std::string::npos);

    gf_playSandboxFault({.kind = FaultKind::pause});
    sky.run(3);
    gf_playSandboxFault({.kind = FaultKind::resume});
    sky.run(3);
    ASSERT_NE(sky.world.log().find("Flight resumed"), std::string::npos);
    EXPECT_FALSE(lf_reportsAccepted()) << "a flight that goes on brings nobody back";

    sky.connect();
    sky.run(2);
    EXPECT_TRUE(gConnected && gWindow.rtConnected);
    EXPECT_TRUE(lf_reportsAccepted());
    EXPECT_EQ(gf_currentMessage(), "");
    sky.run(60);
    EXPECT_GT(Sky::active(), 40U);
    gf_resetRun();
    EXPECT_TRUE(gf_snapshot().empty());
    gf_wantSnapshot(false);
    gf_stopSandbox();
    const std::string trace = readFile(options.trace);
    for (const u32 object : objects) {
        const std::string call = fmt::format("\"SimConnect_AIRemoveObject\",\"object\":{},", object);
        EXPECT_EQ(countOf(trace, call), 1U) << call;
    }
}

TEST(NoRoom, AnAircraftWithoutRoomIsDroppedAndComesWhenThereIsSome) {
    WorldOptions options;
    options.scenario = gf_defaultScenario();
    options.scenario.maxObjects = 3;
    Sky sky(5, options);
    sky.run(45);
    lf_park("KLM1*");
    sky.run(5);
    EXPECT_EQ(Sky::active(), 3U);
    EXPECT_TRUE(gParkedAcs.empty());
    EXPECT_TRUE(failedTitles.empty() && failedModels.empty());
    EXPECT_NE(sky.world.log().find("SimConnect: too many objects (max 1000)"), std::string::npos);
    const std::set<std::string> before = Sky::tails();
    gf_playSandboxFault({.kind = FaultKind::removeObject, .text = *before.begin()});
    sky.run(80);
    EXPECT_EQ(Sky::active(), 3U);
    EXPECT_NE(Sky::tails(), before);
    for (const LiveAc& ac : gLiveAcs)
        EXPECT_TRUE(ac.lifeState == LifeState::active || ac.lifeState == LifeState::buffer);
}

TEST(Helicopters, AreTakenOverAndGivenUpAlthoughTheSimulatorCountsThemAsAnotherType) {
    WorldOptions options;
    options.scenario = gf_defaultScenario();
    options.scenario.titles = {{.title = "Boeing 737-800 - KLM", .helicopter = true}};
    Sky sky(2, options);
    sky.run(40);
    EXPECT_EQ(Sky::active(), 2U);
    gf_playSandboxFault({.kind = FaultKind::removeObject, .text = "KLM100"});
    sky.run(1);
    EXPECT_EQ(Sky::active(), 1U);
}

TEST(Tick, SeesAStopAlthoughTheSimulatorGivesNoPulse) {
    World world;
    world.run(1);
    gSecondPulse = false;
    EXPECT_TRUE(gf_tick());
    gf_requestStop(ExitReason::newSettings, 2);
    EXPECT_FALSE(gf_tick());
}

}  // namespace
}  // namespace hcr::test
