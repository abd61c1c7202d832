#pragma once

#include <vector>

#include "core/model/geo.h"
#include "platform/types.h"

namespace hcr {

// Motion of the generated aircraft: a path of straight lines and arcs in a flat picture around one place, travelled
// with given speeds and heights. No globals; any thread.

/// Metres east and north of a place.
struct FlatPoint {
    f64 east = 0, north = 0;
};
FlatPoint operator+(FlatPoint a, FlatPoint b);
FlatPoint operator-(FlatPoint a, FlatPoint b);
FlatPoint operator*(FlatPoint a, f64 factor);
f64 flatLength(FlatPoint a);
/// The unit vector along a bearing in radians.
FlatPoint flatDirection(f64 bearing);
f64 flatBearing(FlatPoint a);
LatLon flatToGeo(LatLon origin, FlatPoint point);
FlatPoint geoToFlat(LatLon origin, LatLon point);

/// A straight line or an arc.
struct PathPiece {
    f64 start = 0, length = 0;  ///< metres along the path
    FlatPoint from;
    f64 bearing = 0;    ///< at the start, radians
    f64 curvature = 0;  ///< 1/m, positive to the right
};

struct FlatPath {
    std::vector<PathPiece> pieces;
    f64 length = 0;  ///< metres
};

/// A point to pass, and the radius in metres of the turn there.
struct Corner {
    FlatPoint at;
    f64 radius = 0;
};
/// Lines between the corners with rounded turns; a radius shrinks where the lines are too short for it. Points that
/// lie closer together than a metre count as one. The first and the last point are met exactly.
FlatPath roundedPath(const std::vector<Corner>& corners);

struct PathPoint {
    FlatPoint at;
    f64 bearing = 0;    ///< direction of the path, radians
    f64 curvature = 0;  ///< 1/m, positive to the right
};
/// The point at so many metres along; beyond the ends the path goes straight on.
PathPoint pathPoint(const FlatPath& path, f64 along);

/// A value at a place along the path, metres. Speeds change between two keys with constant acceleration, heights in
/// proportion to the way, rounded off at the keys.
struct PathKey {
    f64 at = 0;
    f64 value = 0;
};

/// One stretch of a flight, from standstill to standstill or to the end.
struct Stage {
    FlatPath path;
    std::vector<PathKey> speeds;   ///< knots over the ground, at least one
    std::vector<PathKey> heights;  ///< feet above sea level, at least one
    bool reverse = false;          ///< pushed: the nose points against the motion
    f64 waitBefore = 0;            ///< seconds of standing at the start
};

/// What an aircraft does at one moment.
struct Motion {
    f64 time = 0;  ///< seconds since the flight's first stage began
    FlatPoint at;
    f64 height = 0;    ///< feet above sea level
    f64 vs = 0;        ///< feet per minute
    f64 speed = 0;     ///< knots over the ground
    f64 track = 0;     ///< direction of the motion in the flat picture, radians; where it stands, of the motion to come
    f64 turnRate = 0;  ///< radians per second, positive to the right
    bool reverse = false;
};

/// A moment of a flight, before its motion is worked out.
struct TravelStep {
    const Stage* stage = nullptr;
    f64 time = 0;             ///< as in Motion
    f64 along = 0;            ///< metres along the stage's path
    f64 metresPerSecond = 0;  ///< 0 while it waits
};
/// All moments of a flight, a quarter of a second apart. They point into `stages`.
std::vector<TravelStep> travel(const std::vector<Stage>& stages);
Motion motionOf(const TravelStep& step);
/// motionOf(step).height
f64 heightOf(const TravelStep& step);
/// Seconds that the stages take, waits included.
f64 travelTime(const std::vector<Stage>& stages);

}  // namespace hcr
