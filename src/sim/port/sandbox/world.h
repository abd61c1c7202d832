#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <limits>
#include <mutex>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "sim/port/sandbox/aircraft_state.h"
#include "sim/port/sandbox/outbox.h"
#include "sim/port/sandbox/trace.h"

namespace hcr {

// The sandbox's state and how it goes on in time. Inside the sandbox only; everything under gSandboxMutex, a lock that
// is never held while the client's dispatch function runs.

/// One variable of a data definition.
struct SandboxDatum {
    const SandboxVarFacts* facts = nullptr;
    u32 engine = 1;
    u32 type = SIMCONNECT_DATATYPE_FLOAT64;
    f64 toClient = 1;  ///< factor from the sandbox's unit to the client's
    f64 fromClient = 1;
};

/// A data definition of the client.
struct SandboxDefinition {
    u32 id = 0;
    std::vector<SandboxDatum> data;
    u32 bytes = 0;          ///< of the record, without texts of variable length
    bool variable = false;  ///< holds a text of variable length
    bool writable = true;
    bool position = false;  ///< writes coordinates
};

/// A data request that is answered again and again.
struct SandboxRequest {
    u32 id = 0, definition = 0, object = 0, period = 0;
    u32 skip = 0;      ///< periods still to be passed over
    u32 interval = 0;  ///< periods between two answers
    u32 limit = 0;     ///< answers still to come; 0 = no limit
};

/// What the client set up in one session; gone when it closes.
struct SandboxSession {
    bool open = false;
    std::uintptr_t handle = 0;  ///< never a pointer, and never used twice
    u32 packet = 0;             ///< calls sent so far
    std::vector<SandboxDefinition> definitions;
    std::vector<SandboxRequest> requests;
    std::unordered_map<u32, SandboxSimEvent> events;  ///< client event ids
    std::unordered_map<u32, std::unordered_set<u32>> groups;
    std::array<u32, kSandboxSystemEvents> subscribed{};  ///< client ids of the system events
    std::array<bool, kSandboxSystemEvents> subscribes{};
    SandboxOutbox waiting;  ///< delivered by the next dispatch
    std::vector<u8> spare;  ///< memory of the last delivery
};

/// A moment in seconds that doesn't come.
inline constexpr f64 kNever = std::numeric_limits<f64>::infinity();

/// The whole simulator.
struct SandboxWorld {
    bool started = false;
    Scenario scenario;
    std::unordered_map<std::string, TitleFacts> facts;
    std::unordered_set<std::string> installed, refused;

    // Time in seconds since the first session opened.
    i64 startUs = 0;  ///< of the steady clock
    i64 openUs = -1;  ///< of the first open, -1 before
    f64 now = 0;
    f64 utcAtZero = 0;      ///< the simulator's clock at 0
    f64 pausedSum = 0;      ///< finished pauses
    f64 pausedAt = kNever;  ///< begin of the present pause
    f64 resumeAt = kNever;
    f64 flightAt = kNever;  ///< when the flight begins to run
    bool flight = false;
    f64 frameRate = 30;
    f64 slowUntil = kNever;
    f64 nextFrame = kNever, nextSecond = 1;
    f64 lastMove = 0;
    bool gone = false;                             ///< the simulator ended ...
    f64 backAt = 0;                                ///< ... until this moment
    std::size_t nextFault = 0;                     ///< of the scenario's, in order of time
    std::unordered_map<std::string, i32> failing;  ///< calls that are to fail, and how often

    SandboxAircraft user;
    bool userPlaced = false;                ///< it left its path
    std::vector<SandboxAircraft> aircraft;  ///< AI objects by rising id
    std::vector<u32> ids;                   ///< of `aircraft`, side by side for the search
    std::deque<u32> hidden;                 ///< objects whose announcement is still to come, in its order
    std::size_t lastFound = 0;
    u32 nextId = 7;  ///< the simulator has objects of its own below: ids below 3 are never an aircraft's

    std::vector<u32> inRange;  ///< reused by the requests by type

    SandboxSession session;
    SandboxCounters counters;
    SandboxTrace trace;
    SandboxPositionHook hook = nullptr;
    void* hookContext = nullptr;
    SandboxObject hookObject;  ///< kept so that its texts' memory is reused
};

/// One simulator per process, as on a user's computer.
extern std::mutex gSandboxMutex;
extern SandboxWorld gSandbox;

/// Object id of the user's aircraft.
inline constexpr u32 kSandboxUserId = 1;

/// Whether a pause is on.
bool gf_sandboxPaused(const SandboxWorld& world);
/// There is a client, and the simulator lives to tell it something.
bool gf_sandboxReachesClient(const SandboxWorld& world);
/// Frames and periodic answers come only then.
bool gf_sandboxRuns(const SandboxWorld& world);
/// Seconds that passed for the user's aircraft and the simulator's clock: pauses don't count.
f64 gf_sandboxFlightSeconds(const SandboxWorld& world);
/// Brings the record of the user's aircraft up to the present.
SandboxAircraft& gf_sandboxUser(SandboxWorld& world);
/// Null when there is no such object. 0 and the user's own id mean the user's aircraft.
SandboxAircraft* gf_sandboxFind(SandboxWorld& world, u32 id);
/// A new AI object; its announcement is queued.
SandboxAircraft& gf_sandboxAddAircraft(SandboxWorld& world, SandboxAircraft ac);
/// Seconds at which the next object that was made shows itself, kNever when none waits.
f64 gf_sandboxNextShown(SandboxWorld& world);
/// Announces that object; one must wait.
void gf_sandboxShowNext(SandboxWorld& world);
/// Takes an AI object away; that is announced.
void gf_sandboxRemoveAircraft(SandboxWorld& world, u32 id);
/// What the simulator knows of a title.
TitleFacts gf_sandboxFacts(const SandboxWorld& world, const std::string& title);
/// Puts the user's aircraft somewhere, off its path.
void gf_sandboxPlaceUser(SandboxWorld& world, const UserPoint& point);

/// Takes the client's AI objects away without a word, when it is gone; all of them when the simulator is.
void gf_sandboxForgetAircraft(SandboxWorld& world);

/// Queues a system event for the client, if it subscribed to it.
void gf_sandboxSendEvent(SandboxWorld& world, SandboxSystemEvent event, u32 data);
/// Queue an event with a file's name, or a refusal of the call that was the `packet`-th.
void gf_sandboxSendFileEvent(SandboxWorld& world, SandboxSystemEvent event, std::string_view file);
void gf_sandboxSendException(SandboxWorld& world, SimException exception, u32 packet, u32 index);

}  // namespace hcr
