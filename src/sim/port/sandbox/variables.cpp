#include "sim/port/sandbox/variables.h"

#include <algorithm>

#include "core/model/geo.h"

namespace hcr {
namespace {

using enum SandboxVar;
using D = SandboxDimension;

constexpr f64 kFtPerSecPerKnot = kFeetPerNm / 3600.0;
constexpr f64 kMetresPerFoot = kMetresPerNm / kFeetPerNm;

// Angles are kept in radians but for the coordinates, vertical speed in feet per second; the rest in base units.
constexpr SandboxVarFacts kVariables[] = {
    {"TITLE", title, D::text, 1, false, false},
    {"ATC MODEL", model, D::text, 1, false, false},
    {"ATC ID", atcId, D::text, 1, false, false},
    {"SIM ON GROUND", onGround, D::plain, 1, false, false},
    {"PLANE LATITUDE", latitude, D::angle, kRadToDeg, true, false},
    {"PLANE LONGITUDE", longitude, D::angle, kRadToDeg, true, false},
    {"PLANE PITCH DEGREES", pitch, D::angle, 1, true, false},
    {"PLANE BANK DEGREES", bank, D::angle, 1, true, false},
    {"PLANE HEADING DEGREES TRUE", heading, D::angle, 1, true, false},
    {"PLANE ALTITUDE", altitude, D::length, 1, true, false},
    {"VERTICAL SPEED", verticalSpeed, D::speed, kFtPerSecPerKnot, true, false},
    {"AIRSPEED TRUE", trueAirspeed, D::speed, 1, true, false},
    {"PLANE ALT ABOVE GROUND", heightAboveGround, D::length, 1, false, false},
    {"GROUND VELOCITY", groundSpeed, D::speed, 1, false, false},
    {"ZULU TIME", zuluTime, D::seconds, 1, false, false},
    {"ZULU DAY OF YEAR", zuluDay, D::plain, 1, false, false},
    {"ZULU YEAR", zuluYear, D::plain, 1, false, false},
    {"LIGHT STATES", lightStates, D::plain, 1, false, false},
    {"STATIC CG TO GROUND", staticCg, D::length, 1, false, false},
    {"STATIC PITCH", staticPitch, D::angle, 1, false, false},
    {"GROUND ALTITUDE", groundAltitude, D::length, 1, false, false},
    {"SPOILERS HANDLE POSITION", spoilers, D::percent, 1, true, false},
    {"GENERAL ENG THROTTLE LEVER POSITION", throttle, D::percent, 1, true, true},
};

struct UnitFacts {
    std::string_view name;
    D dimension;
    f64 perBase;  // units per base unit: radian, foot, knot, percent, second, one
};

constexpr UnitFacts kUnits[] = {
    {"degree", D::angle, kRadToDeg},
    {"degrees", D::angle, kRadToDeg},
    {"radian", D::angle, 1},
    {"radians", D::angle, 1},
    {"feet", D::length, 1},
    {"foot", D::length, 1},
    {"ft", D::length, 1},
    {"meter", D::length, kMetresPerFoot},
    {"meters", D::length, kMetresPerFoot},
    {"knot", D::speed, 1},
    {"knots", D::speed, 1},
    {"feet per second", D::speed, kFtPerSecPerKnot},
    {"feet/second", D::speed, kFtPerSecPerKnot},
    {"feet per minute", D::speed, kFtPerSecPerKnot * 60},
    {"feet/minute", D::speed, kFtPerSecPerKnot * 60},
    {"meters per second", D::speed, kMetresPerNm / 3600.0},
    {"percent", D::percent, 1},
    {"percent over 100", D::percent, 0.01},
    {"second", D::seconds, 1},
    {"seconds", D::seconds, 1},
    {"bool", D::plain, 1},
    {"boolean", D::plain, 1},
    {"number", D::plain, 1},
    {"numbers", D::plain, 1},
    {"mask", D::plain, 1},
};

template <class Event>
struct EventName {
    std::string_view name;
    Event event;
};

using S = SandboxSimEvent;
constexpr EventName<S> kSimEvents[] = {
    {"GEAR_SET", S::gear},
    {"ENGINE_AUTO_START", S::engineStart},
    {"ENGINE_AUTO_SHUTDOWN", S::engineStop},
    {"THROTTLE_SET", S::throttle},
    {"FLAPS_SET", S::flaps},
    {"SPOILERS_SET", S::spoilers},
    {"NAV_LIGHTS_SET", S::nav},
    {"BEACON_LIGHTS_SET", S::beacon},
    {"LANDING_LIGHTS_SET", S::landing},
    {"TAXI_LIGHTS_SET", S::taxi},
    {"STROBES_SET", S::strobes},
    {"LOGO_LIGHTS_SET", S::logo},
    {"CABIN_LIGHTS_SET", S::cabin},
    {"ALL_LIGHTS_TOGGLE", S::allLights},
    {"FREEZE_LATITUDE_LONGITUDE_SET", S::freezePosition},
    {"FREEZE_ALTITUDE_SET", S::freezeAltitude},
    {"FREEZE_ATTITUDE_SET", S::freezeAttitude},
};

constexpr EventName<SandboxSystemEvent> kSystemEvents[] = {
    {"Sim", SandboxSystemEvent::sim},
    {"ObjectAdded", SandboxSystemEvent::objectAdded},
    {"ObjectRemoved", SandboxSystemEvent::objectRemoved},
    {"FlightLoaded", SandboxSystemEvent::flightLoaded},
    {"Frame", SandboxSystemEvent::frame},
};

char lf_lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool lf_sameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lf_lower(x) == lf_lower(y); });
}

template <class Table, class Event>
bool lf_findEvent(const Table& table, std::string_view name, Event& event) {
    for (const auto& row : table) {
        if (lf_sameName(row.name, name)) {
            event = row.event;
            return true;
        }
    }
    return false;
}

}  // namespace

const SandboxVarFacts* gf_sandboxVariable(std::string_view name, u32& engine) {
    engine = 1;
    const auto colon = name.rfind(':');
    const bool indexed = colon != std::string_view::npos;
    if (indexed) {
        const std::string_view index = name.substr(colon + 1);
        if (index.size() != 1 || index[0] < '1' || index[0] > static_cast<char>('0' + kSandboxEngines)) return nullptr;
        engine = static_cast<u32>(index[0] - '0');
        name = name.substr(0, colon);
    }
    for (const SandboxVarFacts& facts : kVariables) {
        if (lf_sameName(facts.name, name)) return indexed && !facts.perEngine ? nullptr : &facts;
    }
    return nullptr;
}

f64 gf_sandboxUnitFactor(const SandboxVarFacts& facts, std::string_view unit) {
    for (const UnitFacts& row : kUnits) {
        if (lf_sameName(row.name, unit)) return row.dimension == facts.dimension ? row.perBase / facts.ownPerBase : 0;
    }
    return 0;
}

bool gf_sandboxSimEvent(std::string_view name, SandboxSimEvent& event) {
    return lf_findEvent(kSimEvents, name, event);
}

bool gf_sandboxSystemEvent(std::string_view name, SandboxSystemEvent& event) {
    return lf_findEvent(kSystemEvents, name, event);
}

}  // namespace hcr
