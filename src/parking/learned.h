#pragma once

#include "core/model/aircraft.h"

namespace hcr {

// What live aircraft do on stands, kept per airport. Run thread.

/// What an aircraft is doing on its stand when that is learned.
enum StandEvent : i32 {
    arrivedOnStand = 0,  ///< or its airline or type was corrected while parked
    createdOnStand = 1,
    pushesBack = 2,
    reportedAway = 3,  ///< more than 200 m from the stand on which it is parked
};

/// Learns that the aircraft, if its registration is known, is on the stand in this half hour; its airline and type
/// become those of its registration.
void lf_addRealStandOption(u32 standNumber, LiveAc& ac, i32 kind);
/// Fills coupledCs1 and coupledCs2 of an aircraft whose other callsign the history of the stands tells.
void lf_searchForCoupledCsAroundThisTime(const HalfHourSlot& slot, LiveAc& ac);

}  // namespace hcr
