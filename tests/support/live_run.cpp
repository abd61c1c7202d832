#include "tests/support/live_run.h"

#include <fmt/format.h>

#include <array>

#include "core/model/geo.h"
#include "core/run/reset.h"
#include "core/run/run.h"
#include "core/run/window_messages.h"
#include "feed/control_channel.h"
#include "feed/readers.h"
#include "liveries/dbase.h"
#include "parking/catalogue.h"
#include "platform/clock.h"
#include "platform/user_folders.h"
#include "shell/log.h"
#include "shell/log_start.h"
#include "shell/parameter_file.h"
#include "sim/port/sandbox/sandbox.h"

namespace hcr::test {
namespace {

constexpr i64 kPollMs = 50;         // of the clock
constexpr f64 kReportSeconds = 2;   // as often as a feed tells of an aircraft
constexpr f64 kSpeedKt = 150;       // slow, so that nobody leaves the range while a busy machine falls behind
constexpr f64 kLongestWaitS = 100;  // of the wall; only a failure takes so long

}  // namespace

u16 freeUdpPort() {
    i32 error = 0;
    Socket s = gf_openUdp(error);
    gf_bindSocket(s, 0, true);
    const u16 port = gf_boundPort(s);
    gf_closeSocket(s);
    return port;
}

FeedPeer::FeedPeer(u16 trafficPort)
    : trafficPort_(trafficPort),
      start_(gf_utcSeconds()),
      talker_([this](std::stop_token stop) { talk(stop); }),
      sender_([this](std::stop_token stop) { send(stop); }) {}

FeedPeer::~FeedPeer() {
    talker_.request_stop();
    sender_.request_stop();
}

void FeedPeer::connect() {
    wanted_ = true;
}

void FeedPeer::disconnect() {
    wanted_ = false;
}

std::string FeedPeer::told() const {
    const std::lock_guard lock(mutex_);
    return told_;
}

void FeedPeer::talk(std::stop_token stop) {
    std::array<char, 4096> buffer;
    Socket s;
    while (!stop.stop_requested()) {
        if (s.valid() && !wanted_) {
            gf_closeSocket(s);
            connected_ = false;
        }
        if (!s.valid()) {
            gf_sleepMs(kPollMs);
            const u16 port = gf_serverPort();
            if (!wanted_ || port == 0) continue;
            i32 error = 0;
            s = gf_openTcp(error);
            if (gf_connect(s, "127.0.0.1", port) != 0) gf_closeSocket(s);
            connected_ = s.valid();
            continue;
        }
        i32 error = 0;
        if (!gf_waitReadable(s, kPollMs, error)) continue;
        const SocketResult got = gf_receive(s, buffer.data(), static_cast<i64>(buffer.size()));
        if (got.bytes <= 0) {
            gf_closeSocket(s);
            connected_ = false;
            continue;
        }
        const std::string text(buffer.data(), static_cast<std::size_t>(got.bytes));
        if (text.find("Qs999=version") != std::string::npos) gf_send(s, R"({"version":"10.0.240","level":2})");
        const std::lock_guard lock(mutex_);
        told_ += text;
    }
    gf_closeSocket(s);
}

std::string FeedPeer::lineOf(int index, f64 now) const {
    FeedLine line;
    const f64 seconds = now - start_;
    line.hexid = 4740000 + static_cast<u32>(index);
    line.callsign = fmt::format("{}{}", airline, 100 + index);
    line.registration = fmt::format("PH-X{:02}", index);
    line.model = model;
    line.speed = line.tas = kSpeedKt;
    line.alt = 12000 + 1000 * index;
    line.track = 90;
    line.lat = 52.0 + 0.05 * index;
    line.lon = 4.0 + seconds * kSpeedKt / 3600.0 / 60.0 / std::cos(line.lat * kDegToRad);
    line.timestamp = now;
    return line.text();
}

void FeedPeer::send(std::stop_token stop) {
    i32 error = 0;
    Socket s = gf_openUdp(error);
    f64 next = start_;
    while (!stop.stop_requested()) {
        gf_sleepMs(kPollMs);
        const f64 now = gf_utcSeconds();
        if (now < next) continue;
        next = now + kReportSeconds;
        for (int i = 0; sending && i < aircraft; ++i) gf_sendTo(s, lineOf(i, now), "127.0.0.1", trafficPort_);
    }
    gf_closeSocket(s);
}

LiveRun::LiveRun(LiveRunOptions liveOptions) : options(std::move(liveOptions)) {
    if (options.world.scenario.user.empty()) options.world.scenario = gf_defaultScenario();
    resetProgram();
    makeWorkFolder(options.world);
    if (options.beforeStart) {
        options.beforeStart();
        gf_saveParameters(false);
    }
    gf_openLog();
    trafficPort = freeUdpPort();
    weatherPort = freeUdpPort();
    gf_setFeedPorts(trafficPort, weatherPort);
    gf_speedClock(options.clockFactor);
    gf_startSandbox(options.world.scenario, options.world.trace);
    startRun();
}

LiveRun::~LiveRun() {
    close();
    if (run.joinable()) run.join();
    gf_stopSandbox();
    gf_setFeedPorts(0, 0);
    resetProgram();
    gf_useUserFolders({}, {});
    gf_forgetDbase();
    gf_forgetAirports();
    gf_closeLog();
    gf_releaseClock();
}

void LiveRun::startRun() {
    if (run.joinable()) run.join();
    run = std::thread(gf_runThread);
}

bool LiveRun::until(const std::function<bool()>& condition) {
    const f64 end = gf_utcSeconds() + kLongestWaitS * options.clockFactor;
    while (!condition()) {
        if (gf_utcSeconds() > end) return condition();
        gf_sleepMs(kPollMs);
    }
    return true;
}

bool LiveRun::untilLogged(const std::string& text) {
    return until([&] { return log().find(text) != std::string::npos; });
}

void LiveRun::pass(f64 seconds) {
    gf_sleepMs(static_cast<i64>(seconds * 1000));
}

WindowMessage LiveRun::awaitMessage() {
    WindowMessage message = WindowMessage::none;
    until([&] { return (message = gf_takeWindowMessage(0)) != WindowMessage::none; });
    return message;
}

std::string LiveRun::log() const {
    gf_logFlush();
    return readFile("Log.txt");
}

std::size_t LiveRun::flying() const {
    std::size_t count = 0;
    for (const SandboxObject& object : gf_sandboxObjects()) count += object.positionWrites > 0 ? 1 : 0;
    return count;
}

}  // namespace hcr::test
