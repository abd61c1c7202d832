#pragma once

#include <string_view>
#include <vector>

#include "tools/feed/fleet.h"
#include "tools/feed/path.h"

namespace hcr {

// The paths of the generated aircraft, kind by kind.

/// The runway and what lies beside it, in the flat picture.
struct Airfield {
    LatLon origin;
    FlatPoint threshold;
    f64 bearing = 0;  ///< of the runway, radians
    f64 length = 0;   ///< metres
    f64 side = -1;    ///< of the runway on which the stands lie: 1 right, -1 left
    f64 elevationFt = 0;
    f64 rangeMetres = 0;  ///< where traffic begins and ends

    /// Metres along the runway and to its right.
    FlatPoint at(f64 along, f64 right) const;
    f64 along(FlatPoint point) const;
    f64 right(FlatPoint point) const;
};

/// A stand in the flat picture; heading in radians.
struct FlatStand {
    FlatPoint at;
    f64 heading = 0;
};

std::vector<Stage> arrivalStages(FeedRandom& random, const Airfield& field, const FeedPerformance& performance,
                                 const FlatStand& stand, f64 standingSeconds);
/// The last stage begins at the holding point with a wait of 0, for the caller to set.
std::vector<Stage> departureStages(FeedRandom& random, const Airfield& field, const FeedPerformance& performance,
                                   const FlatStand& stand);
std::vector<Stage> overflightStages(FeedRandom& random, const Airfield& field, const FeedPerformance& performance);
std::vector<Stage> lightStages(FeedRandom& random, const Airfield& field, const FeedPerformance& performance);
std::vector<Stage> helicopterStages(FeedRandom& random, const Airfield& field, const FeedPerformance& performance,
                                    const FlatStand& pad);
std::vector<Stage> vehicleStages(FeedRandom& random, const Airfield& field);
/// Standing for so long.
Stage standingStage(const FlatStand& stand, f64 elevationFt, f64 seconds);

}  // namespace hcr
