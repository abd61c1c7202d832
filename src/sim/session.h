#pragma once

#include <atomic>
#include <mutex>

#include "sim/port/sim_port.h"

namespace hcr {

// The session with the simulator, as all of sim knows it. SimClient owns it; the worker sends requests under gSimMutex.

/// The simulator lock: every call from the worker, the command queues and the position buffers. Where it is held
/// together with gSimEventMutex, that one is taken first. The Frame event only tries it.
extern std::mutex gSimMutex;
extern SimHandle gSimHandle;              ///< null without a session; under gSimMutex from the worker
extern std::atomic<bool> gFlightRunning;  ///< set by the Sim event, cleared on quit
extern std::atomic<bool> gRequestError;   ///< a call failed: all traffic stops until the next run
extern std::atomic<u32> gUserObjectId;    ///< from the last position reply; AI objects have a greater id
extern std::atomic<f32> gFrameRate;       ///< refreshed every 30 frames
extern std::atomic<bool> gUserOnGround, gUserOnGroundKnown;

/// The user's aircraft as the last reply told; any thread.
UserAircraftData gf_lastUserPosition();
/// Stores a reply. SimClient.
void gf_storeUserPosition(const UserAircraftData& position);
/// Session state and request error back to the start.
void gf_resetSession();
/// A call failed: shows and logs it, stops all traffic, asks for a restart with reason 5 and 9 seconds.
void gf_raiseRequestError();

}  // namespace hcr
