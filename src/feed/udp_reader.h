#pragma once

#include <array>
#include <atomic>
#include <string>
#include <string_view>

#include "platform/sockets.h"
#include "platform/types.h"
#include "shell/shared_value.h"
#include "shell/window_state.h"

namespace hcr {

/// Where RealTraffic sends datagrams of traffic and of weather.
inline constexpr u16 kTrafficPort = 49005;
inline constexpr u16 kWeatherPort = 49004;
inline constexpr i64 kDatagramLimit = 16384;  ///< a datagram of this size is too long to be trusted

/// What a reader keeps of a run.
struct ReaderRun {
    SharedValue<bool> stop;        ///< set from outside to end the loop
    SharedValue<i32> packetCount;  ///< datagrams since the feed state was last reset
    bool alive = true;             ///< the lamp check's mark; worker
    i32 lastPacketCount = 0;       ///< at the last lamp check; worker
};

/// The common receive object. One thread at a time owns it, but for the atomics and what says otherwise.
struct UdpReader : ReaderRun {
    UdpReader(const char* readerName, u16 readerPort, std::atomic<i32>& readerLamp)
        : name(readerName), port(readerPort), lamp(readerLamp) {}
    virtual ~UdpReader() = default;
    virtual void onStarted() { lamp = kLampReceiving; }  ///< the port is open
    virtual void handleText() = 0;                       ///< one datagram has arrived and stands in `text`
    virtual void onStopped() = 0;                        ///< the loop has ended

    const char* name;
    u16 port;
    std::atomic<i32>& lamp;               ///< its Lamp in the window
    std::string_view text;                ///< the datagram being handled, into buffer
    std::atomic<bool> running{false};     ///< a thread is inside the receive loop or about to enter or leave it
    std::atomic<u32> started{0};          ///< threads started so far; one that isn't the latest leaves
    std::atomic<u32> droppedBySystem{0};  ///< datagrams that the system threw away, where it tells
    std::array<char, kDatagramLimit + 1> buffer{};
    std::string lastText;  ///< last text that its thread handled, for the duplicate check
    Socket socket;
};

/// Entry of a reader's thread; ends at reader.stop, by gf_readerFailed, or when a later thread of the same reader
/// wants its place. Waits for an earlier one to have ended, so that its port is free.
void lf_readerThread(UdpReader& reader);
/// Shows the error and stops the run with reason 6 and 15 seconds.
void gf_readerFailed(const char* name, const std::string& text);
}  // namespace hcr
