#pragma once

#include <atomic>
#include <string>

#include "platform/types.h"
#include "shell/run_stop.h"

namespace hcr {

// The run driver. The window thread (or the headless face) starts a run thread and serves two messages.

/// What the window thread is asked to do; the values are those of its messages.
enum class WindowMessage : u32 {
    none = 0,
    startRun = 0x8001,    ///< start a new run thread; it replaces the last one, which is joined
    endProgram = 0x8002,  ///< save the window's position, end the message loop with gExitCode
};
/// Posts to the window thread; any thread.
void gf_postToWindow(WindowMessage message);
/// Takes the oldest message, waiting up to the time for one; `none` when there is none. Window thread.
WindowMessage gf_takeWindowMessage(i64 milliseconds);

extern bool gRestart;          ///< close-down decided on a new run
extern i32 gExitCode;          ///< of the process
extern bool gProduction;       ///< --production: the run ends behind the data load
extern i64 gLastTickUs;        ///< steady time of the last tick, 0 before the first
extern u32 gSeconds;           ///< seconds since the worker loop began, wraps to 0 at 86400
extern bool gFlightStopped;    ///< the flight is not running now
extern i32 gNotRunningCycles;  ///< counts down a second of cycles without a running flight
extern bool gRenewPhase;       ///< a renewal of the static parking collects callsigns; it runs 15 seconds later

// Commands of the window thread, each taken by the tick.
extern std::atomic<bool> gFlushStaticCmd, gReReadCmd, gRefreshCsListCmd, gShowSelectionCmd, gBlockCmd, gClearNoMatchCmd;

/// Entry of a run.
void gf_runThread();
/// Reads the settings; at a very first start makes them, for the simulator that is found. Run thread, or before it.
void gf_loadSettings();
/// Reads the data of a run: settings, updates, liveries, reference data, airports. Throws UserErrorException.
void gf_loadAtStart();
/// The worker: cycles of 10 ms until a stop is asked for. Throws UserErrorException.
void gf_runWorker();
/// Waits until a flight runs in the simulator; false when a stop ended the wait.
bool gf_waitForFlight();
/// Once per 10 ms cycle; false ends the cycle.
bool gf_tick();
/// The next creation of gAddingStack goes to the queues, while the simulator keeps up.
void lf_handleAddingStack();
/// The duties of each second, and of each 15 seconds, of the worker.
void gf_everySecond();
void gf_every15Seconds();
/// What a cycle does while no flight runs.
void gf_flightNotRunning();
/// Ends the session and the readers; what is to be kept is stored.
void lf_closingDown();
/// Counts down in the message line before a run begins anew; a stop ends it.
void gf_showRestartCountdown();
/// Everything that a run has made back to its start. True when the end was asked for by the user, even at the last
/// moment: then no new run may begin.
bool gf_resetRun();
/// The words of the log for the end of a run. Any thread.
const char* gf_exitReasonText(ExitReason reason);
/// Names of all callsigns for the window's selector, as of the last "cs->oid:"; any thread.
std::string gf_callsignList();

/// Worst and count of worker cycles since the worker began, microseconds; for the summary.
struct CycleStats {
    std::atomic<i64> cycles{0}, worstUs{0}, lateCycles{0};
};
/// Written by the run thread, read by any.
extern CycleStats gCycleStats;

}  // namespace hcr
