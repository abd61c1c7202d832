#pragma once

#include <bit>

#include "platform/types.h"

namespace hcr {

// What of the simulator's client interface isn't told by its documentation, but taken from common knowledge. Everything
// here wants a check on a real simulator; docs/windows.md tells the steps under the same numbers. What the code makes
// of an assumption that isn't a value stands where it is told:
//
//  1  Records are packed to one byte (layouts.h, layouts.cpp). All fields happen to be aligned, so that unpacked ones
//     would be the same.
//  2  Names are exported undecorated, with C linkage and the one calling convention of x64 (sim_port.h).
//  3  The parameters of the functions that sim_port.h marks with 3.
//  4  Numbers of the data types, 5 of the periods, 6 of the object types, 7 the other values below.
//  8  A helicopter may be announced with an object type of its own, and a request for aircraft may leave it out: the
//     program takes and asks for types 2 and 3, so that it is right either way (dispatch.cpp, session.cpp).
//  9  A request by type with nothing in range may be answered by one message without data (object_data.cpp drops what
//     is shorter than its record).
// 10  A radius above 200000 metres is refused or cut; the largest RANGE, 100 nautical miles, stays below (session.cpp).
// 11  SimConnect_CallDispatch may give a negative result when nothing waits. So its result tells nothing, and the end
//     of the simulator shows in the quit message or in a failed request (sim_client.cpp).
// 12  Calls from the run thread and SimConnect_CallDispatch on SimClient's thread may run side by side (session.h).
// 13  The simulator's and its own aircraft have object ids above the user's (object_data.cpp, drain.cpp).
// 14  A flight-plan file is named by its full path with its extension (flight_plan.cpp).

static_assert(sizeof(void*) == 8, "the simulator's client library has 64 bits");
static_assert(std::endian::native == std::endian::little, "messages are taken as they lie in memory");

enum SimDataType : u32 {
    SIMCONNECT_DATATYPE_INT32 = 1,
    SIMCONNECT_DATATYPE_INT64 = 2,
    SIMCONNECT_DATATYPE_FLOAT32 = 3,
    SIMCONNECT_DATATYPE_FLOAT64 = 4,
    SIMCONNECT_DATATYPE_STRING8 = 5,
    SIMCONNECT_DATATYPE_STRING32 = 6,
    SIMCONNECT_DATATYPE_STRING64 = 7,
    SIMCONNECT_DATATYPE_STRING128 = 8,
    SIMCONNECT_DATATYPE_STRING256 = 9,
    SIMCONNECT_DATATYPE_STRING260 = 10,
    SIMCONNECT_DATATYPE_STRINGV = 11,
};

enum SimPeriod : u32 {
    SIMCONNECT_PERIOD_NEVER = 0,
    SIMCONNECT_PERIOD_ONCE = 1,
    SIMCONNECT_PERIOD_VISUAL_FRAME = 2,
    SIMCONNECT_PERIOD_SIM_FRAME = 3,
    SIMCONNECT_PERIOD_SECOND = 4,
};

enum SimObjectType : u32 {
    SIMCONNECT_SIMOBJECT_TYPE_USER = 0,
    SIMCONNECT_SIMOBJECT_TYPE_ALL = 1,
    SIMCONNECT_SIMOBJECT_TYPE_AIRCRAFT = 2,
    SIMCONNECT_SIMOBJECT_TYPE_HELICOPTER = 3,
    SIMCONNECT_SIMOBJECT_TYPE_BOAT = 4,
    SIMCONNECT_SIMOBJECT_TYPE_GROUND = 5,
};

inline constexpr u32 SIMCONNECT_UNUSED = 0xFFFFFFFF;
inline constexpr u32 SIMCONNECT_OBJECT_ID_USER = 0;
inline constexpr u32 SIMCONNECT_GROUP_PRIORITY_HIGHEST = 1;
/// The documentation lists one more, experimental kind of message before this one, which the shipped numbering leaves
/// out.
inline constexpr u32 kRecvIdEventEx1 = 27;

}  // namespace hcr
