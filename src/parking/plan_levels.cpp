#include "parking/plan_levels.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "core/model/tables.h"
#include "parking/history_search.h"
#include "parking/plan_state.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "shell/random.h"
#include "shell/text.h"
#include "shell/window_state.h"

namespace hcr {
namespace {

constexpr i32 kFewStands = 3, kHalfPercent = 50;

struct Level {
    bool real, dayMode;
};

const char* lf_levelName(const Level& level) {
    if (level.dayMode) return level.real ? "real" : "soft";
    return level.real ? "week/real" : "week/soft";
}

bool lf_isAllowed(const Level& level) {
    return (level.real || PARK_SOFT.current) && (level.dayMode || WEEK.current);
}

i32 lf_plannedStands() {
    return static_cast<i32>(std::count_if(gStands.begin(), gStands.end(), [](const ParkPos& s) { return s.planned; }));
}

void lf_append(std::vector<ParkPlanEntry>& out) {
    gParkPlanQueue.insert(gParkPlanQueue.end(), std::make_move_iterator(out.begin()),
                          std::make_move_iterator(out.end()));
    out.clear();
}

void lf_tellFound(const Level& level, i32 found, const HalfHourSlot& slot, i32 offset) {
    if (found < 1) return;
    gf_log(fmt::format(
        "{} {} position{} found, Max fit={:.1F} hours{}{}", found, lf_levelName(level),
        gf_plural(static_cast<u64>(found)), MAX_FIT_FL.current.load(), fmt::format(", day {}", slot.day),
        fmt::format(", hh:{} or {:.1F} hrs, fit: {:.1F} hour", slot.halfHour, slot.halfHour / 2.0, offset / 2.0)));
    gWindow.planSoft = !level.real;
    gWindow.planWeek = !level.dayMode;
    gf_repaint(Band::parking);
}

/// True when the wanted number of stands is planned; the last finds are then in `out`, those before in the queue.
bool lf_searchUpToMaxFit(const HalfHourSlot& slot, const Level& level, i32 wanted, std::vector<ParkPlanEntry>& out) {
    if (wanted == 0) return true;
    const i32 before = lf_plannedStands();
    UsedFlights used = gf_usedFlights(gStands.size());
    i32 offset = 0, now = before;
    bool enough = false;
    for (;;) {
        lf_searchStands(StandSearch{slot, level.real, level.dayMode, offset}, used, out);
        now = lf_plannedStands();
        enough = wanted <= now;
        if (enough) break;
        lf_append(out);
        if (++offset > MAX_FIT.current) break;
    }
    (level.real ? gRealFit : gSoftFit) = offset;
    if (level.real) gSoftFit = -1;
    lf_tellFound(level, now - before, slot, offset);
    return enough;
}

i32 lf_excess(i32 wanted, i32 existing) {
    return static_cast<i32>(gParkPlanQueue.size()) - wanted + existing;
}

void lf_cutEnd(std::vector<ParkPlanEntry>& entries, i32 count) {
    entries.resize(entries.size() - std::min(entries.size(), static_cast<std::size_t>(std::max(count, 0))));
}

void lf_shuffle(std::vector<ParkPlanEntry>& entries) {
    if (RANDOM.current) std::shuffle(entries.begin(), entries.end(), gf_randomGenerator());
}

void lf_planLevel(const HalfHourSlot& slot, i32 wanted, i32 existing, const Level& level) {
    std::vector<ParkPlanEntry> out;
    if (!lf_searchUpToMaxFit(slot, level, wanted, out)) return;
    if (const i32 excess = lf_excess(wanted, existing); excess >= 1 && !out.empty()) {
        lf_shuffle(out);
        if (excess <= static_cast<i32>(out.size())) lf_cutEnd(out, excess);
    }
    lf_append(out);
    lf_cutEnd(gParkPlanQueue, lf_excess(wanted, existing));
}

}  // namespace

i32 gf_wantedParked() {
    const i32 most = MAX_PARK_SEL.current;
    if (most <= 0) {
        gMaxParked = 0;
        gParkedPercent = parking_percentage.current;
        return 0;
    }
    const i32 custom = CUSTOM_PARKING_PERCENTAGE.current;
    const i32 percent = custom >= 0 ? custom : parking_percentage.current.load();
    const auto stands = static_cast<i32>(gStands.size());
    const bool byPercent = stands > 1 && (stands > kFewStands || percent >= kHalfPercent);
    const i32 wanted = byPercent ? static_cast<i32>(std::lround(percent * stands / 100.0)) : 1;
    gMaxParked = std::min(most, wanted);
    gParkedPercent = gf_percentage(gMaxParked, stands);
    return gMaxParked;
}

void lf_planAllLevels(const HalfHourSlot& slot, i32 wanted, i32 existing) {
    static constexpr Level kLevels[] = {{true, true}, {true, false}, {false, true}, {false, false}};
    gRealFit = 0;
    gSoftFit = -1;
    for (const Level& level : kLevels) {
        const bool first = &level == kLevels;
        if (first || (lf_isAllowed(level) && lf_excess(wanted, existing) < 0)) {
            lf_planLevel(slot, wanted, existing, level);
        }
    }
}

}  // namespace hcr
