#include "sim/port/sandbox/world.h"

#include <algorithm>
#include <cmath>

#include "core/model/geo.h"
#include "platform/clock.h"
#include "sim/port/sandbox/records.h"

namespace hcr {

std::mutex gSandboxMutex;
SandboxWorld gSandbox;

namespace {

// A simulator doesn't make up for frames and seconds that passed while nobody asked.
constexpr i32 kMaxBehind = 2;

constexpr const char* kSystemEventNames[kSandboxSystemEvents] = {"Sim", "ObjectAdded", "ObjectRemoved", "FlightLoaded",
                                                                 "Frame"};

bool lf_reachesClient(const SandboxWorld& world) {
    return world.session.open && !world.gone;
}

void lf_dropMissed(f64& next, f64 period, f64 target) {
    const f64 behind = std::floor((target - next) / period) + 1;
    if (behind > kMaxBehind) next += (behind - kMaxBehind) * period;
}

void lf_moveAircraft(SandboxWorld& world) {
    const f64 dt = world.now - world.lastMove;
    world.lastMove = world.now;
    if (dt <= 0) return;
    for (SandboxAircraft& ac : world.aircraft) {
        if (!gf_sandboxHeld(ac)) gf_sandboxMoveLoose(world.scenario, ac, world.now, dt);
    }
}

void lf_frame(SandboxWorld& world) {
    world.nextFrame += 1 / world.frameRate;
    lf_moveAircraft(world);
    ++world.counters.frames;
    const auto frame = static_cast<std::size_t>(SandboxSystemEvent::frame);
    SandboxSession& session = world.session;
    if (!lf_reachesClient(world)) return;
    if (session.subscribes[frame]) {
        if (auto* message =
                gf_sandboxAdd<SIMCONNECT_RECV_EVENT_FRAME>(session.waiting, SIMCONNECT_RECV_ID_EVENT_FRAME)) {
            message->uGroupID = SIMCONNECT_UNUSED;
            message->uEventID = session.subscribed[frame];
            message->fFrameRate = static_cast<f32>(world.frameRate);
            message->fSimSpeed = 1;
        }
    }
    if (session.requests.empty()) return;
    gf_sandboxServePeriod(world, SIMCONNECT_PERIOD_VISUAL_FRAME);
    gf_sandboxServePeriod(world, SIMCONNECT_PERIOD_SIM_FRAME);
}

void lf_traceState(SandboxWorld& world) {
    SandboxObject o;
    for (SandboxAircraft& ac : world.aircraft) {
        gf_sandboxSnapshot(world.scenario, ac, o);
        const auto lights =
            fmt::format(R"({{"nav":{},"beacon":{},"landing":{},"taxi":{},"strobes":{},"logo":{},"cabin":{}}})", o.nav,
                        o.beacon, o.landing, o.taxi, o.strobes, o.logo, o.cabin);
        gf_sandboxTraceLine(world.trace, world.now, "object", o.id, "tail", o.tail, "title", o.title, "lat", o.lat,
                            "lon", o.lon, "alt", o.alt, "agl", o.agl, "pitch", o.pitch, "bank", o.bank, "heading",
                            o.heading, "tas", o.tas, "vs", o.vs, "on_ground", o.onGround, "gear", o.gear, "flaps",
                            o.flaps, "throttle", o.throttle, "spoilers", o.spoilers, "engines", o.engines, "frozen",
                            gf_sandboxHeld(ac), "writes", o.positionWrites - ac.tracedWrites, "lights",
                            SandboxTraceRaw{lights});
        ac.tracedWrites = ac.positionWrites;
    }
    gf_sandboxTraceFlush(world.trace);
}

void lf_second(SandboxWorld& world) {
    world.nextSecond += 1;
    if (gf_sandboxRuns(world)) {
        lf_moveAircraft(world);
        gf_sandboxServePeriod(world, SIMCONNECT_PERIOD_SECOND);
    }
    if (world.trace.on) lf_traceState(world);
}

void lf_beginFlight(SandboxWorld& world) {
    world.flightAt = kNever;
    world.flight = true;
    world.lastMove = world.now;
    if (gf_sandboxPaused(world)) return;
    world.nextFrame = world.now + 1 / world.frameRate;
    gf_sandboxSendEvent(world, SandboxSystemEvent::sim, 1);
}

/// Plays what is due first, and tells whether there was anything up to `target`.
bool lf_playNext(SandboxWorld& world, f64 target) {
    const auto& faults = world.scenario.faults;
    const f64 fault = world.nextFault < faults.size() ? faults[world.nextFault].at : kNever;
    const f64 turn = std::min({fault, world.flightAt, world.resumeAt, world.slowUntil});
    lf_dropMissed(world.nextFrame, 1 / world.frameRate, std::min(turn, target));
    lf_dropMissed(world.nextSecond, 1, std::min(turn, target));
    const f64 due = std::min({turn, world.nextFrame, world.nextSecond});
    if (due > target) return false;
    world.now = std::max(world.now, due);
    if (due == fault) {
        gf_sandboxPlay(world, faults[world.nextFault++]);
    } else if (due == world.flightAt) {
        lf_beginFlight(world);
    } else if (due == world.resumeAt) {
        gf_sandboxResume(world);
    } else if (due == world.slowUntil) {
        world.slowUntil = kNever;
        gf_sandboxSetFrameRate(world, world.scenario.frameRate);
    } else if (due == world.nextFrame) {
        lf_frame(world);
    } else {
        lf_second(world);
    }
    return true;
}

void lf_sendObjectEvent(SandboxWorld& world, SandboxSystemEvent event, const SandboxAircraft& ac) {
    const auto index = static_cast<std::size_t>(event);
    gf_sandboxTraceLine(world.trace, world.now, "event", kSystemEventNames[index], "object", ac.id, "tail", ac.tail);
    SandboxSession& session = world.session;
    if (!lf_reachesClient(world) || !session.subscribes[index]) return;
    auto* message = gf_sandboxAdd<SIMCONNECT_RECV_EVENT_OBJECT_ADDREMOVE>(session.waiting,
                                                                          SIMCONNECT_RECV_ID_EVENT_OBJECT_ADDREMOVE);
    if (!message) return;
    message->uGroupID = SIMCONNECT_UNUSED;
    message->uEventID = session.subscribed[index];
    message->dwData = ac.id;
    message->eObjType = ac.type;
}

}  // namespace

bool gf_sandboxPaused(const SandboxWorld& world) {
    return world.pausedAt != kNever;
}

bool gf_sandboxRuns(const SandboxWorld& world) {
    return world.flight && !gf_sandboxPaused(world);
}

f64 gf_sandboxFlightSeconds(const SandboxWorld& world) {
    return std::min(world.now, world.pausedAt) - world.pausedSum;
}

void gf_sandboxAdvance(SandboxWorld& world) {
    if (world.openUs < 0) return;
    const f64 target = static_cast<f64>(gf_steadyUs() - world.openUs) / 1e6;
    if (target < world.now) return;
    while (lf_playNext(world, target)) {
    }
    world.now = std::max(world.now, target);
}

SandboxAircraft& gf_sandboxUser(SandboxWorld& world) {
    SandboxAircraft& user = world.user;
    if (world.userPlaced) return user;
    if (!world.flight) {  // in its menus the simulator has no aircraft anywhere
        user.lat = user.lon = user.alt = user.tas = user.vs = 0;
        user.standing = true;
        user.groundKnown = false;
        return user;
    }
    f64 feetPerSecond = 0;
    const UserPoint point = gf_sandboxUserAt(world.scenario.user, gf_sandboxFlightSeconds(world), &feetPerSecond);
    gf_sandboxPlaceUser(world, point);
    user.vs = feetPerSecond;
    world.userPlaced = false;
    return user;
}

void gf_sandboxPlaceUser(SandboxWorld& world, const UserPoint& point) {
    SandboxAircraft& user = world.user;
    user.lat = point.lat;
    user.lon = point.lon;
    user.heading = point.heading * kDegToRad;
    user.tas = point.groundSpeed;
    user.vs = 0;
    user.bank = 0;
    user.standing = point.onGround;
    user.pitch = point.onGround ? user.staticPitch : 0;
    user.groundKnown = false;
    user.alt = point.onGround ? gf_sandboxGroundUnder(world.scenario, user) + user.staticCg : point.alt;
    world.userPlaced = true;
}

SandboxAircraft* gf_sandboxFind(SandboxWorld& world, u32 id) {
    if (id == SIMCONNECT_OBJECT_ID_USER || id == kSandboxUserId) return &gf_sandboxUser(world);
    const std::size_t count = world.ids.size();
    for (const std::size_t guess : {world.lastFound, world.lastFound + 1}) {  // writes come object after object
        if (guess < count && world.ids[guess] == id) {
            world.lastFound = guess;
            return &world.aircraft[guess];
        }
    }
    const auto found = std::lower_bound(world.ids.begin(), world.ids.end(), id);
    if (found == world.ids.end() || *found != id) return nullptr;
    world.lastFound = static_cast<std::size_t>(found - world.ids.begin());
    return &world.aircraft[world.lastFound];
}

SandboxAircraft& gf_sandboxAddAircraft(SandboxWorld& world, SandboxAircraft ac) {
    ac.id = world.nextId++;
    ac.looseSince = world.now;
    world.ids.push_back(ac.id);
    world.aircraft.push_back(std::move(ac));
    lf_sendObjectEvent(world, SandboxSystemEvent::objectAdded, world.aircraft.back());
    return world.aircraft.back();
}

void gf_sandboxRemoveAircraft(SandboxWorld& world, u32 id) {
    const auto found = std::lower_bound(world.ids.begin(), world.ids.end(), id);
    if (found == world.ids.end() || *found != id) return;
    const auto at = world.aircraft.begin() + (found - world.ids.begin());
    lf_sendObjectEvent(world, SandboxSystemEvent::objectRemoved, *at);
    ++world.counters.removals;
    world.aircraft.erase(at);
    world.ids.erase(found);
}

void gf_sandboxForgetAircraft(SandboxWorld& world) {
    std::erase_if(world.aircraft, [&world](const SandboxAircraft& ac) { return world.gone || !ac.foreign; });
    world.ids.clear();
    for (const SandboxAircraft& ac : world.aircraft) world.ids.push_back(ac.id);
}

TitleFacts gf_sandboxFacts(const SandboxWorld& world, const std::string& title) {
    const auto found = world.facts.find(title);
    if (found != world.facts.end()) return found->second;
    TitleFacts facts;
    facts.title = title;
    return facts;
}

void gf_sandboxSendEvent(SandboxWorld& world, SandboxSystemEvent event, u32 data) {
    const auto index = static_cast<std::size_t>(event);
    gf_sandboxTraceLine(world.trace, world.now, "event", kSystemEventNames[index], "data", data);
    SandboxSession& session = world.session;
    if (!lf_reachesClient(world) || !session.subscribes[index]) return;
    auto* message = gf_sandboxAdd<SIMCONNECT_RECV_EVENT>(session.waiting, SIMCONNECT_RECV_ID_EVENT);
    if (!message) return;
    message->uGroupID = SIMCONNECT_UNUSED;
    message->uEventID = session.subscribed[index];
    message->dwData = data;
}

void gf_sandboxSendFileEvent(SandboxWorld& world, SandboxSystemEvent event, std::string_view file) {
    const auto index = static_cast<std::size_t>(event);
    gf_sandboxTraceLine(world.trace, world.now, "event", "FileName", "file", file);
    SandboxSession& session = world.session;
    if (!lf_reachesClient(world) || !session.subscribes[index]) return;
    auto* message = gf_sandboxAdd<SIMCONNECT_RECV_EVENT_FILENAME>(session.waiting, SIMCONNECT_RECV_ID_EVENT_FILENAME);
    if (!message) return;
    message->uGroupID = SIMCONNECT_UNUSED;
    message->uEventID = session.subscribed[index];
    gf_sandboxCopyText(message->szFileName, sizeof message->szFileName, file);
}

void gf_sandboxSendException(SandboxWorld& world, SimException exception, u32 packet, u32 index) {
    gf_sandboxTraceLine(world.trace, world.now, "event", "Exception", "exception", static_cast<u32>(exception),
                        "packet", packet, "index", index);
    ++world.counters.exceptions;
    if (!lf_reachesClient(world)) return;
    auto* message = gf_sandboxAdd<SIMCONNECT_RECV_EXCEPTION>(world.session.waiting, SIMCONNECT_RECV_ID_EXCEPTION);
    if (!message) return;
    message->dwException = exception;
    message->dwSendID = packet;
    message->dwIndex = index;
}

}  // namespace hcr
