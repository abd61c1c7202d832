#include "sim/definitions.h"

#include <fmt/format.h>

#include "shell/log.h"
#include "sim/session.h"

namespace hcr {
namespace {

struct EventName {
    u32 event;
    const char* name;
};

constexpr EventName kSystemEvents[] = {
    {kEventSim, "Sim"},
    {kEventObjectAdded, "ObjectAdded"},
    {kEventObjectRemoved, "ObjectRemoved"},
    {kEventFlightLoaded, "FlightLoaded"},
    {kEventFrame, "Frame"},
};

struct Variable {
    u32 definition;
    const char* name;
    const char* unit;  ///< null for texts
    SimDataType type;
};

// The order within a definition is the order of its record: UserAircraftData, AiStatusData, StaticData, PositionBlock.
constexpr Variable kVariables[] = {
    {kDefTitle, "TITLE", nullptr, SIMCONNECT_DATATYPE_STRINGV},
    {kDefModel, "ATC MODEL", nullptr, SIMCONNECT_DATATYPE_STRING32},
    {kDefOnGround, "SIM ON GROUND", "Bool", SIMCONNECT_DATATYPE_INT64},
    {kDefPosition, "Plane Latitude", "degree", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefPosition, "Plane Longitude", "degree", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefPosition, "Plane Pitch degrees", "radians", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefPosition, "Plane Bank degrees", "radians", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefPosition, "Plane Heading degrees true", "radians", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefPosition, "Plane Altitude", "feet", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefPosition, "Vertical Speed", "feet per second", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefPosition, "Airspeed True", "knots", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefUserPosition, "Plane Latitude", "degree", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefUserPosition, "Plane Longitude", "degree", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefUserPosition, "Plane Pitch degrees", "radians", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefUserPosition, "Plane Bank degrees", "radians", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefUserPosition, "Plane Heading degrees true", "radians", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefUserPosition, "Plane Altitude", "feet", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefUserPosition, "Plane Alt Above Ground", "feet", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefUserPosition, "Ground Velocity", "knots", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefUserPosition, "ZULU TIME", "Seconds", SIMCONNECT_DATATYPE_INT64},
    {kDefUserPosition, "ZULU DAY OF YEAR", "Number", SIMCONNECT_DATATYPE_INT64},
    {kDefUserPosition, "ZULU YEAR", "Number", SIMCONNECT_DATATYPE_INT64},
    {kDefUserPosition, "LIGHT STATES", "Mask", SIMCONNECT_DATATYPE_INT64},
    {kDefStaticData, "Static CG to Ground", "feet", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefStaticData, "Static Pitch", "radians", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefAiStatus, "Plane Alt Above Ground", "feet", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefAiStatus, "Ground Altitude", "feet", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefAiStatus, "SIM ON GROUND", "Bool", SIMCONNECT_DATATYPE_INT64},
    {kDefAiStatus, "ATC ID", nullptr, SIMCONNECT_DATATYPE_STRING32},
    {kDefThrottleSpoilers, "SPOILERS HANDLE POSITION", "percent", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefThrottleSpoilers, "GENERAL ENG THROTTLE LEVER POSITION:1", "percent", SIMCONNECT_DATATYPE_FLOAT64},
    {kDefThrottleSpoilers, "GENERAL ENG THROTTLE LEVER POSITION:2", "percent", SIMCONNECT_DATATYPE_FLOAT64},
};

constexpr EventName kClientEvents[] = {
    {GEAR_SET, "GEAR_SET"},
    {ENGINE_AUTO_START, "ENGINE_AUTO_START"},
    {ENGINE_AUTO_SHUTDOWN, "ENGINE_AUTO_SHUTDOWN"},
    {THROTTLE_SET, "THROTTLE_SET"},
    {FLAPS_SET, "FLAPS_SET"},
    {SPOILERS_SET, "SPOILERS_SET"},
    {NAV_LIGHTS_SET, "NAV_LIGHTS_SET"},
    {BEACON_LIGHTS_SET, "BEACON_LIGHTS_SET"},
    {LANDING_LIGHTS_SET, "LANDING_LIGHTS_SET"},
    {TAXI_LIGHTS_SET, "TAXI_LIGHTS_SET"},
    {STROBES_SET, "STROBES_SET"},
    {LOGO_LIGHTS_SET, "LOGO_LIGHTS_SET"},
    {CABIN_LIGHTS_SET, "CABIN_LIGHTS_SET"},
    {ALL_LIGHTS_TOGGLE, "ALL_LIGHTS_TOGGLE"},
    {FREEZE_LATITUDE_LONGITUDE_SET, "FREEZE_LATITUDE_LONGITUDE_SET"},
    {FREEZE_ALTITUDE_SET, "FREEZE_ALTITUDE_SET"},
    {FREEZE_ATTITUDE_SET, "FREEZE_ATTITUDE_SET"},
};

// ENGINE_AUTO_START is used, but isn't of the group.
constexpr u32 kGroupEvents[] = {
    NAV_LIGHTS_SET,
    BEACON_LIGHTS_SET,
    LANDING_LIGHTS_SET,
    TAXI_LIGHTS_SET,
    STROBES_SET,
    LOGO_LIGHTS_SET,
    CABIN_LIGHTS_SET,
    ALL_LIGHTS_TOGGLE,
    FLAPS_SET,
    SPOILERS_SET,
    GEAR_SET,
    ENGINE_AUTO_SHUTDOWN,
    THROTTLE_SET,
    FREEZE_LATITUDE_LONGITUDE_SET,
    FREEZE_ALTITUDE_SET,
    FREEZE_ATTITUDE_SET,
};

/// True for a good result; a bad one is told and raises the request error.
bool lf_accepted(SimResult result, std::string_view call, std::string_view what) {
    if (result >= 0) return true;
    gf_logError(fmt::format("{} {} fails", call, what));
    gf_raiseRequestError();
    return false;
}

bool lf_subscribe() {
    for (const EventName& item : kSystemEvents) {
        if (!lf_accepted(gSimPort.SimConnect_SubscribeToSystemEvent(gSimHandle, item.event, item.name),
                         "SimConnect_SubscribeToSystemEvent", item.name)) {
            return false;
        }
    }
    return true;
}

bool lf_define() {
    for (const Variable& item : kVariables) {
        if (!lf_accepted(gSimPort.SimConnect_AddToDataDefinition(gSimHandle, item.definition, item.name, item.unit,
                                                                 item.type, 0.0F, SIMCONNECT_UNUSED),
                         "SimConnect_AddToDataDefinition", item.name)) {
            return false;
        }
    }
    return true;
}

bool lf_mapEvents() {
    for (const EventName& item : kClientEvents) {
        if (!lf_accepted(gSimPort.SimConnect_MapClientEventToSimEvent(gSimHandle, item.event, item.name),
                         "SimConnect_MapClientEventToSimEvent", item.name)) {
            return false;
        }
    }
    return true;
}

bool lf_groupEvents() {
    for (const u32 event : kGroupEvents) {
        if (!lf_accepted(gSimPort.SimConnect_AddClientEventToNotificationGroup(gSimHandle, kEventGroup, event, 1),
                         "SimConnect_AddClientEventToNotificationGroup", fmt::format("{}", event))) {
            return false;
        }
    }
    return lf_accepted(
        gSimPort.SimConnect_SetNotificationGroupPriority(gSimHandle, kEventGroup, SIMCONNECT_GROUP_PRIORITY_HIGHEST),
        "SimConnect_SetNotificationGroupPriority", fmt::format("{}", kEventGroup));
}

}  // namespace

void gf_registerDefinitions() {
    [[maybe_unused]] const bool complete = lf_subscribe() && lf_define() && lf_mapEvents() && lf_groupEvents();
}

}  // namespace hcr
