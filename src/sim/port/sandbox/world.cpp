#include "sim/port/sandbox/world.h"

#include <algorithm>
#include <cmath>

#include "core/model/geo.h"

namespace hcr {

std::mutex gSandboxMutex;
SandboxWorld gSandbox;

namespace {

constexpr const char* kSystemEventNames[kSandboxSystemEvents] = {"Sim", "ObjectAdded", "ObjectRemoved", "FlightLoaded",
                                                                 "Frame"};

void lf_sendObjectEvent(SandboxWorld& world, SandboxSystemEvent event, const SandboxAircraft& ac) {
    const auto index = static_cast<std::size_t>(event);
    gf_sandboxTraceLine(world.trace, world.now, "event", kSystemEventNames[index], "object", ac.id, "tail", ac.tail);
    SandboxSession& session = world.session;
    if (!gf_sandboxReachesClient(world) || !session.subscribes[index]) return;
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

bool gf_sandboxReachesClient(const SandboxWorld& world) {
    return world.session.open && !world.gone;
}

bool gf_sandboxRuns(const SandboxWorld& world) {
    return world.flight && !gf_sandboxPaused(world);
}

f64 gf_sandboxFlightSeconds(const SandboxWorld& world) {
    return std::min(world.now, world.pausedAt) - world.pausedSum;
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
    SandboxAircraft& added = world.aircraft.back();
    if (!added.foreign && world.scenario.announceAfter > 0) {
        added.shownAt = world.now + world.scenario.announceAfter;
        world.hidden.push_back(added.id);
    } else {
        lf_sendObjectEvent(world, SandboxSystemEvent::objectAdded, added);
    }
    return added;
}

f64 gf_sandboxNextShown(SandboxWorld& world) {
    return world.hidden.empty() ? kNever : gf_sandboxFind(world, world.hidden.front())->shownAt;
}

void gf_sandboxShowNext(SandboxWorld& world) {
    const SandboxAircraft& ac = *gf_sandboxFind(world, world.hidden.front());
    world.hidden.pop_front();
    lf_sendObjectEvent(world, SandboxSystemEvent::objectAdded, ac);
}

void gf_sandboxRemoveAircraft(SandboxWorld& world, u32 id) {
    const auto found = std::lower_bound(world.ids.begin(), world.ids.end(), id);
    if (found == world.ids.end() || *found != id) return;
    const auto at = world.aircraft.begin() + (found - world.ids.begin());
    lf_sendObjectEvent(world, SandboxSystemEvent::objectRemoved, *at);
    std::erase(world.hidden, id);
    ++world.counters.removals;
    world.aircraft.erase(at);
    world.ids.erase(found);
}

void gf_sandboxForgetAircraft(SandboxWorld& world) {
    std::erase_if(world.aircraft, [&world](const SandboxAircraft& ac) { return world.gone || !ac.foreign; });
    world.ids.clear();
    for (const SandboxAircraft& ac : world.aircraft) world.ids.push_back(ac.id);
    world.hidden.clear();  // nobody else's aircraft is hidden
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
    if (!gf_sandboxReachesClient(world) || !session.subscribes[index]) return;
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
    if (!gf_sandboxReachesClient(world) || !session.subscribes[index]) return;
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
    if (!gf_sandboxReachesClient(world)) return;
    auto* message = gf_sandboxAdd<SIMCONNECT_RECV_EXCEPTION>(world.session.waiting, SIMCONNECT_RECV_ID_EXCEPTION);
    if (!message) return;
    message->dwException = exception;
    message->dwSendID = packet;
    message->dwIndex = index;
}

}  // namespace hcr
