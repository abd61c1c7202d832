#include "sim/port/sandbox/faults.h"

#include <algorithm>

#include "core/model/geo.h"

namespace hcr {
namespace {

void lf_teleport(SandboxWorld& world, const ScenarioFault& fault) {
    const SandboxAircraft& user = gf_sandboxUser(world);
    UserPoint point;
    point.lat = fault.lat;
    point.lon = fault.lon;
    point.alt = user.alt;
    point.heading = user.heading * kRadToDeg;
    point.groundSpeed = user.tas;
    point.onGround = user.standing;
    gf_sandboxPlaceUser(world, point);
}

void lf_removeByTail(SandboxWorld& world, const std::string& tail) {
    for (const SandboxAircraft& ac : world.aircraft) {
        if (ac.tail == tail) {
            gf_sandboxRemoveAircraft(world, ac.id);
            return;
        }
    }
}

void lf_addForeign(SandboxWorld& world, const ScenarioFault& fault) {
    SandboxAircraft ac;
    ac.title = "Generic Airliner";
    ac.model = "A320";
    ac.tail = fault.text;
    ac.foreign = true;
    ac.lat = fault.lat;
    ac.lon = fault.lon;
    const TitleFacts facts = gf_sandboxFacts(world, ac.title);
    ac.staticCg = facts.staticCgFt;
    ac.staticPitch = facts.staticPitchDeg * kDegToRad;
    ac.alt = gf_sandboxGroundUnder(world.scenario, ac) + ac.staticCg;
    ac.pitch = ac.staticPitch;
    ac.gearDown = true;
    gf_sandboxAddAircraft(world, std::move(ac));
}

}  // namespace

void gf_sandboxPause(SandboxWorld& world, f64 seconds) {
    if (seconds > 0) world.resumeAt = world.now + seconds;
    if (gf_sandboxPaused(world)) return;
    world.pausedAt = world.now;
    world.nextFrame = kNever;
    if (world.flight) gf_sandboxSendEvent(world, SandboxSystemEvent::sim, 0);
}

void gf_sandboxResume(SandboxWorld& world) {
    world.resumeAt = kNever;
    if (!gf_sandboxPaused(world)) return;
    world.pausedSum += world.now - world.pausedAt;
    world.pausedAt = kNever;
    world.lastMove = world.now;
    if (!world.flight) return;
    world.nextFrame = world.now + 1 / world.frameRate;
    gf_sandboxSendEvent(world, SandboxSystemEvent::sim, 1);
}

void gf_sandboxSetFrameRate(SandboxWorld& world, f64 rate) {
    world.frameRate = std::clamp(rate, kMinFrameRate, kMaxFrameRate);
    if (world.nextFrame != kNever) world.nextFrame = world.now + 1 / world.frameRate;
}

void gf_sandboxQuit(SandboxWorld& world, f64 seconds) {
    gf_sandboxTraceLine(world.trace, world.now, "event", "Quit");
    world.flight = false;
    gf_sandboxResume(world);
    if (world.session.open && !world.gone) {
        gf_sandboxAdd<SIMCONNECT_RECV_QUIT>(world.session.waiting, SIMCONNECT_RECV_ID_QUIT);
    }
    world.gone = true;
    world.backAt = seconds > 0 ? world.now + seconds : kNever;
    world.flightAt = kNever;
    world.nextFrame = kNever;
    gf_sandboxForgetAircraft(world);
}

void gf_sandboxPlay(SandboxWorld& world, const ScenarioFault& fault) {
    switch (fault.kind) {
        case FaultKind::quit:
            gf_sandboxQuit(world, fault.seconds);
            break;
        case FaultKind::flightLoaded:
            gf_sandboxSendEvent(world, SandboxSystemEvent::flightLoaded, 0);
            break;
        case FaultKind::newFile:
            gf_sandboxSendFileEvent(world, SandboxSystemEvent::flightLoaded,
                                    fault.text.empty() ? "flights/other/custom.flt" : fault.text);
            break;
        case FaultKind::teleport:
            lf_teleport(world, fault);
            break;
        case FaultKind::pause:
            gf_sandboxPause(world, fault.seconds);
            break;
        case FaultKind::resume:
            gf_sandboxResume(world);
            break;
        case FaultKind::failCall:
            world.failing[fault.call] = fault.count;
            break;
        case FaultKind::slowFrames:
            if (fault.rate > 0) gf_sandboxSetFrameRate(world, fault.rate);
            world.slowUntil = fault.seconds > 0 ? world.now + fault.seconds : kNever;
            break;
        case FaultKind::exception:
            gf_sandboxSendException(world, static_cast<SimException>(fault.number), 0, 0);
            break;
        case FaultKind::removeObject:
            lf_removeByTail(world, fault.text);
            break;
        case FaultKind::addTitle:
            world.refused.erase(fault.text);
            world.installed.insert(fault.text);
            break;
        case FaultKind::refuseTitle:
            world.refused.insert(fault.text);
            break;
        case FaultKind::addObject:
            lf_addForeign(world, fault);
            break;
    }
}

}  // namespace hcr
