#pragma once

#include "sim/port/assumptions.h"

namespace hcr {

// The published binary layouts of the simulator's client interface. They are the same on every implementation of
// SimPort, so that the dispatch code is one. Names are the published ones; layouts.cpp proves sizes and offsets.

#pragma pack(push, 1)

struct SIMCONNECT_RECV {
    u32 dwSize;  ///< of the whole message
    u32 dwVersion;
    u32 dwID;  ///< SimRecvId
};

struct SIMCONNECT_RECV_EXCEPTION : SIMCONNECT_RECV {
    u32 dwException;  ///< SimException
    u32 dwSendID;     ///< packet id of the call
    u32 dwIndex;      ///< 1-based parameter, 0 = unknown
};

struct SIMCONNECT_RECV_OPEN : SIMCONNECT_RECV {
    char szApplicationName[256];
    u32 dwApplicationVersionMajor, dwApplicationVersionMinor, dwApplicationBuildMajor, dwApplicationBuildMinor;
    u32 dwSimConnectVersionMajor, dwSimConnectVersionMinor, dwSimConnectBuildMajor, dwSimConnectBuildMinor;
    u32 dwReserved1, dwReserved2;
};

struct SIMCONNECT_RECV_QUIT : SIMCONNECT_RECV {};

struct SIMCONNECT_RECV_EVENT : SIMCONNECT_RECV {
    u32 uGroupID;  ///< all ones = unknown group
    u32 uEventID;
    u32 dwData;
};

struct SIMCONNECT_RECV_EVENT_OBJECT_ADDREMOVE : SIMCONNECT_RECV_EVENT {
    u32 eObjType;  ///< SimObjectType; the object's id is in dwData
};

struct SIMCONNECT_RECV_EVENT_FILENAME : SIMCONNECT_RECV_EVENT {
    char szFileName[260];
    u32 dwFlags;
};

struct SIMCONNECT_RECV_EVENT_FRAME : SIMCONNECT_RECV_EVENT {
    f32 fFrameRate;
    f32 fSimSpeed;
};

/// Head of object data and of object data by type; the data follow at offset 40.
struct SIMCONNECT_RECV_SIMOBJECT_DATA : SIMCONNECT_RECV {
    u32 dwRequestID;
    u32 dwObjectID;
    u32 dwDefineID;
    u32 dwFlags;
    u32 dwentrynumber;
    u32 dwoutof;
    u32 dwDefineCount;
};

struct SIMCONNECT_DATA_INITPOSITION {
    f64 Latitude, Longitude;   ///< degrees
    f64 Altitude;              ///< feet
    f64 Pitch, Bank, Heading;  ///< degrees
    u32 OnGround;              ///< 0 or 1
    u32 Airspeed;              ///< knots
};

/// Answer to a call that creates an object.
struct SIMCONNECT_RECV_ASSIGNED_OBJECT_ID : SIMCONNECT_RECV {
    u32 dwRequestID;
    u32 dwObjectID;
};

/// Definition 403: the user's aircraft.
struct UserAircraftData {
    f64 lat, lon;              ///< degrees
    f64 pitch, bank, heading;  ///< radians
    f64 alt;                   ///< feet
    f64 agl;                   ///< feet above ground
    f64 groundSpeed;           ///< knots
    i64 zuluTime;              ///< seconds of the day
    i64 zuluDay;               ///< day of the year, from 1
    i64 zuluYear;
    i64 lightStates;  ///< mask
};

/// Definition 404: periodic status of an AI aircraft.
struct AiStatusData {
    f64 agl;             ///< feet above ground
    f64 groundAltitude;  ///< feet
    i64 onGround;        ///< 0 or 1
    char atcId[32];
};

/// Definition 405.
struct StaticData {
    f64 staticCgFt;   ///< feet
    f64 staticPitch;  ///< radians
};

#pragma pack(pop)

enum SimRecvId : u32 {
    SIMCONNECT_RECV_ID_NULL = 0,
    SIMCONNECT_RECV_ID_EXCEPTION = 1,
    SIMCONNECT_RECV_ID_OPEN = 2,
    SIMCONNECT_RECV_ID_QUIT = 3,
    SIMCONNECT_RECV_ID_EVENT = 4,
    SIMCONNECT_RECV_ID_EVENT_OBJECT_ADDREMOVE = 5,
    SIMCONNECT_RECV_ID_EVENT_FILENAME = 6,
    SIMCONNECT_RECV_ID_EVENT_FRAME = 7,
    SIMCONNECT_RECV_ID_SIMOBJECT_DATA = 8,
    SIMCONNECT_RECV_ID_SIMOBJECT_DATA_BYTYPE = 9,
    SIMCONNECT_RECV_ID_ASSIGNED_OBJECT_ID = 12,
    SIMCONNECT_RECV_ID_CLIENT_DATA = 16,
    SIMCONNECT_RECV_ID_EVENT_EX1 = kRecvIdEventEx1,
};

enum SimException : u32 {
    SIMCONNECT_EXCEPTION_NONE = 0,
    SIMCONNECT_EXCEPTION_ERROR = 1,
    SIMCONNECT_EXCEPTION_SIZE_MISMATCH = 2,
    SIMCONNECT_EXCEPTION_UNRECOGNIZED_ID = 3,
    SIMCONNECT_EXCEPTION_UNOPENED = 4,
    SIMCONNECT_EXCEPTION_VERSION_MISMATCH = 5,
    SIMCONNECT_EXCEPTION_TOO_MANY_GROUPS = 6,
    SIMCONNECT_EXCEPTION_NAME_UNRECOGNIZED = 7,
    SIMCONNECT_EXCEPTION_EVENT_ID_DUPLICATE = 9,
    SIMCONNECT_EXCEPTION_TOO_MANY_OBJECTS = 11,
    SIMCONNECT_EXCEPTION_INVALID_DATA_TYPE = 18,
    SIMCONNECT_EXCEPTION_INVALID_DATA_SIZE = 19,
    SIMCONNECT_EXCEPTION_DATA_ERROR = 20,
    SIMCONNECT_EXCEPTION_INVALID_ARRAY = 21,
    SIMCONNECT_EXCEPTION_CREATE_OBJECT_FAILED = 22,
    SIMCONNECT_EXCEPTION_LOAD_FLIGHTPLAN_FAILED = 23,
    SIMCONNECT_EXCEPTION_OPERATION_INVALID_FOR_OBJECT_TYPE = 24,
    SIMCONNECT_EXCEPTION_ILLEGAL_OPERATION = 25,
    SIMCONNECT_EXCEPTION_ALREADY_SUBSCRIBED = 26,
    SIMCONNECT_EXCEPTION_INVALID_ENUM = 27,
    SIMCONNECT_EXCEPTION_DEFINITION_ERROR = 28,
    SIMCONNECT_EXCEPTION_DUPLICATE_ID = 29,
    SIMCONNECT_EXCEPTION_OUT_OF_BOUNDS = 31,
};

}  // namespace hcr
