#include "core/run/close_down.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "core/model/tables.h"
#include "core/run/outcome.h"
#include "core/run/reset.h"
#include "core/run/snapshot.h"
#include "core/run/window_messages.h"
#include "core/run/worker.h"
#include "feed/control_channel.h"
#include "feed/feed_counters.h"
#include "feed/qnh_reader.h"
#include "feed/traffic_reader.h"
#include "liveries/match_memory.h"
#include "parking/park_airport.h"
#include "parking/plan.h"
#include "platform/clock.h"
#include "shell/controls.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/parameter_file.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"
#include "shell/text.h"
#include "shell/version.h"
#include "shell/window_state.h"
#include "sim/flight_plan.h"

namespace hcr {
namespace {

constexpr i64 kReadersEndMs = 500;
constexpr i64 kPollMs = 100;  // who waits here looks so often whether it is still worth while
constexpr i64 kNewFlightWaitMs = 10'000;
constexpr i64 kSecondMs = 1'000;

/// Sleeps so long, or until `ended` holds; whether it does.
template <typename Condition>
bool lf_sleepUnless(i64 milliseconds, Condition ended) {
    for (i64 left = milliseconds; left > 0; left -= kPollMs) {
        if (ended()) return true;
        gf_sleepMs(std::min(left, kPollMs));
    }
    return ended();
}

bool lf_closedByUser() {
    return gUserStop;
}

void lf_stopReaders() {
    gTrafficReader.stop = true;
    gQnhReader.stop = true;
    lf_sleepUnless(kReadersEndMs, gf_readersEnded);
}

/// An error stays on the screen until the user has read it and closes the window or puts it right.
void lf_waitForUserAfterError() {
    while (!gUserStop && gExitReason == ExitReason::systemError) gf_sleepMs(kPollMs);
    if (gUserStop) gf_showMessage(fmt::format("User closed {}", kProgramName), true);
}

void lf_leaveParkAirport() {
    if (!gf_hasParkAirport()) return;
    gf_saveStaticParked();
    lf_leaveAirport();
}

void lf_emptyParameter(EditField& field) {
    field.current.set("");
    gf_storeParameter(field);
    gf_showInControl(field);
}

void lf_logFeedCounters() {
    gf_logLeftOut();
    if (gFeedCounters.received == 0) return;
    gf_log("Feed: " + gf_feedCounterText());
    const u32 lost = gTrafficReader.droppedBySystem;
    if (lost != 0) gf_log(fmt::format("  lost before they could be read: {}", lost));
}

void lf_clearMessageLines() {
    const std::lock_guard lock(gWindow.mutex);
    gWindow.fatalMessage.clear();
    gf_clearMessage();
}

void lf_switchScansOff() {
    for (CheckBox* box : {&SCAN_LIVERIES, &SCAN_AIRPORTS}) {
        box->current = false;
        gf_storeParameter(*box);
        gf_showInControl(*box);
    }
}

bool lf_restartsAfter(ExitReason reason) {
    return reason == ExitReason::newSettings || reason == ExitReason::simConnectError ||
           reason == ExitReason::readerError;
}

void lf_waitAfterNewFlight() {
    gf_showMessage(fmt::format("New flight detected, {} will close, please restart manually ...", kProgramName), false);
    gf_log(fmt::format("New flight detected, {} will close, please restart manually ...", kProgramName));
    lf_sleepUnless(kNewFlightWaitMs, lf_closedByUser);
}

void lf_prepareRestart(ExitReason reason) {
    gRestart = true;
    lf_clearMessageLines();
    gf_showMessage("Prepare for a restart ...", false);
    if (reason != ExitReason::newSettings) lf_switchScansOff();
    gf_showRestartCountdown();
    if (gUserStop) {  // the user closed the window while the seconds ran
        gRestart = false;
        return;
    }
    if (gf_resetRun()) gRestart = false;
}

void lf_closingSteps() {
    ExitReason reason = gExitReason;
    const char* text = gf_exitReasonText(reason);
    gf_log(fmt::format("Exiting: {}", text));
    gf_wantReports(false);
    gf_joinSimClient();
    gf_forgetSnapshot();  // its aircraft went with the session
    lf_stopReaders();
    gf_closeControlChannel();
    if (reason == ExitReason::systemError) {
        lf_waitForUserAfterError();
        reason = gExitReason;
    }
    lf_leaveParkAirport();
    gf_forgetLiveries();
    gf_removeFlightPlanFolder();
    std::error_code ignored;
    if (std::filesystem::exists(gFiles().origDest, ignored)) {
        gf_log(fmt::format("{} is still there", gf_pathToUtf8(gFiles().origDest)));
    }
    lf_emptyParameter(DESTINATION);
    lf_emptyParameter(BLOCK_CALLSIGN);
    gGhosts.clear();
    gf_logMatchSummary();
    gf_logNoMatchList();
    lf_logFeedCounters();
    gRestart = false;
    if (reason == ExitReason::newFlight) lf_waitAfterNewFlight();
    if (lf_restartsAfter(reason)) lf_prepareRestart(reason);
    gf_postToWindow(gRestart ? WindowMessage::startRun : WindowMessage::endProgram);
    gf_logFlush();
}

}  // namespace

void lf_closingDown() {
    try {
        lf_closingSteps();
    } catch (const std::exception& e) {
        gf_log(fmt::format("{} exception {}", "lf_closingDown", e.what()));
        gf_showError(e.what());
        gf_logFlush();
    }
}

void gf_showRestartCountdown() {
    const i32 seconds = gRestartSeconds;
    if (seconds < 1) return;
    gf_log(fmt::format("Restarting after {} seconds", seconds));
    gf_log(std::string(48, '-'));
    for (i32 left = seconds; left >= 1; --left) {
        gf_showMessage(fmt::format("Restarting after {} second{}", left, gf_plural(static_cast<u64>(left))), false);
        if (lf_sleepUnless(kSecondMs, lf_closedByUser)) return;
    }
    gf_log("Restart countdown finished");
}

}  // namespace hcr
