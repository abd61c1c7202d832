#include "parking/plan_steps.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/model/park_state.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "feed/traffic_reader.h"
#include "parking/airport_file.h"
#include "parking/history_search.h"
#include "parking/plan_state.h"
#include "shell/log.h"
#include "shell/time_text.h"
#include "shell/window_state.h"
#include "sim/session.h"

namespace hcr {
namespace {

const char* lf_dayName(i32 day) {
    static constexpr const char* kNames[] = {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};
    return day >= 1 && day <= 7 ? kNames[day - 1] : "???";
}

void lf_takeRealCallsigns() {
    gf_collectCallsigns(false);
    const std::lock_guard lock(gTrafficReader.callsignMutex);
    gRealCallsigns.clear();
    gRealCallsigns.insert(gTrafficReader.realCallsigns.begin(), gTrafficReader.realCallsigns.end());
}

void lf_reserve(const std::string& id) {
    ParkPos* stand = id.empty() ? nullptr : gf_standById(id);
    if (stand != nullptr) stand->reserved = true;
}

void lf_freeStands() {
    for (ParkPos& stand : gStands) stand.planned = stand.reserved = stand.blockedByNeighbour = false;
    const UserAircraftData user = gf_lastUserPosition();
    lf_reserve(gSelectedStand);
    lf_reserve(gf_standUnderUser({user.lat, user.lon}));
}

}  // namespace

HalfHourSlot beginPlan() {
    const HalfHourSlot slot = gSlot;
    gf_log(fmt::format("\n{} (utc) It is day {} ({}), {:.1F} hours", gf_utcTimeText(), slot.day, lf_dayName(slot.day),
                       slot.halfHour / 2.0));
    gRemovalList.clear();
    gKeepList.clear();
    gCallsignParked.clear();
    gParkPlanQueue.clear();
    gWindow.planSoft = gWindow.planWeek = false;
    gf_repaint(Band::parking);
    lf_takeRealCallsigns();
    lf_freeStands();
    return slot;
}

void sortByFit(std::vector<ParkPlanEntry>& entries, bool ascending) {
    std::stable_sort(entries.begin(), entries.end(), [ascending](const ParkPlanEntry& a, const ParkPlanEntry& b) {
        return ascending ? a.fit < b.fit : a.fit > b.fit;
    });
}

}  // namespace hcr
