#include "feed/control_channel.h"

#include <stdexcept>

#include "feed_world.h"
#include "sim/port/layouts.h"
#include "sim/session.h"

namespace hcr {
namespace {

// The program's side runs in the test's thread; a scripted peer plays RealTraffic in another.
struct ControlChannel : FeedWorld {
    ControlChannel() {
        gRtOnThisPc = true;
        gWaitingForRt = true;
        gf_startServer("0");
        port = gf_serverPort();
    }
    ~ControlChannel() override {
        gf_closeControlChannel();
        gf_closeSocket(peer);
        gf_storeUserPosition({});
    }

    void connectPeer() {
        i32 error = 0;
        gf_closeSocket(peer);
        peer = gf_openTcp(error);
        ASSERT_EQ(gf_connect(peer, "127.0.0.2", port), 0);  // RealTraffic may come by any address of the computer
    }
    void connectBoth() {
        connectPeer();
        ASSERT_TRUE(waitForClient());
    }
    /// What the peer has received, up to and with the next line feed.
    std::string peerLine() {
        std::string text;
        i32 error = 0;
        while (text.find('\n') == std::string::npos && gf_waitReadable(peer, 5000, error)) {
            char byte = 0;
            if (gf_receive(peer, &byte, 1).bytes != 1) break;
            text += byte;
        }
        return text;
    }
    /// Positions until the peer's end is noticed.
    static void sendUntilLost() {
        ASSERT_TRUE(soon([] {
            gf_sendQs121();
            return !gConnected;
        }));
    }
    static void putUser(f64 lat, f64 lon) {
        UserAircraftData user{};
        user.lat = lat;
        user.lon = lon;
        user.pitch = 0.05;
        user.bank = -0.01;
        user.heading = 1.5;
        user.alt = 3500;
        user.groundSpeed = 123.456;
        gf_storeUserPosition(user);
    }

    u16 port = 0;
    Socket peer;
};

TEST_F(ControlChannel, ConnectsAsksForTheVersionAndShowsIt) {
    connectPeer();
    std::thread rt([&] {
        EXPECT_EQ(peerLine(), "Qs999=version\r\n");
        gf_send(peer, "{ \"version\":\"10.0.240\",\"level\": 2 }\r\n");
    });
    lf_waitForRealTraffic();
    rt.join();
    EXPECT_TRUE(gConnected && gFeedClock && gWindow.rtConnected);
    EXPECT_FALSE(gWaitingForRt);
    EXPECT_EQ(gWindow.rtVersionText.get(), "10.0.240");
    EXPECT_EQ(gWindow.message, "");
    EXPECT_TRUE(logged("Waiting for RealTraffic to connect to Halcyrane ...\n"));
    EXPECT_TRUE(logged("RealTraffic connected\n"));
}

TEST_F(ControlChannel, ClientsThatHaveGoneAgainArePassedOver) {
    const auto comeAndGo = [&] {
        for (int i = 0; i < 3; ++i) connectPeer();  // each takes the place of the one before, which is closed
        gf_closeSocket(peer);
        connectPeer();
        gf_send(peer, "early");  // nothing that a live one may not do
    };
    comeAndGo();
    ASSERT_TRUE(waitForClient());
    ASSERT_TRUE(sendDataPacket("first\n"));
    EXPECT_EQ(peerLine(), "first\n");
    EXPECT_EQ(gf_receiveFromRt(), "early");

    gf_closeSocket(peer);
    putUser(52, 4);
    sendUntilLost();
    gf_sendQs121();  // nobody has come; nothing waits for that
    EXPECT_FALSE(gConnected);
    comeAndGo();
    gf_sendQs121();
    EXPECT_TRUE(gConnected);
    ASSERT_TRUE(sendDataPacket("second\n"));
    EXPECT_EQ(peerLine(), "second\n");
}

TEST_F(ControlChannel, TheVersionReplyMayBeAnything) {
    struct Row {
        std::string reply;
        bool clock;
        std::string version;
        std::string log;
    };
    const Row rows[] = {
        {R"({"version":"9.0.170"})", true, "9.0.170", ""},
        {R"({"level":2})", true, "", ""},
        {R"({"version":10.0})", true, "", ""},
        {R"({"version":"1\u001B[2J"})", true, "1?[2J", ""},
        {R"([1,2])", false, "", ""},
        {"", false, "old", "No RealTraffic version received?\n"},
        {"10.0.240", false, "", "lf_processRTVersion: JSON parse failed: "},
        {"{\"version\":\"\xC3\x28\"}", false, "", "lf_processRTVersion: JSON parse failed: "},
        {std::string(16000, '{'), false, "", "lf_processRTVersion: JSON parse failed: "},
    };
    for (const Row& row : rows) {
        gFeedClock = !row.clock;
        gWindow.rtVersionText.set("old");
        const std::size_t before = log().size();
        lf_processRTVersion(row.reply);
        EXPECT_EQ(gFeedClock, row.clock) << row.reply.substr(0, 40);
        EXPECT_EQ(gWindow.rtVersionText.get(), row.version) << row.reply.substr(0, 40);
        EXPECT_EQ(log().substr(before, row.log.size()), row.log);
    }
}

TEST_F(ControlChannel, ARepliesEndOrExcessGivesNoText) {
    connectBoth();
    gf_send(peer, std::string(16384, ' '));
    ASSERT_TRUE(soon([&] {  // all of it must have arrived before the one receive
        i32 error = 0;
        gf_sleepMs(50);
        return gf_waitReadable(gClientSocket, 10, error);
    }));
    EXPECT_EQ(gf_receiveFromRt(), "");
    EXPECT_TRUE(logged("receive: buffer overrun: 16384\n"));
    gf_closeSocket(peer);
    EXPECT_EQ(gf_receiveFromRt(), "");
}

TEST_F(ControlChannel, SendsPositionAndClockInTheirForm) {
    gf_sendQs123(1700000000);  // without a connection nothing happens
    putUser(52.3, 4.8);
    connectBoth();
    gf_sendQs123(0);
    gf_sendQs121();
    EXPECT_EQ(peerLine(), "Qs121=5e+03;-1e+03;1.500000;4e+06;123456;0.912807;0.083776\r\n");
    gf_sendQs123(1700000000);
    EXPECT_EQ(peerLine(), "Qs123=1700000000000\r\n");
    putUser(0.00005, -0.00005);
    gf_sendQs121();
    gf_closeControlChannel();
    EXPECT_EQ(peerLine(), "exit\r\n");
    EXPECT_FALSE(gConnected || gListenSocket.valid() || gClientSocket.valid());
    gf_closeSocket(peer);
    EXPECT_NO_THROW(gf_startServer(std::to_string(port))) << "the next run takes the port at once";
}

TEST_F(ControlChannel, WhenThePeerGoesAllTrafficLeavesUntilItIsBack) {
    putUser(52.3, 4.8);
    connectBoth();
    gWindow.rtConnected = true;
    const auto add = [](u32 hexid, LifeState state, u32 object) -> LiveAc& {
        LiveAc& ac = gLiveAcs.emplace_back();
        ac.hexid = hexid;
        ac.callsign = "CS" + std::to_string(hexid);
        ac.lifeState = state;
        ac.objectId = object;
        return ac;
    };
    add(20001, LifeState::buffer, 0);
    add(20002, LifeState::active, 7);
    add(20003, LifeState::adding2sim, 0);  // still in the queue
    AiCreateRequest request;
    request.callsign = "CS20003";
    request.id = 20003;
    gLiveAdding.push_back(request);
    add(20004, LifeState::adding2sim, 0);  // on its way
    gf_closeSocket(peer);
    sendUntilLost();
    EXPECT_FALSE(gWindow.rtConnected);
    EXPECT_TRUE(gLiveAdding.empty());
    ASSERT_EQ(gLiveAcs.size(), 2u) << "who has no object yet is never to get one";
    EXPECT_EQ(findLiveByHexid(20002)->lifeState, LifeState::removingfromsim);
    EXPECT_EQ(gRemovedObjects.front(), 7u);
    EXPECT_TRUE(findLiveByHexid(20004)->removeWhenCreated);
    EXPECT_TRUE(logged("RealTraffic gone? Wait for RealTraffic to re-connect ...\n"));
    EXPECT_TRUE(logged("RealTraffic client socket closed\n"));
    EXPECT_TRUE(logged("sendDataPacket to RealTraffic failed: 10054 Connection reset by peer\n"));

    connectPeer();
    gf_sendQs121();
    EXPECT_TRUE(gConnected && gWindow.rtConnected);
    EXPECT_TRUE(logged(" RealTraffic re-connected\n"));
    gf_sendQs121();
    EXPECT_EQ(peerLine().substr(0, 6), "Qs121=") << "the version isn't asked again";
}

TEST_F(ControlChannel, APeerThatReadsNothingCountsAsGone) {
    connectBoth();
    const std::string text(1 << 20, 'x');
    bool sent = true;
    for (int i = 0; i < 64 && sent; ++i) sent = sendDataPacket(text);
    EXPECT_FALSE(sent);
    EXPECT_FALSE(gConnected);
    EXPECT_TRUE(logged("sendDataPacket to RealTraffic failed: 10060 Connection timed out\n"));
}

TEST_F(ControlChannel, AStopEndsEveryWait) {
    std::thread stopper([] {
        gf_sleepMs(60);
        gf_requestStop(ExitReason::userClosed, 0);
    });
    EXPECT_FALSE(waitForClient());
    stopper.join();
    gStop = gUserStop = false;
    connectBoth();
    stopper = std::thread([] {
        gf_sleepMs(60);
        gf_requestStop(ExitReason::newSettings, 2);
    });
    EXPECT_EQ(gf_receiveFromRt(), "");
    stopper.join();
    putUser(52.3, 4.8);
    gConnected = false;
    gf_sendQs121();  // must not wait for a client now
}

TEST_F(ControlChannel, AServerThatCannotStartTellsAtWhichStep) {
    const auto failure = [](const std::string& text) -> std::string {
        try {
            gf_startServer(text);
        } catch (const std::runtime_error& e) {
            return e.what();
        }
        return "started";
    };
    i32 error = 0;
    Socket squatter = gf_openTcp(error);
    ASSERT_EQ(gf_bindSocket(squatter, 0, false), 0);
    ASSERT_EQ(gf_listen(squatter), 0);
    const std::string taken = std::to_string(gf_boundPort(squatter));
    EXPECT_EQ(failure(taken), "Bind failed at port " + taken + " with error 10048 Address already in use");
    gf_closeSocket(squatter);
    EXPECT_EQ(failure("99999"),
              "getaddrinfo failed with error 10109: the setting PORT_NUMBER is '99999', it must be a "
              "TCP port from 1 to 65535");
    EXPECT_FALSE(gListenSocket.valid());
    EXPECT_EQ(failure("0"), "started");
    EXPECT_EQ(failure("0"), "started") << "a second start replaces the first";
}

}  // namespace
}  // namespace hcr
