#include "parking/plan_state.h"

namespace hcr {

std::atomic<i32> gMaxParked{0};
i32 gParkedPercent = 0;
i32 gRealFit = 0;
i32 gSoftFit = -1;
std::atomic<bool> gRenewalRunning{false};
std::vector<KeepEntry> gKeepList;
std::vector<Removal> gRemovalList;

void gf_resetPlanState() {
    gMaxParked = gParkedPercent = gRealFit = 0;
    gSoftFit = -1;
    gRenewalRunning = false;
    gRenewalMinutes = kMinutesBetweenRenewals;
    gKeepList.clear();
    gRemovalList.clear();
}

}  // namespace hcr
