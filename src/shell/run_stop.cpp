#include "shell/run_stop.h"

#include <mutex>

namespace hcr {
namespace {

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

}  // namespace hcr
