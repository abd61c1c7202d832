#include "feed/control_channel.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <mutex>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

#include "core/model/geo.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "feed/udp_reader.h"
#include "platform/clock.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"
#include "shell/text.h"
#include "shell/time_text.h"
#include "shell/window_state.h"
#include "sim/aircraft.h"
#include "sim/port/layouts.h"
#include "sim/session.h"

namespace hcr {

Socket gListenSocket;
Socket gClientSocket;
std::atomic<bool> gConnected{false};
std::atomic<bool> gWaitingForRt{true};

namespace {

constexpr i64 kStopPollMs = 200;       // how long a stop of the run may go unnoticed in a wait
constexpr i64 kSendLimitMs = 1000;     // a peer that takes nothing for so long has gone; the worker stands meanwhile
constexpr i64 kReplyLimitMs = 30'000;  // for the answer to the version question
constexpr std::size_t kReplyBytes = 16384;
constexpr i32 kWouldBlock = 10035;
constexpr i32 kTimedOut = 10060;
constexpr i64 kMillisecondsPerSecond = 1000;

bool gSocketsStarted = false;
std::atomic<u16> gBoundServerPort{0};

void lf_closeServer() {
    gf_closeSocket(gClientSocket);
    gBoundServerPort = 0;
    gf_closeSocket(gListenSocket);
    gConnected = false;
    if (gSocketsStarted) gf_endSockets();
    gSocketsStarted = false;
}

[[noreturn]] void lf_serverFailed(const std::string& text) {
    lf_closeServer();
    throw std::runtime_error(text);
}

// Waits in slices until the socket is ready, a stop is asked for or the time is over. An error shows in the call that
// follows.
template <typename Wait>
bool lf_waitReady(Wait wait, Socket socket, i64 limitMs) {
    const i64 endUs = gf_steadyUs() + limitMs * 1000;
    do {
        i32 error = 0;
        if (wait(socket, kStopPollMs, error) || error != 0) return true;
    } while (!gf_stopAsked() && gf_steadyUs() < endUs);
    return false;
}

// Sends all of it, or tells why not.
i32 lf_sendWhole(std::string_view text) {
    while (!text.empty()) {
        const SocketResult result = gf_send(gClientSocket, text);
        if (result.bytes < 0 && result.error != kWouldBlock) return result.error;
        if (result.bytes > 0) text.remove_prefix(static_cast<std::size_t>(result.bytes));
        if (!text.empty() && !lf_waitReady(gf_waitWritable, gClientSocket, kSendLimitMs)) return kTimedOut;
    }
    return 0;
}

void lf_lightLamp(bool on) {
    gWindow.rtConnected = on;
    gf_repaint(Band::realTraffic);
}

// Nobody tells where the aircraft are any more.
void lf_removeAllLive() {
    for (LiveAc& ac : gLiveAcs) {
        const bool beingAdded = ac.lifeState == LifeState::adding2sim && !ac.removeWhenCreated;
        if (ac.lifeState == LifeState::active || beingAdded) removeAircraftFromSim(ac);
    }
    std::erase_if(gLiveAcs, [](const LiveAc& ac) { return ac.erase; });
}

void lf_realTrafficGone() {
    lf_lightLamp(false);
    if (!gUserStop) lf_removeAllLive();
    gf_resetFeed();
    gf_showMessage(fmt::format("{} RealTraffic gone? Wait for RealTraffic to re-connect ...", gf_timeOfDay()), true);
}

// A double as "{}" shows it in the standard's formatting: fixed or with exponent, whichever is shorter.
std::string lf_shortest(f64 value) {
    std::array<char, 32> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), result.ptr};
}

bool lf_finite(const UserAircraftData& user) {
    return std::isfinite(user.pitch) && std::isfinite(user.bank) && std::isfinite(user.heading) &&
           std::isfinite(user.alt) && std::isfinite(user.groundSpeed) && std::isfinite(user.lat) &&
           std::isfinite(user.lon);
}

std::string lf_positionText(const UserAircraftData& user) {
    constexpr f64 kAngleUnits = 100'000, kThousandths = 1000;
    return fmt::format("Qs121={:.0};{:.0};{:.6f};{:.0};{};{:.6f};{:.6f}\r\n", user.pitch * kAngleUnits,
                       user.bank * kAngleUnits, user.heading, user.alt * kThousandths,
                       lf_shortest(user.groundSpeed * kThousandths), user.lat * kDegToRad, user.lon * kDegToRad);
}

/// Nobody takes reports while the worker waits, which may be for hours, and at the end those that came are old.
bool lf_waitForReturn() {
    if (!gListenSocket.valid()) return false;
    bool accepting = false;
    {
        const std::lock_guard lock(gReportMutex);
        accepting = std::exchange(gAcceptReports, false);
    }
    const bool connected = waitForClient();
    const std::lock_guard lock(gReportMutex);
    gReports.clear();
    gAcceptReports = accepting;
    return connected;
}

void lf_noFeedClock() {
    gFeedClock = false;
    gWindow.rtVersionText.set("");
    gf_repaint(Band::realTraffic);
}

}  // namespace

void gf_startServer(const std::string& port) {
    lf_closeServer();
    if (const i32 error = gf_startSockets(); error != 0) {
        lf_serverFailed(fmt::format("WSAStartup failed with error {}", error));
    }
    gSocketsStarted = true;
    u16 number = 0;
    i32 error = gf_resolvePort(port, number);
    if (error != 0) lf_serverFailed(fmt::format("getaddrinfo failed with error {}", error));
    gListenSocket = gf_openTcp(error);
    if (!gListenSocket.valid()) lf_serverFailed("socket failed with error " + gf_winsockMessage(error));
    error = gf_setBlocking(gListenSocket, true);
    if (error != 0) lf_serverFailed("ioctlsocket failed with error " + gf_winsockMessage(error));
    if (gf_setReuseAddress(gListenSocket) != 0) lf_serverFailed("setsockopt(SO_REUSEADDR) failed");
    error = gf_bindSocket(gListenSocket, number, false);
    if (error != 0) {
        lf_serverFailed(fmt::format("Bind failed at port {} with error {}", port, gf_winsockMessage(error)));
    }
    error = gf_listen(gListenSocket);
    if (error != 0) lf_serverFailed("listen failed with error " + gf_winsockMessage(error));
    gBoundServerPort = gf_boundPort(gListenSocket);
}

u16 gf_serverPort() {
    return gBoundServerPort;
}

bool waitForClient() {
    if (gConnected || !gListenSocket.valid()) return false;
    i32 error = 0;
    while (!gf_waitReadable(gListenSocket, kStopPollMs, error)) {
        if (error != 0 || gf_stopAsked()) return false;
    }
    const Socket accepted = gf_accept(gListenSocket, error);
    if (!accepted.valid()) return false;
    gf_closeSocket(gClientSocket);
    gClientSocket = accepted;
    error = gf_setNoDelay(gClientSocket);
    // Sends and receives wait by themselves, so that neither can hold the worker for ever.
    if (error == 0) error = gf_setBlocking(gClientSocket, false);
    if (error != 0) {
        gf_log(fmt::format("waitForClient interrupted: {} setsockopt failed with error {}", gf_timeOfDay(),
                           gf_winsockMessage(error)));
        gf_closeSocket(gClientSocket);
        return false;
    }
    gConnected = true;
    return true;
}

bool sendDataPacket(std::string_view text) {
    const i32 error = lf_sendWhole(text);
    if (error == 0) return true;
    const bool isTold = gf_mayLog(LogKind::rtSending);
    if (isTold) gf_logIfRunning(fmt::format("sendDataPacket to RealTraffic failed: {}", gf_winsockMessage(error)));
    gConnected = false;
    gf_closeSocket(gClientSocket);
    if (isTold) gf_logIfRunning("RealTraffic client socket closed");
    return false;
}

std::string gf_receiveFromRt() {
    if (!lf_waitReady(gf_waitReadable, gClientSocket, kReplyLimitMs)) return {};
    std::string text(kReplyBytes, '\0');
    const SocketResult result = gf_receive(gClientSocket, text.data(), static_cast<i64>(text.size()));
    if (result.bytes < 0) {
        if (gf_mayLog(LogKind::rtReply)) gf_log(fmt::format("receive: {}", gf_winsockMessage(result.error)));
        return {};
    }
    const auto size = static_cast<std::size_t>(result.bytes);
    if (size == kReplyBytes) {
        if (gf_mayLog(LogKind::rtOverrun)) gf_log(fmt::format("receive: buffer overrun: {}", size));
        return {};
    }
    text.resize(size);
    return text;
}

void lf_waitForRealTraffic() {
    if (!gRtOnThisPc) return;
    gf_showMessage(fmt::format("Waiting for RealTraffic to connect to {} ...", kProgramName), true);
    gf_logFlush();
    gf_resetFeed();
    if (waitForClient()) {
        // When the question can't be sent there is nothing to wait for.
        lf_processRTVersion(sendDataPacket("Qs999=version\r\n") ? gf_receiveFromRt() : std::string());
        gWaitingForRt = false;
        if (gConnected) {
            lf_lightLamp(true);
            gf_log("RealTraffic connected");
        }
    }
    gf_clearMessage();
}

void lf_processRTVersion(const std::string& reply) {
    if (reply.empty()) {
        gf_showMessage("No RealTraffic version received?", true);
        gFeedClock = false;
        return;
    }
    try {
        const nlohmann::json version = nlohmann::json::parse(reply);
        if (!version.is_object()) return lf_noFeedClock();
        gFeedClock = true;
        const auto found = version.find("version");
        const bool isText = found != version.end() && found->is_string();
        gWindow.rtVersionText.set(isText ? gf_quoted(found->get_ref<const std::string&>()) : std::string());
        gf_repaint(Band::realTraffic);
    } catch (const std::exception& e) {
        lf_noFeedClock();
        if (!gf_mayLog(LogKind::rtVersion)) return;
        gf_log(fmt::format("{}: JSON parse failed: {}", "lf_processRTVersion", gf_quoted(e.what())));
    }
}

void gf_sendQs121() {
    if (!gRtOnThisPc) return;
    const UserAircraftData user = gf_lastUserPosition();
    if (!positionKnown(user.lat, user.lon) || !lf_finite(user)) return;
    if (!gConnected) {
        if (!gf_stopAsked() && lf_waitForReturn()) {
            lf_lightLamp(true);
            if (gf_mayLog(LogKind::rtReturn)) gf_log(fmt::format("{} RealTraffic re-connected", gf_timeOfDay()));
            gf_clearMessage();
        }
        return;
    }
    if (!sendDataPacket(lf_positionText(user))) lf_realTrafficGone();
}

void gf_sendQs123(i64 unixSeconds) {
    if (!gConnected || unixSeconds < 1) return;
    if (unixSeconds > std::numeric_limits<i64>::max() / kMillisecondsPerSecond) return;
    // Without this the aircraft would stand in the sky while the next position waits for a new connection.
    if (!sendDataPacket(fmt::format("Qs123={}\r\n", unixSeconds * kMillisecondsPerSecond))) lf_realTrafficGone();
}

void gf_closeControlChannel() {
    if (gConnected) sendDataPacket("exit\r\n");
    lf_closeServer();
}

}  // namespace hcr
