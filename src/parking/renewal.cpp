#include "parking/renewal.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/model/aircraft_class.h"
#include "core/model/geo.h"
#include "core/model/labels.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "liveries/dbase.h"
#include "parking/history_search.h"
#include "parking/park_limits.h"
#include "parking/plan_levels.h"
#include "parking/plan_state.h"
#include "parking/plan_steps.h"
#include "platform/clock.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/parameters.h"
#include "sim/aircraft.h"

namespace hcr {

namespace {

constexpr i64 kTicks100nsPerMinute = 600'000'000;
constexpr i64 kUnconfirmedMinutes = 90, kUnconfirmedMinutesHeavy = 180;
constexpr i32 kLastHalfHour = 47, kHalfHoursOfWeek = 336;

HalfHours lf_bits(i32 first, i32 last) {
    HalfHours bits;
    for (i32 i = std::max(first, 0); i <= std::min(last, kLastHalfHour); ++i) bits.set(static_cast<std::size_t>(i));
    return bits;
}

/// Live aircraft on stands, those just confirmed first; one that the feed has forgotten leaves.
void lf_listLiveParked() {
    gCallsignParked.clear();
    const i64 now = gf_utcTicks100ns();
    for (LiveAc& ac : gLiveAcs) {
        if (ac.flightState != FlightState::parked || ac.lifeState != LifeState::active) continue;
        const i64 minutes = ac.parkReportSeen ? 0 : (now - ac.arrivedTicks) / kTicks100nsPerMinute;
        const i64 longest = ac.acClass == Heavy ? kUnconfirmedMinutesHeavy : kUnconfirmedMinutes;
        if (INITIAL_LOAD_ONLY.current || minutes <= longest) {
            gCallsignParked.push_back({ac.callsign, ac.standId, static_cast<i32>(minutes)});
        } else {
            removeAircraftFromSim(ac);
        }
    }
    std::stable_sort(gCallsignParked.begin(), gCallsignParked.end(),
                     [](const CallsignParked& a, const CallsignParked& b) { return a.minutes < b.minutes; });
}

/// The live aircraft on stands, no more of them than wanted; their stands are taken.
void lf_settleLiveParked(i32 wanted) {
    lf_listLiveParked();
    const i32 excess = static_cast<i32>(gCallsignParked.size()) - wanted;
    if (wanted > 0 && excess > 0) {
        gf_showMessage(fmt::format("Parking adjustments: {} more live ac than wanted", excess), true);
        gf_removeLongestParked(excess);
        lf_listLiveParked();
    }
    for (const CallsignParked& parked : gCallsignParked) {
        if (ParkPos* stand = findStand(parked.standId)) markPlanned(*stand);
    }
}

KeepEntry lf_keepEntryOf(const ParkedAc& ac) {
    KeepEntry keep;
    keep.callsign = ac.callsign;
    keep.cs1 = ac.coupledCs1;
    keep.cs2 = ac.coupledCs2;
    keep.reg = ac.registration;
    keep.airline = ac.airline;
    keep.type = ac.model;
    keep.parkedSince = ac.parkedSince;
    keep.standNumber = ac.standId;
    return keep;
}

void lf_keep(const ParkedAc& ac) {
    gKeepList.push_back(lf_keepEntryOf(ac));
}

void lf_remove(const ParkedAc& ac) {
    gRemovalList.push_back({ac.callsign, ac.standId});
}

ParkPlanEntry* lf_entryOn(u32 standNumber) {
    const auto found = std::find_if(gParkPlanQueue.begin(), gParkPlanQueue.end(),
                                    [standNumber](const ParkPlanEntry& e) { return e.standNumber == standNumber; });
    return found == gParkPlanQueue.end() ? nullptr : &*found;
}

void lf_dropEntry(const ParkPlanEntry& entry) {
    gParkPlanQueue.erase(gParkPlanQueue.begin() + (&entry - gParkPlanQueue.data()));
}

/// The later arrival has the stand.
void lf_keepOrReplace(const ParkedAc& ac, const ParkPlanEntry& entry) {
    const HalfHourSlot arrival = gf_slotBefore(gSlot, entry.fit);
    if (arrival.weekScale() > ac.parkedSince.weekScale()) {
        lf_remove(ac);
    } else {
        lf_keep(ac);
        lf_dropEntry(entry);
    }
}

bool lf_isSameFlight(const ParkedAc& ac, const ParkPlanEntry& entry) {
    return entry.airline == ac.airline && entry.type == ac.model &&
           (ac.callsign == entry.cs1 + "*" || ac.callsign == entry.cs2 + "*");
}

/// A planned aircraft on the stand beside whose wings would meet this one's; null when there is none.
const ParkPlanEntry* lf_meetingNeighbour(const ParkedAc& ac, const ParkPos& stand) {
    for (const u32 number : stand.adjacent) {
        const ParkPlanEntry* entry = lf_entryOn(number);
        const ParkPos* other = entry == nullptr ? nullptr : findStand(number);
        if (other == nullptr) continue;
        const f64 distance = distanceNm(ac.standLat, ac.standLon, other->lat, other->lon);
        if (gf_halfSpanNm(entry->type) + ac.halfSpanNm > distance) return entry;
    }
    return nullptr;
}

bool lf_stoodThere(const ParkPos& stand, const ParkedAc& ac, i32 day, const HalfHours& hours) {
    return std::any_of(stand.options.begin(), stand.options.end(), [&](const StandOption& option) {
        return option.day == static_cast<u32>(day) && option.reg == ac.registration && option.airline == ac.airline &&
               option.type == ac.model && (option.hours & hours).any();
    });
}

/// Whether the history says that the aircraft is still there, as far back as the plan has looked.
bool lf_isStillThere(const ParkPos& stand, const ParkedAc& ac, const HalfHourSlot& slot) {
    const i32 fit = std::min(std::max(gRealFit, gSoftFit), kLastHalfHour);
    if (lf_stoodThere(stand, ac, slot.day, lf_bits(slot.halfHour - fit, slot.halfHour))) return true;
    const i32 rest = std::min(fit - slot.halfHour, kLastHalfHour - 1);
    if (rest <= 0) return false;
    const i32 dayBefore = slot.day == 1 ? 7 : slot.day - 1;
    return lf_stoodThere(stand, ac, dayBefore, lf_bits(kLastHalfHour - rest, kLastHalfHour));
}

void lf_judgeStatic(const ParkedAc& ac, const HalfHourSlot& slot) {
    const auto isReal = [](const std::string& callsign) { return gRealCallsigns.contains(callsign); };
    if ((!ac.coupledCs1.empty() && isReal(ac.coupledCs1)) || (!ac.coupledCs2.empty() && isReal(ac.coupledCs2))) {
        lf_remove(ac);
        return;
    }
    if (const ParkPlanEntry* entry = lf_entryOn(ac.standId)) {
        if (lf_isSameFlight(ac, *entry)) {
            lf_keep(ac);
            lf_dropEntry(*entry);
        } else {
            lf_keepOrReplace(ac, *entry);
        }
        return;
    }
    const ParkPos* stand = findStand(ac.standId);
    if (stand == nullptr) {
        lf_remove(ac);
    } else if (const ParkPlanEntry* neighbour = lf_meetingNeighbour(ac, *stand)) {
        lf_keepOrReplace(ac, *neighbour);
    } else if (lf_isStillThere(*stand, ac, slot)) {
        lf_keep(ac);
    } else {
        lf_remove(ac);
    }
}

/// Whether one that stays has come to the end of its stay, so that it goes under its outbound callsign from now on.
bool lf_turnsRound(const KeepEntry& keep, const HalfHourSlot& slot) {
    if (keep.cs2.empty() || keep.callsign.find(keep.cs1) == std::string::npos) return false;
    const ParkPos* stand = findStand(keep.standNumber);
    if (stand == nullptr) return false;
    std::string_view callsign = keep.callsign;
    if (callsign.ends_with('*')) callsign.remove_suffix(1);
    const auto option = std::find_if(stand->options.begin(), stand->options.end(), [&](const StandOption& o) {
        return o.index >= 1 && o.day == static_cast<u32>(slot.day) && o.cs1 == callsign && o.airline == keep.airline &&
               o.type == keep.type;
    });
    if (option == stand->options.end()) return false;
    StandOption turning = *option;
    turning.cs2 = keep.cs2;  // whatever the option says, it leaves under another name
    return !gf_staysBehind(*stand, turning, slot);
}

i32 lf_halfHoursSince(const HalfHourSlot& since, const HalfHourSlot& now) {
    return (now.weekScale() - since.weekScale() + kHalfHoursOfWeek) % kHalfHoursOfWeek;
}

ParkPlanEntry lf_entryOf(const KeepEntry& keep) {
    ParkPlanEntry entry;
    entry.standNumber = keep.standNumber;
    entry.fit = lf_halfHoursSince(keep.parkedSince, gSlot);
    entry.airline = keep.airline;
    entry.type = keep.type;
    entry.cs1 = keep.cs1;
    entry.cs2 = keep.cs2;
    entry.reg = keep.reg;
    return entry;
}

void lf_replaceTurning() {
    for (const KeepEntry& keep : gKeepList) {
        if (!keep.replace) continue;
        gParkPlanQueue.push_back(lf_entryOf(keep));
        gRemovalList.push_back({keep.callsign, keep.standNumber});
    }
    std::erase_if(gKeepList, [](const KeepEntry& keep) { return keep.replace; });
}

void lf_carryOutRemovals() {
    for (const Removal& removal : gRemovalList) {
        const auto ac = std::find_if(gParkedAcs.begin(), gParkedAcs.end(), [&removal](const ParkedAc& parked) {
            return parked.standId == removal.standNumber;
        });
        if (ac == gParkedAcs.end()) continue;
        const bool there = ac->lifeState == LifeState::active || ac->lifeState == LifeState::removingfromsim;
        if (there) removeAircraftFromSim(*ac);
    }
    gRemovalList.clear();
}

}  // namespace

void lf_judgeStatics(const HalfHourSlot& slot) {
    for (const ParkedAc& ac : gParkedAcs) {
        if (ac.lifeState == LifeState::active) lf_judgeStatic(ac, slot);
    }
    std::stable_sort(gKeepList.begin(), gKeepList.end(),
                     [](const KeepEntry& a, const KeepEntry& b) { return a.parkedSince > b.parkedSince; });
    for (KeepEntry& keep : gKeepList) keep.replace = lf_turnsRound(keep, slot);
}

void lf_cutToWanted(i32 wanted) {
    auto excess = static_cast<i64>(gParkPlanQueue.size() + gKeepList.size() + gCallsignParked.size()) - wanted;
    for (; excess >= 1; --excess) {
        if (!gParkPlanQueue.empty()) {
            gParkPlanQueue.pop_back();
        } else if (!gKeepList.empty()) {
            gRemovalList.push_back({gKeepList.back().callsign, gKeepList.back().standNumber});
            gKeepList.pop_back();
        } else if (!gCallsignParked.empty()) {
            const u32 number = gCallsignParked.back().standId;
            for (LiveAc& ac : gLiveAcs) {
                if (ac.standId == number) removeAircraftFromSim(ac);
            }
            gCallsignParked.pop_back();
        } else {
            return;
        }
    }
}

void gf_renewParking() {
    const HalfHourSlot slot = beginPlan();
    for (ParkPos& stand : gStands) {
        u32 index = 0;
        for (StandOption& option : stand.options) option.index = ++index;
    }
    const i32 wanted = gf_wantedParked();
    lf_settleLiveParked(wanted);
    const auto existing = static_cast<i32>(gCallsignParked.size());
    if (wanted != existing) lf_planAllLevels(slot, wanted, existing);
    lf_judgeStatics(slot);
    lf_replaceTurning();
    lf_cutToWanted(wanted);
    sortByFit(gParkPlanQueue, false);
    gf_showMessage(fmt::format("Parking adjustments: {} to be removed, {} to be added\n", gRemovalList.size(),
                               gParkPlanQueue.size()),
                   true);
    lf_carryOutRemovals();
}

}  // namespace hcr
