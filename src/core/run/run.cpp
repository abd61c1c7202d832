#include "core/run/run.h"

#include <fmt/format.h>

#include <filesystem>

#include "core/run/close_down.h"
#include "core/run/load.h"
#include "core/run/outcome.h"
#include "core/run/worker.h"
#include "liveries/results.h"
#include "liveries/scan.h"
#include "liveries/scan_threads.h"
#include "parking/catalogue.h"
#include "parking/park_airport.h"
#include "scenery/airport_scan.h"
#include "shell/controls.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"
#include "shell/text_files.h"
#include "shell/version.h"
#include "shell/window_state.h"
#include "sim/flight_plan.h"

namespace hcr {
namespace {

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
