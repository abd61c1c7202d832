#include "tools/feed/control_client.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <vector>

#include "core/model/geo.h"
#include "platform/clock.h"
#include "platform/sockets.h"
#include "shell/text.h"
#include "shell/time_text.h"

namespace hcr {
namespace {

constexpr i64 kPollMs = 200;
constexpr i64 kReconnectMs = 1000;
constexpr i64 kShowEveryUs = 10'000'000;  // positions come every second
constexpr std::size_t kLongestLine = 16384;
constexpr std::string_view kPositionHead = "Qs121=", kClockHead = "Qs123=", kVersionQuestion = "Qs999=version";

void lf_say(const std::string& text) {
    fmt::print("{} {}\n", gf_timeOfDay(), text);
    std::fflush(stdout);
}

bool lf_timeToShow(i64& shownUs) {
    const i64 now = gf_steadyUs();
    if (shownUs != 0 && now - shownUs < kShowEveryUs) return false;
    shownUs = now;
    return true;
}

f64 lf_number(std::string_view text) {
    f64 value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

void lf_showPosition(std::string_view values) {
    const std::vector<std::string_view> parts = gf_split(values, ';');
    if (parts.size() != 7) return lf_say(fmt::format("position not understood: {}", values));
    lf_say(fmt::format("user at {:.5f},{:.5f}, heading {:.0f}, {:.0f} ft, {:.0f} kt", lf_number(parts[5]) * kRadToDeg,
                       lf_number(parts[6]) * kRadToDeg, lf_number(parts[2]) * kRadToDeg, lf_number(parts[3]) / 1000,
                       lf_number(parts[4]) / 1000));
}

// Handles whole lines and leaves the begin of the next one; false when the connection has gone.
bool lf_takeLines(ControlClient& client, Socket socket, std::string& pending) {
    for (std::size_t end = pending.find('\n'); end != std::string::npos; end = pending.find('\n')) {
        const std::string answer = answerControlLine(client, gf_trim(std::string_view(pending).substr(0, end)));
        pending.erase(0, end + 1);
        if (!answer.empty() && gf_send(socket, answer).bytes < 0) return false;
    }
    if (pending.size() > kLongestLine) pending.clear();
    return true;
}

void lf_serveConnection(ControlClient& client, Socket socket, const std::atomic<bool>& stop) {
    std::string pending;
    std::array<char, 4096> part{};
    while (!stop) {
        i32 error = 0;
        if (!gf_waitReadable(socket, kPollMs, error)) {
            if (error != 0) return;
            continue;
        }
        const SocketResult result = gf_receive(socket, part.data(), static_cast<i64>(part.size()));
        if (result.bytes <= 0) return;
        pending.append(part.data(), static_cast<std::size_t>(result.bytes));
        if (!lf_takeLines(client, socket, pending)) return;
    }
}

}  // namespace

std::string answerControlLine(ControlClient& client, std::string_view line) {
    if (line == kVersionQuestion) {
        lf_say("asked for the version");
        return nlohmann::json{{"version", client.version}, {"level", 2}}.dump(
                   -1, ' ', true, nlohmann::json::error_handler_t::replace) +
               "\r\n";
    }
    if (line.starts_with(kPositionHead)) {
        if (lf_timeToShow(client.positionShownUs)) lf_showPosition(line.substr(kPositionHead.size()));
    } else if (line.starts_with(kClockHead)) {
        const f64 seconds = lf_number(line.substr(kClockHead.size())) / 1000;
        constexpr f64 kEndOfCalendar = 253402300799;
        if (!(seconds >= 0 && seconds <= kEndOfCalendar)) {
            lf_say(fmt::format("clock not understood: {}", line));
        } else if (lf_timeToShow(client.clockShownUs)) {
            lf_say("simulator's clock " + gf_utcTimeText(static_cast<i64>(seconds)));
        }
    } else if (line == "exit") {
        lf_say("the program closes down");
    } else if (!line.empty()) {
        lf_say(fmt::format("told: {}", line));
    }
    return {};
}

void runControlClient(ControlClient& client, const std::atomic<bool>& stop) {
    bool waitingTold = false;
    while (!stop) {
        i32 error = 0;
        Socket socket = gf_openTcp(error);
        if (socket.valid() && gf_connect(socket, client.host, client.port) == 0) {
            waitingTold = false;
            lf_say(fmt::format("connected to the control channel at {}:{}", client.host, client.port));
            lf_serveConnection(client, socket, stop);
            if (!stop) lf_say("control channel gone");
        } else if (!waitingTold) {
            waitingTold = true;
            lf_say(fmt::format("no control channel at {}:{} yet, trying every second", client.host, client.port));
        }
        gf_closeSocket(socket);
        if (!stop) gf_sleepMs(kReconnectMs);
    }
}

}  // namespace hcr
