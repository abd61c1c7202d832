#include "platform/sockets.h"

#include <gtest/gtest.h>

#include <array>
#include <thread>

#include "platform/clock.h"

using namespace hcr;

namespace {

constexpr i64 kPatienceMs = 10'000;  // loopback answers at once; a test that waits so long has failed

/// A socket on a port of the system's choice that is closed behind the test.
struct Bound {
    explicit Bound(Socket opened) : socket(opened) {
        EXPECT_TRUE(socket.valid());
        EXPECT_EQ(gf_bindSocket(socket, 0, true), 0);
        port = gf_boundPort(socket);
        EXPECT_NE(port, 0);
    }
    ~Bound() { gf_closeSocket(socket); }
    Bound(const Bound&) = delete;
    Bound& operator=(const Bound&) = delete;

    Socket socket;
    u16 port = 0;
    i32 error = 0;
};

Socket lf_udp() {
    i32 error = 0;
    return gf_openUdp(error);
}

Socket lf_tcp() {
    i32 error = 0;
    return gf_openTcp(error);
}

}  // namespace

TEST(Sockets, DatagramsComeOneByOneAndAreCutAtTheBuffer) {
    Bound receiver(lf_udp()), sender(lf_udp());
    gf_setReceiveBuffer(receiver.socket, 1 << 20);
    gf_countDrops(receiver.socket);
    std::array<char, 8> buffer{};
    for (const std::string_view text : {"short", "12345678", "a longer one", "", "end"}) {
        ASSERT_EQ(gf_sendTo(sender.socket, text, "127.0.0.1", receiver.port).bytes, static_cast<i64>(text.size()));
    }
    for (const i64 expected : {5, 8, 8, 0, 3}) {
        ASSERT_TRUE(gf_waitReadable(receiver.socket, kPatienceMs, receiver.error));
        u32 dropped = 0;
        EXPECT_EQ(gf_receiveDatagram(receiver.socket, buffer.data(), buffer.size(), &dropped).bytes, expected);
        EXPECT_EQ(dropped, 0U);
    }
    EXPECT_FALSE(gf_waitReadable(receiver.socket, 0, receiver.error));
    EXPECT_EQ(receiver.error, 0);
}

TEST(Sockets, ErrorsBearTheNumbersOfWinsock) {
    Bound first(lf_udp()), listener(lf_tcp());
    Socket second = lf_udp();
    EXPECT_EQ(gf_bindSocket(second, first.port, true), 10048);
    gf_closeSocket(second);
    std::array<char, 4> buffer{};
    i32 error = 0;
    EXPECT_EQ(gf_receive(second, buffer.data(), buffer.size()).bytes, -1);
    EXPECT_FALSE(gf_waitReadable(second, 0, error));
    EXPECT_NE(error, 0);
    EXPECT_EQ(gf_sendTo(first.socket, "x", "no address", 1).error, 10022);

    gf_setBlocking(first.socket, false);
    EXPECT_EQ(gf_receive(first.socket, buffer.data(), buffer.size()).error, 10035);
    gf_setBlocking(first.socket, true);

    Socket client = lf_tcp();
    EXPECT_EQ(gf_connect(client, "127.0.0.1", listener.port), 10061) << "bound, but not listening";
    gf_closeSocket(client);
}

TEST(Sockets, AConnectionCarriesTextUntilItsEnd) {
    Bound listener(lf_tcp());
    EXPECT_EQ(gf_setReuseAddress(listener.socket), 0);
    ASSERT_EQ(gf_listen(listener.socket), 0);
    Socket client = lf_tcp();
    ASSERT_EQ(gf_connect(client, "127.0.0.1", listener.port), 0);
    ASSERT_TRUE(gf_waitReadable(listener.socket, kPatienceMs, listener.error));
    Socket served = gf_accept(listener.socket, listener.error);
    ASSERT_TRUE(served.valid());
    EXPECT_EQ(gf_setNoDelay(served), 0);
    EXPECT_TRUE(gf_waitWritable(served, kPatienceMs, listener.error));

    // More than the buffers of both ends hold, so that the sender has to go on behind a full one.
    const std::string text(8'000'000, 'x');
    i64 received = 0;
    std::thread reader([&] {
        std::vector<char> buffer(65'536);
        while (received < static_cast<i64>(text.size())) {
            const SocketResult result = gf_receive(client, buffer.data(), static_cast<i64>(buffer.size()));
            if (result.bytes <= 0) return;
            received += result.bytes;
        }
    });
    EXPECT_EQ(gf_send(served, text).bytes, static_cast<i64>(text.size()));
    reader.join();
    EXPECT_EQ(received, static_cast<i64>(text.size()));
    gf_closeSocket(client);
    char nothing = 0;
    EXPECT_EQ(gf_receive(served, &nothing, 1).bytes, 0);

    // The first may still seem to go out; the other side's refusal comes behind it.
    SocketResult late;
    const i64 endUs = gf_steadyUs() + kPatienceMs * 1'000;
    while (late.bytes >= 0 && gf_steadyUs() < endUs) {
        late = gf_send(served, "nobody listens, and the process lives on");
    }
    EXPECT_EQ(late.bytes, -1);
    EXPECT_NE(late.error, 0);
    gf_closeSocket(served);
}

TEST(Sockets, TimeOutsFollowTheClock) {
    Bound receiver(lf_udp());
    gf_speedClock(1'000'000);
    EXPECT_FALSE(gf_waitReadable(receiver.socket, 24 * 3'600'000, receiver.error)) << "a day in a tenth of a second";
    gf_releaseClock();
    EXPECT_EQ(receiver.error, 0);
}

TEST(Sockets, APortIsANumberOrAService) {
    struct Row {
        const char* text;
        bool isFine;
        u16 port;
    };
    const Row rows[] = {{"10747", true, 10747}, {"0", true, 0},   {"65535", true, 65535},       {"65536", false, 1},
                        {"", false, 1},         {"-1", false, 1}, {"no-such-service", false, 1}};
    for (const Row& row : rows) {
        u16 port = 1;
        EXPECT_EQ(gf_resolvePort(row.text, port) == 0, row.isFine) << row.text;
        EXPECT_EQ(port, row.port) << row.text;
    }
}
