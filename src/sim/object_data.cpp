#include "sim/object_data.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "core/model/geo.h"
#include "core/model/park_state.h"
#include "core/model/run_state.h"
#include "shell/log.h"
#include "shell/run_stop.h"
#include "shell/text.h"
#include "shell/version.h"
#include "shell/window_state.h"
#include "sim/aircraft.h"
#include "sim/definitions.h"
#include "sim/drain.h"
#include "sim/session.h"
#include "sim/sim_message.h"
#include "sim/user_aircraft.h"

namespace hcr {
namespace {

constexpr f64 kTeleportNm = 10.0;  // no aircraft flies that far between two replies
constexpr i32 kTeleportRestartSeconds = 45;
constexpr f64 kStatusCeilingFt = 2500;  // above it nobody needs the height above ground
constexpr std::size_t kReservedObjects = 256;
constexpr std::size_t kLongestText = 260;  // of any text that the simulator knows
constexpr i64 kDaysToEpoch = 719163;       // days from 1 January of the year 1 to 1 January 1970, plus 1
constexpr i64 kSecondsPerDay = 86400;
constexpr i64 kSaneClock = 1'000'000'000;  // beyond it the parts of a clock are garbage, and their sums may overflow

/// What the replies of a session have told. SimClient only.
struct Told {
    std::vector<u32> added{};  ///< aircraft that were announced and not yet looked at
    UserAircraftData user{};
    LatLon previousUser{};
    std::string shownStand{};
    bool asoboLogged = false;
};
Told gTold;

const char* lf_data(const SIMCONNECT_RECV_SIMOBJECT_DATA& message) {
    return reinterpret_cast<const char*>(&message) + sizeof(message);
}

/// The record behind the head; nothing when the message is too short for it.
template <typename T>
std::optional<T> lf_record(const SIMCONNECT_RECV_SIMOBJECT_DATA& message, u32 size) {
    if (size < sizeof(message) + sizeof(T)) return {};
    T record;
    std::memcpy(&record, lf_data(message), sizeof(T));
    return record;
}

std::string_view lf_boundedText(const char* text, std::size_t room) {
    const void* end = std::memchr(text, '\0', room);
    return {text, end != nullptr ? static_cast<std::size_t>(static_cast<const char*>(end) - text) : room};
}

/// The text behind the head, up to its zero end, the message's end or the longest text there is.
std::string lf_text(const SIMCONNECT_RECV_SIMOBJECT_DATA& message, u32 size, std::size_t longest) {
    return std::string(lf_boundedText(lf_data(message), std::min<std::size_t>(size - sizeof(message), longest)));
}

bool lf_userKnown() {
    return positionKnown(gTold.user.lat, gTold.user.lon);
}

void lf_checkTeleport(const UserAircraftData& user) {
    if (!positionKnown(gTold.previousUser.lat, gTold.previousUser.lon) || !positionKnown(user.lat, user.lon)) return;
    if (!(distanceNm(gTold.previousUser.lat, gTold.previousUser.lon, user.lat, user.lon) > kTeleportNm)) return;
    gf_log("Teleport");
    gf_requestStop(ExitReason::newFlight, kTeleportRestartSeconds);
}

void lf_showStand(const UserAircraftData& user) {
    std::string stand = gf_standUnderUser({user.lat, user.lon});
    if (stand == gTold.shownStand) return;
    gWindow.userStand.set(stand);
    gf_repaint(Band::simulator);
    gTold.shownStand = std::move(stand);
}

bool lf_clockSane(const UserAircraftData& user) {
    const auto sane = [](i64 value) { return value > -kSaneClock && value < kSaneClock; };
    return sane(user.zuluYear) && sane(user.zuluDay) && sane(user.zuluTime);
}

void lf_onUserPosition(u32 objectId, UserAircraftData user) {
    if (!std::isfinite(user.lat) || !std::isfinite(user.lon) || !std::isfinite(user.alt)) return;
    user.alt = std::max(user.alt, 0.0);
    gTold.user = user;
    gf_storeUserPosition(user);
    lf_checkTeleport(user);
    gTold.previousUser = {user.lat, user.lon};
    lf_showStand(user);
    if (lf_clockSane(user)) gSimTime = gf_simUnixSeconds(user.zuluYear, user.zuluDay, user.zuluTime);
    gUserObjectId = objectId;
}

void lf_onUserOnGround(const SIMCONNECT_RECV_SIMOBJECT_DATA& message, u32 size) {
    const std::optional<u32> onGround = lf_record<u32>(message, size);
    if (!onGround) return;
    if (lf_userKnown()) {
        gUserOnGround = *onGround != 0;
        gUserOnGroundKnown = true;
    }
    gSecondPulse = true;
}

void lf_onStaticData(u32 objectId, const StaticData& data) {
    if (!std::isfinite(data.staticCgFt) || !std::isfinite(data.staticPitch)) return;
    SimMessage news;
    news.object = objectId;
    news.kind = SimKind::staticData;
    news.a = data.staticCgFt;
    news.b = data.staticPitch;
    gf_pushSimMessage(news);
}

/// True when the object was among the added ones; it is taken out, the last one moves into its place.
bool lf_takeAdded(u32 objectId) {
    const auto found = std::find(gTold.added.begin(), gTold.added.end(), objectId);
    if (found == gTold.added.end()) return false;
    *found = gTold.added.back();
    gTold.added.pop_back();
    return true;
}

void lf_onStatus(u32 objectId, const AiStatusData& status, std::string_view atcId) {
    if (status.agl > kStatusCeilingFt || atcId.empty() || atcId.ends_with('*')) return;
    SimMessage news;
    news.object = objectId;
    news.id = status.onGround != 0 ? 1 : 0;
    news.kind = SimKind::aiStatus;
    news.a = status.groundAltitude;
    news.b = status.agl;
    gf_pushSimMessage(news);
}

/// The aircraft id of the create call that made the object; 0 when none of ours did.
u32 lf_identify(std::string_view atcId) {
    if (atcId.empty()) return 0;
    const auto match = std::find_if(gPendingCreates.begin(), gPendingCreates.end(),
                                    [atcId](const PendingCreate& create) { return create.callsign == atcId; });
    return match != gPendingCreates.end() ? gf_takePendingCreate(match).hexid : 0;
}

void lf_logForeign(u32 objectId, const AiStatusData& status, std::string_view atcId) {
    const f64 agl = status.agl, groundAltitude = status.groundAltitude;
    const i64 onGround = status.onGround;
    if (atcId != "AS-GEN") {
        if (!gf_mayLog(LogKind::foreignObject)) return;
        gf_log(
            fmt::format("just spawned, but not by {}, oid: {}, callsign '{}', altaboveGnd:{:.0f} ft, onground:{}, "
                        "gnd_alt:{:.0f} ft",
                        kProgramName, objectId, gf_quoted(atcId), agl, onGround, groundAltitude));
        return;
    }
    if (gTold.asoboLogged) return;
    gTold.asoboLogged = true;
    gf_log(
        fmt::format("\nSpawned by Asobo, oid: {}, callsign AS-GEN, altaboveGnd:{:.0f} ft, onground:{}, "
                    "gnd_alt:{:.0f} ft\n This message will be logged only once...\n",
                    objectId, agl, onGround, groundAltitude));
}

/// Takes the new object from the simulator's own control, and tells the worker.
void lf_takeOver(u32 objectId, u32 hexid, f64 agl) {
    {
        const std::lock_guard lock(gSimMutex);
        if (gSimHandle != nullptr && !gRequestError) {
            gSimPort.SimConnect_AIReleaseControl(gSimHandle, objectId, kReqRelease);
        }
        gf_setFreeze(objectId);
    }
    const bool live = hexid > kLastStaticId;
    SimMessage news;
    news.object = objectId;
    news.id = hexid;
    news.kind = live ? SimKind::liveCreated : SimKind::staticCreated;
    news.b = live ? agl : 0;
    gf_pushSimMessage(news);
}

}  // namespace

void gf_onObjectData(const SIMCONNECT_RECV_SIMOBJECT_DATA& message, u32 size) {
    switch (message.dwRequestID) {
        case kReqStaticData:
            if (const auto data = lf_record<StaticData>(message, size)) lf_onStaticData(message.dwObjectID, *data);
            break;
        case kReqTitle:
            gf_onUserTitle(lf_text(message, size, kLongestText));
            break;
        case kReqModel:
            gf_onUserModel(lf_text(message, size, sizeof(AiStatusData::atcId)));
            break;
        case kReqOnGround:
            lf_onUserOnGround(message, size);
            break;
        case kReqUserPosition:
            if (const auto user = lf_record<UserAircraftData>(message, size)) {
                lf_onUserPosition(message.dwObjectID, *user);
            }
            break;
        default:
            break;
    }
}

void gf_onObjectDataByType(const SIMCONNECT_RECV_SIMOBJECT_DATA& message, u32 size) {
    if (message.dwRequestID != kReqInRange && message.dwRequestID != kReqHelicoptersInRange) return;
    const u32 objectId = message.dwObjectID;
    if (objectId <= gUserObjectId) return;
    const auto status = lf_record<AiStatusData>(message, size);
    if (!status || !std::isfinite(status->agl) || !std::isfinite(status->groundAltitude)) return;
    const std::string_view atcId = lf_boundedText(status->atcId, sizeof(status->atcId));
    if (!lf_takeAdded(objectId)) {
        lf_onStatus(objectId, *status, atcId);
        return;
    }
    const u32 hexid = lf_identify(atcId);
    if (hexid == 0) {
        lf_logForeign(objectId, *status, atcId);
    } else {
        lf_takeOver(objectId, hexid, status->agl);
    }
}

void gf_onObjectAdded(u32 objectId) {
    if (objectId > gUserObjectId) gTold.added.push_back(objectId);
}

void gf_onObjectRemoved(u32 objectId) {
    if (objectId == gUserObjectId) return;
    lf_takeAdded(objectId);  // it may go before anybody has looked at it
    SimMessage news;
    news.object = objectId;
    news.kind = SimKind::objectGone;
    gf_pushSimMessage(news);
}

bool gf_simUserPositionKnown() {
    return lf_userKnown();
}

void gf_resetObjectData() {
    gTold = {};
    gTold.added.reserve(kReservedObjects);
}

i64 gf_simUnixSeconds(i64 zuluYear, i64 zuluDay, i64 zuluTime) {
    const i64 year = zuluYear - 1;
    const i64 century = year / 100;
    const i64 days = zuluDay - kDaysToEpoch + ((1461 * year) >> 2) + (century >> 2) - century;
    return days * kSecondsPerDay + zuluTime;
}

}  // namespace hcr
