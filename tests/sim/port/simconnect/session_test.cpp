#include "sim/session.h"

#include <limits>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>

#include "core/model/tables.h"
#include "core/run/run.h"
#include "platform/clock.h"
#include "shell/run_stop.h"
#include "sim/aircraft.h"
#include "sim/drain.h"
#include "sim/requests.h"
#include "sim/sim_client.h"
#include "sim/waiting_list.h"
#include "stand_in.h"
#include "tests/sim/session_fixture.h"
#include "tests/support/world.h"

// The session's own thread before the stand-in of the client library, the worker's cycle on the test's thread. The
// simulator's time is the wall's, so what must come is waited for.

namespace hcr::test {
namespace {

constexpr u32 kLive = 4740001;
constexpr int kMostCycles = 60000;

struct SessionOnLibrary : SessionTest {
    SessionOnLibrary() {
        resetProgram();
        gSimHandle = nullptr;
    }
    ~SessionOnLibrary() override { resetProgram(); }

    void addLive() {
        LiveAc& ac = gLiveAcs.emplace_back();
        ac.hexid = kLive;
        ac.callsign = "KLM1";
        ac.liveryTitle = "A320 House";
        ac.acClass = 2;
        ac.flightState = FlightState::flying;
        ac.lat = 52.4;
        ac.lon = 4.7;
        ac.alt = 3000;
        ac.tas = 160;
        ac.stream.resize(2);
        for (PosSample& sample : ac.stream) sample.airborne = true;
        ac.stream[0].time = ac.stream[1].time = std::numeric_limits<i32>::max();  // it stays where it is
        ac.lifeState = LifeState::adding2sim;
        AiCreateRequest request = createRequest(ac.hexid, ac.callsign, ac.liveryTitle);
        request.lat = ac.lat;
        request.lon = ac.lon;
        request.alt = ac.alt;
        gLiveAdding.push_back(request);
    }

    void cycle() {
        if (asksSimulator) gf_tick();
        gf_sleepMs(1);
        ++cycles;
    }

    template <typename Condition>
    bool cyclesUntil(Condition condition) {
        for (int n = 0; n < kMostCycles && !condition(); ++n) cycle();
        return condition();
    }

    bool asksSimulator = true;
    int cycles = 0;
};

std::vector<nlohmann::json> linesOf(const std::string& trace) {
    std::vector<nlohmann::json> lines;
    std::istringstream text(trace);
    for (std::string line; std::getline(text, line);) lines.push_back(nlohmann::json::parse(line));
    return lines;
}

TEST_F(SessionOnLibrary, AnAircraftIsMadeFrozenPlacedAndTakenAway) {
    StandIn standIn(R"({"openAfter": 0.3, "flightAfter": 0, "frameRate": 200})", "trace.jsonl");
    {
        std::jthread thread(SimClient);
        ASSERT_TRUE(cyclesUntil([] { return gFlightRunning.load(); }));
        addLive();
        ASSERT_TRUE(cyclesUntil([] { return gLiveAcs[0].lifeState == LifeState::active; })) << log();
        const int placed = cycles;
        ASSERT_TRUE(cyclesUntil([&] { return cycles > placed + 1500; }));  // the trace tells states once a second
        removeAircraftFromSim(gLiveAcs[0]);
        EXPECT_TRUE(cyclesUntil([] { return gLiveAcs.empty(); }));
    }
    EXPECT_EQ(logCount("Waiting for MSFS 2020 ..."), 1U);
    EXPECT_TRUE(logHas("KittyHawk (11.0.282174.999) connected"));
    EXPECT_TRUE(logHas("SimConnect closed ok"));
    EXPECT_FALSE(logHas("==> "));
    EXPECT_EQ(gExitReason, ExitReason::notYetSet);

    nlohmann::json state;
    for (const nlohmann::json& line : linesOf(readFile("trace.jsonl"))) {
        EXPECT_FALSE(line.contains("exception")) << line;
        if (line.contains("frozen") && line["tail"] == "KLM1") state = line;
    }
    ASSERT_FALSE(state.is_null());
    EXPECT_EQ(state["frozen"], 1);
    EXPECT_EQ(state["engines"], 1);
    EXPECT_EQ(state["alt"], 3000);
    EXPECT_NEAR(state["lat"].get<f64>(), 52.4, 1e-6);
    EXPECT_GT(state["writes"].get<i64>(), 10);
}

TEST_F(SessionOnLibrary, WhenTheSimulatorEndsTheSessionIsClosedAndTheRunStops) {
    StandIn standIn(R"({"flightAfter": 0, "faults": [{"at": 0.3, "kind": "quit"}]})");
    asksSimulator = false;  // a request that meets a simulator already gone is an error of its own
    {
        std::jthread thread(SimClient);
        EXPECT_TRUE(cyclesUntil([] { return gExitReason == ExitReason::simWasClosed; }));
    }
    EXPECT_TRUE(logHas("Flight Simulator no longer connected, Halcyrane will stop ..."));
    EXPECT_EQ(logCount("SimConnect closed ok"), 1U);
    EXPECT_EQ(gSimHandle, nullptr);
    EXPECT_FALSE(gFlightRunning);
}

}  // namespace
}  // namespace hcr::test
