#include "sim/drain.h"

#include <atomic>
#include <cmath>
#include <thread>

#include "core/model/tables.h"
#include "session_fixture.h"
#include "shell/run_stop.h"
#include "shell/window_state.h"
#include "sim/requests.h"
#include "sim/session.h"

namespace hcr::test {
namespace {

using Calls = std::vector<std::string>;

struct Drain : SessionTest {
    Drain() { gUserObjectId = 5; }
};

/// MinGW's own wait of an atomic may miss the change.
void awaitTrue(const std::atomic<bool>& flag) {
    while (!flag) std::this_thread::yield();
}

/// Holds the simulator lock on a thread of its own, as the other side would.
struct BusyLock {
    BusyLock()
        : holder([this] {
              const std::lock_guard lock(gSimMutex);
              held = true;
              awaitTrue(release);
          }) {
        awaitTrue(held);
    }
    ~BusyLock() { free(); }
    void free() {
        release = true;
        if (holder.joinable()) holder.join();
    }

    std::atomic<bool> held{false}, release{false};
    std::thread holder;
};

PositionCommand position(u32 object, f64 lat) {
    PositionCommand command;
    command.block.lat = lat;
    command.objectId = object;
    return command;
}

TEST_F(Drain, EverythingGoesOutInOrderButNothingForTheUsersAircraft) {
    gPosQueueFront = {position(5, 1), position(6, 2), position(0, 3)};
    gEventQueue = {{6, GEAR_SET, 1}, {6, FLAPS_SET, 3072}, {6, SPOILERS_SET, 0}};
    gCreateQueue = {createRequest(4740001, "KLM1", std::string_view("A320 House and more").substr(0, 10))};
    gRemovalQueue = {6, 5};
    gf_drainQueues();
    EXPECT_EQ(takeCalls(), (Calls{"SetData 402 6 64 2", "Event 6 219 1", "Release 6", "Event 6 217 3072", "Release 6",
                                  "Event 6 218 0", "Create A320 House KLM1 181.5 0 104", "Remove 6"}));
    EXPECT_TRUE(logHas("SimConnect call to remove ac with objectid 5"));
    ASSERT_EQ(gPendingCreates.size(), 1U);
    EXPECT_EQ(gPendingCreates[0].packetId, 41U);
    EXPECT_EQ(gPendingCreates[0].hexid, 4740001U);
    gf_drainQueues();
    EXPECT_TRUE(takeCalls().empty());
}

TEST_F(Drain, AFrameWithABusyLockLeavesTheQueuesAsTheyAre) {
    gPosQueueFront = {position(6, 2)};
    gRemovalQueue = {6};
    {
        BusyLock busy;
        gf_drainQueues();
    }
    EXPECT_TRUE(takeCalls().empty());
    gf_drainQueues();
    EXPECT_EQ(takeCalls().size(), 2U);
}

TEST_F(Drain, ARefusedCreateOrRemovalIsTheRequestErrorAfterWhichNothingGoesOut) {
    struct Row {
        const char* failing;
        const char* line;
        Calls calls;
    };
    for (const Row& row :
         {Row{"Create",
              "==> ! Simcon call to create ac in sim failed, hexid:4740001, liv: 'A320 House', callsign: KLM1)",
              {"Create A320 House KLM1 181.5 0 104"}},
          Row{"Remove", " !SimConnect call to remove AI ac from sim failed, id 6?", {"Remove 6"}}}) {
        resetSessionGlobals();
        gSimHandle = &gRecorded;
        gRecorded.failing = row.failing;
        if (row.failing == std::string("Create")) {
            gCreateQueue = {createRequest(4740001, "KLM1"), createRequest(4740002, "KLM2")};
        }
        gRemovalQueue = {6, 7};
        gf_drainQueues();
        EXPECT_EQ(takeCalls(), row.calls);
        EXPECT_TRUE(logHas(row.line));
        EXPECT_TRUE(logHas("SimConnect request error"));
        EXPECT_TRUE(gRequestError);
        EXPECT_EQ(gExitReason, ExitReason::simConnectError);
        EXPECT_EQ(gRestartSeconds, 9);
        EXPECT_TRUE(gPendingCreates.empty());

        gPosQueueFront = {position(6, 2)};
        gEventQueue = {{6, GEAR_SET, 1}};
        gCreateQueue = {createRequest(4740003, "KLM3")};
        gf_drainQueues();
        gf_requestAircraftInRange();
        gf_fetchUserPosition();
        EXPECT_TRUE(takeCalls().empty());
        EXPECT_TRUE(gPosQueueFront.empty() && gEventQueue.empty() && gCreateQueue.empty() && gRemovalQueue.empty());
    }
}

TEST_F(Drain, PositionsAreSwappedOrDroppedOrWaitedFor) {
    gPosQueueFront = {position(6, 1)};
    gPosQueueBack = {position(6, 2), position(7, 3)};
    gf_swapPositionBuffers();
    EXPECT_EQ(gPosQueueFront.size(), 2U);
    EXPECT_TRUE(gPosQueueBack.empty());

    gFrameRate = 50;
    gPosQueueBack = {position(8, 4)};
    {
        BusyLock busy;
        gf_swapPositionBuffers();
    }
    EXPECT_EQ(gPosQueueFront.size(), 2U);
    EXPECT_TRUE(gPosQueueBack.empty());

    gFrameRate = std::nextafter(50.0F, 51.0F);
    gPosQueueBack = {position(9, 5)};
    {
        BusyLock busy;
        std::atomic<bool> begun{false};
        std::thread worker([&begun] {
            begun = true;
            gf_swapPositionBuffers();
        });
        awaitTrue(begun);
        for (int turn = 0; turn < 100; ++turn) std::this_thread::yield();
        busy.free();
        worker.join();
    }
    ASSERT_EQ(gPosQueueFront.size(), 1U);
    EXPECT_EQ(gPosQueueFront[0].objectId, 9U);
}

TEST_F(Drain, RemovalsAndCreationsArePacedAndLiveAircraftGoFirst) {
    for (u32 object = 10; object < 40; ++object) gRemovedObjects.push_back(object);
    gLiveAdding.push_back(createRequest(4740001, "LIVE1"));
    gParkedAdding.push_back(createRequest(1, "STATIC1*"));
    gLiveAdding.push_back(createRequest(4740002, "LIVE2"));
    i32 creationTicks = 0;
    for (i32 tick = 1000; tick < 1150; ++tick) creationTicks += gf_paceQueues(tick) ? 1 : 0;
    EXPECT_EQ(creationTicks, 3);
    EXPECT_EQ(gRemovalQueue.size(), 15U);
    EXPECT_EQ(gRemovalQueue.back(), 24U);
    ASSERT_EQ(gCreateQueue.size(), 3U);
    EXPECT_EQ(gCreateQueue[0].callsign, "LIVE1");
    EXPECT_EQ(gCreateQueue[1].callsign, "LIVE2");
    EXPECT_EQ(gCreateQueue[2].callsign, "STATIC1*");
}

}  // namespace
}  // namespace hcr::test
