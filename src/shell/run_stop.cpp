#include "shell/run_stop.h"

#include <array>
#include <mutex>

namespace hcr {
namespace {

constexpr std::array<const char*, 9> kReasonTexts = {"NOT YET SET",  "SIM WAS CLOSED",  "NEW FLIGHT",
                                                     "NEW SETTINGS", "USER CLOSED SIM", "SIMCONNECT ERROR",
                                                     "READER ERROR", "SYSTEM ERROR",    "NEW VERSION"};

std::mutex gStopMutex;  // between stoppers only: whoever reads a set gStop finds its reason already there

}  // namespace

std::atomic<bool> gStop{false};
std::atomic<bool> gUserStop{false};
std::atomic<ExitReason> gExitReason{ExitReason::notYetSet};
std::atomic<i32> gRestartSeconds{0};

void gf_requestStop(ExitReason reason, i32 restartSeconds) {
    const std::lock_guard lock(gStopMutex);
    if (reason == ExitReason::userClosed) {
        ExitReason none = ExitReason::notYetSet;
        gExitReason.compare_exchange_strong(none, reason);
        gUserStop = true;
        gStop = true;
        return;
    }
    // Who is shown an error may put it right: that takes the error's place.
    const bool corrects = reason == ExitReason::newSettings && gExitReason == ExitReason::systemError && !gUserStop;
    if (gStop && !corrects) return;
    gRestartSeconds = restartSeconds;
    gExitReason = reason;
    gStop = true;
}

bool gf_stopAsked() {
    return gStop || gUserStop;
}

const char* gf_exitReasonText(ExitReason reason) {
    return kReasonTexts.at(static_cast<std::size_t>(reason));
}

bool gf_resetStop() {
    gRestartSeconds = 0;
    gExitReason = ExitReason::notYetSet;
    const bool userAsked = gUserStop.exchange(false);
    gStop = false;
    return userAsked;
}

}  // namespace hcr
