#include "sim/dispatch.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <utility>

#include "core/model/park_state.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"
#include "shell/settings.h"
#include "shell/window_state.h"
#include "sim/definitions.h"
#include "sim/drain.h"
#include "sim/object_data.h"
#include "sim/session.h"
#include "sim/sim_message.h"
#include "sim/traffic_counters.h"

namespace hcr {
namespace {

constexpr i32 kNewFlightRestartSeconds = 45;
constexpr u32 kFramesPerRate = 30;  // the frame rate is looked at about once a second

/// Marks of a session. SimClient only.
struct SessionMarks {
    u32 frames = 0;  ///< since the frame rate was looked at
    bool quit = false;
};
SessionMarks gMarks;

/// The message as the record T, or null when it is too short for one.
template <typename T>
const T* lf_as(const SIMCONNECT_RECV* message, u32 size) {
    return size >= sizeof(T) ? static_cast<const T*>(message) : nullptr;
}

/// Letters, digits and white space of a text that may lack its zero end.
std::string lf_plainName(const char (&text)[256]) {
    const auto end = std::find(std::begin(text), std::end(text), '\0');
    std::string name;
    std::copy_if(std::begin(text), end, std::back_inserter(name), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x80 && (std::isalnum(byte) != 0 || std::isspace(byte) != 0);
    });
    return name;
}

/// Throws unless the simulator is the one that the user has chosen.
void lf_checkSimulator(const std::string& name) {
    const bool is2024 = name == "SunRise";
    if (!is2024 && name != "KittyHawk") {
        throw UserErrorException(77, fmt::format("'{}' not being MSFS 2020 or MSFS 2024 connects ... ?", name));
    }
    if (is2024 != gf_sim2024Chosen()) {
        const char* running = is2024 ? "24" : "20";
        throw UserErrorException(71, gf_withAdvice(fmt::format("MSFS 20{} is running ..., switch Simulator, or select "
                                                               "the right sim in the drop down list above",
                                                               running),
                                                   gf_settingAdvice("SIM_CHOICE", fmt::format("MSFS 20{}", running))));
    }
}

void lf_onOpen(const SIMCONNECT_RECV_OPEN& open) {
    const std::string name = lf_plainName(open.szApplicationName);
    if (name.empty()) {
        gf_log("! Simulator name empty?");
        return;
    }
    gWindow.simConnected = true;
    gf_repaint(Band::simulator);
    lf_checkSimulator(name);
    const u32 major = open.dwApplicationVersionMajor, minor = open.dwApplicationVersionMinor;
    const u32 buildMajor = open.dwApplicationBuildMajor, buildMinor = open.dwApplicationBuildMinor;
    const std::string text = fmt::format("{} ({}.{}.{}.{})", name, major, minor, buildMajor, buildMinor);
    gf_log(fmt::format("{} connected", text));
    gWindow.simulatorText.set(text);
    gf_clearMessage();
    gf_repaint(Band::simulator);
}

/// A create call that the simulator doesn't carry out, for its title (createRefused) or for want of room (noRoom).
void lf_onCreateFailed(u32 packetId, SimKind kind) {
    const auto failed = std::find_if(gPendingCreates.begin(), gPendingCreates.end(),
                                     [packetId](const PendingCreate& create) { return create.packetId == packetId; });
    if (packetId == 0 || failed == gPendingCreates.end()) return;
    const PendingCreate create = gf_takePendingCreate(failed);
    if (create.hexid == 0) return;
    if (kind == SimKind::createRefused) ++gSimTraffic.refused;
    SimMessage news;
    news.id = create.hexid;
    news.kind = kind;
    gf_pushSimMessage(news);
}

void lf_onException(const SIMCONNECT_RECV_EXCEPTION& exception) {
    const u32 code = exception.dwException;
    switch (code) {
        case SIMCONNECT_EXCEPTION_UNRECOGNIZED_ID:
            if (gf_simUserPositionKnown() && !gf_stopAsked() && gf_mayLog(LogKind::simUnknownId)) {
                gf_logError("SIMCONNECT_EXCEPTION_UNRECOGNIZED_ID");
            }
            break;
        case SIMCONNECT_EXCEPTION_VERSION_MISMATCH: {
            const u32 index = exception.dwIndex;
            throw UserErrorException(95, fmt::format("SimConnect Version Mismatch, dwIndex: {}", index));
        }
        case SIMCONNECT_EXCEPTION_TOO_MANY_OBJECTS:
            gf_showMessage("SimConnect: too many objects (max 1000)", gf_mayLog(LogKind::simObjects));
            lf_onCreateFailed(exception.dwSendID, SimKind::noRoom);
            break;
        case SIMCONNECT_EXCEPTION_INVALID_DATA_SIZE:
            if (gf_mayLog(LogKind::simDataSize)) gf_log("SIMCONNECT_EXCEPTION_INVALID_DATA_SIZE");
            break;
        case SIMCONNECT_EXCEPTION_CREATE_OBJECT_FAILED:
            lf_onCreateFailed(exception.dwSendID, SimKind::createRefused);
            break;
        case SIMCONNECT_EXCEPTION_LOAD_FLIGHTPLAN_FAILED:
            if (gf_mayLog(LogKind::simFlightPlan)) gf_logError("SimConnect exception: load flight plan failed");
            break;
        case SIMCONNECT_EXCEPTION_OPERATION_INVALID_FOR_OBJECT_TYPE:
            if (gf_mayLog(LogKind::simOperation)) gf_log("SIMCONNECT_EXCEPTION_OPERATION_INVALID_FOR_OBJECT_TYPE");
            break;
        default:
            if (gf_mayLog(LogKind::simException)) gf_logError(fmt::format("SIMCONNECT_EXCEPTION #{}", code));
    }
}

void lf_onFlightLoaded() {
    gf_log("SimConnect: flight loaded event");
    gf_rememberUserStand();
    gf_requestStop(ExitReason::newFlight, kNewFlightRestartSeconds);
}

void lf_setFlightRunning(bool running) {
    gFlightRunning = running;
    gWindow.flightRunning = running;
    gf_repaint(Band::simulator);
}

void lf_onEvent(const SIMCONNECT_RECV_EVENT& event) {
    if (event.uEventID == kEventSim) lf_setFlightRunning(event.dwData == 1);
    if (event.uEventID == kEventFlightLoaded) lf_onFlightLoaded();
}

void lf_onAddRemove(const SIMCONNECT_RECV_EVENT_OBJECT_ADDREMOVE& event) {
    const u32 type = event.eObjType;
    if (type != SIMCONNECT_SIMOBJECT_TYPE_AIRCRAFT && type != SIMCONNECT_SIMOBJECT_TYPE_HELICOPTER) return;
    if (event.uEventID == kEventObjectAdded) gf_onObjectAdded(event.dwData);
    if (event.uEventID == kEventObjectRemoved) gf_onObjectRemoved(event.dwData);
}

void lf_onFrame(const SIMCONNECT_RECV_EVENT_FRAME& frame) {
    gf_drainQueues();
    if (++gMarks.frames < kFramesPerRate) return;
    gMarks.frames = 0;
    gFrameRate = frame.fFrameRate;
}

void lf_onQuit() {
    gMarks.quit = true;
    lf_setFlightRunning(false);
}

/// Calls the handler with the message as its record, unless the message is too short.
template <typename T>
void lf_handle(const SIMCONNECT_RECV* message, u32 size, void (*handler)(const T&)) {
    if (const T* record = lf_as<T>(message, size)) handler(*record);
}

}  // namespace

void gf_dispatch(SIMCONNECT_RECV* message, u32 size, void* /*context*/) {
    if (message == nullptr || size < sizeof(SIMCONNECT_RECV)) return;
    size = std::min(size, u32{message->dwSize});
    if (size < sizeof(SIMCONNECT_RECV)) return;
    const u32 id = message->dwID;
    switch (id) {
        case SIMCONNECT_RECV_ID_EXCEPTION:
            lf_handle<SIMCONNECT_RECV_EXCEPTION>(message, size, lf_onException);
            break;
        case SIMCONNECT_RECV_ID_OPEN:
            lf_handle<SIMCONNECT_RECV_OPEN>(message, size, lf_onOpen);
            break;
        case SIMCONNECT_RECV_ID_QUIT:
            lf_onQuit();
            break;
        case SIMCONNECT_RECV_ID_EVENT:
            lf_handle<SIMCONNECT_RECV_EVENT>(message, size, lf_onEvent);
            break;
        case SIMCONNECT_RECV_ID_EVENT_OBJECT_ADDREMOVE:
            lf_handle<SIMCONNECT_RECV_EVENT_OBJECT_ADDREMOVE>(message, size, lf_onAddRemove);
            break;
        case SIMCONNECT_RECV_ID_EVENT_FILENAME:
            gf_logError("SimConnect: New file event");
            lf_onFlightLoaded();
            break;
        case SIMCONNECT_RECV_ID_EVENT_FRAME:
            lf_handle<SIMCONNECT_RECV_EVENT_FRAME>(message, size, lf_onFrame);
            break;
        case SIMCONNECT_RECV_ID_SIMOBJECT_DATA:
            if (const auto* data = lf_as<SIMCONNECT_RECV_SIMOBJECT_DATA>(message, size)) gf_onObjectData(*data, size);
            break;
        case SIMCONNECT_RECV_ID_SIMOBJECT_DATA_BYTYPE:
            if (const auto* data = lf_as<SIMCONNECT_RECV_SIMOBJECT_DATA>(message, size)) {
                gf_onObjectDataByType(*data, size);
            }
            break;
        case SIMCONNECT_RECV_ID_ASSIGNED_OBJECT_ID:
        case SIMCONNECT_RECV_ID_CLIENT_DATA:
        case SIMCONNECT_RECV_ID_EVENT_EX1:
            break;
        default:
            if (gf_mayLog(LogKind::simMessage)) gf_log(fmt::format("! Unknown Dispatch dwID {}", id));
    }
}

bool gf_takeQuit() {
    return std::exchange(gMarks.quit, false);
}

void gf_resetDispatch() {
    gMarks = {};
}

}  // namespace hcr
