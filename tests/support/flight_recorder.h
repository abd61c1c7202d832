#pragma once

#include <map>
#include <string>
#include <vector>

#include "sim/port/sandbox/object.h"
#include "sim/port/sim_port.h"

namespace hcr::test {

/// What the simulator was told of one tail number.
struct FlownAircraft {
    int appearances = 0;  ///< objects of this name
    u32 lastObject = 0;
    f64 firstWrite = 0, lastWrite = 0;  ///< seconds of the sandbox
    f64 lat = 0, lon = 0, alt = 0, heading = 0;
    f64 speedKt = 0;     ///< ground speed that it may have; what is written with a position counts when higher
    f64 worstJumpM = 0;  ///< largest move between two writes beyond what its speed explains
    f64 worstJumpAt = 0;
    f64 worstTurnDegPerS = 0;  ///< largest change of heading between two writes
    f64 worstClimbFtPerS = 0;
    std::vector<SandboxObject> path;  ///< one state in each `step` of the recorder
    std::vector<f64> pathTimes;
};

/// A create call as the simulator got it.
struct CreateCall {
    f64 at = 0;  ///< seconds of the sandbox
    std::string title, tail;
    SIMCONNECT_DATA_INITPOSITION position{};
};

/// Watches every create call and every position write of the sandbox, under its lock. One at a time, in the life of one
/// sandbox.
struct FlightRecorder {
    FlightRecorder();
    ~FlightRecorder();
    FlightRecorder(const FlightRecorder&) = delete;
    FlightRecorder& operator=(const FlightRecorder&) = delete;

    std::map<std::string, FlownAircraft> aircraft;
    std::vector<CreateCall> creates;
    f64 step = 1;  ///< seconds between two states of a path
    SimPort behind;
};

/// Metres between two positions.
f64 metresBetween(f64 latA, f64 lonA, f64 latB, f64 lonB);

}  // namespace hcr::test
