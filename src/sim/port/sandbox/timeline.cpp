#include "sim/port/sandbox/timeline.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "platform/clock.h"
#include "sim/port/sandbox/faults.h"
#include "sim/port/sandbox/object.h"
#include "sim/port/sandbox/records.h"

namespace hcr {
namespace {

// A simulator doesn't make up for frames and seconds that passed while nobody asked.
constexpr i32 kMaxBehind = 2;

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
    if (!gf_sandboxReachesClient(world)) return;
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
    const f64 shown = gf_sandboxNextShown(world);
    const f64 turn = std::min({fault, shown, world.flightAt, world.resumeAt, world.slowUntil});
    lf_dropMissed(world.nextFrame, 1 / world.frameRate, std::min(turn, target));
    lf_dropMissed(world.nextSecond, 1, std::min(turn, target));
    const f64 due = std::min({turn, world.nextFrame, world.nextSecond});
    if (due > target) return false;
    world.now = std::max(world.now, due);
    if (due == fault) {
        gf_sandboxPlay(world, faults[world.nextFault++]);
    } else if (due == shown) {
        gf_sandboxShowNext(world);
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

}  // namespace

void gf_sandboxAdvance(SandboxWorld& world) {
    if (world.openUs < 0) return;
    const f64 target = static_cast<f64>(gf_steadyUs() - world.openUs) / 1e6;
    if (target < world.now) return;
    while (lf_playNext(world, target)) {
    }
    world.now = std::max(world.now, target);
}

}  // namespace hcr
