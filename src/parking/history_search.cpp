#include "parking/history_search.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/model/geo.h"
#include "core/model/tables.h"
#include "liveries/dbase.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "shell/random.h"

namespace hcr {

std::unordered_set<std::string> gRealCallsigns;

namespace {

constexpr i32 kHalfHoursOfDay = 48, kHalfHoursOfWeek = 7 * kHalfHoursOfDay;
constexpr std::size_t kUsualCandidates = 256;

/// Whether a name followed by "*" is this callsign.
bool lf_isStatic(std::string_view callsign, std::string_view name) {
    return callsign.size() == name.size() + 1 && callsign.back() == '*' && callsign.starts_with(name);
}

bool lf_isOwn(const ParkedAc& ac, const StandOption& option) {
    const bool sameFlight = lf_isStatic(ac.callsign, option.cs1) || lf_isStatic(ac.callsign, option.cs2);
    return sameFlight && ac.registration == option.reg;
}

i32 lf_count(const UsedFlights::Names& names, std::string_view name) {
    const auto found = names.find(name);
    return found == names.end() ? 0 : found->second;
}

/// How often the static aircraft go by the names of an option.
i32 lf_staticUses(const StandOption& option, const UsedFlights& used) {
    i32 uses = lf_count(used.staticCs1, option.cs1) + lf_count(used.staticReg, option.reg);
    if (option.cs2 != option.cs1) uses += lf_count(used.staticCs1, option.cs2);
    return uses;
}

/// What one static aircraft adds to that.
i32 lf_usesOf(const ParkedAc& ac, const StandOption& option) {
    const bool sameCallsign = ac.coupledCs1 == option.cs1 || ac.coupledCs1 == option.cs2;
    return (sameCallsign ? 1 : 0) + (ac.registration == option.reg ? 1 : 0);
}

const ParkedAc* lf_staticOn(const UsedFlights& used, u32 number) {
    const auto found = used.staticOn.find(number);
    return found == used.staticOn.end() ? nullptr : found->second;
}

/// One search on one stand.
struct StandLook {
    ParkPos& stand;
    const StandSearch& search;
    HalfHourSlot wanted;  ///< the slot that the options are looked at for
    const UsedFlights& used;

    bool matches(const StandOption& option) const {
        return option.index != 0 && (!search.dayMode || option.day == static_cast<u32>(wanted.day)) &&
               (option.hard == 1) == search.real && option.hours[static_cast<std::size_t>(wanted.halfHour)];
    }
    /// Whether its wings are clear of the static aircraft on the stands beside.
    bool hasRoom(const StandOption& option) const {
        if (stand.adjacent.empty()) return true;
        const f64 half = gf_halfSpanNm(option.type);
        return std::none_of(stand.adjacent.begin(), stand.adjacent.end(), [&](u32 number) {
            const ParkedAc* other = lf_staticOn(used, number);
            return other != nullptr &&
                   other->halfSpanNm + half > distanceNm(other->standLat, other->standLon, stand.lat, stand.lon);
        });
    }
};

void lf_collect(const StandLook& look, std::vector<StandOption*>& candidates) {
    candidates.clear();
    if (look.stand.blockedByNeighbour || (look.stand.heli && !HELICOPTERS.current)) return;
    for (StandOption& option : look.stand.options) {
        if (look.matches(option) && look.hasRoom(option)) candidates.push_back(&option);
    }
}

/// The candidate that is standing here already.
std::vector<StandOption*>::iterator lf_present(const StandLook& look, std::vector<StandOption*>& candidates) {
    const ParkedAc* ac = lf_staticOn(look.used, look.stand.number);
    if (ac == nullptr) return candidates.end();
    return std::find_if(candidates.begin(), candidates.end(), [ac](const StandOption* option) {
        return ac->airline == option->airline && ac->model == option->type &&
               (lf_isStatic(ac->callsign, option->cs1) || lf_isStatic(ac->callsign, option->cs2));
    });
}

/// Puts the one to be taken first.
void lf_choose(const StandLook& look, std::vector<StandOption*>& candidates) {
    if (candidates.size() < 2 || !RANDOM.current) return;
    if (const auto present = lf_present(look, candidates); present != candidates.end()) {
        std::iter_swap(candidates.begin(), present);
        return;
    }
    for (std::size_t i = 1; i < candidates.size(); ++i) {
        std::swap(candidates[i], candidates[gf_randomBelow(static_cast<u32>(i + 1))]);
    }
}

void lf_take(const StandLook& look, const StandOption& option, std::vector<ParkPlanEntry>& out) {
    ParkPlanEntry entry;
    entry.standNumber = look.stand.number;
    entry.fit = look.search.offset;
    entry.airline = option.airline;
    entry.type = option.type;
    entry.cs1 = option.cs1;
    entry.cs2 = option.cs2;
    entry.reg = option.reg;
    entry.stay = gf_staysBehind(look.stand, option, look.search.slot);
    out.push_back(std::move(entry));
    markPlanned(look.stand);
}

}  // namespace

void UsedFlights::add(const ParkPlanEntry& entry) {
    planCs1.insert(entry.cs1);
    planReg.insert(entry.reg);
}

UsedFlights gf_usedFlights(std::size_t more) {
    UsedFlights used;
    used.planCs1.reserve(gParkPlanQueue.size() + more);
    used.planReg.reserve(gParkPlanQueue.size() + more);
    for (const ParkPlanEntry& entry : gParkPlanQueue) used.add(entry);
    for (const ParkedAc& ac : gParkedAcs) {
        ++used.staticCs1[ac.coupledCs1];
        ++used.staticReg[ac.registration];
        if (ac.lifeState == LifeState::active) used.staticOn.emplace(ac.standId, &ac);
    }
    for (const CallsignParked& parked : gCallsignParked) used.liveParked.insert(parked.callsign);
    return used;
}

bool gf_isRealCallsign(const std::string& callsign) {
    return !callsign.empty() && (gRealCallsigns.contains(callsign) || gRealCallsigns.contains(callsign + "_"));
}

bool lf_optionUsed(const StandOption& option, const ParkPos& stand, const UsedFlights& used) {
    if (gf_isRealCallsign(option.cs1) || gf_isRealCallsign(option.cs2)) return true;
    if (used.planReg.contains(option.reg)) return true;  // two empty registrations are equal, here and below
    if (used.planCs1.contains(option.cs1) || used.planCs1.contains(option.cs2)) return true;
    if (used.liveParked.contains(option.cs1) || used.liveParked.contains(option.cs2)) return true;
    i32 uses = lf_staticUses(option, used);
    // The one that stands on this very stand is the one that stays.
    const ParkedAc* here = lf_staticOn(used, stand.number);
    if (here != nullptr && lf_isOwn(*here, option)) uses -= lf_usesOf(*here, option);
    return uses > 0;
}

void markPlanned(ParkPos& stand) {
    stand.planned = true;
    for (const u32 number : stand.adjacent) {
        if (ParkPos* neighbour = findStand(number)) neighbour->blockedByNeighbour = true;
    }
}

HalfHourSlot gf_slotBefore(const HalfHourSlot& slot, i32 halfHours) {
    const i32 scale = ((slot.weekScale() - halfHours) % kHalfHoursOfWeek + kHalfHoursOfWeek) % kHalfHoursOfWeek;
    return {scale / kHalfHoursOfDay + 1, scale % kHalfHoursOfDay};
}

bool gf_staysBehind(const ParkPos& stand, const StandOption& option, const HalfHourSlot& slot) {
    if (option.cs2.empty()) return true;
    const HalfHourSlot next = gf_slotBefore(slot, -1);
    if (next.day == slot.day) return option.hours[static_cast<std::size_t>(next.halfHour)];
    return std::any_of(stand.options.begin(), stand.options.end(), [&](const StandOption& other) {
        return other.index > 0 && other.day == static_cast<u32>(next.day) && other.airline == option.airline &&
               other.type == option.type && other.hours[0];
    });
}

void lf_searchStands(const StandSearch& search, UsedFlights& used, std::vector<ParkPlanEntry>& out) {
    const HalfHourSlot wanted = gf_slotBefore(search.slot, search.offset);
    try {
        std::vector<StandOption*> candidates;
        candidates.reserve(kUsualCandidates);
        for (ParkPos& stand : gStands) {
            if (stand.reserved || stand.planned) continue;
            const StandLook look{stand, search, wanted, used};
            lf_collect(look, candidates);
            if (candidates.empty()) continue;
            lf_choose(look, candidates);
            StandOption& option = *candidates.front();
            if (lf_optionUsed(option, stand, used)) {
                option.index = 0;
                continue;
            }
            lf_take(look, option, out);
            used.add(out.back());
        }
    } catch (const std::exception& fault) {
        gf_logError(fmt::format("{}: day: {}, offset {}: {}", "lf_searchStands",
                                fmt::format("[{},{}]", wanted.day, wanted.halfHour), search.offset, fault.what()));
    }
}

}  // namespace hcr
