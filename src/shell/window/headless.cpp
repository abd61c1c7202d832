#include "shell/window/headless.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <string>
#include <thread>

#include "core/run/outcome.h"
#include "core/run/run.h"
#include "core/run/snapshot.h"
#include "core/run/window_messages.h"
#include "core/run/worker.h"
#include "feed/feed_counters.h"
#include "feed/qnh_reader.h"
#include "feed/traffic_reader.h"
#include "platform/clock.h"
#include "platform/system.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/run_stop.h"
#include "shell/time_text.h"
#include "shell/version.h"
#include "shell/window_state.h"
#include "sim/traffic_counters.h"

namespace hcr {
namespace {

constexpr i64 kPollMs = 50;
constexpr i64 kCounterSeconds = 10;
constexpr std::size_t kTableRows = 22;  // fits a terminal of 30 lines with head, counters and message
constexpr std::size_t kTitleWidth = 34;

std::atomic<bool> gTerminate{false};

struct Face {
    const HeadlessOptions& options;
    std::thread run;
    std::atomic<bool> runEnded;
    std::string shownMessage, failure;
    i64 startUs, nextCountersUs, nextTableUs;
};

void lf_print(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

const char* lf_lampText(i32 lamp) {
    return lamp == kLampReceiving ? "receiving" : lamp == kLampSilent ? "silent" : "off";
}

std::string lf_countersLine() {
    return fmt::format(
        "live {}, parked {}, static {} | simulator {}, flight {} | RealTraffic {}, feed {}, weather {} | "
        "QNH {} | lines {}, reports {}",
        gWindow.liveCount.load(), gWindow.parkedLiveCount.load(), gWindow.staticCount.load(),
        gWindow.simConnected ? "connected" : "not connected", gWindow.flightRunning ? "running" : "not running",
        gWindow.rtConnected ? "on" : "off", lf_lampText(gWindow.trafficLamp), lf_lampText(gWindow.weatherLamp),
        gWindow.qnh.load(), gFeedCounters.received.load(), gFeedCounters.accepted.load());
}

std::string lf_cut(const std::string& text, std::size_t width) {
    return text.size() <= width ? text : text.substr(0, width - 1) + "~";
}

std::string lf_stateText(const AircraftRow& row) {
    if (row.lifeState != LifeState::active) return lifeStateName(row.lifeState);
    return flightStateName(row.flightState);
}

std::string lf_row(const AircraftRow& row) {
    const std::string step = row.matchStep < 0 ? "-" : fmt::format("{}", row.matchStep);
    const std::string title = row.title.empty() ? "-" : lf_cut(row.title, kTitleWidth);
    return fmt::format("{:<8} {:<4} {:<34} {:>4} {:>7.0f} {:>5.0f} {:>6.1f}  {}\n", lf_cut(row.callsign, 8), row.model,
                       title, step, row.alt, row.tas, row.distance, lf_stateText(row));
}

std::string lf_table() {
    std::vector<AircraftRow> rows = gf_snapshot();
    std::sort(rows.begin(), rows.end(), [](const AircraftRow& a, const AircraftRow& b) {
        const bool flies = a.lifeState == LifeState::active, otherFlies = b.lifeState == LifeState::active;
        return flies != otherFlies ? flies : a.distance < b.distance;
    });
    std::string text = fmt::format("{:<8} {:<4} {:<34} {:>4} {:>7} {:>5} {:>6}  {}\n", "callsign", "type", "livery",
                                   "step", "feet", "kt", "nm", "state");
    for (std::size_t i = 0; i < std::min(rows.size(), kTableRows); ++i) text += lf_row(rows[i]);
    if (rows.size() > kTableRows) text += fmt::format("... and {} more\n", rows.size() - kTableRows);
    return text;
}

std::string lf_messageLine() {
    const std::string message = gf_currentMessage();
    return message.empty() ? "" : fmt::format("{} {}\n", gf_timeOfDay(), message);
}

void lf_showChangedMessage(Face& face) {
    const std::string message = gf_currentMessage();
    if (message == face.shownMessage) return;
    face.shownMessage = message;
    if (!message.empty()) lf_print(fmt::format("{} {}\n", gf_timeOfDay(), message));
}

void lf_showDue(Face& face) {
    const i64 now = gf_steadyUs();
    if (face.options.tableSeconds > 0 && now >= face.nextTableUs) {
        face.nextTableUs = now + face.options.tableSeconds * 1'000'000LL;
        // Drawn every second the table is a live picture: each one takes the place of the one before.
        const char* clear = face.options.tableSeconds == 1 ? "\x1b[H\x1b[2J" : "\n";
        lf_print(fmt::format("{}{}{}\n{}", clear, lf_table(), lf_countersLine(), lf_messageLine()));
        face.nextCountersUs = now + kCounterSeconds * 1'000'000;
    } else if (now >= face.nextCountersUs) {
        face.nextCountersUs = now + kCounterSeconds * 1'000'000;
        lf_print(fmt::format("{} {}\n", gf_timeOfDay(), lf_countersLine()));
    }
    if (face.options.tableSeconds != 1) lf_showChangedMessage(face);
}

void lf_startRun(Face& face) {
    if (face.run.joinable()) face.run.join();
    face.runEnded = false;
    face.run = std::thread([&face] {
        gf_runThread();
        face.runEnded = true;
    });
}

/// Nobody can close a window that isn't there: an outside signal, the time that is up and an error that would wait for
/// the user all count as its close button.
void lf_closeWhenDue(Face& face) {
    const i64 limit = face.options.seconds;
    const bool timeUp = limit > 0 && gf_steadyUs() - face.startUs >= limit * 1'000'000;
    const bool failed = gStop && gExitReason == ExitReason::systemError;
    if (!gTerminate && !timeUp && !failed) return;
    if (gUserStop) return;
    if (failed) {
        gExitCode = 1;
        face.failure = gf_currentMessage();
    }
    gf_showMessage(fmt::format("Close window button clicked, closing {} ...", kProgramName), false);
    gf_requestStop(ExitReason::userClosed, 0);
}

void lf_printSummary() {
    std::string text = "\nSummary\n";
    text += fmt::format("  lines of the feed    {}\n", gf_feedCounterText());
    text += fmt::format("  lost by the system   {}\n",
                        gTrafficReader.droppedBySystem.load() + gQnhReader.droppedBySystem.load());
    text += fmt::format("  aircraft created     {}\n", gSimTraffic.created.load());
    text += fmt::format("  titles refused       {}\n", gSimTraffic.refused.load());
    text += fmt::format("  aircraft removed     {}\n", gSimTraffic.removed.load());
    text += fmt::format("  position writes      {}\n", gSimTraffic.positionWrites.load());
    text += fmt::format("  worker cycles        {}\n", gCycleStats.cycles.load());
    text += fmt::format("  worst cycle          {:.2f} ms\n", static_cast<f64>(gCycleStats.worstUs.load()) / 1000.0);
    text += fmt::format("  cycles above 10 ms   {}\n", gCycleStats.lateCycles.load());
    text += fmt::format("  resident memory      {:.1f} MB\n", static_cast<f64>(gf_residentBytes()) / 1048576.0);
    lf_print(text);
}

}  // namespace

i32 gf_runHeadless(const HeadlessOptions& options) {
    Face face{options, {}, true, {}, {}, 0, 0, 0};
    face.startUs = gf_steadyUs();
    gf_onTerminate(gTerminate);
    gNoWindow = true;
    gf_wantSnapshot(options.tableSeconds > 0);
    gf_postToWindow(WindowMessage::startRun);
    for (;;) {
        const bool ended = face.runEnded && face.run.joinable();  // read before the queue: the run posts, then ends
        const WindowMessage message = gf_takeWindowMessage(kPollMs);
        if (message == WindowMessage::startRun) lf_startRun(face);
        if (message == WindowMessage::endProgram) break;
        if (message == WindowMessage::none && ended) {
            gExitCode = 1;  // the close-down itself failed; its text stands in the error line
            break;
        }
        lf_closeWhenDue(face);
        lf_showDue(face);
    }
    if (face.run.joinable()) face.run.join();
    gNoWindow = false;
    lf_showChangedMessage(face);
    gf_log(gf_timeOfDay());
    gf_logFlush();
    lf_printSummary();
    if (options.alerts && !face.failure.empty()) gf_showAlert(kProgramName, face.failure);
    return gExitCode;
}

}  // namespace hcr
