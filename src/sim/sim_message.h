#pragma once

#include <mutex>
#include <vector>

#include "platform/types.h"

namespace hcr {

/// Kind of a SimMessage; the values are used as they stand.
enum class SimKind : u32 {
    liveCreated = 0,    ///< object, id = hexid, b = height above ground in feet
    staticCreated = 1,  ///< object, id = hexid
    objectGone = 2,     ///< object
    aiStatus = 3,       ///< object, id = on ground 0/1, a = ground altitude in feet, b = height above ground in feet
    staticData = 4,     ///< object, a = static CG to ground in feet, b = static pitch in radians
    createRefused = 6,  ///< id = hexid
    noRoom = 7,         ///< id = hexid; the simulator has too many objects, which is no fault of the title
};

/// News from the simulator thread to the worker.
struct SimMessage {
    u32 object = 0;   ///< simulator object id
    u32 id = 0;       ///< aircraft id, or a flag by kind
    i32 counter = 0;  ///< passes of the waiting list
    SimKind kind = SimKind::liveCreated;
    f64 a = 0, b = 0;
};

/// Appended to by SimClient, emptied by the worker. Where both locks are held this one is taken before gSimMutex.
extern std::mutex gSimEventMutex;
extern std::vector<SimMessage> gSimEvents;

/// Appends a SimMessage under its lock.
void gf_pushSimMessage(const SimMessage& message);
/// Empties the list, with room for the usual number.
void gf_resetSimEvents();

}  // namespace hcr
