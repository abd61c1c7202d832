#pragma once

#include <string_view>

#include "platform/types.h"

namespace hcr {

// What the sandbox knows by name: simulation variables, units, simulator events, system events. Names are compared
// without regard to case, as the simulator does. Any thread; the tables are constant.

/// Variables that the sandbox has.
enum class SandboxVar : u8 {
    title,
    model,
    atcId,  // texts
    onGround,
    latitude,
    longitude,
    pitch,
    bank,
    heading,
    altitude,
    verticalSpeed,
    trueAirspeed,
    heightAboveGround,
    groundSpeed,
    zuluTime,
    zuluDay,
    zuluYear,
    lightStates,
    staticCg,
    staticPitch,
    groundAltitude,
    spoilers,
    throttle,
};

/// What a variable measures, which tells the units that it may be asked in.
enum class SandboxDimension : u8 { text, angle, length, speed, percent, seconds, plain };

/// What is known of a variable.
struct SandboxVarFacts {
    std::string_view name;
    SandboxVar var;
    SandboxDimension dimension;
    f64 ownPerBase;  ///< the sandbox keeps the variable in this many of its own units per base unit of the dimension
    bool writable;
    bool perEngine;  ///< the name may end in ":1" .. ":4"
};

/// Engines, and throttle levers, of every aircraft.
inline constexpr u32 kSandboxEngines = 4;

/// Null when there is no such variable. `engine` is set from the name's index, 1 without one.
const SandboxVarFacts* gf_sandboxVariable(std::string_view name, u32& engine);
/// The factor from the variable's own unit to the named one; 0 when the unit doesn't exist or doesn't fit.
f64 gf_sandboxUnitFactor(const SandboxVarFacts& facts, std::string_view unit);

/// Events that an aircraft understands.
enum class SandboxSimEvent : u8 {
    gear,
    engineStart,
    engineStop,
    throttle,
    flaps,
    spoilers,
    nav,
    beacon,
    landing,
    taxi,
    strobes,
    logo,
    cabin,
    allLights,
    freezePosition,
    freezeAltitude,
    freezeAttitude,
};
/// False when the simulator has no such event.
bool gf_sandboxSimEvent(std::string_view name, SandboxSimEvent& event);

/// Events that the simulator sends by itself.
enum class SandboxSystemEvent : u8 { sim, objectAdded, objectRemoved, flightLoaded, frame };
inline constexpr u32 kSandboxSystemEvents = 5;
/// False when the simulator sends no such event.
bool gf_sandboxSystemEvent(std::string_view name, SandboxSystemEvent& event);

}  // namespace hcr
