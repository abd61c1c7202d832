#include <gtest/gtest.h>

#include <algorithm>

#include "core/model/range.h"
#include "shell/parameters.h"
#include "shell/window_state.h"
#include "sim/port/sandbox/sandbox.h"
#include "tests/support/environment.h"
#include "tests/support/live_run.h"

// The program with its real threads and sockets on a fast clock: RealTraffic's stand-in sends datagrams and talks over
// TCP, and what must be seen is read from the simulator, the log and the messages to the window.

namespace hcr::test {
namespace {

LiveRunOptions lf_withRealTraffic() {
    LiveRunOptions options;
    options.world.realTrafficHere = true;
    return options;
}

/// Has `count` aircraft flying; the first thing that most of these tests need.
::testing::AssertionResult lf_fly(LiveRun& live, FeedPeer& peer, int count) {
    peer.connect();
    peer.aircraft = count;
    if (live.until([&] { return live.flying() == static_cast<std::size_t>(count); }))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << live.flying() << " of " << count << " fly; log:\n" << live.log();
}

TEST(Threads, ARunMeetsRealTrafficFliesItsAircraftAndSaysGoodbye) {
    LiveRun live(lf_withRealTraffic());
    FeedPeer peer(live.trafficPort);
    ASSERT_TRUE(lf_fly(live, peer, 3));
    EXPECT_EQ(gWindow.rtVersionText.get(), "10.0.240");
    EXPECT_EQ(peer.told().substr(0, 15), "Qs999=version\r\n");
    ASSERT_TRUE(live.until([&] { return peer.told().find("Qs123=") != std::string::npos; }));
    EXPECT_TRUE(live.until([&] { return countOf(peer.told(), "Qs121=") > 5; })) << "once a second";
    live.close();
    EXPECT_EQ(live.awaitMessage(), WindowMessage::endProgram);
    EXPECT_TRUE(live.until([&] { return peer.told().ends_with("exit\r\n"); }));
    EXPECT_NE(live.log().find("Exiting: USER CLOSED SIM"), std::string::npos);
    EXPECT_EQ(live.log().find("==> "), std::string::npos);
}

TEST(Threads, ClosingWhileRealTrafficIsAwaitedEndsTheRun) {
    LiveRunOptions options = lf_withRealTraffic();
    options.beforeStart = [] { AUTO_RANGE.current = true; };
    LiveRun live(std::move(options));
    ASSERT_TRUE(live.untilLogged("Waiting for RealTraffic to connect to Halcyrane ..."));
    EXPECT_EQ(gRangeNm, 10) << "on the ground";
    live.close();
    EXPECT_EQ(live.awaitMessage(), WindowMessage::endProgram);
}

TEST(Threads, WhatTheScanFindsIsFlownWithinTheRangeOfTheSettings) {
    LiveRunOptions options;
    options.beforeStart = [] {
        std::filesystem::copy(demoData("packages"), "packages", std::filesystem::copy_options::recursive);
        std::filesystem::remove("output/LiveriesScanned.xml");
        SCAN_LIVERIES.current = true;
        RANGE.current = 65;
    };
    LiveRun live(std::move(options));
    FeedPeer peer(live.trafficPort);
    ASSERT_TRUE(lf_fly(live, peer, 1)) << live.log();
    EXPECT_TRUE(std::filesystem::exists("output/LiveriesScanned.xml"));
    EXPECT_EQ(gRangeNm, 65);
}

TEST(Threads, WhenRealTrafficGoesTheTrafficLeavesAndComesBackWithIt) {
    LiveRun live(lf_withRealTraffic());
    FeedPeer peer(live.trafficPort);
    ASSERT_TRUE(lf_fly(live, peer, 2));
    peer.disconnect();
    ASSERT_TRUE(live.untilLogged("RealTraffic gone? Wait for RealTraffic to re-connect ..."));
    peer.connect();
    ASSERT_TRUE(live.untilLogged("RealTraffic re-connected"));
    EXPECT_TRUE(live.until([&] { return gf_sandboxCounters().removals >= 2; }));
    EXPECT_TRUE(live.until([&] { return live.flying() == 2; }));
    EXPECT_EQ(countOf(peer.told(), "Qs999=version"), 1U);
}

TEST(Threads, WhenTheSimulatorEndsTheProgramEnds) {
    LiveRun live;
    FeedPeer peer(live.trafficPort);
    ASSERT_TRUE(lf_fly(live, peer, 1));
    gf_playSandboxFault({.kind = FaultKind::quit});
    EXPECT_EQ(live.awaitMessage(), WindowMessage::endProgram);
    EXPECT_NE(live.log().find("Flight Simulator no longer connected, Halcyrane will stop ..."), std::string::npos);
    EXPECT_NE(live.log().find("Exiting: SIM WAS CLOSED"), std::string::npos);
}

TEST(Threads, NewSettingsDuringTheLoadBeginANewRunAndAClosedWindowEndsTheCountdown) {
    LiveRunOptions options;
    options.beforeStart = [] { gf_requestStop(ExitReason::newSettings, 2); };
    LiveRun live(std::move(options));
    ASSERT_EQ(live.awaitMessage(), WindowMessage::startRun) << live.log();
    EXPECT_NE(live.log().find("Exiting: NEW SETTINGS"), std::string::npos);
    EXPECT_EQ(live.log().find("Traffic Reader connected"), std::string::npos);
    live.startRun();
    ASSERT_TRUE(live.untilLogged("Traffic Reader connected"));
    constexpr i32 kLongSeconds = 100'000;
    gf_requestStop(ExitReason::newSettings, kLongSeconds);
    ASSERT_TRUE(live.until([] { return gf_currentMessage().starts_with("Restarting after"); }));
    live.close();
    EXPECT_EQ(live.awaitMessage(), WindowMessage::endProgram);
    EXPECT_EQ(countOf(live.log(), "Restart countdown finished"), 1U);
}

TEST(Threads, AFailedSimulatorCallCountsDownToANewRunThatFliesAgain) {
    LiveRunOptions options;
    options.beforeStart = [] { SCAN_AIRPORTS.current = true; };
    LiveRun live(std::move(options));
    FeedPeer peer(live.trafficPort);
    ASSERT_TRUE(lf_fly(live, peer, 1));
    gf_playSandboxFault({.kind = FaultKind::failCall, .call = "SimConnect_RequestDataOnSimObjectType"});
    ASSERT_EQ(live.awaitMessage(), WindowMessage::startRun);
    const std::string log = live.log();
    EXPECT_NE(log.find("SimConnect request ac within range fails\n"), std::string::npos);
    EXPECT_NE(log.find("Exiting: SIMCONNECT ERROR"), std::string::npos);
    EXPECT_NE(log.find("Restarting after 9 seconds\n" + std::string(48, '-') + "\nRestart countdown finished"),
              std::string::npos);
    EXPECT_FALSE(SCAN_AIRPORTS.current);
    live.startRun();
    EXPECT_TRUE(live.until([&] { return live.flying() == 1; })) << live.log();
    EXPECT_NE(live.log().find("Processing scanned liveries skipped; already done in previous start-up"),
              std::string::npos);
}

TEST(Threads, ATakenTrafficPortStopsTheRunWithACountdown) {
    LiveRunOptions options;
    LiveRun live(std::move(options));
    i32 error = 0;
    Socket thief = gf_openUdp(error);
    ASSERT_EQ(gf_bindSocket(thief, live.trafficPort, false), 0);
    EXPECT_TRUE(
        live.untilLogged("The Traffic Reader has stopped with error: bind to stream socket failed, error: 10048"));
    gf_closeSocket(thief);
    EXPECT_EQ(live.awaitMessage(), WindowMessage::startRun);
    EXPECT_NE(live.log().find("Exiting: READER ERROR"), std::string::npos);
}

TEST(Threads, ALoadedFlightEndsTheProgramAfterItsMessage) {
    LiveRun live;
    FeedPeer peer(live.trafficPort);
    ASSERT_TRUE(lf_fly(live, peer, 1));
    gf_playSandboxFault({.kind = FaultKind::flightLoaded});
    EXPECT_EQ(live.awaitMessage(), WindowMessage::endProgram);
    EXPECT_NE(live.log().find("New flight detected, Halcyrane will close, please restart manually ..."),
              std::string::npos);
}

TEST(Threads, ARefusedTitleIsNotGivenAgain) {
    LiveRun live;
    FeedPeer peer(live.trafficPort);
    ASSERT_TRUE(lf_fly(live, peer, 1));
    const std::string title = gf_sandboxObjects().front().title;
    gf_playSandboxFault({.kind = FaultKind::refuseTitle, .text = title});
    peer.aircraft = 3;
    ASSERT_TRUE(live.untilLogged("could not be created by your Sim!"));
    EXPECT_TRUE(live.until([&] { return live.flying() == 3; })) << live.log();
    const std::vector<SandboxObject> objects = gf_sandboxObjects();
    EXPECT_EQ(std::count_if(objects.begin(), objects.end(), [&](const auto& o) { return o.title == title; }), 1);
}

TEST(Threads, AnErrorWaitsForTheUserWhoPutsItRightOrClosesTheWindow) {
    LiveRunOptions options;
    options.beforeStart = [] { std::filesystem::remove("output/LiveriesScanned.xml"); };
    LiveRun live(std::move(options));
    const auto failed = [] {
        return gExitReason == ExitReason::systemError && gf_currentMessage().starts_with("51: File ");
    };
    ASSERT_TRUE(live.until(failed)) << gf_currentMessage();
    gf_requestStop(ExitReason::newSettings, 3);
    EXPECT_EQ(live.awaitMessage(), WindowMessage::startRun);
    live.startRun();
    ASSERT_TRUE(live.until(failed)) << gf_currentMessage();
    live.close();
    EXPECT_EQ(live.awaitMessage(), WindowMessage::endProgram);
}

}  // namespace
}  // namespace hcr::test
