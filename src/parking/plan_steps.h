#pragma once

#include <vector>

#include "core/model/slot.h"
#include "core/model/stand.h"

namespace hcr {

// What the first plan and its renewals share. Run thread.

/// The head of a plan in the log; empty lists, dark lamps, free stands but for the user's, and the collected callsigns
/// of real traffic. The result is the slot of the plan.
HalfHourSlot beginPlan();
/// By the half hours that an entry goes back; the order of equal ones stays.
void sortByFit(std::vector<ParkPlanEntry>& entries, bool ascending);

}  // namespace hcr
