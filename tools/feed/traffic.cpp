#include "tools/feed/traffic.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <stdexcept>

#include "feed/udp_reader.h"
#include "platform/clock.h"
#include "platform/sockets.h"
#include "shell/text.h"
#include "tools/feed/recording.h"
#include "tools/feed/report_line.h"

namespace hcr {
namespace {

constexpr i64 kPollUs = 100'000;
constexpr i64 kTellEveryUs = 10'000'000;
constexpr i64 kWeatherEveryUs = 5'000'000;
constexpr i64 kLoopPauseUs = 1'000'000;
constexpr i32 kReceiveBufferBytes = 8 * 1024 * 1024;
constexpr f64 kUsPerSecond = 1e6;

struct Sender {
    const FeedOptions& options;
    const std::atomic<bool>& stop;
    Socket socket;
    bool ownWeather = false;  // the lines have weather among them
    i64 endUs = 0;            // steady time, 0 = none
    i64 weatherDueUs = 0, tellDueUs = 0;
    u64 traffic = 0, weather = 0;
};

bool lf_over(const Sender& sender) {
    return sender.stop || (sender.endUs != 0 && gf_steadyUs() >= sender.endUs);
}

void lf_sendTo(Sender& sender, std::string_view text, u16 port) {
    const SocketResult result = gf_sendTo(sender.socket, text, sender.options.host, port);
    constexpr i32 kInvalidArgument = 10022;
    if (result.error == kInvalidArgument) {
        throw std::runtime_error(fmt::format("'{}' is no IPv4 address", sender.options.host));
    }
    // Everything else may pass: nobody listens yet, the network is down for a moment.
}

void lf_doPeriodicWork(Sender& sender) {
    const i64 now = gf_steadyUs();
    if (!sender.ownWeather && now >= sender.weatherDueUs) {
        sender.weatherDueUs = now + kWeatherEveryUs;
        lf_sendTo(sender, feedWeatherLine(sender.options.generate.airport, sender.options.qnh),
                  sender.options.weatherPort);
        ++sender.weather;
    }
    if (now >= sender.tellDueUs) {
        sender.tellDueUs = now + kTellEveryUs;
        fmt::print("sent {} line{}, {} weather\n", sender.traffic, gf_plural(sender.traffic), sender.weather);
        std::fflush(stdout);
    }
}

// False when the end came first.
bool lf_waitUntil(Sender& sender, i64 dueUs) {
    for (;;) {
        if (lf_over(sender)) return false;
        lf_doPeriodicWork(sender);
        const i64 now = gf_steadyUs();
        if (now >= dueUs) return true;
        gf_sleepUntilUs(std::min(dueUs, now + kPollUs));
    }
}

void lf_sendLine(Sender& sender, const TimedLine& line) {
    if (isWeatherLine(line.line)) {
        lf_sendTo(sender, line.line, sender.options.weatherPort);
        ++sender.weather;
        return;
    }
    ++sender.traffic;
    if (sender.options.keepTimestamps) return lf_sendTo(sender, line.line, sender.options.trafficPort);
    const f64 timestamp = timestampOf(line.line);
    const f64 age = line.time - timestamp;
    lf_sendTo(sender, timestamp > 0 ? withTimestamp(line.line, gf_utcSeconds() - age) : line.line,
              sender.options.trafficPort);
}

struct OpenPort {
    OpenPort(u16 number, const char* what) {
        i32 error = 0;
        socket = gf_openUdp(error);
        if (socket.valid()) {
            gf_setReceiveBuffer(socket, kReceiveBufferBytes);
            error = gf_bindSocket(socket, number, false);
        }
        if (error == 0) return;
        gf_closeSocket(socket);
        throw std::runtime_error(
            fmt::format("can't listen on the {} port {}: {}", what, number, gf_winsockMessage(error)));
    }
    ~OpenPort() { gf_closeSocket(socket); }
    OpenPort(const OpenPort&) = delete;
    OpenPort& operator=(const OpenPort&) = delete;

    Socket socket;
};

// Takes all that has arrived on one port; false when nothing had.
bool lf_takeArrived(Socket socket, std::vector<TimedLine>& lines) {
    std::array<char, kDatagramLimit + 1> buffer{};
    i32 error = 0;
    bool any = false;
    while (gf_waitReadable(socket, 0, error)) {
        const SocketResult result = gf_receiveDatagram(socket, buffer.data(), kDatagramLimit);
        if (result.bytes < 0) break;
        any = true;
        if (result.bytes == 0 || result.bytes == kDatagramLimit) continue;
        lines.push_back({gf_utcSeconds(), std::string(buffer.data(), static_cast<std::size_t>(result.bytes))});
    }
    return any;
}

}  // namespace

void sendLines(const FeedOptions& options, const std::vector<TimedLine>& lines, const std::atomic<bool>& stop) {
    if (lines.empty()) throw std::runtime_error("there is nothing to send");
    Sender sender{.options = options, .stop = stop, .socket = {}};
    i32 error = 0;
    sender.socket = gf_openUdp(error);
    if (error != 0) throw std::runtime_error("no socket: " + gf_winsockMessage(error));
    sender.ownWeather =
        std::any_of(lines.begin(), lines.end(), [](const TimedLine& line) { return isWeatherLine(line.line); });
    if (options.seconds > 0) sender.endUs = gf_steadyUs() + static_cast<i64>(options.seconds * kUsPerSecond);
    try {
        bool going = true;
        for (i64 startUs = gf_steadyUs(); going; startUs = gf_steadyUs() + kLoopPauseUs) {
            for (const TimedLine& line : lines) {
                const f64 offset = std::max(line.time - lines.front().time, 0.0) / options.speed;
                going = lf_waitUntil(sender, startUs + static_cast<i64>(offset * kUsPerSecond));
                if (!going) break;
                lf_sendLine(sender, line);
            }
            going = going && options.loop;
        }
    } catch (...) {
        gf_closeSocket(sender.socket);
        throw;
    }
    gf_closeSocket(sender.socket);
    fmt::print("sent {} line{} in all\n", sender.traffic, gf_plural(sender.traffic));
}

void recordLines(const FeedOptions& options, const std::atomic<bool>& stop) {
    const OpenPort traffic(options.trafficPort, "traffic");
    const OpenPort weather(options.weatherPort, "weather");
    const i64 endUs = options.seconds > 0 ? gf_steadyUs() + static_cast<i64>(options.seconds * kUsPerSecond) : 0;
    i64 savedUs = gf_steadyUs();
    std::vector<TimedLine> lines;
    fmt::print("recording from the ports {} and {}\n", options.trafficPort, options.weatherPort);
    while (!stop && (endUs == 0 || gf_steadyUs() < endUs)) {
        i32 error = 0;
        gf_waitReadable(traffic.socket, kPollUs / 1000, error);
        lf_takeArrived(traffic.socket, lines);
        lf_takeArrived(weather.socket, lines);
        if (gf_steadyUs() - savedUs < kTellEveryUs) continue;
        savedUs = gf_steadyUs();
        fmt::print("recorded {} datagram{}\n", lines.size(), gf_plural(lines.size()));
        std::fflush(stdout);
    }
    writeRecordingFile(options.file, recordingText(lines));
    fmt::print("{} datagram{} in {}\n", lines.size(), gf_plural(lines.size()), gf_pathToUtf8(options.file));
}

}  // namespace hcr
