#include "tools/feed/flights.h"

#include <algorithm>
#include <cmath>

namespace hcr {
namespace {

constexpr f64 kNm = kMetresPerNm;
constexpr f64 kKnot = kMetresPerNm / 3600;
constexpr f64 kGravity = 9.80665;
constexpr f64 kBank = 24 * kDegToRad;      // in turns of airliners
constexpr f64 kTaxiwayOffset = 180;        // m from the runway's middle
constexpr f64 kHoldOffset = 85;            // m
constexpr f64 kStandLane = 80;             // m between a stand and the lane behind it
constexpr f64 kTouchdownPoint = 350;       // m behind the threshold
constexpr f64 kBraking = 1.9;              // m/s2 on the runway
constexpr f64 kTakeOffAcceleration = 2.1;  // m/s2
constexpr f64 kTaxiKt = 18, kTaxiTurnKt = 9, kStandKt = 4, kPushKt = 3;
constexpr f64 kExitKt = 24;
constexpr f64 kTaxiRamp = 70;  // m over which taxi speed changes

struct Row {
    f64 nm = 0;
    f64 value = 0;
};
// Distance to touchdown and speed beyond the approach speed is left to the type.
constexpr Row kArrivalSpeeds[] = {{75, 400}, {45, 330}, {25, 260}, {14, 210}, {9, 178}};
constexpr Row kArrivalHeights[] = {{75, 22000}, {45, 13000}, {22, 6000}, {13, 3000}, {9.42, 3000}, {0, 0}};
constexpr Row kDepartureSpeeds[] = {{2, 22}, {6, 65}, {14, 100}, {27, 150}, {50, 235}, {80, 290}};  // above lift-off
constexpr Row kDepartureHeights[] = {{0, 0}, {1, 650}, {6, 3600}, {22, 10500}, {75, 27000}, {100, 33000}};

f64 lf_turnRadius(f64 knots, f64 bank = kBank) {
    const f64 v = knots * kKnot;
    return v * v / (kGravity * std::tan(bank));
}

void lf_tidy(std::vector<PathKey>& keys) {
    std::stable_sort(keys.begin(), keys.end(), [](const PathKey& a, const PathKey& b) { return a.at < b.at; });
    const auto last =
        std::unique(keys.begin(), keys.end(), [](const PathKey& a, const PathKey& b) { return b.at - a.at < 0.5; });
    keys.erase(last, keys.end());
}

// Speeds of taxiing between two places of a path: slow in turns, quicker on the straights.
void lf_taxiSpeeds(const FlatPath& path, f64 begin, f64 end, std::vector<PathKey>& keys) {
    constexpr f64 kRealTurn = 15 * kDegToRad;
    for (const PathPiece& piece : path.pieces) {
        const f64 pieceEnd = piece.start + piece.length;
        if (piece.start < begin || pieceEnd > end) continue;
        if (std::abs(piece.curvature) * piece.length > kRealTurn) {
            keys.push_back({piece.start, kTaxiTurnKt});
            keys.push_back({pieceEnd, kTaxiTurnKt});
        } else if (piece.length > 2.5 * kTaxiRamp) {
            keys.push_back({piece.start + kTaxiRamp, kTaxiKt});
            keys.push_back({pieceEnd - kTaxiRamp, kTaxiKt});
        }
    }
}

void lf_rollToStop(f64 length, std::vector<PathKey>& keys) {
    keys.push_back({length - 25, kStandKt});
    keys.push_back({length, 0});
}

// Place along the path that lies nearest to a point on one of its straights.
f64 lf_nearest(const FlatPath& path, FlatPoint point) {
    f64 best = 0, bestDistance = 1e12;
    for (const PathPiece& piece : path.pieces) {
        if (piece.curvature != 0) continue;
        const FlatPoint direction = flatDirection(piece.bearing);
        const FlatPoint offset = point - piece.from;
        const f64 inside = std::clamp(offset.east * direction.east + offset.north * direction.north, 0.0, piece.length);
        const f64 distance = flatLength(offset - direction * inside);
        if (distance < bestDistance) {
            bestDistance = distance;
            best = piece.start + inside;
        }
    }
    return best;
}

FlatPoint lf_laneBehind(const FlatStand& stand) {
    return stand.at - flatDirection(stand.heading) * kStandLane;
}

// The way in: from the border of the region to the start of the final approach.
std::vector<Corner> lf_approachCorners(FeedRandom& random, const Airfield& field) {
    constexpr f64 kStraightInTurn = 105 * kDegToRad;
    const FlatPoint entry = flatDirection(random.between(0, 2 * kPi)) * field.rangeMetres;
    const FlatPoint finalFix = field.at(-random.between(12, 14) * kNm, 0);
    std::vector<Corner> corners{{entry, 0}};
    const f64 turn = std::remainder(field.bearing - flatBearing(finalFix - entry), 2 * kPi);
    if (std::abs(turn) > kStraightInTurn) {
        const f64 side = (field.right(entry) < 0 ? -1 : 1) * random.between(5, 7) * kNm;
        corners.push_back({field.at(random.between(-1, 2) * kNm, side), lf_turnRadius(300)});
        corners.push_back({field.at(field.along(finalFix), side), lf_turnRadius(265)});
    }
    corners.push_back({finalFix, lf_turnRadius(220)});
    return corners;
}

}  // namespace

FlatPoint Airfield::at(f64 alongMetres, f64 rightMetres) const {
    return threshold + flatDirection(bearing) * alongMetres + flatDirection(bearing + kPi / 2) * rightMetres;
}

f64 Airfield::along(FlatPoint point) const {
    const FlatPoint offset = point - threshold;
    const FlatPoint direction = flatDirection(bearing);
    return offset.east * direction.east + offset.north * direction.north;
}

f64 Airfield::right(FlatPoint point) const {
    const FlatPoint offset = point - threshold;
    const FlatPoint direction = flatDirection(bearing + kPi / 2);
    return offset.east * direction.east + offset.north * direction.north;
}

Stage standingStage(const FlatStand& stand, f64 elevationFt, f64 seconds) {
    Stage stage;
    stage.path.pieces.push_back({.from = stand.at, .bearing = stand.heading});
    stage.speeds = {{0, 0}};
    stage.heights = {{0, elevationFt}};
    stage.waitBefore = seconds;
    return stage;
}

std::vector<Stage> arrivalStages(FeedRandom& random, const Airfield& field, const FeedPerformance& performance,
                                 const FlatStand& stand, f64 standingSeconds) {
    const f64 touchdownKt = performance.approachKt - 3;
    const f64 braking = (std::pow(touchdownKt * kKnot, 2) - std::pow(kExitKt * kKnot, 2)) / (2 * kBraking);
    const f64 exitAlong = std::min(kTouchdownPoint + 200 + braking + random.between(40, 250), field.length - 150);
    const f64 taxiway = field.side * kTaxiwayOffset;
    const FlatPoint lane = lf_laneBehind(stand);
    const FlatPoint turnOff = field.at(exitAlong, 0);

    std::vector<Corner> corners = lf_approachCorners(random, field);
    corners.push_back({turnOff, 200});
    corners.push_back({field.at(std::min(exitAlong + 260, field.length), taxiway), 60});
    corners.push_back({field.at(field.along(lane), taxiway), 45});
    corners.push_back({lane, 35});
    corners.push_back({stand.at, 0});

    Stage stage;
    stage.path = roundedPath(corners);
    const f64 touchdown = lf_nearest(stage.path, field.at(kTouchdownPoint, 0));
    // The turn-off's arc begins ahead of its corner.
    const f64 exit = touchdown + (exitAlong - kTouchdownPoint) - 60;
    for (const Row& row : kArrivalSpeeds) {
        const f64 speed = std::min(std::max(row.value, performance.approachKt + 15), performance.cruiseKt);
        stage.speeds.push_back({touchdown - row.nm * kNm, speed});
    }
    stage.speeds.push_back({touchdown - 4.5 * kNm, performance.approachKt + 6});
    stage.speeds.push_back({touchdown - 2 * kNm, performance.approachKt});
    stage.speeds.push_back({touchdown, touchdownKt});
    stage.speeds.push_back({touchdown + 200, touchdownKt - 4});
    stage.speeds.push_back({exit, kExitKt});
    lf_taxiSpeeds(stage.path, exit + 150, stage.path.length, stage.speeds);
    lf_rollToStop(stage.path.length, stage.speeds);
    lf_tidy(stage.speeds);
    for (const Row& row : kArrivalHeights) {
        const f64 height = std::min(row.value, performance.highestCruiseFt);
        stage.heights.push_back({touchdown - row.nm * kNm, field.elevationFt + height});
    }
    lf_tidy(stage.heights);
    return {std::move(stage), standingStage(stand, field.elevationFt, standingSeconds)};
}

std::vector<Stage> departureStages(FeedRandom& random, const Airfield& field, const FeedPerformance& performance,
                                   const FlatStand& stand) {
    // Push: straight back to the lane, then the tail to the side that leaves the nose towards the runway's start.
    const FlatPoint lane = lf_laneBehind(stand);
    FlatPoint tailTo = flatDirection(stand.heading + kPi / 2);
    const FlatPoint runway = flatDirection(field.bearing);
    if (tailTo.east * runway.east + tailTo.north * runway.north < 0) tailTo = tailTo * -1;
    const FlatPoint pushEnd = lane + tailTo * 60;
    Stage push;
    push.path = roundedPath({{stand.at, 0}, {lane, 32}, {pushEnd, 0}});
    push.reverse = true;
    push.speeds = {{0, 0}, {8, kPushKt}, {push.path.length - 8, kPushKt}, {push.path.length, 0}};
    push.heights = {{0, field.elevationFt}};

    Stage taxi;
    const FlatPoint ahead = pushEnd - tailTo * 70;
    const f64 taxiway = field.side * kTaxiwayOffset;
    taxi.path = roundedPath({{pushEnd, 0},
                             {ahead, 30},
                             {field.at(field.along(ahead), taxiway), 45},
                             {field.at(15, taxiway), 45},
                             {field.at(15, field.side * kHoldOffset), 0}});
    taxi.speeds = {{0, 0}, {20, 7}};
    lf_taxiSpeeds(taxi.path, 30, taxi.path.length - 30, taxi.speeds);
    lf_rollToStop(taxi.path.length, taxi.speeds);
    lf_tidy(taxi.speeds);
    taxi.heights = push.heights;
    taxi.waitBefore = random.between(50, 100);

    Stage climb;
    const f64 course = random.between(0, 2 * kPi);
    const f64 turn = std::remainder(course - field.bearing, 2 * kPi);
    const FlatPoint turnPoint = field.at(field.length + random.between(4, 6) * kNm, 0);
    std::vector<Corner> corners{{field.at(15, field.side * kHoldOffset), 0}, {field.at(15, 0), 50}, {turnPoint, 0}};
    corners.back().radius = lf_turnRadius(225);
    if (std::abs(turn) > 110 * kDegToRad) {
        const f64 aside = turn > 0 ? kPi / 2 : -kPi / 2;
        corners.push_back({turnPoint + flatDirection(field.bearing + aside) * (8 * kNm), lf_turnRadius(265)});
    }
    corners.push_back({flatDirection(course) * field.rangeMetres, 0});
    climb.path = roundedPath(corners);
    const f64 lined = lf_nearest(climb.path, field.at(75, 0));
    const f64 run = std::pow(performance.liftOffKt * kKnot, 2) / (2 * kTakeOffAcceleration);
    const f64 liftOff = lined + run;
    climb.speeds = {{0, 0}, {25, kTaxiTurnKt}, {lined, kTaxiTurnKt}, {liftOff, performance.liftOffKt}};
    for (const Row& row : kDepartureSpeeds) {
        climb.speeds.push_back(
            {liftOff + row.nm * kNm, std::min(performance.liftOffKt + row.value, performance.cruiseKt)});
    }
    for (const Row& row : kDepartureHeights) {
        const f64 height = std::min(row.value, performance.lowestCruiseFt);
        climb.heights.push_back({liftOff + row.nm * kNm, field.elevationFt + height});
    }
    return {std::move(push), std::move(taxi), std::move(climb)};
}

std::vector<Stage> overflightStages(FeedRandom& random, const Airfield& field, const FeedPerformance& performance) {
    const f64 inbound = random.between(0, 2 * kPi);
    const FlatPoint entry = flatDirection(inbound + kPi) * field.rangeMetres;
    const FlatPoint middle = flatDirection(random.between(0, 2 * kPi)) * random.between(0, 0.45 * field.rangeMetres);
    const f64 outbound = flatBearing(middle - entry) + random.between(-35, 35) * kDegToRad;
    Stage stage;
    stage.path = roundedPath({{entry, 0},
                              {middle, lf_turnRadius(performance.cruiseKt)},
                              {middle + flatDirection(outbound) * field.rangeMetres, 0}});
    const f64 speed = performance.cruiseKt + random.between(-25, 35);
    const f64 level = 1000 * std::floor(random.between(performance.lowestCruiseFt, performance.highestCruiseFt) / 1000);
    stage.speeds = {{0, speed}, {stage.path.length, speed + random.between(-8, 8)}};
    stage.heights = {{0, level}};
    if (random.chance(0.25)) {  // a step to another level, 150 feet per mile
        const f64 change = (random.chance(0.5) ? 2000 : -4000);
        const f64 begin = stage.path.length * random.between(0.2, 0.6);
        stage.heights.push_back({begin, level});
        stage.heights.push_back({begin + std::abs(change) / 150 * kNm, level + change});
    }
    return {std::move(stage)};
}

std::vector<Stage> lightStages(FeedRandom& random, const Airfield& field, const FeedPerformance& performance) {
    const f64 speed = performance.cruiseKt + random.between(-12, 8);
    const f64 level = 100 * std::floor(random.between(performance.lowestCruiseFt, performance.highestCruiseFt) / 100);
    const FlatPoint centre = flatDirection(random.between(0, 2 * kPi)) *
                             random.between(6 * kNm, std::max(0.35 * field.rangeMetres, 7 * kNm));
    std::vector<Corner> corners;
    f64 bearing = random.between(0, 2 * kPi);
    const f64 way = random.chance(0.5) ? 1 : -1;
    const i32 count = 5 + random.below(5);
    for (i32 i = 0; i < count; ++i) {
        corners.push_back({centre + flatDirection(bearing) * (random.between(2.5, 5) * kNm), lf_turnRadius(speed)});
        bearing += way * random.between(70, 110) * kDegToRad;
    }
    Stage stage;
    stage.path = roundedPath(corners);
    stage.speeds = {{0, speed}, {stage.path.length, speed}};
    stage.heights = {{0, field.elevationFt + level},
                     {stage.path.length / 2, field.elevationFt + level + random.between(-200, 400)},
                     {stage.path.length, field.elevationFt + level}};
    return {std::move(stage)};
}

std::vector<Stage> helicopterStages(FeedRandom& random, const Airfield& field, const FeedPerformance& performance,
                                    const FlatStand& pad) {
    const f64 speed = performance.cruiseKt;
    const f64 level = field.elevationFt + random.between(performance.lowestCruiseFt, performance.highestCruiseFt);
    std::vector<Corner> corners{{pad.at, 0}};
    f64 bearing = random.between(0, 2 * kPi);
    const i32 count = 3 + random.below(3);
    for (i32 i = 0; i < count; ++i) {
        corners.push_back({pad.at + flatDirection(bearing) * (random.between(4, 9) * kNm), lf_turnRadius(speed)});
        bearing += random.between(50, 95) * kDegToRad;
    }
    corners.push_back({pad.at, 0});
    Stage stage;
    stage.path = roundedPath(corners);
    const f64 length = stage.path.length;
    stage.speeds = {
        {0, 0},     {60, 25}, {700, 75}, {2500, speed}, {length - 3000, speed}, {length - 900, 65}, {length - 120, 25},
        {length, 0}};
    stage.heights = {{0, field.elevationFt}, {40, field.elevationFt + 15},           {2400, level},
                     {length - 3500, level}, {length - 150, field.elevationFt + 40}, {length, field.elevationFt}};
    stage.waitBefore = random.between(60, 240);
    FlatStand landed = pad;
    landed.heading = stage.path.pieces.back().bearing;
    return {std::move(stage), standingStage(landed, field.elevationFt, random.between(200, 600))};
}

std::vector<Stage> vehicleStages(FeedRandom& random, const Airfield& field) {
    const f64 offset = field.side * (kTaxiwayOffset + 60);
    const f64 from = random.between(0.1, 0.3) * field.length;
    const f64 to = random.between(0.7, 0.9) * field.length;
    std::vector<Stage> stages;
    for (i32 i = 0; i < 8; ++i) {
        const bool out = i % 2 == 0;
        Stage stage;
        stage.path = roundedPath({{field.at(out ? from : to, offset), 0}, {field.at(out ? to : from, offset), 0}});
        stage.speeds = {{0, 0}, {40, 16}, {stage.path.length - 40, 16}, {stage.path.length, 0}};
        stage.heights = {{0, field.elevationFt}};
        stage.waitBefore = random.between(60, 200);
        stages.push_back(std::move(stage));
    }
    return stages;
}

}  // namespace hcr
