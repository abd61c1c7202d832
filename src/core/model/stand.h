#pragma once

#include <string>

#include "platform/types.h"

namespace hcr {

/// One stand of the park airport. The airport's file will bring its further attributes.
struct ParkPos {
    u32 number = 0;        ///< standId of the aircraft on it
    std::string id;        ///< the stand's name
    f64 lat = 0, lon = 0;  ///< degrees
    f64 heading = 0;       ///< radians
    bool cargo = false;
    bool takenByLive = false;
};

/// One static aircraft planned for a stand, not yet created.
struct ParkPlanEntry {
    u32 standId = 0;
};

}  // namespace hcr
