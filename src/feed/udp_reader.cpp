#include "feed/udp_reader.h"

#include <fmt/format.h>

#include <exception>
#include <mutex>
#include <stdexcept>

#include "core/model/run_state.h"
#include "platform/clock.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/run_stop.h"
#include "shell/text.h"
#include "shell/window_state.h"

namespace hcr {
namespace {

// A stop is noticed within this time; close-down grants the readers half a second.
constexpr i64 kWaitMs = 100;
constexpr f64 kLongestGapUs = 5e6;  // between two looks at the socket; after a longer one the computer was asleep
constexpr i64 kEarlierThreadPollMs = 10;
// Room for a burst of some thousands of lines while the thread doesn't get the processor.
constexpr i32 kReceiveBufferBytes = 8 * 1024 * 1024;
constexpr i32 kRestartSeconds = 15;
constexpr i32 kWouldBlock = 10035;

// A later thread of the same reader has taken over, or a stop was asked for.
bool lf_mustLeave(const UdpReader& reader, u32 turn) {
    return reader.stop || reader.started != turn;
}

// The socket of one thread; closes it and ends the library on every way out.
struct OpenReader {
    explicit OpenReader(UdpReader& owner) : reader(owner) {
        if (const i32 error = gf_startSockets(); error != 0) {
            throw std::runtime_error(fmt::format("WSA startup error: {}", error));
        }
    }
    ~OpenReader() {
        gf_closeSocket(reader.socket);
        gf_endSockets();
    }
    OpenReader(const OpenReader&) = delete;
    OpenReader& operator=(const OpenReader&) = delete;

    UdpReader& reader;
};

void lf_bind(UdpReader& reader) {
    i32 error = 0;
    reader.socket = gf_openUdp(error);
    if (!reader.socket.valid()) {
        throw std::runtime_error(fmt::format("failed to create the socket, error: {}", gf_winsockMessage(error)));
    }
    gf_setReceiveBuffer(reader.socket, kReceiveBufferBytes);
    gf_countDrops(reader.socket);
    gf_setBlocking(reader.socket, false);  // a datagram with a wrong checksum can vanish behind the wait
    error = gf_bindSocket(reader.socket, reader.port, gRtOnThisPc);
    if (error != 0) {
        throw std::runtime_error(fmt::format("bind to stream socket failed, error: {} (UDP port {})",
                                             gf_winsockMessage(error), reader.port));
    }
}

void lf_handleDatagram(UdpReader& reader, i64 size) {
    if (size == 0) return;
    if (size >= kDatagramLimit) {
        if (gf_mayLog(LogKind::feedOverrun)) gf_logIfRunning(fmt::format("buffer overrun: {} bytes", size));
        return;
    }
    reader.buffer[static_cast<std::size_t>(size)] = '\0';
    reader.text = std::string_view(reader.buffer.data(), static_cast<std::size_t>(size));
    ++reader.packetCount;
    if (!gRtOnThisPc) {
        // Another computer's datagrams can come twice, by two network adapters.
        if (reader.text == reader.lastText) return;
        reader.lastText = reader.text;
    }
    reader.handleText();
}

// Takes what has arrived, until nothing is left.
void lf_drainSocket(UdpReader& reader, u32 turn) {
    u32 dropped = reader.droppedBySystem;
    while (!lf_mustLeave(reader, turn)) {
        const SocketResult result = gf_receiveDatagram(reader.socket, reader.buffer.data(), kDatagramLimit, &dropped);
        if (result.bytes < 0) {
            if (result.error == kWouldBlock) break;
            throw std::runtime_error(fmt::format("receive error: {}", gf_winsockMessage(result.error)));
        }
        reader.droppedBySystem = dropped;
        lf_handleDatagram(reader, result.bytes);
    }
}

/// Throws away what has come while the computer was asleep.
void lf_passOver(UdpReader& reader) {
    u32 dropped = reader.droppedBySystem;
    while (gf_receiveDatagram(reader.socket, reader.buffer.data(), kDatagramLimit, &dropped).bytes >= 0) {
    }
}

void lf_receiveLoop(UdpReader& reader, u32 turn) {
    i64 lookedAt = gf_steadyUs();
    while (!lf_mustLeave(reader, turn)) {
        i32 error = 0;
        const bool readable = gf_waitReadable(reader.socket, kWaitMs, error);
        if (error != 0) throw std::runtime_error(fmt::format("receive error: {}", gf_winsockMessage(error)));
        const i64 gap = gf_steadyUs() - lookedAt;
        if (static_cast<f64>(gap) > kLongestGapUs * gf_clockFactor()) lf_passOver(reader);
        if (readable) lf_drainSocket(reader, turn);
        lookedAt = gf_steadyUs();
    }
}

void lf_runReader(UdpReader& reader, u32 turn) {
    bool listening = false;
    reader.lastText.clear();
    try {
        {
            const OpenReader open(reader);
            lf_bind(reader);
            reader.onStarted();
            gf_repaint(Band::realTraffic);
            gf_log(fmt::format("{:10}{} connected", "", reader.name));
            listening = true;
            lf_receiveLoop(reader, turn);
        }
        reader.onStopped();
    } catch (const std::exception& e) {
        if (listening) reader.onStopped();
        gf_readerFailed(reader.name, e.what());
    }
    gf_log(fmt::format("{:10}{} disconnected", "", reader.name));
}

}  // namespace

void lf_readerThread(UdpReader& reader) {
    const u32 turn = ++reader.started;
    while (reader.running.exchange(true)) {
        if (lf_mustLeave(reader, turn)) return;
        gf_sleepMs(kEarlierThreadPollMs);
    }
    lf_runReader(reader, turn);
    reader.running = false;
}

void gf_readerFailed(const char* name, const std::string& text) {
    gf_showError(fmt::format("The {} has stopped with error: {}", name, text));
    gf_requestStop(ExitReason::readerError, kRestartSeconds);
}

}  // namespace hcr
