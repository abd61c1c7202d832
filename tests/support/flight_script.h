#pragma once

#include <vector>

#include "tests/support/world.h"

namespace hcr::test {

/// For so long the aircraft changes evenly to this speed and altitude, and turns by so much.
struct FlightLeg {
    f64 seconds = 0;
    f64 speed = 0, alt = 0;  ///< knots, feet; an altitude of 0 is told on the ground
    f64 turn = 0;            ///< degrees, to the right
};

/// The reports of an aircraft that flies these legs, one in every `every` seconds from `from` on. It begins with what
/// the line tells.
std::vector<TimedLine> flyLegs(FeedLine line, const std::vector<FlightLeg>& legs, f64 every = 2, f64 from = 0);
/// The line at the end of these legs.
FeedLine endOf(FeedLine line, const std::vector<FlightLeg>& legs);
/// The line with another place to begin at, from which these legs end at `end`.
FeedLine beginFor(FeedLine line, const std::vector<FlightLeg>& legs, LatLon end);
/// Puts lines of several aircraft into the order of time.
std::vector<TimedLine> inOrder(std::vector<std::vector<TimedLine>> flights);

}  // namespace hcr::test
