#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "core/model/aircraft.h"
#include "core/model/stand.h"

namespace hcr {

// Who stood on the stands at a time of the week. Run thread.

/// Who stands somewhere or is planned already, so that the plan puts nobody on two places. Its views are good until the
/// tables of static and of parked live aircraft change.
struct UsedFlights {
    using Names = std::unordered_map<std::string_view, i32>;
    std::unordered_set<std::string> planCs1, planReg;
    std::unordered_set<std::string_view> liveParked;
    Names staticCs1, staticReg;                         ///< with the count of static aircraft of that name
    std::unordered_map<u32, const ParkedAc*> staticOn;  ///< active static aircraft by stand

    void add(const ParkPlanEntry& entry);
};
/// From the plan's queue, the static aircraft and the parked live ones, with room for so many entries more.
UsedFlights gf_usedFlights(std::size_t more);

/// A search in the history for the half hour `offset` half hours before a slot.
struct StandSearch {
    HalfHourSlot slot;
    bool real = true;     ///< options that were really seen, else soft ones
    bool dayMode = true;  ///< of that weekday only
    i32 offset = 0;
};
/// Appends a plan entry for each free stand with a fitting option, and marks the stands.
void lf_searchStands(const StandSearch& search, UsedFlights& used, std::vector<ParkPlanEntry>& out);
/// Whether the aircraft of an option of this stand is in use elsewhere.
bool lf_optionUsed(const StandOption& option, const ParkPos& stand, const UsedFlights& used);
/// Takes a stand for the plan, which blocks the ones beside it.
void markPlanned(ParkPos& stand);
/// The slot so many half hours before; any number of them.
HalfHourSlot gf_slotBefore(const HalfHourSlot& slot, i32 halfHours);
/// Whether an option's aircraft is still there in the half hour behind the slot, or never leaves.
bool gf_staysBehind(const ParkPos& stand, const StandOption& option, const HalfHourSlot& slot);

/// Callsigns of real traffic that the last collection found; the plan's copy.
extern std::unordered_set<std::string> gRealCallsigns;
bool gf_isRealCallsign(const std::string& callsign);

}  // namespace hcr
