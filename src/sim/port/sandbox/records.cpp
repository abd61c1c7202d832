#include "sim/port/sandbox/records.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>

#include "core/model/geo.h"

namespace hcr {
namespace {

constexpr f64 kMaxAltitudeFt = 500000;  // nothing that is written can be higher or faster than this
constexpr f64 kMaxSpeed = 10000;
constexpr f64 kMaxAngleRad = 100;
constexpr f64 kMaxInteger = 9e15;  // whole numbers of a double

struct ZuluTime {
    f64 seconds = 0;
    i32 day = 1, year = 1970;
};

ZuluTime lf_zulu(const SandboxWorld& world) {
    using namespace std::chrono;
    const f64 utc = world.utcAtZero + gf_sandboxFlightSeconds(world);
    const f64 dayNumber = std::floor(utc / 86400);
    const sys_days today{days{static_cast<i32>(dayNumber)}};
    const year_month_day date{today};
    ZuluTime zulu;
    zulu.seconds = utc - dayNumber * 86400;
    zulu.year = static_cast<i32>(date.year());
    zulu.day = static_cast<i32>((today - sys_days{date.year() / January / 1}).count()) + 1;
    return zulu;
}

f64 lf_value(SandboxWorld& world, SandboxAircraft& ac, const SandboxDatum& datum) {
    switch (datum.facts->var) {
        case SandboxVar::onGround:
            return gf_sandboxOnGround(world.scenario, ac) ? 1 : 0;
        case SandboxVar::latitude:
            return ac.lat;
        case SandboxVar::longitude:
            return ac.lon;
        case SandboxVar::pitch:
            return ac.pitch;
        case SandboxVar::bank:
            return ac.bank;
        case SandboxVar::heading:
            return ac.heading;
        case SandboxVar::altitude:
            return ac.alt;
        case SandboxVar::verticalSpeed:
            return ac.vs;
        case SandboxVar::trueAirspeed:
            return ac.tas;
        case SandboxVar::heightAboveGround:
            return ac.alt - gf_sandboxGroundUnder(world.scenario, ac);
        case SandboxVar::groundSpeed:
            return ac.tas;
        case SandboxVar::zuluTime:
            return lf_zulu(world).seconds;
        case SandboxVar::zuluDay:
            return lf_zulu(world).day;
        case SandboxVar::zuluYear:
            return lf_zulu(world).year;
        case SandboxVar::lightStates:
            return ac.lights;
        case SandboxVar::staticCg:
            return ac.staticCg;
        case SandboxVar::staticPitch:
            return ac.staticPitch;
        case SandboxVar::groundAltitude:
            return gf_sandboxGroundUnder(world.scenario, ac);
        case SandboxVar::spoilers:
            return ac.spoilers;
        case SandboxVar::throttle:
            return ac.throttle[datum.engine - 1];
        case SandboxVar::title:
        case SandboxVar::model:
        case SandboxVar::atcId:
            break;
    }
    return 0;
}

const std::string& lf_text(const SandboxAircraft& ac, SandboxVar var) {
    return var == SandboxVar::title ? ac.title : var == SandboxVar::model ? ac.model : ac.tail;
}

template <class T>
void lf_put(u8*& at, f64 value) {
    T typed;
    if constexpr (std::is_integral_v<T>) {
        constexpr f64 most = sizeof(T) == 4 ? 2147483647.0 : kMaxInteger;
        typed = static_cast<T>(std::clamp(value, -most, most));
    } else {
        typed = static_cast<T>(value);
    }
    std::memcpy(at, &typed, sizeof typed);
    at += sizeof typed;
}

void lf_putDatum(SandboxWorld& world, SandboxAircraft& ac, const SandboxDatum& datum, u8*& at) {
    if (datum.facts->dimension == SandboxDimension::text) {
        const std::string& text = lf_text(ac, datum.facts->var);
        const std::size_t field =
            datum.type == SIMCONNECT_DATATYPE_STRINGV ? text.size() + 1 : gf_sandboxTypeBytes(datum.type);
        gf_sandboxCopyText(reinterpret_cast<char*>(at), field, text);
        at += field;
        return;
    }
    const f64 value = lf_value(world, ac, datum) * datum.toClient;
    switch (datum.type) {
        case SIMCONNECT_DATATYPE_INT32:
            lf_put<i32>(at, value);
            break;
        case SIMCONNECT_DATATYPE_INT64:
            lf_put<i64>(at, value);
            break;
        case SIMCONNECT_DATATYPE_FLOAT32:
            lf_put<f32>(at, value);
            break;
        default:
            lf_put<f64>(at, value);
            break;
    }
}

u32 lf_recordBytes(const SandboxDefinition& definition, const SandboxAircraft& ac) {
    u32 bytes = definition.bytes;
    if (definition.variable) {
        for (const SandboxDatum& datum : definition.data) {
            if (datum.type == SIMCONNECT_DATATYPE_STRINGV) {
                bytes += static_cast<u32>(lf_text(ac, datum.facts->var).size()) + 1;
            }
        }
    }
    return bytes;
}

SimException lf_judge(SandboxVar var, f64 value) {
    if (!std::isfinite(value)) return SIMCONNECT_EXCEPTION_DATA_ERROR;
    f64 most = kMaxSpeed;
    switch (var) {
        case SandboxVar::latitude:
            most = 90;
            break;
        case SandboxVar::longitude:
            most = 180;
            break;
        case SandboxVar::altitude:
            most = kMaxAltitudeFt;
            break;
        case SandboxVar::pitch:
        case SandboxVar::bank:
        case SandboxVar::heading:
            most = kMaxAngleRad;
            break;
        default:
            break;
    }
    return std::abs(value) <= most ? SIMCONNECT_EXCEPTION_NONE : SIMCONNECT_EXCEPTION_OUT_OF_BOUNDS;
}

void lf_store(SandboxAircraft& ac, const SandboxDatum& datum, f64 value) {
    switch (datum.facts->var) {
        case SandboxVar::latitude:
            ac.lat = value;
            break;
        case SandboxVar::longitude:
            ac.lon = value;
            break;
        case SandboxVar::pitch:
            ac.pitch = value;
            break;
        case SandboxVar::bank:
            ac.bank = value;
            break;
        case SandboxVar::heading:
            ac.heading = value;
            break;
        case SandboxVar::altitude:
            ac.alt = value;
            break;
        case SandboxVar::verticalSpeed:
            ac.vs = value;
            break;
        case SandboxVar::trueAirspeed:
            ac.tas = value;
            break;
        case SandboxVar::spoilers:
            ac.spoilers = std::clamp(value, 0.0, 100.0);
            break;
        case SandboxVar::throttle:
            ac.throttle[datum.engine - 1] = std::clamp(value, -100.0, 100.0);
            break;
        default:
            break;
    }
}

}  // namespace

f64 gf_sandboxTake(const u8*& at, u32 type) {
    const auto take = [&at](auto typed) {
        std::memcpy(&typed, at, sizeof typed);
        at += sizeof typed;
        return static_cast<f64>(typed);
    };
    switch (type) {
        case SIMCONNECT_DATATYPE_INT32:
            return take(i32{});
        case SIMCONNECT_DATATYPE_INT64:
            return take(i64{});
        case SIMCONNECT_DATATYPE_FLOAT32:
            return take(f32{});
        default:
            return take(f64{});
    }
}

bool gf_sandboxTextType(u32 type) {
    return type >= SIMCONNECT_DATATYPE_STRING8 && type <= SIMCONNECT_DATATYPE_STRINGV;
}

u32 gf_sandboxTypeBytes(u32 type) {
    switch (type) {
        case SIMCONNECT_DATATYPE_INT32:
        case SIMCONNECT_DATATYPE_FLOAT32:
            return 4;
        case SIMCONNECT_DATATYPE_INT64:
        case SIMCONNECT_DATATYPE_FLOAT64:
        case SIMCONNECT_DATATYPE_STRING8:
            return 8;
        case SIMCONNECT_DATATYPE_STRING32:
            return 32;
        case SIMCONNECT_DATATYPE_STRING64:
            return 64;
        case SIMCONNECT_DATATYPE_STRING128:
            return 128;
        case SIMCONNECT_DATATYPE_STRING256:
            return 256;
        case SIMCONNECT_DATATYPE_STRING260:
            return 260;
        default:
            return 0;
    }
}

SandboxDefinition* gf_sandboxDefinition(SandboxSession& session, u32 id) {
    for (SandboxDefinition& definition : session.definitions) {
        if (definition.id == id) return &definition;
    }
    return nullptr;
}

void gf_sandboxSendData(SandboxWorld& world, SimRecvId kind, u32 request, const SandboxDefinition& definition,
                        SandboxAircraft& ac, u32 entry, u32 outOf) {
    const u32 size = static_cast<u32>(sizeof(SIMCONNECT_RECV_SIMOBJECT_DATA)) + lf_recordBytes(definition, ac);
    u8* message = gf_sandboxAddMessage(world.session.waiting, size, kind);
    if (!message) return;
    auto* head = reinterpret_cast<SIMCONNECT_RECV_SIMOBJECT_DATA*>(message);
    head->dwRequestID = request;
    head->dwObjectID = ac.id;
    head->dwDefineID = definition.id;
    head->dwentrynumber = entry;
    head->dwoutof = outOf;
    head->dwDefineCount = static_cast<u32>(definition.data.size());
    u8* at = message + sizeof *head;
    for (const SandboxDatum& datum : definition.data) lf_putDatum(world, ac, datum, at);
}

void gf_sandboxSendNoData(SandboxWorld& world, u32 request, u32 definition) {
    auto* head =
        gf_sandboxAdd<SIMCONNECT_RECV_SIMOBJECT_DATA>(world.session.waiting, SIMCONNECT_RECV_ID_SIMOBJECT_DATA_BYTYPE);
    if (!head) return;
    head->dwRequestID = request;
    head->dwDefineID = definition;
}

void gf_sandboxServePeriod(SandboxWorld& world, u32 period) {
    auto& requests = world.session.requests;
    for (std::size_t i = 0; i < requests.size();) {
        SandboxRequest& request = requests[i];
        if (request.period != period || (request.skip > 0 && request.skip-- > 0)) {
            ++i;
            continue;
        }
        const SandboxDefinition* definition = gf_sandboxDefinition(world.session, request.definition);
        SandboxAircraft* ac = gf_sandboxFind(world, request.object);
        if (ac && definition) {
            gf_sandboxSendData(world, SIMCONNECT_RECV_ID_SIMOBJECT_DATA, request.id, *definition, *ac, 1, 1);
        }
        request.skip = request.interval;
        const bool last = request.limit == 1;
        if (request.limit > 1) --request.limit;
        if (!ac || last) {
            requests.erase(requests.begin() + static_cast<std::ptrdiff_t>(i));
        } else {
            ++i;
        }
    }
}

SimException gf_sandboxWriteRecord(const SandboxDefinition& definition, SandboxAircraft& ac, const void* data) {
    if (!definition.writable) return SIMCONNECT_EXCEPTION_DATA_ERROR;
    const u8* at = static_cast<const u8*>(data);
    for (const SandboxDatum& datum : definition.data) {
        const SimException judged = lf_judge(datum.facts->var, gf_sandboxTake(at, datum.type) * datum.fromClient);
        if (judged != SIMCONNECT_EXCEPTION_NONE) return judged;
    }
    at = static_cast<const u8*>(data);
    for (const SandboxDatum& datum : definition.data)
        lf_store(ac, datum, gf_sandboxTake(at, datum.type) * datum.fromClient);
    if (definition.position) {
        ac.groundKnown = false;
        ++ac.positionWrites;
    }
    return SIMCONNECT_EXCEPTION_NONE;
}

}  // namespace hcr
