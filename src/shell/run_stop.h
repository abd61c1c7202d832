#pragma once

#include <atomic>

#include "platform/types.h"

namespace hcr {

/// Why a run ends. The values are the reason's number.
enum class ExitReason : i32 {
    notYetSet = 0,
    simWasClosed = 1,
    newFlight = 2,
    newSettings = 3,
    userClosed = 4,
    simConnectError = 5,
    readerError = 6,
    systemError = 7,
    newVersion = 8,
};

extern std::atomic<bool> gStop;              ///< the run is to end
extern std::atomic<bool> gUserStop;          ///< the user asked for the end
extern std::atomic<ExitReason> gExitReason;  ///< set by the stopper that turned gStop; by reason 4 while it is 0
extern std::atomic<i32> gRestartSeconds;     ///< length of the restart countdown

/// The one way to stop a run; any thread. Reason 4 sets both flags and keeps the countdown; for any other reason only
/// the caller that turned gStop from false to true stores its reason and countdown. New settings take the place of a
/// system error that waits for the user, who has put it right with them.
void gf_requestStop(ExitReason reason, i32 restartSeconds);

/// True when either flag is set.
bool gf_stopAsked();
/// The reason as the log tells it. Any thread.
const char* gf_exitReasonText(ExitReason reason);
/// No stop is asked for any more. True when the user had asked for the end. Run thread.
bool gf_resetStop();

}  // namespace hcr
