#include "engine/life_cycle.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "core/model/aircraft_class.h"
#include "core/model/geo.h"
#include "core/model/labels.h"
#include "core/model/park_state.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "engine/extension.h"
#include "engine/identity.h"
#include "engine/intake.h"
#include "liveries/class_values.h"
#include "liveries/dbase.h"
#include "shell/text.h"

namespace hcr {
namespace {

constexpr f64 kJumpFactor = 10, kJumpFromKt = 5, kJumpToKt = 80;
constexpr f64 kFastKt = 120, kSlowKt = 30;  // between them every report counts
constexpr f64 kNewerS = 1;                  // a report less than this newer than the last is the same one
constexpr f64 kDoubtS = 30;                 // a doubtful speed that is told again within this time is believed
constexpr f64 kStraightDegAir = 1, kStraightDegGround = 2;
constexpr f64 kLeastAirNm = 450 / kMetresPerNm;
constexpr f64 kLeastGroundNm = 20 / kMetresPerNm;
constexpr f64 kLongestGapS = 15;
constexpr f64 kHoverBandFt = 108;  // too low to fly and too high to stand
constexpr f64 kHoverTopFt = 10000;
constexpr f64 kNoAirportAltFt = -1000;
constexpr std::size_t kUsualStream = 16;  // reports in 30 seconds, and some

bool lf_jumps(f64 v, f64 w) {
    return (w > kJumpFromKt && v >= w * kJumpFactor) || (v > kJumpFromKt && w >= v * kJumpFactor) ||
           (w <= kJumpFromKt && v >= kJumpToKt) || (v <= kJumpFromKt && w >= kJumpToKt);
}

/// Seconds in which so many nautical miles are flown at `speed` knots.
f64 lf_secondsFor(f64 nm, f64 speed) {
    return speed == 0 ? kLongestGapS : nm / (speed / 3600);
}

/// True when the aircraft has moved too little for the report to tell anything new.
bool lf_tellsNothing(const LiveAc& ac, const PosSample& sample, f64 gap) {
    if (ac.extendCount >= 1) return false;
    const f64 turn = std::abs(sample.track - ac.stream.back().track);
    if (sample.airborne) {
        return sample.speed > kFastKt && turn <= kStraightDegAir && gap <= lf_secondsFor(kLeastAirNm, sample.speed);
    }
    return sample.speed <= kSlowKt && turn <= kStraightDegGround &&
           gap <= std::min(kLongestGapS, lf_secondsFor(kLeastGroundNm, sample.speed));
}

/// True for a speed that can't follow the last one. A second report in a row that says the same is believed.
bool lf_isDoubtful(LiveAc& ac, const TrafficReport& report) {
    const f64 speed = report.sample.speed;
    if (!lf_jumps(speed, ac.stream.back().speed)) {
        ac.doubtedAt = 0;
        return false;
    }
    const f64 since = report.timestamp - ac.doubtedAt;
    if (ac.doubtedAt != 0 && since > kNewerS && since <= kDoubtS && !lf_jumps(speed, ac.doubtedSpeed)) {
        ac.doubtedAt = 0;
        return false;
    }
    ac.doubtedAt = report.timestamp;
    ac.doubtedSpeed = speed;
    return true;
}

bool lf_isUseless(LiveAc& ac, const TrafficReport& report) {
    if (ac.stream.empty()) return false;
    const f64 gap = report.timestamp - ac.lastTimestamp;
    return gap <= kNewerS || lf_isDoubtful(ac, report) || lf_tellsNothing(ac, report.sample, gap);
}

/// True when a flying aircraft is told in its last place again: its feed is kept alive without news of it.
bool lf_repeatsPlace(const LiveAc& ac, const PosSample& sample) {
    return sample.airborne && !ac.onGround && ac.acClass != Rotorcraft &&
           samePosition(ac.reportLat, ac.reportLon, sample.lat, sample.lon);
}

void lf_takeRepeat(LiveAc& ac) {
    ++ac.repeats;
    if (ac.lifeState == LifeState::active) keepExtending(ac);
}

void lf_rememberPlace(LiveAc& ac, const PosSample& sample) {
    ac.reportLat = sample.lat;
    ac.reportLon = sample.lon;
    ac.repeats = 0;
    ac.reportTick = simTick;
}

bool lf_hovers(const PosSample& sample) {
    return sample.alt > 0 && sample.alt < kHoverTopFt &&
           std::abs(sample.alt - gf_parkAirportAlt(kNoAirportAltFt)) <= kHoverBandFt;
}

bool lf_isSecondAddress(const TrafficReport& report) {
    if (report.callsign.empty()) return false;
    return std::any_of(gLiveAcs.begin(), gLiveAcs.end(), [&report](const LiveAc& ac) {
        return ac.callsign == report.callsign && ac.model == report.model;
    });
}

void lf_decodeNew(TrafficReport& report) {
    if (const DbaseRecord* record = report.registration.empty() ? nullptr : gf_dbaseRecord(report.registration)) {
        if (!record->type.empty()) report.model = record->type;
    }
    if (!gf_isValidType(report.model)) return;
    const i32 acClass = gf_acClass(report.model);
    if (!classShown(acClass) || lf_hovers(report.sample)) return;
    report.coupledCs1 = report.callsign;
    report.coupledCs2.clear();
    report.coupledSearched = false;

    LiveAc& ac = gLiveAcs.emplace_back();
    static_cast<FlightTexts&>(ac) = std::move(static_cast<FlightTexts&>(report));
    ac.hexid = report.hexid;
    setClassValues(ac);
    ac.stream.reserve(kUsualStream);
    limitSample(report.sample);
    ac.stream.push_back(report.sample);
    ac.lastTimestamp = report.timestamp;
    lf_rememberPlace(ac, report.sample);
}

void lf_update(LiveAc& ac, const TrafficReport& report) {
    if (ac.lifeState == LifeState::liveryrespawn || ac.lifeState == LifeState::removingfromsim) return;
    if (lf_isUseless(ac, report)) return;
    if (ac.lifeState == LifeState::buffer && lf_hovers(report.sample)) return;
    if (!lf_checkIdentity(ac, report)) return;
    ac.lastTimestamp = report.timestamp;
    if (lf_repeatsPlace(ac, report.sample)) {
        lf_takeRepeat(ac);
        return;
    }
    lf_rememberPlace(ac, report.sample);
    decodeExisting(ac, report.sample);
}

}  // namespace

void gf_decodeReport(TrafficReport& report) {
    if (LiveAc* ac = findLiveByHexid(report.hexid)) {
        lf_update(*ac, report);
    } else if (!lf_isSecondAddress(report)) {
        lf_decodeNew(report);
    }
}

}  // namespace hcr
