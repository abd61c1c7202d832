#include "core/model/geo.h"

#include <algorithm>
#include <cmath>

namespace hcr {
namespace {

constexpr f64 kTwoPi = 2 * kPi;
constexpr f64 kDiameterNm = 6875.493541569878;  // twice 3437.746770784939 nm
constexpr f64 kRadiansPerFoot = 4.787404208238998e-8;
constexpr f64 kKnownDegrees = 0.0001;

f64 lf_square(f64 x) {
    return x * x;
}

}  // namespace

f64 distanceNm(f64 latA, f64 lonA, f64 latB, f64 lonB) {
    const f64 sinLat = std::sin((latB - latA) * kDegToRad / 2);
    const f64 sinLon = std::sin((lonB - lonA) * kDegToRad / 2);
    const f64 a = lf_square(sinLat) + std::cos(latA * kDegToRad) * std::cos(latB * kDegToRad) * lf_square(sinLon);
    // Between antipodes rounding can carry a past 1.
    return std::atan2(std::sqrt(a), std::sqrt(std::max(0.0, 1 - a))) * kDiameterNm;
}

f64 bearingRad(f64 latA, f64 lonA, f64 latB, f64 lonB) {
    if (latA == latB && lonA == lonB) return 0;
    const f64 a = latA * kDegToRad;
    const f64 b = latB * kDegToRad;
    const f64 dLon = (lonB - lonA) * kDegToRad;
    const f64 y = std::sin(dLon) * std::cos(b);
    const f64 x = std::cos(a) * std::sin(b) - std::sin(a) * std::cos(b) * std::cos(dLon);
    const f64 bearing = std::atan2(y, x);
    return bearing < 0 ? bearing + kTwoPi : bearing;
}

LatLon destinationPoint(f64 lat, f64 lon, f64 bearing, f64 feet) {
    const f64 angle = feet * kRadiansPerFoot;
    const f64 a = lat * kDegToRad;
    const f64 sinB = std::sin(a) * std::cos(angle) + std::cos(a) * std::sin(angle) * std::cos(bearing);
    const f64 b = std::asin(std::clamp(sinB, -1.0, 1.0));
    const f64 dLon =
        std::atan2(std::sin(bearing) * std::sin(angle) * std::cos(a), std::cos(angle) - std::sin(a) * sinB);
    return {b * kRadToDeg, std::remainder(lon * kDegToRad + dLon, kTwoPi) * kRadToDeg};
}

f64 wrapPi(f64 radians) {
    if (radians > kPi) return radians - kTwoPi;
    if (radians < -kPi) return radians + kTwoPi;
    return radians;
}

f64 wrapTwoPi(f64 radians) {
    if (radians >= 0 && radians < kTwoPi) return radians;
    const f64 rest = std::fmod(radians, kTwoPi);
    const f64 wrapped = rest < 0 ? rest + kTwoPi : rest;
    return wrapped < kTwoPi ? wrapped : 0;  // a tiny negative angle is rounded up to a whole turn
}

bool samePosition(f64 latA, f64 lonA, f64 latB, f64 lonB) {
    return std::fabs(latA - latB) <= kSamePosition && std::fabs(lonA - lonB) <= kSamePosition;
}

bool positionKnown(f64 lat, f64 lon) {
    return std::fabs(lat) > kKnownDegrees || std::fabs(lon) > kKnownDegrees;
}

}  // namespace hcr
