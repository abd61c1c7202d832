#pragma once

#include <string>

#include "platform/types.h"

namespace hcr {

// What tests, the demo and its picture see of the sandbox.

struct SandboxObject {
    u32 id = 0;
    std::string title, tail;
    std::string from, to;                  ///< of the flight plan that was handed over, empty without one
    f64 lat = 0, lon = 0, alt = 0;         ///< degrees, feet
    f64 pitch = 0, bank = 0, heading = 0;  ///< degrees
    f64 vs = 0, tas = 0;                   ///< feet per minute, knots
    f64 agl = 0;                           ///< feet
    bool onGround = false;
    bool released = false;
    bool frozenPosition = false, frozenAltitude = false, frozenAttitude = false;
    i32 throttle = 0;  ///< -16383 (reverse) to 16383
    u32 gear = 0, flaps = 0, spoilers = 0, engines = 0;
    u32 nav = 0, beacon = 0, landing = 0, taxi = 0, strobes = 0, logo = 0, cabin = 0;  ///< lights
    i64 positionWrites = 0;  ///< how often definition 402 was written
};

struct SandboxCounters {
    u64 creates = 0;   ///< calls that made an object
    u64 refusals = 0;  ///< create calls answered by an exception
    u64 removals = 0;  ///< objects that went, by a call or a fault
    u64 positionWrites = 0;
    u64 events = 0;  ///< client events that were carried out
    u64 exceptions = 0;
    u64 frames = 0;
    u64 calls = 0;  ///< sent in any session, position writes included
};

/// See gf_setSandboxPositionHook.
using SandboxPositionHook = void (*)(const SandboxObject& object, f64 seconds, void* context);

}  // namespace hcr
