#pragma once

#include "parking/plan_state.h"

namespace hcr {

// The static parking: its tick, its first plan, its counters. Run thread.

/// The first plan at an airport.
void gf_planParking();
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
