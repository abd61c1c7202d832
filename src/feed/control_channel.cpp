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
#include "feed/readers.h"
#include "platform/clock.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"
#include "shell/text.h"
#include "shell/time_text.h"
#include "shell/version.h"
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

constexpr i64 kStopPollMs = 100;       // a stop of the run is seen in every wait within 200 ms
constexpr i64 kSendLimitMs = 1000;     // a peer that takes nothing for so long has gone; the worker stands meanwhile
constexpr i64 kReplyLimitMs = 30'000;  // for the answer to the version question
constexpr std::size_t kReplyBytes = 16384;
constexpr i32 kWouldBlock = 10035;
constexpr i32 kTimedOut = 10060;
constexpr i32 kAborted = 10053, kReset = 10054;
constexpr i64 kMillisecondsPerSecond = 1000;

bool gSocketsStarted = false;
std::atomic<u16> gBoundServerPort{0};

/// What belongs to a run.
struct ChannelRun {
    bool reportsWanted = false;  ///< the run's wish; gAcceptReports is what comes of it
    std::string awayText{};      ///< what the message line says while RealTraffic is away
};
ChannelRun gRun;

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

enum class Client { live, gone, failed };

// Left by who connected and closed again while nobody accepted.
bool lf_hasClosed(Socket client) {
    i32 error = 0;
    char byte = 0;
    return gf_waitReadable(client, 0, error) && gf_peek(client, &byte, 1).bytes <= 0;
}

Client lf_accept() {
    i32 error = 0;
    Socket accepted = gf_accept(gListenSocket, error);
    if (!accepted.valid()) return error == kAborted || error == kReset ? Client::gone : Client::failed;
    if (lf_hasClosed(accepted)) {
        gf_closeSocket(accepted);
        return Client::gone;
    }
    error = gf_setNoDelay(accepted);
    // Sends and receives wait by themselves, so that neither can hold the worker for ever.
    if (error == 0) error = gf_setBlocking(accepted, false);
    if (error != 0) {
        gf_log(fmt::format("waitForClient interrupted: {} setsockopt failed with error {}", gf_timeOfDay(),
                           gf_winsockMessage(error)));
        gf_closeSocket(accepted);
        return Client::failed;
    }
    gf_closeSocket(gClientSocket);
    gClientSocket = accepted;
    gConnected = true;
    return Client::live;
}

// Takes the first live one of the clients that are waiting now.
bool lf_acceptWaiting() {
    i32 error = 0;
    Client client = Client::gone;
    while (client == Client::gone && gf_waitReadable(gListenSocket, 0, error)) client = lf_accept();
    return client == Client::live;
}

// Nobody tells where the aircraft are any more.
void lf_removeAllLive() {
    for (LiveAc& ac : gLiveAcs) {
        if (ac.lifeState != LifeState::removingfromsim && !ac.removeWhenCreated) removeAircraftFromSim(ac);
    }
    std::erase_if(gLiveAcs, [](const LiveAc& ac) { return ac.erase || ac.eraseLive; });
}

void lf_settleGate() {
    const std::lock_guard lock(gReportMutex);
    gAcceptReports = gRun.reportsWanted && !gf_realTrafficAway();
}

// What has come in would be played half a minute later, when nobody tells any more how it goes on.
void lf_dropReports() {
    const std::lock_guard lock(gReportMutex);
    gReports.clear();
}

void lf_realTrafficGone() {
    lf_lightLamp(false);
    lf_settleGate();
    lf_dropReports();
    if (!gUserStop) lf_removeAllLive();
    gf_resetFeed();
    gf_showFeedSilent();
    gRun.awayText = fmt::format("{} RealTraffic gone? Wait for RealTraffic to re-connect ...", gf_timeOfDay());
    gf_showMessage(gRun.awayText, gf_mayLog(LogKind::rtGone));
}

void lf_lookForReturn() {
    if (gf_stopAsked() || !gListenSocket.valid()) return;
    if (!lf_acceptWaiting()) {
        if (gf_currentMessage().empty()) gf_showMessage(gRun.awayText, false);  // others stay for their time
        return;
    }
    gWaitingForRt = false;
    lf_settleGate();
    lf_lightLamp(true);
    if (gf_mayLog(LogKind::rtReturn)) gf_log(fmt::format("{} RealTraffic re-connected", gf_timeOfDay()));
    gf_clearMessage();
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
    if (error != 0) {
        lf_serverFailed(
            fmt::format("getaddrinfo failed with error {}: the setting {} is '{}', it must be a TCP port from "
                        "1 to 65535",
                        error, PORT_NUMBER.name, port));
    }
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
    while (!gf_stopAsked()) {
        i32 error = 0;
        if (gf_waitReadable(gListenSocket, kStopPollMs, error)) {
            const Client client = lf_accept();
            if (client != Client::gone) return client == Client::live;
        } else if (error != 0) {
            return false;
        }
    }
    return false;
}

bool gf_realTrafficAway() {
    return gListenSocket.valid() && !gConnected;
}

void gf_wantReports(bool wanted) {
    gRun.reportsWanted = wanted;
    lf_settleGate();
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
    gRun.awayText = fmt::format("Waiting for RealTraffic to connect to {} ...", kProgramName);
    gf_showMessage(gRun.awayText, true);
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
        lf_lookForReturn();
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

void gf_resetControlChannel() {
    gRun = {};
    gWaitingForRt = true;
}

}  // namespace hcr
