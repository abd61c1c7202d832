#include "core/run/run.h"

#include <fmt/format.h>

#include <array>
#include <condition_variable>
#include <deque>
#include <filesystem>
#include <mutex>

#include "core/model/tables.h"
#include "liveries/results.h"
#include "liveries/scan.h"
#include "parking/catalogue.h"
#include "parking/park_airport.h"
#include "scenery/airport_scan.h"
#include "shell/controls.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/parameters.h"
#include "shell/text_files.h"
#include "shell/window_state.h"
#include "sim/flight_plan.h"

namespace hcr {

bool gRestart = false;
i32 gExitCode = 0;
bool gProduction = false;
i64 gLastTickUs = 0;
u32 gSeconds = 0;
bool gFlightStopped = false;
i32 gNotRunningCycles = 100;
bool gRenewPhase = false;
std::atomic<bool> gFlushStaticCmd{false}, gReReadCmd{false}, gRefreshCsListCmd{false}, gShowSelectionCmd{false},
    gBlockCmd{false}, gClearNoMatchCmd{false};
CycleStats gCycleStats;

namespace {

struct MessageQueue {
    std::mutex mutex;
    std::condition_variable arrived;
    std::deque<WindowMessage> messages;
};
MessageQueue gMessages;

constexpr std::array<const char*, 9> kReasonTexts = {"NOT YET SET",  "SIM WAS CLOSED",  "NEW FLIGHT",
                                                     "NEW SETTINGS", "USER CLOSED SIM", "SIMCONNECT ERROR",
                                                     "READER ERROR", "SYSTEM ERROR",    "NEW VERSION"};

void lf_loadLiveries() {
    if (SCAN_LIVERIES.current) {
        gf_scanLiveries();
        if (gf_stopAsked()) return;  // a scan that was stopped leaves nothing to load
    }
    gf_loadScanResults();
}

void lf_scanAirports() {
    if (SCAN_AIRPORTS.current) {
        gWindow.simaddonCount = 0;
        gWindow.thirdpartyCount = 0;
        gf_repaint(Band::parking);
        gf_scanAirports();
    }
    gWindow.simaddonCount = gf_countDirectoryEntries(gFiles().mySimaddon);
    gWindow.thirdpartyCount = gf_countDirectoryEntries(gFiles().myThirdparty);
    gf_repaint(Band::parking);
}

void lf_putDestinationForward() {
    const std::string code = DESTINATION.current.get();
    if (code.empty()) return;
    if (const AirportEntry* airport = gf_findAirport(code)) {
        gf_setDestination(airport->code, {airport->lat, airport->lon});
        gf_showInControl(DESTINATION);
    }
}

void lf_work() {
    gf_createFlightPlanFolder();
    if (lf_readMyParkAirports()) gf_showMessage("park airports and stands are okay", false);
    gf_enableControl(gReReadButton, true);
    lf_putDestinationForward();
    gf_repaint(Band::whole);
    gf_runWorker();
}

void lf_stages() {
    if (!std::filesystem::is_directory(gFiles().docs)) {
        throw UserErrorException(41, fmt::format("{} must be run from the {} folder!", kProgramName, kProgramName));
    }
    gf_loadAtStart();
    gf_logFlush();
    gf_prepareScans();
    if (!gf_stopAsked() || gProduction) lf_loadLiveries();
    if (!gf_stopAsked()) lf_scanAirports();
    // Whoever stopped the run meanwhile has told why: new settings begin a new one.
    if (!gf_stopAsked()) lf_work();
}

void lf_stopByException(const char* text) {
    const bool hasText = text != nullptr && *text != '\0';
    gf_showError(hasText ? text : "Unknown exception");
    gf_requestStop(ExitReason::systemError, 0);
}

}  // namespace

void gf_postToWindow(WindowMessage message) {
    const std::lock_guard lock(gMessages.mutex);
    gMessages.messages.push_back(message);
    gMessages.arrived.notify_one();
}

WindowMessage gf_takeWindowMessage(i64 milliseconds) {
    std::unique_lock lock(gMessages.mutex);
    gMessages.arrived.wait_for(lock, std::chrono::milliseconds(milliseconds),
                               [] { return !gMessages.messages.empty(); });
    if (gMessages.messages.empty()) return WindowMessage::none;
    const WindowMessage message = gMessages.messages.front();
    gMessages.messages.pop_front();
    return message;
}

const char* gf_exitReasonText(ExitReason reason) {
    return kReasonTexts.at(static_cast<std::size_t>(reason));
}

void gf_runThread() {
    try {
        lf_stages();
    } catch (const fmt::format_error& e) {
        gf_showError(fmt::format("std::format error: {}", e.what()));
        lf_stopByException(e.what());
    } catch (const std::exception& e) {
        lf_stopByException(e.what());
    } catch (...) {
        lf_stopByException(nullptr);
    }
    gf_logFlush();
    lf_closingDown();
}

}  // namespace hcr
