#pragma once

#include <atomic>
#include <mutex>
#include <stop_token>
#include <string_view>
#include <vector>

#include "sim/port/sim_port.h"
#include "sim/sim_message.h"

namespace hcr {

// The session with the simulator. SimClient owns it; the worker sends requests under gSimMutex.

/// The simulator lock: every call from the worker, the command queues and the position buffers. Where it is held
/// together with gSimEventMutex, that one is taken first. The Frame event only tries it.
extern std::mutex gSimMutex;
extern SimHandle gSimHandle;              ///< null without a session; under gSimMutex from the worker
extern std::atomic<bool> gFlightRunning;  ///< set by the Sim event, cleared on quit
extern std::atomic<bool> gRequestError;   ///< a call failed: all traffic stops until the next run
extern std::atomic<u32> gUserObjectId;    ///< from the last position reply; AI objects have a greater id
extern std::atomic<f32> gFrameRate;       ///< refreshed every 30 frames
extern std::atomic<bool> gUserOnGround, gUserOnGroundKnown;

/// Thread entry: opens the session, registers, dispatches until told to stop. Shows its own errors.
void SimClient(std::stop_token stop);
/// One turn of the thread's inner loop without the sleep: opens and registers when there is no session yet, else
/// dispatches; ends session and run after a quit message. False when opening failed or isn't wanted any more. Passes
/// the exceptions of gf_dispatch on. SimClient, or a single-threaded test.
bool gf_pumpSimClient();
/// The end of the thread's work: closes the session. SimClient calls it by itself.
void gf_endSimClient();

/// Session state, queues and request error back to the start; before a run's SimClient starts, and at a run's end.
void gf_resetSimSession();

/// The user's aircraft as the last reply told; sends request 109 for the next one. Worker.
UserAircraftData gf_fetchUserPosition();
/// The same without a request; any thread.
UserAircraftData gf_lastUserPosition();
/// Stores a reply. SimClient.
void gf_storeUserPosition(const UserAircraftData& position);
/// Requests 106 and 107. Worker, once per flight.
void gf_requestUserIdentity();
/// Request 108, once a second from now on; the reply drives gSecondPulse. Worker.
void gf_requestUserOnGround();
/// Requests 101 and 111: all aircraft within the range of the moment, helicopters being a type of their own. Worker,
/// every 20th tick.
void gf_requestAircraftInRange();
/// Request 102 for a new AI object. Worker.
void gf_requestStaticData(u32 objectId);

/// A call failed: shows and logs it, stops all traffic, asks for a restart with reason 5 and 9 seconds.
void gf_raiseRequestError();

/// Appends a SimMessage under its lock.
void gf_pushSimMessage(const SimMessage& message);

}  // namespace hcr
