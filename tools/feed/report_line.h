#pragma once

#include <string>

#include "tools/feed/flights.h"

namespace hcr {

/// The wind over the place, the same everywhere but for its strength, which grows with height.
struct FeedWind {
    f64 from = 0;  ///< radians
    f64 groundKt = 9;
};

/// One line of 44 fields about an aircraft at one moment. The callsign is given, since crews log on late.
std::string reportLine(const GeneratedAircraft& aircraft, const std::string& callsign, const Airfield& field,
                       const FeedWind& wind, const Motion& motion, f64 timestamp);
/// True while the wheels of an aircraft at this height above the sea touch the ground.
bool onGround(const Airfield& field, f64 heightFt);
/// The same line with another time in field 14.
std::string withTimestamp(const std::string& line, f64 timestamp);
/// Field 14 as a number; 0 when it isn't one.
f64 timestampOf(std::string_view line);

}  // namespace hcr
