#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "tools/replay/simulated_run.h"

namespace hcr {

// What a simulated run was told of each aircraft, and what it made of it. Times are seconds of the run.

/// One report as the decoder let it through.
struct ReportedPoint {
    f64 at = 0;            ///< when it is to be played: 30 seconds behind its arrival
    f64 lat = 0, lon = 0;  ///< degrees
    f64 alt = 0;           ///< feet; 0 on the ground
    f64 speed = 0;         ///< knots over ground
};

/// Where the simulator had the aircraft.
struct FlownPoint {
    f64 at = 0;
    f64 lat = 0, lon = 0;  ///< degrees
    f64 alt = 0;           ///< feet
    f64 heading = 0;       ///< degrees
    u32 object = 0;        ///< in which object; another number is another appearance
};

struct FlightRecord {
    u32 hexid = 0;
    std::string callsign, registration, type;
    std::vector<ReportedPoint> reports;  ///< an aircraft in the air that is told in the same place again isn't noted
    f64 lastReportAt = 0;                ///< of the last report, such repetitions included
    std::vector<FlownPoint> flown;       ///< two a second
    f64 jumpMetres = 0;  ///< the longest way between two writes, beyond what the aircraft's speed explains
    f64 stepFeet = 0;    ///< the largest change of altitude between two writes

    FlownPoint last;        ///< of the last write
    f64 lastTimestamp = 0;  ///< of the last report, the feed's own time
    f64 fastestKt = 0;      ///< of the reports
};

/// Watches a run as long as it lives: every report that the decoder lets through, every position that the simulator
/// gets. One at a time, on the run's thread.
struct FlightLog {
    explicit FlightLog(SimulatedRun& simulatedRun);
    ~FlightLog();
    FlightLog(const FlightLog&) = delete;
    FlightLog& operator=(const FlightLog&) = delete;

    SimulatedRun& watched;
    std::vector<FlightRecord> flights;  ///< in the order of their first reports
    std::unordered_map<u32, std::size_t> byHexid, byObject;
    f64 sandboxShift = 0;  ///< the sandbox's clock less the run's
};

}  // namespace hcr
