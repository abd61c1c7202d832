#pragma once

#include <vector>

#include "core/model/sim_requests.h"

namespace hcr {

// The queues between worker and simulator thread, all under gSimMutex. The worker alone writes gPosQueueBack between
// two swaps, without the lock.

extern std::vector<PositionCommand> gPosQueueFront;  ///< read by the drain
extern std::vector<PositionCommand> gPosQueueBack;   ///< written by the worker
extern std::vector<EventCommand> gEventQueue;        ///< of any aircraft, oldest first
extern std::vector<AiCreateRequest> gCreateQueue;    ///< creations that go out with the next frames, oldest first
extern std::vector<u32> gRemovalQueue;               ///< object ids, oldest first
extern std::vector<PendingCreate> gPendingCreates;   ///< creations that the simulator hasn't answered yet

/// Queues a creation. Worker.
void gf_queueCreate(AiCreateRequest request);
/// Takes an entry out of gPendingCreates; the last one moves into its place. SimClient, which alone uses that list.
PendingCreate gf_takePendingCreate(std::vector<PendingCreate>::iterator entry);

/// Reserves 256 entries each and empties them.
void gf_resetQueues();
/// The work of one Frame event. SimClient.
void gf_drainQueues();
/// Hands the written positions over: swaps when the lock is free, or waits for it above 50 frames per second, else
/// drops them. Worker, once per cycle.
void gf_swapPositionBuffers();
/// Empties both position buffers; when a flight stops. Worker.
void gf_clearPositionBuffers();
/// Moves one removal every 10th tick and one creation every 50th tick from the engine's paced queues to the
/// simulator's. Worker. True on a tick of the creations.
bool gf_paceQueues(i32 tick);

}  // namespace hcr
