#pragma once

#include "platform/types.h"

namespace hcr {

// Spherical geometry. Latitudes and longitudes in degrees, bearings in radians. Any thread.

inline constexpr f64 kPi = 3.14159265358979323846;
inline constexpr f64 kDegToRad = kPi / 180.0;  ///< radians in a degree
inline constexpr f64 kRadToDeg = 180.0 / kPi;  ///< degrees in a radian
inline constexpr f64 kFeetPerNm = 6076.11549;  ///< international feet
inline constexpr f64 kMetresPerNm = 1852.0;    ///< by definition

/// A place in degrees: north and east are positive.
struct LatLon {
    f64 lat = 0, lon = 0;
};

/// Great-circle distance in nautical miles by the haversine formula; one radian is 3437.746770784939 nm.
f64 distanceNm(f64 latA, f64 lonA, f64 latB, f64 lonB);
/// Initial great-circle bearing from A to B in 0..2 pi; 0 between equal points.
f64 bearingRad(f64 latA, f64 lonA, f64 latB, f64 lonB);
/// The point at a distance in feet along a bearing; longitude in -180..180.
LatLon destinationPoint(f64 lat, f64 lon, f64 bearing, f64 feet);

/// A difference of angles brought into +-pi by adding or subtracting 2 pi once.
f64 wrapPi(f64 radians);
/// An angle brought into 0..2 pi.
f64 wrapTwoPi(f64 radians);

/// Two positions count as equal when both coordinates agree within this many degrees.
inline constexpr f64 kSamePosition = 1e-8;
/// Whether two places in degrees agree within kSamePosition.
bool samePosition(f64 latA, f64 lonA, f64 latB, f64 lonB);
/// A position is known when one of its coordinates is above 0.0001 degrees in magnitude.
bool positionKnown(f64 lat, f64 lon);

}  // namespace hcr
