#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "core/model/slot.h"

namespace hcr {

// What a plan of the static parking has found out. Run thread, but for the atomics.

/// A static aircraft that stays through a renewal.
struct KeepEntry {
    std::string callsign, cs1, cs2, reg, airline, type;
    HalfHourSlot parkedSince;
    u32 standNumber = 0;
    bool replace = false;  ///< it is made anew under its outbound callsign
};

/// A static aircraft that is to leave in this renewal.
struct Removal {
    std::string callsign;
    u32 standNumber = 0;
};

extern std::atomic<i32> gMaxParked;        ///< wanted number of parked aircraft, static and live together
extern i32 gParkedPercent;                 ///< the same as a percentage of the stands
extern i32 gRealFit;                       ///< half hours that the last search of real options went back
extern i32 gSoftFit;                       ///< the same of soft ones, -1 when there was none
extern std::atomic<bool> gRenewalRunning;  ///< a plan is being carried out
extern std::vector<KeepEntry> gKeepList;
extern std::vector<Removal> gRemovalList;
inline constexpr i32 kMinutesBetweenRenewals = 20;
inline i32 gRenewalMinutes = kMinutesBetweenRenewals;  ///< minutes to the next renewal, counted down by the tick

/// Back to the state of a program that has no park airport.
void gf_resetPlanState();

}  // namespace hcr
