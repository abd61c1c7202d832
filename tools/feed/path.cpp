#include "tools/feed/path.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace hcr {
namespace {

constexpr f64 kFeetPerMetre = kFeetPerNm / kMetresPerNm;
constexpr f64 kKnot = kMetresPerNm / 3600;  // metres per second
constexpr f64 kStepSeconds = 0.25;
constexpr f64 kSlowest = 0.4;        // m/s; a braking aircraft still arrives
constexpr f64 kShareOfLeg = 0.49;    // of a leg for the turn at each of its ends
constexpr f64 kRoundingSeconds = 4;  // half the window over which height and turn rate are averaged
constexpr int kRoundingSamples = 4;  // on each side

f64 lf_wrapPi(f64 angle) {
    return std::remainder(angle, 2 * kPi);
}

std::size_t lf_segment(const std::vector<PathKey>& keys, f64 along) {
    const auto next =
        std::upper_bound(keys.begin(), keys.end(), along, [](f64 value, const PathKey& key) { return value < key.at; });
    return static_cast<std::size_t>(std::distance(keys.begin(), next));
}

f64 lf_linear(const std::vector<PathKey>& keys, f64 along) {
    const std::size_t i = lf_segment(keys, along);
    if (i == 0) return keys.front().value;
    if (i == keys.size()) return keys.back().value;
    const PathKey& a = keys[i - 1];
    const PathKey& b = keys[i];
    return a.value + (b.value - a.value) * (along - a.at) / (b.at - a.at);
}

// Speed in m/s at a place: its square is proportional to the way between two keys.
f64 lf_speed(const std::vector<PathKey>& keys, f64 along) {
    const std::size_t i = lf_segment(keys, along);
    f64 square = 0;
    if (i == 0 || i == keys.size()) {
        const f64 edge = (i == 0 ? keys.front() : keys.back()).value;
        square = edge * edge;
    } else {
        const PathKey& a = keys[i - 1];
        const PathKey& b = keys[i];
        const f64 share = (along - a.at) / (b.at - a.at);
        square = a.value * a.value + (b.value * b.value - a.value * a.value) * share;
    }
    return std::max(std::sqrt(square) * kKnot, kSlowest);
}

template <typename Function>
f64 lf_averaged(f64 along, f64 reach, Function value) {
    f64 sum = 0;
    for (int i = -kRoundingSamples; i <= kRoundingSamples; ++i) {
        sum += value(along + reach * i / kRoundingSamples);
    }
    return sum / (2 * kRoundingSamples + 1);
}

}  // namespace

FlatPoint operator+(FlatPoint a, FlatPoint b) {
    return {a.east + b.east, a.north + b.north};
}

FlatPoint operator-(FlatPoint a, FlatPoint b) {
    return {a.east - b.east, a.north - b.north};
}

FlatPoint operator*(FlatPoint a, f64 factor) {
    return {a.east * factor, a.north * factor};
}

f64 flatLength(FlatPoint a) {
    return std::hypot(a.east, a.north);
}

FlatPoint flatDirection(f64 bearing) {
    return {std::sin(bearing), std::cos(bearing)};
}

f64 flatBearing(FlatPoint a) {
    return std::atan2(a.east, a.north);
}

LatLon flatToGeo(LatLon origin, FlatPoint point) {
    return destinationPoint(origin.lat, origin.lon, flatBearing(point), flatLength(point) * kFeetPerMetre);
}

FlatPoint geoToFlat(LatLon origin, LatLon point) {
    const f64 distance = distanceNm(origin.lat, origin.lon, point.lat, point.lon) * kMetresPerNm;
    return flatDirection(bearingRad(origin.lat, origin.lon, point.lat, point.lon)) * distance;
}

FlatPath roundedPath(const std::vector<Corner>& corners) {
    std::vector<Corner> apart;
    for (const Corner& corner : corners) {
        if (apart.empty() || flatLength(corner.at - apart.back().at) >= 1) apart.push_back(corner);
    }
    FlatPath path;
    const auto add = [&path](PathPiece piece) {
        if (piece.length <= 0) return;
        piece.start = path.length;
        path.length += piece.length;
        path.pieces.push_back(piece);
    };
    if (apart.empty()) return path;
    FlatPoint from = apart.front().at;
    for (std::size_t i = 1; i < apart.size(); ++i) {
        const FlatPoint leg = apart[i].at - apart[i - 1].at;
        const f64 bearing = flatBearing(leg);
        const bool last = i + 1 == apart.size();
        const f64 turn = last ? 0 : lf_wrapPi(flatBearing(apart[i + 1].at - apart[i].at) - bearing);
        f64 cut = 0;
        if (std::abs(turn) > 1e-6) {
            const f64 nextLeg = flatLength(apart[i + 1].at - apart[i].at);
            const f64 room = kShareOfLeg * std::min(flatLength(leg), nextLeg);
            cut = std::min(apart[i].radius * std::tan(std::abs(turn) / 2), room);
        }
        const FlatPoint arcStart = apart[i].at - flatDirection(bearing) * cut;
        add({.length = flatLength(arcStart - from), .from = from, .bearing = bearing});
        from = arcStart;
        if (cut > 0) {
            const f64 radius = cut / std::tan(std::abs(turn) / 2);
            add({.length = radius * std::abs(turn),
                 .from = from,
                 .bearing = bearing,
                 .curvature = (turn > 0 ? 1 : -1) / radius});
            from = apart[i].at + flatDirection(bearing + turn) * cut;
        }
    }
    if (path.pieces.empty()) path.pieces.push_back({.from = from});
    return path;
}

PathPoint pathPoint(const FlatPath& path, f64 along) {
    if (path.pieces.empty()) return {};
    const auto next = std::upper_bound(path.pieces.begin(), path.pieces.end(), along,
                                       [](f64 value, const PathPiece& piece) { return value < piece.start; });
    const PathPiece& piece = next == path.pieces.begin() ? *next : *std::prev(next);
    const f64 inside = along - piece.start;
    const f64 curved = std::clamp(inside, 0.0, piece.length);
    PathPoint point;
    point.bearing = piece.bearing + piece.curvature * curved;
    if (piece.curvature == 0) {
        point.at = piece.from + flatDirection(piece.bearing) * inside;
        return point;
    }
    const f64 radius = 1 / piece.curvature;
    const FlatPoint centre = piece.from + flatDirection(piece.bearing + kPi / 2) * radius;
    point.at = centre - flatDirection(point.bearing + kPi / 2) * radius;
    point.at = point.at + flatDirection(point.bearing) * (inside - curved);
    point.curvature = inside == curved ? piece.curvature : 0;
    return point;
}

std::vector<TravelStep> travel(const std::vector<Stage>& stages) {
    std::vector<TravelStep> steps;
    f64 time = 0;
    for (const Stage& stage : stages) {
        const f64 waitEnd = time + stage.waitBefore;
        for (; time < waitEnd; time += kStepSeconds) steps.push_back({&stage, time, 0, 0});
        f64 along = 0;
        while (along < stage.path.length) {
            const f64 speed = lf_speed(stage.speeds, along);
            steps.push_back({&stage, time, along, speed});
            const f64 after = lf_speed(stage.speeds, along + speed * kStepSeconds);
            along += (speed + after) / 2 * kStepSeconds;
            time += kStepSeconds;
        }
        steps.push_back({&stage, time, stage.path.length, stage.speeds.back().value * kKnot});
        time += kStepSeconds;
    }
    return steps;
}

f64 heightOf(const TravelStep& step) {
    return lf_averaged(step.along, step.metresPerSecond * kRoundingSeconds,
                       [&](f64 at) { return lf_linear(step.stage->heights, at); });
}

Motion motionOf(const TravelStep& step) {
    const PathPoint point = pathPoint(step.stage->path, step.along);
    Motion motion;
    motion.time = step.time;
    motion.at = point.at;
    motion.height = heightOf(step);
    TravelStep ahead = step;  // a second on
    ahead.along += step.metresPerSecond;
    motion.vs = (heightOf(ahead) - motion.height) * 60;
    motion.speed = step.metresPerSecond / kKnot;
    motion.track = point.bearing;
    const f64 curvature = lf_averaged(step.along, step.metresPerSecond * kRoundingSeconds,
                                      [&](f64 at) { return pathPoint(step.stage->path, at).curvature; });
    motion.turnRate = curvature * step.metresPerSecond;
    motion.reverse = step.stage->reverse;
    return motion;
}

f64 travelTime(const std::vector<Stage>& stages) {
    const std::vector<TravelStep> steps = travel(stages);
    return steps.empty() ? 0 : steps.back().time;
}

}  // namespace hcr
