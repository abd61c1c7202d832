#include "sim/port/layouts.h"

#include <cstddef>
#include <type_traits>

#include "core/model/aircraft.h"

// The offsets of the published records, as its documentation tells them in bytes. A compiler that lays out a record
// otherwise doesn't get past this file.

// A record that inherits the message's head has no standard layout, which this warning is about; the compilers in use
// put the head first all the same, and that is what is proved here.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

namespace hcr {

static_assert(sizeof(SIMCONNECT_RECV) == 12);
static_assert(offsetof(SIMCONNECT_RECV, dwSize) == 0);
static_assert(offsetof(SIMCONNECT_RECV, dwVersion) == 4);
static_assert(offsetof(SIMCONNECT_RECV, dwID) == 8);

static_assert(sizeof(SIMCONNECT_RECV_EXCEPTION) == 24);
static_assert(offsetof(SIMCONNECT_RECV_EXCEPTION, dwException) == 12);
static_assert(offsetof(SIMCONNECT_RECV_EXCEPTION, dwSendID) == 16);
static_assert(offsetof(SIMCONNECT_RECV_EXCEPTION, dwIndex) == 20);

static_assert(sizeof(SIMCONNECT_RECV_OPEN) == 308);
static_assert(offsetof(SIMCONNECT_RECV_OPEN, szApplicationName) == 12);
static_assert(offsetof(SIMCONNECT_RECV_OPEN, dwApplicationVersionMajor) == 268);
static_assert(offsetof(SIMCONNECT_RECV_OPEN, dwApplicationVersionMinor) == 272);
static_assert(offsetof(SIMCONNECT_RECV_OPEN, dwApplicationBuildMajor) == 276);
static_assert(offsetof(SIMCONNECT_RECV_OPEN, dwApplicationBuildMinor) == 280);
static_assert(offsetof(SIMCONNECT_RECV_OPEN, dwSimConnectVersionMajor) == 284);
static_assert(offsetof(SIMCONNECT_RECV_OPEN, dwSimConnectVersionMinor) == 288);
static_assert(offsetof(SIMCONNECT_RECV_OPEN, dwSimConnectBuildMajor) == 292);
static_assert(offsetof(SIMCONNECT_RECV_OPEN, dwSimConnectBuildMinor) == 296);
static_assert(offsetof(SIMCONNECT_RECV_OPEN, dwReserved1) == 300);
static_assert(offsetof(SIMCONNECT_RECV_OPEN, dwReserved2) == 304);

static_assert(sizeof(SIMCONNECT_RECV_QUIT) == 12);

static_assert(sizeof(SIMCONNECT_RECV_EVENT) == 24);
static_assert(offsetof(SIMCONNECT_RECV_EVENT, uGroupID) == 12);
static_assert(offsetof(SIMCONNECT_RECV_EVENT, uEventID) == 16);
static_assert(offsetof(SIMCONNECT_RECV_EVENT, dwData) == 20);

static_assert(sizeof(SIMCONNECT_RECV_EVENT_OBJECT_ADDREMOVE) == 28);
static_assert(offsetof(SIMCONNECT_RECV_EVENT_OBJECT_ADDREMOVE, dwData) == 20);
static_assert(offsetof(SIMCONNECT_RECV_EVENT_OBJECT_ADDREMOVE, eObjType) == 24);

static_assert(sizeof(SIMCONNECT_RECV_EVENT_FILENAME) == 288);
static_assert(offsetof(SIMCONNECT_RECV_EVENT_FILENAME, szFileName) == 24);
static_assert(offsetof(SIMCONNECT_RECV_EVENT_FILENAME, dwFlags) == 284);

static_assert(sizeof(SIMCONNECT_RECV_EVENT_FRAME) == 32);
static_assert(offsetof(SIMCONNECT_RECV_EVENT_FRAME, fFrameRate) == 24);
static_assert(offsetof(SIMCONNECT_RECV_EVENT_FRAME, fSimSpeed) == 28);

static_assert(sizeof(SIMCONNECT_RECV_SIMOBJECT_DATA) == 40);
static_assert(offsetof(SIMCONNECT_RECV_SIMOBJECT_DATA, dwRequestID) == 12);
static_assert(offsetof(SIMCONNECT_RECV_SIMOBJECT_DATA, dwObjectID) == 16);
static_assert(offsetof(SIMCONNECT_RECV_SIMOBJECT_DATA, dwDefineID) == 20);
static_assert(offsetof(SIMCONNECT_RECV_SIMOBJECT_DATA, dwFlags) == 24);
static_assert(offsetof(SIMCONNECT_RECV_SIMOBJECT_DATA, dwentrynumber) == 28);
static_assert(offsetof(SIMCONNECT_RECV_SIMOBJECT_DATA, dwoutof) == 32);
static_assert(offsetof(SIMCONNECT_RECV_SIMOBJECT_DATA, dwDefineCount) == 36);

static_assert(sizeof(SIMCONNECT_RECV_ASSIGNED_OBJECT_ID) == 20);
static_assert(offsetof(SIMCONNECT_RECV_ASSIGNED_OBJECT_ID, dwRequestID) == 12);
static_assert(offsetof(SIMCONNECT_RECV_ASSIGNED_OBJECT_ID, dwObjectID) == 16);

static_assert(sizeof(SIMCONNECT_DATA_INITPOSITION) == 56);
static_assert(offsetof(SIMCONNECT_DATA_INITPOSITION, Latitude) == 0);
static_assert(offsetof(SIMCONNECT_DATA_INITPOSITION, Longitude) == 8);
static_assert(offsetof(SIMCONNECT_DATA_INITPOSITION, Altitude) == 16);
static_assert(offsetof(SIMCONNECT_DATA_INITPOSITION, Pitch) == 24);
static_assert(offsetof(SIMCONNECT_DATA_INITPOSITION, Bank) == 32);
static_assert(offsetof(SIMCONNECT_DATA_INITPOSITION, Heading) == 40);
static_assert(offsetof(SIMCONNECT_DATA_INITPOSITION, OnGround) == 48);
static_assert(offsetof(SIMCONNECT_DATA_INITPOSITION, Airspeed) == 52);

// It travels by value: more than a plain record would be handed over in another way.
static_assert(std::is_trivially_copyable_v<SIMCONNECT_DATA_INITPOSITION> &&
              std::is_standard_layout_v<SIMCONNECT_DATA_INITPOSITION>);

// Records of this program's own data definitions: the values stand one behind the other as they were added.

static_assert(sizeof(PositionBlock) == 64);  // definition 402
static_assert(offsetof(PositionBlock, lat) == 0);
static_assert(offsetof(PositionBlock, lon) == 8);
static_assert(offsetof(PositionBlock, pitch) == 16);
static_assert(offsetof(PositionBlock, bank) == 24);
static_assert(offsetof(PositionBlock, heading) == 32);
static_assert(offsetof(PositionBlock, alt) == 40);
static_assert(offsetof(PositionBlock, vsFtPerSec) == 48);
static_assert(offsetof(PositionBlock, tas) == 56);

static_assert(sizeof(UserAircraftData) == 96);  // definition 403
static_assert(offsetof(UserAircraftData, lat) == 0);
static_assert(offsetof(UserAircraftData, lon) == 8);
static_assert(offsetof(UserAircraftData, pitch) == 16);
static_assert(offsetof(UserAircraftData, bank) == 24);
static_assert(offsetof(UserAircraftData, heading) == 32);
static_assert(offsetof(UserAircraftData, alt) == 40);
static_assert(offsetof(UserAircraftData, agl) == 48);
static_assert(offsetof(UserAircraftData, groundSpeed) == 56);
static_assert(offsetof(UserAircraftData, zuluTime) == 64);
static_assert(offsetof(UserAircraftData, zuluDay) == 72);
static_assert(offsetof(UserAircraftData, zuluYear) == 80);
static_assert(offsetof(UserAircraftData, lightStates) == 88);

static_assert(sizeof(AiStatusData) == 56);  // definition 404
static_assert(offsetof(AiStatusData, agl) == 0);
static_assert(offsetof(AiStatusData, groundAltitude) == 8);
static_assert(offsetof(AiStatusData, onGround) == 16);
static_assert(offsetof(AiStatusData, atcId) == 24);

static_assert(sizeof(StaticData) == 16);  // definition 405
static_assert(offsetof(StaticData, staticCgFt) == 0);
static_assert(offsetof(StaticData, staticPitch) == 8);

}  // namespace hcr
