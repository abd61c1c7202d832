#include "parking/learned.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "core/model/aircraft_class.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "liveries/dbase.h"
#include "parking/airport_file.h"
#include "shell/log.h"
#include "shell/window_state.h"

namespace hcr {
namespace {

// Half hours without news for which an aircraft is still taken for the one that stood there before.
constexpr i32 kGapCargo = 12, kGapHeavy = 8, kGap = 6;
// Half hours before and behind now within which a flight's turn-round is looked for.
constexpr i32 kCoupledHeavy = 14, kCoupled = 10;
constexpr i32 kLastHalfHour = 47;

std::string_view lf_plain(std::string_view name) {
    if (name.ends_with('_')) name.remove_suffix(1);
    return name;
}

/// What is told of one aircraft on one stand.
struct Sighting {
    ParkPos& stand;
    const LiveAc& ac;
    const DbaseRecord& record;
    std::string_view reg;
    HalfHourSlot now;
    bool leaving;

    std::size_t bit() const { return static_cast<std::size_t>(now.halfHour); }
    bool concerns(const StandOption& option) const {
        return option.index != 0 && option.day == static_cast<u32>(now.day) && option.reg == reg;
    }
};

/// The archived file knows it on this day, but at other times: nothing is learned.
bool lf_archiveDisagrees(const Sighting& seen) {
    const std::vector<StandOption>& options = seen.stand.options;
    return std::any_of(options.begin(), options.end(), [&seen](const StandOption& option) {
        return seen.concerns(option) && option.hard == 1 && option.origin == 1 && !option.hours[seen.bit()];
    });
}

void lf_countUpdate() {
    ++gLearnedUpdates;
    gWindow.updatesCount = static_cast<i32>(gLearnedUpdates);
    gf_repaint(Band::airport);
}

void lf_add(const Sighting& seen) {
    StandOption option;
    option.hours.set(seen.bit());
    option.day = static_cast<u32>(seen.now.day);
    option.reg = seen.reg;
    option.cs1 = lf_plain(seen.ac.callsign);
    option.airline = seen.record.opr.empty() ? seen.record.airl : seen.record.opr;
    option.type = seen.record.type;
    option.hard = 1;
    option.coupled = seen.leaving;
    std::vector<StandOption>& options = seen.stand.options;
    const bool known = std::any_of(options.begin(), options.end(), [&option](const StandOption& other) {
        return other.reg == option.reg && other.day == option.day && other.hours == option.hours;
    });
    if (known) return;
    option.index = static_cast<u32>(options.size() + 1);
    options.push_back(std::move(option));
    lf_countUpdate();
}

void lf_addCallsign(StandOption& option, std::string_view callsign) {
    const std::string_view name = lf_plain(callsign);
    if (name.empty()) return;
    if (option.cs1.empty()) {
        option.cs1 = name;
    } else if (option.cs1 != name && option.cs2 != name) {
        option.cs2 = name;
    }
}

i32 lf_longestGap(const LiveAc& ac) {
    if (ac.cargo) return kGapCargo;
    return ac.acClass == Heavy ? kGapHeavy : kGap;
}

/// Lets the option reach up to now; false when the aircraft was last seen too long ago.
bool lf_extend(const Sighting& seen, StandOption& option, i32 last) {
    const i32 gap = seen.now.halfHour - last;
    if (gap < 1 || gap >= lf_longestGap(seen.ac)) return false;
    for (i32 halfHour = last + 1; halfHour <= seen.now.halfHour; ++halfHour) {
        option.hours.set(static_cast<std::size_t>(halfHour));
    }
    lf_addCallsign(option, seen.ac.callsign);
    return true;
}

i32 lf_lastHalfHour(const HalfHours& hours) {
    for (i32 halfHour = kLastHalfHour; halfHour >= 0; --halfHour) {
        if (hours[static_cast<std::size_t>(halfHour)]) return halfHour;
    }
    return -1;
}

void lf_learn(const Sighting& seen) {
    if (lf_archiveDisagrees(seen)) return;
    std::vector<StandOption>& options = seen.stand.options;
    const auto own = std::find_if(options.begin(), options.end(), [&seen](const StandOption& option) {
        return seen.concerns(option) && option.hard == 1 && option.origin == 0;
    });
    if (own == options.end()) {
        lf_add(seen);
        return;
    }
    const bool now = own->hours[seen.bit()];
    if (own->coupled && !now) {  // a second visit on one day
        lf_add(seen);
        return;
    }
    if (!now) {
        const i32 last = lf_lastHalfHour(own->hours);
        if (last < 0) return;
        const auto at = own - options.begin();
        if (!lf_extend(seen, *own, last)) lf_add(seen);
        if (seen.leaving) options[static_cast<std::size_t>(at)].coupled = true;
        return;
    }
    if (seen.leaving) own->coupled = true;
}

HalfHours lf_around(const HalfHourSlot& slot, i32 reach) {
    HalfHours mask;
    const i32 last = std::min(slot.halfHour + reach, kLastHalfHour);
    for (i32 halfHour = std::max(slot.halfHour - reach, 0); halfHour <= last; ++halfHour) {
        mask.set(static_cast<std::size_t>(halfHour));
    }
    return mask;
}

}  // namespace

void lf_addRealStandOption(u32 standNumber, LiveAc& ac, i32 kind) {
    const HalfHourSlot now = gSlot;
    try {
        const std::string reg(lf_plain(ac.registration));
        const DbaseRecord* record = reg.empty() ? nullptr : gf_dbaseRecord(reg);
        if (record == nullptr) return;
        const std::string_view airline = record->opr.empty() ? record->airl : record->opr;
        if (!airline.empty()) ac.airline = airline;
        if (!record->type.empty()) ac.model = record->type;
        ParkPos* stand = findStand(standNumber);
        if (stand == nullptr) return;
        lf_learn(Sighting{*stand, ac, *record, reg, now, kind == pushesBack || kind == reportedAway});
    } catch (const std::exception& fault) {
        gf_logError(fmt::format("{}: hh_now: {}, {}", "lf_addRealStandOption", now.halfHour, fault.what()));
    }
}

void lf_searchForCoupledCsAroundThisTime(const HalfHourSlot& slot, LiveAc& ac) {
    const HalfHours mask = lf_around(slot, ac.acClass == Heavy ? kCoupledHeavy : kCoupled);
    const std::string_view callsign = lf_plain(ac.callsign);
    for (const ParkPos& stand : gStands) {
        for (const StandOption& option : stand.options) {
            const bool counts = option.index != 0 && option.day == static_cast<u32>(slot.day) &&
                                (option.hours & mask).any() && !option.cs2.empty() && option.airline == ac.airline;
            if (!counts || (option.cs1 != callsign && option.cs2 != callsign)) continue;
            ac.coupledCs1 = option.cs1;
            ac.coupledCs2 = option.cs2;
            return;
        }
    }
}

}  // namespace hcr
