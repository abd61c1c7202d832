#pragma once

#include <array>
#include <atomic>
#include <string>
#include <string_view>

#include "platform/sockets.h"
#include "platform/types.h"

namespace hcr {

inline constexpr u16 kTrafficPort = 49005;
inline constexpr u16 kWeatherPort = 49004;
inline constexpr i64 kDatagramLimit = 16384;  ///< a datagram of this size is too long to be trusted

/// The common receive object. One thread at a time owns it, but for the atomics and what says otherwise.
struct UdpReader {
    UdpReader(const char* readerName, u16 readerPort) : name(readerName), port(readerPort) {}
    virtual ~UdpReader() = default;
    virtual void handleText() = 0;  ///< one datagram has arrived and stands in `text`
    virtual void onStopped() = 0;   ///< the loop has ended

    const char* name;
    u16 port;
    std::string_view text;                ///< the datagram being handled, into buffer
    std::atomic<bool> stop{false};        ///< set from outside to end the loop
    std::atomic<bool> running{false};     ///< a thread is inside the receive loop or about to enter or leave it
    std::atomic<u32> started{0};          ///< threads started so far; one that isn't the latest leaves
    std::atomic<i32> packetCount{0};      ///< datagrams since the feed state was last reset
    std::atomic<u32> droppedBySystem{0};  ///< datagrams that the system threw away, where it tells
    std::array<char, kDatagramLimit + 1> buffer{};
    std::string lastText;  ///< last handled text, for the duplicate check
    Socket socket;
    bool alive = true;        ///< the lamp check's mark; worker
    i32 lastPacketCount = 0;  ///< at the last lamp check; worker
};

/// Entry of a reader's thread; ends at reader.stop, by gf_readerFailed, or when a later thread of the same reader
/// wants its place. Waits for an earlier one to have ended, so that its port is free.
void lf_readerThread(UdpReader& reader);
/// Shows the error and stops the run with reason 6 and 15 seconds.
void gf_readerFailed(const char* name, const std::string& text);
/// The lamp check. Worker.
void gf_checkReaders();
/// The lamps go from receiving to silent; RealTraffic has gone, and until it is back nobody checks them. Worker.
void gf_showFeedSilent();
/// QNH, timestamp, collected callsigns, stop flags and the lamps' alive marks back to the start. Run thread.
void gf_resetFeed();
/// Ports other than the real ones, for tests and for several sandboxes on one machine; 0 = the real one. While no
/// reader runs.
void gf_setFeedPorts(u16 traffic, u16 weather);

}  // namespace hcr
