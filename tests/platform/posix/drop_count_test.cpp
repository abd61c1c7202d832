#include <gtest/gtest.h>

#include <array>
#include <string>

#include "platform/sockets.h"

using namespace hcr;

TEST(DropCount, TellsHowManyDatagramsWereThrownAway) {
    i32 error = 0;
    Socket receiver = gf_openUdp(error), sender = gf_openUdp(error);
    ASSERT_EQ(gf_bindSocket(receiver, 0, true), 0);
    const u16 port = gf_boundPort(receiver);
    gf_setReceiveBuffer(receiver, 1);
    gf_countDrops(receiver);
    const std::string text(1'000, 'x');
    for (int i = 0; i < 100; ++i) gf_sendTo(sender, text, "127.0.0.1", port);
    // The count travels with the datagrams that arrive behind the loss.
    std::array<char, 2'000> buffer{};
    u32 dropped = 0;
    i64 received = 0;
    while (gf_waitReadable(receiver, 0, error)) {
        gf_receiveDatagram(receiver, buffer.data(), buffer.size(), &dropped);
        ++received;
    }
    gf_sendTo(sender, text, "127.0.0.1", port);
    ASSERT_TRUE(gf_waitReadable(receiver, 60'000, error));
    gf_receiveDatagram(receiver, buffer.data(), buffer.size(), &dropped);
    EXPECT_LT(received, 100);
    EXPECT_EQ(received + dropped, 100);
    gf_closeSocket(receiver);
    gf_closeSocket(sender);
}
