#include "sim/port/sandbox/sandbox.h"

#include <algorithm>

#include "core/model/geo.h"
#include "platform/clock.h"
#include "sim/port/sandbox/calls.h"
#include "sim/port/sandbox/faults.h"
#include "sim/port/sandbox/world.h"

namespace hcr {
namespace {

void lf_learnTitles(SandboxWorld& world) {
    for (const TitleFacts& facts : world.scenario.titles) {
        world.facts[facts.title] = facts;
        world.installed.insert(facts.title);
    }
    world.installed.insert(world.scenario.installed.begin(), world.scenario.installed.end());
    world.refused.insert(world.scenario.refused.begin(), world.scenario.refused.end());
}

void lf_makeUser(SandboxWorld& world) {
    SandboxAircraft& user = world.user;
    const TitleFacts facts = gf_sandboxFacts(world, world.scenario.userTitle);
    user.id = kSandboxUserId;
    user.type = facts.helicopter ? SIMCONNECT_SIMOBJECT_TYPE_HELICOPTER : SIMCONNECT_SIMOBJECT_TYPE_AIRCRAFT;
    user.title = world.scenario.userTitle;
    user.model = world.scenario.userModel;
    user.tail = "PH-HCR";
    user.staticCg = facts.staticCgFt;
    user.staticPitch = facts.staticPitchDeg * kDegToRad;
    user.gearDown = user.engines = user.released = true;
    user.lights = kLightNav | kLightBeacon;
    if (world.scenario.user.empty()) world.scenario.user = gf_defaultScenario().user;
}

/// Back to nothing; the hook is the caller's and stays.
void lf_forget() {
    gf_sandboxTraceClose(gSandbox.trace);
    const SandboxPositionHook hook = gSandbox.hook;
    void* const context = gSandbox.hookContext;
    gSandbox = SandboxWorld();
    gSandbox.hook = hook;
    gSandbox.hookContext = context;
}

void lf_orderFaults(std::vector<ScenarioFault>& faults) {
    std::stable_sort(faults.begin(), faults.end(),
                     [](const ScenarioFault& a, const ScenarioFault& b) { return a.at < b.at; });
}

}  // namespace

void gf_startSandbox(const Scenario& scenario, const std::filesystem::path& trace) {
    const std::scoped_lock lock(gSandboxMutex);
    lf_forget();
    SandboxWorld& world = gSandbox;
    world.scenario = scenario;
    gf_sandboxSetFrameRate(world, scenario.frameRate);
    world.startUs = gf_steadyUs();
    lf_orderFaults(world.scenario.faults);
    lf_learnTitles(world);
    lf_makeUser(world);
    if (!trace.empty()) gf_sandboxTraceOpen(world.trace, trace);
    world.started = true;
    gSimPort = gf_sandboxPort();
}

void gf_stopSandbox() {
    const std::scoped_lock lock(gSandboxMutex);
    lf_forget();
}

std::vector<SandboxObject> gf_sandboxObjects() {
    const std::scoped_lock lock(gSandboxMutex);
    std::vector<SandboxObject> objects(gSandbox.aircraft.size());
    for (std::size_t i = 0; i < objects.size(); ++i) {
        gf_sandboxSnapshot(gSandbox.scenario, gSandbox.aircraft[i], objects[i]);
    }
    return objects;
}

SandboxObject gf_sandboxUserObject() {
    const std::scoped_lock lock(gSandboxMutex);
    SandboxObject object;
    if (gSandbox.started) gf_sandboxSnapshot(gSandbox.scenario, gf_sandboxUser(gSandbox), object);
    return object;
}

SandboxCounters gf_sandboxCounters() {
    const std::scoped_lock lock(gSandboxMutex);
    return gSandbox.counters;
}

f64 gf_sandboxSeconds() {
    const std::scoped_lock lock(gSandboxMutex);
    return gSandbox.openUs < 0 ? 0 : static_cast<f64>(gf_steadyUs() - gSandbox.openUs) / 1e6;
}

void gf_setSandboxPositionHook(SandboxPositionHook hook, void* context) {
    const std::scoped_lock lock(gSandboxMutex);
    gSandbox.hook = hook;
    gSandbox.hookContext = context;
}

void gf_playSandboxFault(const ScenarioFault& fault) {
    const std::scoped_lock lock(gSandboxMutex);
    if (gSandbox.started) gf_sandboxPlay(gSandbox, fault);
}

void gf_setSandboxUtc(f64 unixSeconds) {
    const std::scoped_lock lock(gSandboxMutex);
    if (!gSandbox.started) return;
    gSandbox.scenario.utcAtOpen = unixSeconds;
    gSandbox.utcAtZero = unixSeconds - gf_sandboxFlightSeconds(gSandbox);
}

void gf_placeSandboxUser(f64 lat, f64 lon, f64 alt, f64 heading, f64 groundSpeed, bool onGround) {
    const std::scoped_lock lock(gSandboxMutex);
    if (!gSandbox.started) return;
    UserPoint point;
    point.lat = lat;
    point.lon = lon;
    point.alt = alt;
    point.heading = heading;
    point.groundSpeed = groundSpeed;
    point.onGround = onGround;
    gf_sandboxPlaceUser(gSandbox, point);
}

}  // namespace hcr
