#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "core/model/aircraft.h"
#include "core/model/sim_requests.h"
#include "sim/definitions.h"
#include "sim/port/sim_port.h"
#include "sim/sim_message.h"
#include "tests/support/temp_folder.h"

namespace hcr::test {

/// What the recording port was asked, one text per call, and which call it is to fail.
struct RecordedPort {
    std::vector<std::string> calls;
    std::string failing;  ///< name of the call that gives a negative result
    i32 throwing = 0;     ///< SimConnect_CallDispatch throws: 1 a standard exception, 2 something else
    u32 nextPacket = 41;
    std::vector<std::vector<u8>> waiting;  ///< messages for the next SimConnect_CallDispatch
};
extern RecordedPort gRecorded;

/// A program in an own working folder, with a log, before whose simulator a recording port stands. All that a session
/// touches is back at its start.
struct SessionTest : testing::Test, LogFolder {
    SessionTest();
    ~SessionTest() override;

    static std::string log();
    static bool logHas(const std::string& piece);
    static std::size_t logCount(const std::string& piece);
    /// The calls since the last time.
    static std::vector<std::string> takeCalls();
    /// The news for the worker since the last time.
    static std::vector<SimMessage> takeNews();
};

/// Everything that sessions, tests and runs leave in globals, back to the start.
void resetSessionGlobals();

using Bytes = std::vector<u8>;

template <typename T>
Bytes bytesOf(const T& record) {
    Bytes bytes(sizeof(T));
    std::memcpy(bytes.data(), &record, sizeof(T));
    return bytes;
}

/// A record of the message kind, its head filled.
template <typename T>
T messageOf(SimRecvId id) {
    T message{};
    message.dwSize = sizeof(T);
    message.dwID = id;
    return message;
}

/// Hands the bytes to the dispatch function in a block of just their size, so that reading past them is seen.
void dispatchBytes(const Bytes& bytes);
template <typename T>
void dispatchRecord(const T& message) {
    dispatchBytes(bytesOf(message));
}

Bytes objectData(SimRecvId id, u32 request, u32 object, const Bytes& data);
template <typename T>
Bytes objectData(SimRecvId id, u32 request, u32 object, const T& record) {
    return objectData(id, request, object, bytesOf(record));
}

UserAircraftData userAt(f64 lat, f64 lon);
void dispatchUser(const UserAircraftData& user, u32 object = 1);
void dispatchAdded(u32 object, u32 type = SIMCONNECT_SIMOBJECT_TYPE_AIRCRAFT);
/// A reply of request 101 about one object.
void dispatchStatus(u32 object, const std::string& atcId, f64 agl = 1000, i64 onGround = 0);
void dispatchException(u32 code, u32 packet = 0, u32 index = 0);

AiCreateRequest createRequest(u32 hexid, const std::string& callsign, std::string_view title = "A320 House");

}  // namespace hcr::test
