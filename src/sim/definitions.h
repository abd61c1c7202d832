#pragma once

#include "platform/types.h"

namespace hcr {

// Ids that this program chose for its session.

/// Records of variables that are read or written at once.
enum SimDefinition : u32 {
    kDefThrottleSpoilers = 401,
    kDefPosition = 402,
    kDefUserPosition = 403,
    kDefAiStatus = 404,
    kDefStaticData = 405,
    kDefTitle = 407,
    kDefModel = 408,
    kDefOnGround = 409,
};

/// Requests, by which answers are told apart.
enum SimRequest : u32 {
    kReqInRange = 101,
    kReqStaticData = 102,
    kReqRelease = 103,
    kReqCreate = 104,
    kReqRemove = 105,
    kReqTitle = 106,
    kReqModel = 107,
    kReqOnGround = 108,
    kReqUserPosition = 109,
    kReqFlightPlan = 110,
    kReqHelicoptersInRange = 111,
};

/// What the simulator tells by itself.
enum SimSystemEvent : u32 {
    kEventSim = 201,
    kEventObjectAdded = 202,
    kEventObjectRemoved = 203,
    kEventFrame = 204,
    kEventFlightLoaded = 205,
};

/// What an aircraft is told, by the simulator's own names.
enum SimClientEvent : u32 {
    BEACON_LIGHTS_SET = 206,
    NAV_LIGHTS_SET = 207,
    TAXI_LIGHTS_SET = 208,
    STROBES_SET = 209,
    LANDING_LIGHTS_SET = 210,
    CABIN_LIGHTS_SET = 211,
    LOGO_LIGHTS_SET = 212,
    ALL_LIGHTS_TOGGLE = 213,
    FREEZE_LATITUDE_LONGITUDE_SET = 214,
    FREEZE_ALTITUDE_SET = 215,
    FREEZE_ATTITUDE_SET = 216,
    FLAPS_SET = 217,
    SPOILERS_SET = 218,
    GEAR_SET = 219,
    ENGINE_AUTO_START = 220,
    ENGINE_AUTO_SHUTDOWN = 221,
    THROTTLE_SET = 222,
};

/// All client events are of this notification group.
inline constexpr u32 kEventGroup = 301;

/// Subscribes, defines and maps everything, system events first. Called on SimClient after a good open; a refused call
/// raises the request error.
void gf_registerDefinitions();

}  // namespace hcr
