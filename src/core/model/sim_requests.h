#pragma once

#include <string>
#include <string_view>

#include "core/model/aircraft.h"

namespace hcr {

/// One aircraft to be created.
struct AiCreateRequest {
    f64 lat = 0, lon = 0;                  ///< degrees
    f64 alt = 0;                           ///< feet
    f64 pitch = 0, bank = 0, heading = 0;  ///< degrees
    u32 onGround = 0;                      ///< 1 on the ground
    u32 airspeed = 0;                      ///< knots
    std::string callsign;                  ///< tail number, and the key by which the new object is recognised
    std::string_view title;                ///< into the loaded liveries, which outlive the request
    u32 id = 0;                            ///< hexid
};

/// One position for one object: the data record of definition 402 and whom it is for.
struct PositionCommand {
    PositionBlock block;
    u32 objectId = 0;
};

/// One event with its value for one object.
struct EventCommand {
    u32 objectId = 0;
    u32 eventId = 0;  ///< client event
    u32 data = 0;
};

/// A create call that was sent and not yet answered.
struct PendingCreate {
    u32 packetId = 0;
    u32 hexid = 0;
    std::string callsign;
};

}  // namespace hcr
