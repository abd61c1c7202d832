#include "sim/port/sandbox/calls_data.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "core/model/geo.h"
#include "sim/port/sandbox/port_call.h"
#include "sim/port/sandbox/records.h"

namespace hcr {
namespace {

constexpr u32 kMaxRadiusMetres = 200000;  // published limit of the requests by type
constexpr f64 kRejectMarginNm = 1;        // degrees of latitude as miles, against rounding

bool lf_fitsType(const SandboxVarFacts& facts, u32 type) {
    if (facts.dimension == SandboxDimension::text) return gf_sandboxTextType(type);
    return type >= SIMCONNECT_DATATYPE_INT32 && type <= SIMCONNECT_DATATYPE_FLOAT64;
}

SandboxDefinition& lf_definitionFor(SandboxSession& session, u32 id) {
    if (SandboxDefinition* known = gf_sandboxDefinition(session, id)) return *known;
    session.definitions.emplace_back().id = id;
    return session.definitions.back();
}

void lf_append(SandboxDefinition& definition, const SandboxDatum& datum) {
    definition.data.push_back(datum);
    definition.bytes += gf_sandboxTypeBytes(datum.type);
    if (datum.type == SIMCONNECT_DATATYPE_STRINGV) definition.variable = true;
    if (!datum.facts->writable) definition.writable = false;
    if (datum.facts->var == SandboxVar::latitude || datum.facts->var == SandboxVar::longitude) {
        definition.position = true;
    }
}

bool lf_ofType(const SandboxAircraft& ac, u32 type) {
    return type == SIMCONNECT_SIMOBJECT_TYPE_ALL || ac.type == type;
}

/// Indexes of the AI objects of this type around the user, into world.inRange.
void lf_collect(SandboxWorld& world, const SandboxAircraft& user, u32 type, f64 radiusNm) {
    world.inRange.clear();
    for (std::size_t i = 0; i < world.aircraft.size(); ++i) {
        const SandboxAircraft& ac = world.aircraft[i];
        if (!lf_ofType(ac, type) || world.now < ac.shownAt) continue;
        if (std::abs(ac.lat - user.lat) * 60 > radiusNm + kRejectMarginNm) continue;
        if (distanceNm(user.lat, user.lon, ac.lat, ac.lon) > radiusNm) continue;
        world.inRange.push_back(static_cast<u32>(i));
    }
}

std::string lf_valuesJson(const SandboxDefinition& definition, const void* data) {
    const u8* at = static_cast<const u8*>(data);
    std::string json = "[";
    for (const SandboxDatum& datum : definition.data) {
        if (gf_sandboxTextType(datum.type)) break;
        if (json.size() > 1) json += ',';
        const f64 value = gf_sandboxTake(at, datum.type);
        json += std::isfinite(value) ? fmt::format("{}", value) : "null";
    }
    return json + "]";
}

void lf_afterPosition(SandboxWorld& world, SandboxAircraft& ac) {
    ++world.counters.positionWrites;
    if (&ac == &world.user) {
        world.userPlaced = true;  // a client that writes to the user's aircraft moves it, so that it shows
        ac.standing = false;
        return;
    }
    if (!world.hook) return;
    gf_sandboxSnapshot(world.scenario, ac, world.hookObject);
    world.hook(world.hookObject, world.now, world.hookContext);
}

}  // namespace

SimResult lf_addToDataDefinition(SimHandle handle, u32 definition, const char* variable, const char* unit, u32 type,
                                 f32, u32) {
    SandboxCall call = gf_sandboxBegin("SimConnect_AddToDataDefinition", handle, variable != nullptr);
    if (!call.sent()) return call.result;
    gf_sandboxTraceLine(call.world.trace, call.world.now, "call", "SimConnect_AddToDataDefinition", "definition",
                        definition, "variable", variable, "unit", unit ? unit : "", "type", type, "packet",
                        call.packet);
    SandboxDatum datum;
    datum.facts = gf_sandboxVariable(variable, datum.engine);
    datum.type = type;
    if (!datum.facts) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_NAME_UNRECOGNIZED, 2);
    if (!lf_fitsType(*datum.facts, type)) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_INVALID_DATA_TYPE, 4);
    if (datum.facts->dimension != SandboxDimension::text) {
        datum.toClient = unit ? gf_sandboxUnitFactor(*datum.facts, unit) : 0;
        if (datum.toClient == 0) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_NAME_UNRECOGNIZED, 3);
        datum.fromClient = 1 / datum.toClient;
    }
    lf_append(lf_definitionFor(call.session, definition), datum);
    return kSandboxOk;
}

SimResult lf_requestData(SimHandle handle, u32 request, u32 definition, u32 object, u32 period, u32 flags, u32 origin,
                         u32 interval, u32 limit) {
    SandboxCall call = gf_sandboxBegin("SimConnect_RequestDataOnSimObject", handle);
    if (!call.sent()) return call.result;
    gf_sandboxTraceLine(call.world.trace, call.world.now, "call", "SimConnect_RequestDataOnSimObject", "request",
                        request, "definition", definition, "object", object, "period", period, "flags", flags, "origin",
                        origin, "interval", interval, "limit", limit, "packet", call.packet);
    const SandboxDefinition* known = gf_sandboxDefinition(call.session, definition);
    if (!known) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_UNRECOGNIZED_ID, 2);
    SandboxAircraft* ac = gf_sandboxFind(call.world, object);
    if (!ac) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_UNRECOGNIZED_ID, 3);
    if (period > SIMCONNECT_PERIOD_SECOND) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_INVALID_ENUM, 4);
    // Tagged records and replies on change only are nothing that a definition here is laid out for.
    if (flags != 0) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_ERROR, 5);
    std::erase_if(call.session.requests, [request](const SandboxRequest& r) { return r.id == request; });
    if (period == SIMCONNECT_PERIOD_ONCE) {
        gf_sandboxSendData(call.world, SIMCONNECT_RECV_ID_SIMOBJECT_DATA, request, *known, *ac, 1, 1);
    } else if (period != SIMCONNECT_PERIOD_NEVER) {
        call.session.requests.push_back({request, definition, object, period, origin, interval, limit});
    }
    return kSandboxOk;
}

SimResult lf_requestDataByType(SimHandle handle, u32 request, u32 definition, u32 radiusMetres, u32 objectType) {
    SandboxCall call = gf_sandboxBegin("SimConnect_RequestDataOnSimObjectType", handle);
    if (!call.sent()) return call.result;
    gf_sandboxTraceLine(call.world.trace, call.world.now, "call", "SimConnect_RequestDataOnSimObjectType", "request",
                        request, "definition", definition, "radius", radiusMetres, "type", objectType, "packet",
                        call.packet);
    const SandboxDefinition* known = gf_sandboxDefinition(call.session, definition);
    if (!known) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_UNRECOGNIZED_ID, 2);
    if (radiusMetres > kMaxRadiusMetres) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_OUT_OF_BOUNDS, 3);
    if (objectType > SIMCONNECT_SIMOBJECT_TYPE_GROUND) {
        return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_INVALID_ENUM, 4);
    }
    SandboxWorld& world = call.world;
    SandboxAircraft& user = gf_sandboxUser(world);
    const bool withUser = objectType == SIMCONNECT_SIMOBJECT_TYPE_USER || lf_ofType(user, objectType);
    world.inRange.clear();
    if (objectType != SIMCONNECT_SIMOBJECT_TYPE_USER && radiusMetres > 0) {
        lf_collect(world, user, objectType, radiusMetres / kMetresPerNm);
    }
    const u32 count = static_cast<u32>(world.inRange.size()) + (withUser ? 1 : 0);
    constexpr auto kind = SIMCONNECT_RECV_ID_SIMOBJECT_DATA_BYTYPE;
    u32 entry = 0;
    if (withUser) gf_sandboxSendData(world, kind, request, *known, user, ++entry, count);
    for (const u32 index : world.inRange) {
        gf_sandboxSendData(world, kind, request, *known, world.aircraft[index], ++entry, count);
    }
    if (count == 0) gf_sandboxSendNoData(world, request, definition);
    return kSandboxOk;
}

SimResult lf_setData(SimHandle handle, u32 definition, u32 object, u32 flags, u32 arrayCount, u32 unitSize,
                     void* data) {
    SandboxCall call = gf_sandboxBegin("SimConnect_SetDataOnSimObject", handle, data != nullptr);
    if (!call.sent()) return call.result;
    SandboxWorld& world = call.world;
    const SandboxDefinition* known = gf_sandboxDefinition(call.session, definition);
    const bool fits = known && unitSize == known->bytes && !known->variable;
    if (world.trace.on && !(known && known->position)) {
        const std::string values = fits ? lf_valuesJson(*known, data) : "[]";
        gf_sandboxTraceLine(world.trace, world.now, "call", "SimConnect_SetDataOnSimObject", "definition", definition,
                            "object", object, "size", unitSize, "values", SandboxTraceRaw{values}, "packet",
                            call.packet);
    }
    if (!known) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_UNRECOGNIZED_ID, 1);
    SandboxAircraft* ac = gf_sandboxFind(world, object);
    if (!ac) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_UNRECOGNIZED_ID, 2);
    if (flags != 0) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_ERROR, 3);
    if (arrayCount > 1) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_INVALID_ARRAY, 4);
    if (!fits) return gf_sandboxRefuse(call, SIMCONNECT_EXCEPTION_INVALID_DATA_SIZE, 5);
    const SimException judged = gf_sandboxWriteRecord(*known, *ac, data);
    if (judged != SIMCONNECT_EXCEPTION_NONE) return gf_sandboxRefuse(call, judged, 6);
    if (known->position) lf_afterPosition(world, *ac);
    return kSandboxOk;
}

}  // namespace hcr
