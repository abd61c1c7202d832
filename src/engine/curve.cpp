#include "engine/curve.h"

#include <algorithm>
#include <cmath>

#include "engine/leg.h"

namespace hcr {
namespace {

constexpr f64 kMetresPerDegree = 111132.95;  // of latitude
constexpr f64 kNarrowest = 1e-6;             // keeps the poles from being divided by

f64 lf_metresPerDegreeLon(const GroundCurve& curve) {
    return kMetresPerDegree * std::max(std::cos(curve.originLat * kDegToRad), kNarrowest);
}

}  // namespace

GroundCurve makeCurve(LatLon origin, LatLon control, LatLon end) {
    GroundCurve curve;
    curve.originLat = origin.lat;
    curve.originLon = origin.lon;
    const f64 perLon = lf_metresPerDegreeLon(curve);
    curve.p1y = (control.lat - origin.lat) * kMetresPerDegree;
    curve.p1x = shortWay(control.lon - origin.lon) * perLon;
    curve.p2y = (end.lat - origin.lat) * kMetresPerDegree;
    curve.p2x = shortWay(end.lon - origin.lon) * perLon;
    return curve;
}

bool lf_evaluateCurve(const GroundCurve& curve, f64 t, LatLon& position, f64& angle) {
    if (curve.absent() || !(t >= curve.tMin && t <= curve.tMax)) return false;
    const f64 u = (t - curve.tMin) / (curve.tMax - curve.tMin);
    const f64 v = 1 - u;
    const f64 north = 2 * v * u * curve.p1y + u * u * curve.p2y;
    const f64 east = 2 * v * u * curve.p1x + u * u * curve.p2x;
    position.lat = curve.originLat + north / kMetresPerDegree;
    position.lon = curve.originLon + east / lf_metresPerDegreeLon(curve);
    const f64 tangentNorth = 2 * v * curve.p1y + 2 * u * (curve.p2y - curve.p1y);
    const f64 tangentEast = 2 * v * curve.p1x + 2 * u * (curve.p2x - curve.p1x);
    angle = wrapTwoPi(std::atan2(tangentEast, tangentNorth));
    return true;
}

}  // namespace hcr
