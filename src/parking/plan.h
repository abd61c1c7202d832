#pragma once

#include <atomic>
#include <string>
#include <utility>
#include <vector>

#include "core/model/aircraft.h"
#include "core/model/stand.h"

namespace hcr {

// The static parking: how many aircraft stand at the park airport, and who. Run thread, but for the atomics.

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

/// Sets and returns gMaxParked.
i32 gf_wantedParked();
/// The first plan at an airport.
void gf_planParking();
/// The plan again, with as few changes as may be.
void gf_renewParking();
/// Fills the queue for a slot up to the wanted number, `existing` of which are there: real options of the day first,
/// then, as the settings allow, of the week, soft ones of the day, and soft ones of the week.
void lf_planAllLevels(const HalfHourSlot& slot, i32 wanted, i32 existing);
/// Takes aircraft off the plan, then off those that stay, then live ones, until no more than the wanted number are
/// left.
void lf_cutToWanted(i32 wanted);
/// Decides for each static aircraft whether it stays.
void lf_judgeStatics(const HalfHourSlot& slot);

void gf_parkTick(bool first);
/// Around a renewal: the controls that touch parking are locked meanwhile.
void gf_beginRenewal();
void gf_endRenewal();
void gf_saveStaticParked();
/// Somebody else has taken the stand: its plan entry goes.
void gf_cancelPlanOf(u32 standId);
/// Counters of the window: live aircraft airborne or moving, static parked, live parked, average times on stand.
void gf_refreshCounters();
void gf_resetParking();

}  // namespace hcr
