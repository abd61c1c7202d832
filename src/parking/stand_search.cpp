#include "parking/stand_search.h"

#include <algorithm>

#include "core/model/aircraft_class.h"
#include "core/model/tables.h"
#include "liveries/dbase.h"
#include "parking/airport_file.h"
#include "shell/window_state.h"

namespace hcr {
namespace {

constexpr f64 kNarrowNm = 1.8 / kMetresPerNm;   // so much of the span may reach over the stand's edge
constexpr f64 kInMiddleNm = 20 / kMetresPerNm;  // who stops so near stands there, whatever the stand's size
constexpr f64 kByFlightNm = 85 / kMetresPerNm;  // as far as a known flight may be from its stand
constexpr f64 kWidenedNm = 1.0 / kMetresPerNm;  // a stand is as wide as the aircraft but for that
constexpr f64 kNowhereNm = 900;

struct Candidate {
    ParkPos* stand = nullptr;
    f64 distance = kNowhereNm;

    bool take(ParkPos& other, f64 d) {
        if (d >= distance) return false;
        stand = &other;
        distance = d;
        return true;
    }
};

bool lf_knowsFlight(const ParkPos& stand, const LiveAc& ac) {
    const auto counts = [](const StandOption& option) { return option.index != 0 && option.hard == 1; };
    return std::any_of(stand.options.begin(), stand.options.end(), [&](const StandOption& option) {
        if (!counts(option)) return false;
        const bool sameFlight = option.cs1 == ac.callsign || option.cs2 == ac.callsign;
        return sameFlight || (option.airline == ac.airline && option.type == ac.model);
    });
}

void lf_widen(ParkPos& stand, f64 half) {
    stand.radius = half - kWidenedNm;
    stand.radiusChanged = true;
    ++gLearnedUpdates;
    gWindow.updatesCount = static_cast<i32>(gLearnedUpdates);
    gf_repaint(Band::airport);
}

}  // namespace

ParkPos* gf_findStand(LatLon point, const LiveAc& ac, f64 maxDist, bool allowCallsignMatch) {
    const f64 half = gf_halfSpanNm(ac.model);
    Candidate best, byCallsign;
    const ParkPos* widened = nullptr;
    for (ParkPos& stand : gStands) {
        if (stand.takenByLive) continue;
        const f64 distance = distanceNm(point.lat, point.lon, stand.lat, stand.lon);
        const bool fits = half - stand.radius <= kNarrowNm;
        if (distance <= maxDist && distance < best.distance) {
            if (!fits && distance > kInMiddleNm) continue;
            best.take(stand, distance);
            if (!fits) widened = &stand;
            allowCallsignMatch = false;
        } else if (allowCallsignMatch && distance <= kByFlightNm && distance < byCallsign.distance && fits &&
                   !ac.callsign.empty() && lf_knowsFlight(stand, ac)) {
            byCallsign.take(stand, distance);
        }
    }
    ParkPos* const found = best.stand != nullptr ? best.stand : byCallsign.stand;
    if (found == nullptr || found->heli != (ac.acClass == Rotorcraft)) return nullptr;
    if (found == widened) lf_widen(*found, half);
    return found;
}

}  // namespace hcr
