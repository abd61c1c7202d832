#pragma once

#include <string>
#include <vector>

#include "tools/replay/flight_log.h"

namespace hcr {

/// Median, 95th percentile and worst of a list of values.
struct Spread {
    f64 median = 0, p95 = 0, worst = 0;
};
/// Of magnitudes; sorts the list. Zeros for an empty one.
Spread spreadOf(std::vector<f64>& values);

/// What one flown track shows beside its reports, or all of them together. Only the time between the first and the last
/// report counts, and no gap of the reports longer than a minute and a half.
struct Measures {
    // Samples, two a second, kept so that those of all aircraft can be put together.
    std::vector<f64> pathMetres;       ///< distance from the reported path
    std::vector<f64> crossMetres;      ///< distance from the line of the leg that is due at the time
    std::vector<f64> timeErrors;       ///< seconds ahead of the reports (+) or behind them (-), as magnitudes
    std::vector<f64> altErrors;        ///< feet
    std::vector<f64> altErrorsLow;     ///< the same below 1500 ft
    std::vector<f64> speedErrors;      ///< knots
    std::vector<f64> speedChanges;     ///< knots a second
    std::vector<f64> turnRates;        ///< degrees a second
    f64 seconds = 0;                   ///< flown while reported
    f64 sidewaysSeconds = 0;           ///< heading more than 60 degrees off the motion, above 20 kt
    f64 diveSeconds = 0;               ///< sinking faster than 6000 ft/min, which no report has
    f64 deafSeconds = 0;               ///< longest time standing while the reports move
    i32 deaf = 0;                      ///< aircraft standing so for more than a minute
    i32 teeth = 0;                     ///< climbs and dives of more than 300 ft that no report has
    i32 toothed = 0;                   ///< aircraft with any
    i32 jumps = 0;                     ///< aircraft that leap between two writes
    i32 steps = 0;                     ///< aircraft whose altitude leaps between two writes
    f64 jumpMetres = 0, stepFeet = 0;  ///< the largest of these
    i32 flicker = 0;                   ///< comes again within two minutes of having gone
    i32 removedEarly = 0;              ///< aircraft that leave for good while reports go on
};

/// Of one aircraft.
Measures measure(const FlightRecord& flight);
/// Puts the second to the first.
void add(Measures& sum, const Measures& one);

/// The same reports with the same delay, flown by plain linear interpolation.
FlightRecord interpolated(const FlightRecord& flight);

/// True when the aircraft's reports are such that it should appear: a known type that the settings show, an identity,
/// and two reports within 30 seconds of its first. `reason` tells why not.
bool isDue(const FlightRecord& flight, std::string& reason);
/// Seconds from the moment at which its first report is to be played to its first position in the simulator.
f64 creationDelay(const FlightRecord& flight);

}  // namespace hcr
