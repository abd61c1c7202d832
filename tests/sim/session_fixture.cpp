#include "session_fixture.h"

#include <fmt/format.h>

#include <stdexcept>
#include <utility>

#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "liveries/match_memory.h"
#include "shell/log.h"
#include "shell/log_start.h"
#include "shell/messages.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"
#include "shell/window_state.h"
#include "sim/dispatch.h"
#include "sim/session.h"
#include "sim/session_reset.h"
#include "tests/support/world.h"

namespace hcr::test {

RecordedPort gRecorded;

namespace {

SimHandle const kHandle = &gRecorded;

template <typename... Arguments>
SimResult lf_record(const char* name, Arguments... arguments) {
    std::string text = name;
    ((text += fmt::format(" {}", arguments)), ...);
    gRecorded.calls.push_back(text);
    return gRecorded.failing == name ? -1 : 0;
}

SimPort lf_recordingPort() {
    SimPort port;
    port.SimConnect_Open = [](SimHandle* handle, const char* name, void*, u32, void*, u32) -> SimResult {
        if (lf_record("Open", name) < 0) return -1;
        *handle = kHandle;
        return 0;
    };
    port.SimConnect_Close = [](SimHandle) { return lf_record("Close"); };
    port.SimConnect_CallDispatch = [](SimHandle, SimDispatch dispatch, void* context) -> SimResult {
        if (gRecorded.throwing == 1) throw std::runtime_error("the library fell over");
        if (gRecorded.throwing == 2) throw 4711;
        std::vector<Bytes> waiting;
        waiting.swap(gRecorded.waiting);
        for (Bytes& bytes : waiting) {
            dispatch(reinterpret_cast<SIMCONNECT_RECV*>(bytes.data()), static_cast<u32>(bytes.size()), context);
        }
        return 0;
    };
    port.SimConnect_GetLastSentPacketID = [](SimHandle, u32* packetId) -> SimResult {
        *packetId = gRecorded.nextPacket++;
        return gRecorded.failing == "GetLastSentPacketID" ? -1 : 0;
    };
    port.SimConnect_AddToDataDefinition = [](SimHandle, u32 definition, const char* variable, const char* unit,
                                             u32 type, f32, u32) {
        return lf_record("Define", definition, variable, unit != nullptr ? unit : "-", type);
    };
    port.SimConnect_RequestDataOnSimObject = [](SimHandle, u32 request, u32 definition, u32 object, u32 period, u32,
                                                u32, u32, u32) {
        return lf_record("Request", request, definition, object, period);
    };
    port.SimConnect_RequestDataOnSimObjectType = [](SimHandle, u32 request, u32 definition, u32, u32 type) {
        return lf_record("RequestType", request, definition, type);
    };
    port.SimConnect_SetDataOnSimObject = [](SimHandle, u32 definition, u32 object, u32, u32, u32 size, void* data) {
        f64 first = 0;
        std::memcpy(&first, data, sizeof(first));
        return lf_record("SetData", definition, object, size, first);
    };
    port.SimConnect_MapClientEventToSimEvent = [](SimHandle, u32 event, const char* name) {
        return lf_record("Map", event, name);
    };
    port.SimConnect_AddClientEventToNotificationGroup = [](SimHandle, u32 group, u32 event, i32 maskable) {
        return lf_record("Group", group, event, maskable);
    };
    port.SimConnect_SetNotificationGroupPriority = [](SimHandle, u32 group, u32 priority) {
        return lf_record("Priority", group, priority);
    };
    port.SimConnect_SubscribeToSystemEvent = [](SimHandle, u32 event, const char* name) {
        return lf_record("Subscribe", event, name);
    };
    port.SimConnect_TransmitClientEvent = [](SimHandle, u32 object, u32 event, u32 data, u32, u32) {
        return lf_record("Event", object, event, data);
    };
    port.SimConnect_AICreateNonATCAircraft = [](SimHandle, const char* title, const char* tail,
                                                SIMCONNECT_DATA_INITPOSITION position, u32 request) {
        return lf_record("Create", title, tail, f64{position.Heading}, u32{position.OnGround}, request);
    };
    port.SimConnect_AIReleaseControl = [](SimHandle, u32 object, u32) { return lf_record("Release", object); };
    port.SimConnect_AIRemoveObject = [](SimHandle, u32 object, u32) { return lf_record("Remove", object); };
    port.SimConnect_AISetAircraftFlightPlan = [](SimHandle, u32 object, const char* path, u32) {
        return lf_record("Plan", object, path);
    };
    return port;
}

}  // namespace

void resetSessionGlobals() {
    gf_resetSimSession();
    gf_clearTables();
    gf_resetParameters();
    gf_resetWindowState();
    failedTitles.clear();
    failedModels.clear();
    gStop = gUserStop = false;
    gExitReason = ExitReason::notYetSet;
    gRestartSeconds = 0;
    gSecondPulse = false;
    gSimTime = 0;
}

SessionTest::SessionTest() {
    resetSessionGlobals();
    gRecorded = {};
    gSimPort = lf_recordingPort();
    gSimHandle = kHandle;
}

SessionTest::~SessionTest() {
    resetSessionGlobals();
    gSimPort = {};
}

std::string SessionTest::log() {
    gf_logFlush();
    return readFile("Log.txt");
}

bool SessionTest::logHas(const std::string& piece) {
    return log().find(piece) != std::string::npos;
}

std::size_t SessionTest::logCount(const std::string& piece) {
    return countOf(log(), piece);
}

std::vector<std::string> SessionTest::takeCalls() {
    return std::exchange(gRecorded.calls, {});
}

std::vector<SimMessage> SessionTest::takeNews() {
    const std::lock_guard lock(gSimEventMutex);
    return std::exchange(gSimEvents, {});
}

void dispatchBytes(const Bytes& bytes) {
    Bytes exact(bytes.begin(), bytes.end());
    exact.shrink_to_fit();
    gf_dispatch(reinterpret_cast<SIMCONNECT_RECV*>(exact.data()), static_cast<u32>(exact.size()), nullptr);
}

Bytes objectData(SimRecvId id, u32 request, u32 object, const Bytes& data) {
    auto head = messageOf<SIMCONNECT_RECV_SIMOBJECT_DATA>(id);
    head.dwSize += static_cast<u32>(data.size());
    head.dwRequestID = request;
    head.dwObjectID = object;
    head.dwentrynumber = head.dwoutof = 1;
    const Bytes start = bytesOf(head);
    Bytes bytes(start.size() + data.size());
    std::copy(data.begin(), data.end(), std::copy(start.begin(), start.end(), bytes.begin()));
    return bytes;
}

UserAircraftData userAt(f64 lat, f64 lon) {
    UserAircraftData user{};
    user.lat = lat;
    user.lon = lon;
    user.zuluTime = 3600;
    user.zuluDay = 32;
    user.zuluYear = 2024;
    return user;
}

void dispatchUser(const UserAircraftData& user, u32 object) {
    dispatchBytes(objectData(SIMCONNECT_RECV_ID_SIMOBJECT_DATA, kReqUserPosition, object, user));
}

void dispatchAdded(u32 object, u32 type) {
    auto event = messageOf<SIMCONNECT_RECV_EVENT_OBJECT_ADDREMOVE>(SIMCONNECT_RECV_ID_EVENT_OBJECT_ADDREMOVE);
    event.uEventID = kEventObjectAdded;
    event.dwData = object;
    event.eObjType = type;
    dispatchRecord(event);
}

void dispatchStatus(u32 object, const std::string& atcId, f64 agl, i64 onGround) {
    AiStatusData status{};
    status.agl = agl;
    status.groundAltitude = 12;
    status.onGround = onGround;
    std::memcpy(status.atcId, atcId.data(), std::min(atcId.size(), sizeof(status.atcId)));
    dispatchBytes(objectData(SIMCONNECT_RECV_ID_SIMOBJECT_DATA_BYTYPE, kReqInRange, object, status));
}

void dispatchException(u32 code, u32 packet, u32 index) {
    auto exception = messageOf<SIMCONNECT_RECV_EXCEPTION>(SIMCONNECT_RECV_ID_EXCEPTION);
    exception.dwException = code;
    exception.dwSendID = packet;
    exception.dwIndex = index;
    dispatchRecord(exception);
}

AiCreateRequest createRequest(u32 hexid, const std::string& callsign, std::string_view title) {
    AiCreateRequest request;
    request.callsign = callsign;
    request.title = title;
    request.id = hexid;
    request.heading = 181.5;
    return request;
}

}  // namespace hcr::test
