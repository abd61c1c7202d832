#include "feed/readers.h"

#include <fmt/format.h>

#include "feed_world.h"
#include "platform/sockets.h"
#include "tests/support/live_run.h"

namespace hcr {
namespace {

using test::freeUdpPort;

std::string goodLine(u32 hexid) {
    return fmt::format(
        "RTTFC,{},52.1,4.8,9000,0,1,90,250,KLM{},B738,PH-ABC,AMS,LHR,1700000000.0,X2,KL1,mlat,9000,1,300,0.5,0,0,1,1,1,"
        "none,A3",
        hexid, hexid % 10000);
}

// Both readers on ports of their own, and a socket that plays the sender.
struct Readers : FeedWorld {
    Readers() {
        gTrafficReader.userLat = 52.3;
        gTrafficReader.userLon = 4.8;
        gRtOnThisPc = true;
        gf_setFeedPorts(freeUdpPort(), freeUdpPort());
        i32 error = 0;
        sender = gf_openUdp(error);
        EXPECT_EQ(error, 0);
    }
    ~Readers() override {
        gTrafficReader.stop = gQnhReader.stop = true;
        for (std::thread& thread : threads) thread.join();
        gf_closeSocket(sender);
    }

    void start(UdpReader& reader) {
        const std::string connected = fmt::format("          {} connected\n", reader.name);
        const std::size_t before = log().size();
        threads.emplace_back([&reader] { lf_readerThread(reader); });
        ASSERT_TRUE(soon([&] { return log().find(connected, before) != std::string::npos; }));
    }
    /// To this computer's usual address, or to another one of it, at which only a port open to the network listens.
    void send(const UdpReader& reader, std::string_view text, const char* address = "127.0.0.1") const {
        ASSERT_EQ(gf_sendTo(sender, text, address, reader.port).bytes, static_cast<i64>(text.size()));
    }
    static std::size_t reportCount() {
        const std::lock_guard lock(gReportMutex);
        return gReports.size();
    }

    Socket sender;
    std::vector<std::thread> threads;
};

TEST_F(Readers, ABurstOfTwoThousandLinesLosesNone) {
    start(gTrafficReader);
    send(gTrafficReader, goodLine(30000), "127.0.0.2");  // while RealTraffic is here nobody else is listened to
    for (u32 i = 0; i < 2000; ++i) send(gTrafficReader, goodLine(20000 + i));
    // The system may give less room than was asked for; then it tells how many it threw away.
    EXPECT_TRUE(
        soon([] { return gTrafficReader.packetCount + static_cast<i32>(gTrafficReader.droppedBySystem) >= 2000; }));
    EXPECT_TRUE(soon([] { return reportCount() == static_cast<std::size_t>(gTrafficReader.packetCount); }));
    EXPECT_EQ(gTrafficReader.droppedBySystem, 0u);
    EXPECT_EQ(gTrafficReader.packetCount, 2000);
    EXPECT_EQ(gWindow.trafficLamp, 1);
    gTrafficReader.stop = true;
    EXPECT_TRUE(soon([&] { return logged("          Traffic Reader disconnected\n"); }));
    EXPECT_EQ(gWindow.trafficLamp, 3);
    EXPECT_TRUE(logged("Traffic Reader has stopped\n"));
}

TEST_F(Readers, DatagramsOfEverySizeAreReadOrToldToBeTooLong) {
    start(gTrafficReader);
    send(gTrafficReader, "");
    std::string text = goodLine(20001) + ",";
    text.resize(16383, 'x');
    send(gTrafficReader, text);
    text.resize(16384, 'x');
    send(gTrafficReader, text);
    text.resize(65000, 'x');
    send(gTrafficReader, text);
    send(gTrafficReader, goodLine(20002));
    ASSERT_TRUE(soon([] { return gTrafficReader.packetCount == 2 && reportCount() == 2; }));
    const std::string all = log();
    const std::size_t first = all.find("buffer overrun: 16384 bytes\n");
    ASSERT_NE(first, std::string::npos);
    EXPECT_NE(all.find("buffer overrun: 16384 bytes\n", first + 1), std::string::npos);
    for (int i = 0; i < 20; ++i) send(gTrafficReader, text);
    send(gTrafficReader, goodLine(20003));
    ASSERT_TRUE(soon([] { return reportCount() == 3; }));
    gf_logLeftOut();
    EXPECT_TRUE(logged("... and 2 more: buffer overrun\n"));
}

TEST_F(Readers, FromAnotherComputerARepeatCountsButIsNotHandled) {
    gRtOnThisPc = false;
    start(gTrafficReader);
    for (int i = 0; i < 3; ++i) send(gTrafficReader, goodLine(20001), "127.0.0.2");
    send(gTrafficReader, goodLine(20002));
    ASSERT_TRUE(soon([] { return gTrafficReader.packetCount == 4; }));
    EXPECT_TRUE(soon([] { return reportCount() == 2; }));
}

TEST_F(Readers, APortInUseStopsTheRun) {
    i32 error = 0;
    Socket squatter = gf_openUdp(error);
    ASSERT_EQ(gf_bindSocket(squatter, gQnhReader.port, true), 0);
    lf_readerThread(gQnhReader);
    gf_closeSocket(squatter);
    const std::string text = fmt::format(
        "The QNH Reader has stopped with error: bind to stream socket failed, error: 10048 Address already in use (UDP "
        "port {})",
        gQnhReader.port);
    EXPECT_EQ(gWindow.fatalMessage, text);
    EXPECT_TRUE(logged(text));
    EXPECT_TRUE(logged("          QNH Reader disconnected\n"));
    EXPECT_EQ(gExitReason, ExitReason::readerError);
    EXPECT_EQ(gRestartSeconds, 15);
    EXPECT_TRUE(gStop);
}

TEST_F(Readers, TheNextRunsReaderTakesThePortOfOneThatIsStillThere) {
    start(gTrafficReader);
    gTrafficReader.stop = true;
    gf_resetFeed();  // clears the flag before the old thread can have seen it
    start(gTrafficReader);
    send(gTrafficReader, goodLine(20001));
    EXPECT_TRUE(soon([] { return reportCount() == 1; }));
    EXPECT_EQ(gWindow.fatalMessage, "");
}

TEST_F(Readers, TheLampsFollowWhatArrives) {
    gWindow.rtConnected = true;
    start(gTrafficReader);
    start(gQnhReader);
    send(gTrafficReader, goodLine(20001));
    send(gQnhReader, R"({"QNH": 1020})");
    ASSERT_TRUE(soon([] { return gTrafficReader.packetCount == 1 && gQnh == 1020; }));
    gf_checkReaders();
    EXPECT_EQ(gWindow.trafficLamp, 1);
    gf_checkReaders();
    EXPECT_EQ(gWindow.trafficLamp, 2);
    EXPECT_EQ(gWindow.weatherLamp, 2);
    send(gQnhReader, R"({"QNH": 1021})");
    EXPECT_TRUE(soon([] { return gWindow.weatherLamp == 1; })) << "a new pressure lights the lamp at once";
    send(gTrafficReader, goodLine(20002));
    ASSERT_TRUE(soon([] { return gTrafficReader.packetCount == 2; }));
    gf_checkReaders();
    EXPECT_EQ(gWindow.trafficLamp, 1);
    gf_checkReaders();
    gf_resetFeed();
    send(gTrafficReader, goodLine(20003));
    ASSERT_TRUE(soon([] { return gTrafficReader.packetCount == 3; }));
    gf_checkReaders();
    EXPECT_EQ(gWindow.trafficLamp, 1) << "lit again also when the feed was reset while it was silent";
    gWindow.rtConnected = false;
    gf_checkReaders();
    EXPECT_EQ(gWindow.trafficLamp, 1) << "no check while RealTraffic isn't there";
}

struct Qnh : FeedWorld {
    static i32 after(const std::string& datagram) {
        gQnhReader.text = datagram;
        gQnhReader.handleText();
        return gQnh;
    }
};

TEST_F(Qnh, AnyJsonGivesAPressureOrALineInTheLog) {
    struct Row {
        std::string datagram;
        i32 qnh;
        std::string log;
    };
    const Row rows[] = {
        {R"({"QNH": 2992})", 1013, ""},
        {R"({"QNH": "3009", "ICAO": "KDTW"})", 1019, ""},
        {R"({"QNH": 800})", 900, ""},
        {R"({"QNH": -5})", 900, ""},
        {R"({"QNH": "1017"})", 1017, ""},
        {R"({"QNH": 1020.6})", 1021, ""},
        {R"({"QNH": 1100})", 1100, ""},
        {R"({"QNH": 1101})", 900, ""},
        {R"({"QNH": 18446744073709551615})", 1100, ""},
        {R"({"QNH": 1e308})", 1100, ""},
        {R"({"QNH": -1e308})", 900, ""},
        {R"({"QNH": null})", 1000, "no QNH {\"QNH\": null}\n"},
        {R"({"QNH": [1013]})", 1000, "no QNH {\"QNH\": [1013]}\n"},
        {R"({"qnh": 1013})", 1000, "no QNH {\"qnh\": 1013}\n"},
        {R"([{"QNH": 1013}])", 1000, "no QNH [{\"QNH\": 1013}]\n"},
        {"1013", 1000, "no QNH 1013\n"},
        {R"({"QNH": "29.92"})", 1000, "==> QNH string parse error: 29.92 in {\"QNH\": \"29.92\"}\n"},
        {R"({"QNH": ""})", 1000, "==> QNH string parse error:  in {\"QNH\": \"\"}\n"},
        {R"({"QNH": "99999999999999999999"})", 1000, "==> QNH string parse error: 99999999999999999999 in"},
        {R"({"QNH": 1013)", 1000, "Exception "},
        {"{\"QNH\": \"\xff\xfe\"}", 1000, "Exception "},
        {R"({"QNH": 1e999})", 1000, "Exception "},
        {std::string(16000, '['), 1000, "Exception "},
        {"", 1000, "Exception "},
    };
    for (const Row& row : rows) {
        gQnhReader.lastQnh = 1000;
        gQnh = 1000;
        const std::size_t before = log().size();
        EXPECT_EQ(after(row.datagram), row.qnh) << row.datagram.substr(0, 60);
        const std::string added = log().substr(before);
        EXPECT_EQ(added.substr(0, row.log.size()), row.log);
        EXPECT_EQ(added.empty(), row.log.empty()) << added;
    }
}

TEST_F(Qnh, AFloodOfNonsenseLeavesAShortAndHarmlessLog) {
    gf_holdClock(1700000000);
    const std::string escape = R"({"QNH": "\u001B[2J\u0000)" + std::string(15'000, 'x') + "\"}";
    for (int i = 0; i < 1000; ++i) {
        for (const std::string& datagram : {escape, "\x1B\n" + escape, "\"\x7F" + escape}) after(datagram);
    }
    EXPECT_EQ(log().find_first_of("\x1B\x7F"), std::string::npos);
    EXPECT_LT(log().size(), 3U * 20U * 600U);
    gf_logLeftOut();
    EXPECT_TRUE(logged("... and 980 more: QNH string parse error\n"));
}

TEST_F(Qnh, OnlyTheStandardPressureIsWrittenAgainWhenItIsRepeated) {
    EXPECT_EQ(after(R"({"QNH": 1020})"), 1020);
    EXPECT_EQ(gTrafficReader.qnh, 1020);
    EXPECT_EQ(gWindow.qnh, 1020);
    gQnh = 5;
    EXPECT_EQ(after(R"({"QNH": 1020})"), 5);
    gQnhReader.lastQnh = 1013;
    EXPECT_EQ(after(R"({"QNH": 1013})"), 1013);
}

TEST_F(Qnh, TheResetPutsTheFeedBackToItsStart) {
    after(R"({"QNH": 1020})");
    gLastTimestamp = 5;
    gf_collectCallsigns(true);
    gTrafficReader.realCallsigns.insert("KLM1");
    gTrafficReader.stop = gQnhReader.stop = true;
    gQnhReader.packetCount = gTrafficReader.packetCount = 7;
    gTrafficReader.alive = gQnhReader.alive = false;
    const u64 repaints = gf_repaintCount();
    gf_resetFeed();
    EXPECT_EQ(gWindow.qnh, 1013);
    EXPECT_GT(gf_repaintCount(), repaints);
    EXPECT_EQ(gTrafficReader.qnh, 1013);
    EXPECT_EQ(gQnhReader.lastQnh, 1013);
    EXPECT_EQ(gLastTimestamp, 0);
    EXPECT_TRUE(gTrafficReader.realCallsigns.empty());
    EXPECT_FALSE(gTrafficReader.stop || gQnhReader.stop);
    EXPECT_EQ(gQnhReader.packetCount, 0);
    EXPECT_EQ(gTrafficReader.packetCount, 7);
    EXPECT_TRUE(gTrafficReader.alive && gQnhReader.alive);
    EXPECT_EQ(gTrafficReader.port, 49005) << "the ports of a program without options are RealTraffic's own";
    EXPECT_EQ(gQnhReader.port, 49004);
}

}  // namespace
}  // namespace hcr
