#include "sim/port/sandbox/calls_objects.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>

#include "core/model/geo.h"
#include "sim/port/sandbox/port_call.h"

namespace hcr {
namespace {

constexpr std::size_t kMaxTail = 12;          // published limit of a tail number
constexpr std::size_t kMaxPlanBytes = 65536;  // a plan that is longer isn't one of the small ones served here
constexpr f64 kDesignSpeedKt = 250;           // for the airspeeds "design cruise" and "keep"
constexpr u32 kAirspeedKeep = SIMCONNECT_UNUSED - 1;
constexpr f64 kMaxAltitudeFt = 500000;
constexpr f64 kMaxAngle = 720;
constexpr u32 kMaxAirspeed = 10000;

bool lf_within(f64 value, f64 most) {
    return std::isfinite(value) && std::abs(value) <= most;
}

bool lf_positionValid(const SIMCONNECT_DATA_INITPOSITION& p) {
    return lf_within(p.Latitude, 90) && lf_within(p.Longitude, 180) && lf_within(p.Altitude, kMaxAltitudeFt) &&
           lf_within(p.Pitch, kMaxAngle) && lf_within(p.Bank, kMaxAngle) && lf_within(p.Heading, kMaxAngle) &&
           (p.Airspeed <= kMaxAirspeed || p.Airspeed >= kAirspeedKeep);
}

bool lf_installed(const SandboxWorld& world, const std::string& title) {
    if (title.empty() || world.refused.contains(title)) return false;
    return world.scenario.allTitlesInstalled || world.installed.contains(title);
}

/// Parameter at fault of a create call, 0 = none.
u32 lf_judgeCreate(const SandboxWorld& world, const std::string& title, std::string_view tail,
                   const SIMCONNECT_DATA_INITPOSITION& position) {
    if (!lf_installed(world, title)) return 1;
    if (tail.size() > kMaxTail) return 2;
    return lf_positionValid(position) ? 0 : 3;
}

SandboxAircraft lf_newAircraft(const SandboxWorld& world, const std::string& title, const char* tail,
                               const SIMCONNECT_DATA_INITPOSITION& p) {
    const TitleFacts facts = gf_sandboxFacts(world, title);
    SandboxAircraft ac;
    ac.type = facts.helicopter ? SIMCONNECT_SIMOBJECT_TYPE_HELICOPTER : SIMCONNECT_SIMOBJECT_TYPE_AIRCRAFT;
    ac.title = title;
    ac.tail = tail;
    ac.lat = p.Latitude;
    ac.lon = p.Longitude;
    ac.heading = p.Heading * kDegToRad;
    ac.staticCg = facts.staticCgFt;
    ac.staticPitch = facts.staticPitchDeg * kDegToRad;
    if (p.OnGround != 0) {
        ac.alt = gf_sandboxGroundUnder(world.scenario, ac) + ac.staticCg;
        ac.pitch = ac.staticPitch;
        ac.gearDown = true;
    } else {
        ac.alt = std::max(f64{p.Altitude}, gf_sandboxGroundUnder(world.scenario, ac) + ac.staticCg);
        ac.pitch = p.Pitch * kDegToRad;
        ac.bank = p.Bank * kDegToRad;
        ac.engines = true;
    }
    ac.tas = p.Airspeed >= kAirspeedKeep ? kDesignSpeedKt : p.Airspeed;
    ac.lights = kLightNav;
    return ac;
}

/// An AI object that the client may steer, or the exception for it.
SandboxAircraft* lf_own(SandboxCall& call, u32 object) {
    SandboxAircraft* ac = gf_sandboxFind(call.world, object);
    if (!ac) {
        gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_UNRECOGNIZED_ID, 1);
        return nullptr;
    }
    if (ac == &call.world.user || ac->foreign) {
        gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_OPERATION_INVALID_FOR_OBJECT_TYPE, 1);
        return nullptr;
    }
    return ac;
}

std::optional<std::string> lf_element(std::string_view text, std::string_view name) {
    const std::string open = fmt::format("<{}>", name), close = fmt::format("</{}>", name);
    const auto from = text.find(open);
    if (from == std::string_view::npos) return std::nullopt;
    const auto begin = from + open.size();
    const auto end = text.find(close, begin);
    if (end == std::string_view::npos) return std::nullopt;
    return std::string(text.substr(begin, end - begin));
}

bool lf_loadPlan(const char* path, SandboxAircraft& ac) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return false;
    std::string text(kMaxPlanBytes, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    const auto plan = lf_element(text, "FlightPlan.FlightPlan");
    if (!plan) return false;
    const auto from = lf_element(*plan, "DepartureID"), to = lf_element(*plan, "DestinationID");
    if (!from || !to) return false;
    ac.from = *from;
    ac.to = *to;
    return true;
}

}  // namespace

SimResult lf_createAircraft(SimHandle handle, const char* title, const char* tailNumber,
                            SIMCONNECT_DATA_INITPOSITION position, u32 request) {
    constexpr const char* kName = "SimConnect_AICreateNonATCAircraft";
    SandboxCall call = gf_sandboxBegin(kName, handle, title && tailNumber);
    if (!call.sent()) return call.result;
    SandboxWorld& world = call.world;
    const SIMCONNECT_DATA_INITPOSITION& p = position;
    gf_sandboxTraceLine(world.trace, world.now, "call", kName, "title", title, "tail", tailNumber, "lat",
                        f64{p.Latitude}, "lon", f64{p.Longitude}, "alt", f64{p.Altitude}, "pitch", f64{p.Pitch}, "bank",
                        f64{p.Bank}, "heading", f64{p.Heading}, "on_ground", u32{p.OnGround}, "airspeed",
                        u32{p.Airspeed}, "packet", call.packet);
    const std::string name = title;
    if (const u32 index = lf_judgeCreate(world, name, tailNumber, p); index != 0) {
        ++world.counters.refusals;
        return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_CREATE_OBJECT_FAILED, index);
    }
    if (world.aircraft.size() >= static_cast<std::size_t>(world.scenario.maxObjects)) {
        ++world.counters.refusals;
        return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_TOO_MANY_OBJECTS, 0);
    }
    ++world.counters.creates;
    const SandboxAircraft& ac = gf_sandboxAddAircraft(world, lf_newAircraft(world, name, tailNumber, p));
    if (auto* answer = gf_sandboxAdd<SIMCONNECT_RECV_ASSIGNED_OBJECT_ID>(call.session.waiting,
                                                                         SIMCONNECT_RECV_ID_ASSIGNED_OBJECT_ID)) {
        answer->dwRequestID = request;
        answer->dwObjectID = ac.id;
    }
    return kSandboxOk;
}

SimResult lf_releaseControl(SimHandle handle, u32 object, u32 request) {
    constexpr const char* kName = "SimConnect_AIReleaseControl";
    SandboxCall call = gf_sandboxBegin(kName, handle);
    if (!call.sent()) return call.result;
    gf_sandboxTraceLine(call.world.trace, call.world.now, "call", kName, "object", object, "request", request, "packet",
                        call.packet);
    if (SandboxAircraft* ac = lf_own(call, object)) ac->released = true;
    return kSandboxOk;
}

SimResult lf_removeObject(SimHandle handle, u32 object, u32 request) {
    constexpr const char* kName = "SimConnect_AIRemoveObject";
    SandboxCall call = gf_sandboxBegin(kName, handle);
    if (!call.sent()) return call.result;
    gf_sandboxTraceLine(call.world.trace, call.world.now, "call", kName, "object", object, "request", request, "packet",
                        call.packet);
    if (lf_own(call, object)) gf_sandboxRemoveAircraft(call.world, object);
    return kSandboxOk;
}

SimResult lf_setFlightPlan(SimHandle handle, u32 object, const char* path, u32 request) {
    constexpr const char* kName = "SimConnect_AISetAircraftFlightPlan";
    SandboxCall call = gf_sandboxBegin(kName, handle, path != nullptr);
    if (!call.sent()) return call.result;
    gf_sandboxTraceLine(call.world.trace, call.world.now, "call", kName, "object", object, "path", path, "request",
                        request, "packet", call.packet);
    SandboxAircraft* ac = lf_own(call, object);
    if (ac && !lf_loadPlan(path, *ac)) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_LOAD_FLIGHTPLAN_FAILED, 2);
    return kSandboxOk;
}

}  // namespace hcr
