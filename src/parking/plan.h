#pragma once

#include <atomic>
#include <string>

#include "core/model/aircraft.h"

namespace hcr {

// The static parking. Without a park airport its tick has nothing to do.

extern std::atomic<i32> gMaxParked;        ///< wanted number of parked aircraft, static and live together
extern std::atomic<bool> gRenewalRunning;  ///< the plan is being carried out; the window reads it
constexpr i32 kMinutesBetweenRenewals = 20;
inline i32 gRenewalMinutes = kMinutesBetweenRenewals;  ///< minutes to the next renewal, counted down by the tick

void gf_parkTick(bool first);
void gf_beginRenewal();
void gf_endRenewal();
void gf_renewParking();
void lf_detcs();
void gf_removeAllStatic();
void gf_saveStaticParked();
void gf_cancelPlanOf(u32 standId);
/// Counters of the window: live aircraft airborne or moving, static parked, live parked, average times on stand.
void gf_refreshCounters();
void gf_resetParking();

}  // namespace hcr
