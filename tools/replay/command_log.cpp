#include "tools/replay/command_log.h"

#include <cmath>
#include <cstring>
#include <string_view>

namespace hcr {
namespace {

constexpr u64 kHashStart = 0xcbf29ce484222325, kHashFactor = 0x100000001b3;  // FNV-1a, 64 bits

CommandLog* gLog = nullptr;

void lf_bytes(const void* data, std::size_t size) {
    const auto* byte = static_cast<const u8*>(data);
    for (std::size_t i = 0; i < size; ++i) gLog->hash = (gLog->hash ^ byte[i]) * kHashFactor;
}

void lf_text(std::string_view text) {
    lf_bytes(text.data(), text.size() + 1);
}

void lf_whole(u32 value) {
    lf_bytes(&value, sizeof value);
}

void lf_number(f64 value) {
    lf_bytes(&value, sizeof value);
    gLog->sum += std::abs(value);
}

SimResult lf_create(SimHandle handle, const char* title, const char* tail, SIMCONNECT_DATA_INITPOSITION position,
                    u32 request) {
    ++gLog->creations;
    lf_text(title);
    lf_text(tail);
    for (const f64 value :
         {position.Latitude, position.Longitude, position.Altitude, position.Pitch, position.Bank, position.Heading}) {
        lf_number(value);
    }
    return gLog->behind.SimConnect_AICreateNonATCAircraft(handle, title, tail, position, request);
}

SimResult lf_remove(SimHandle handle, u32 object, u32 request) {
    ++gLog->removals;
    lf_whole(object);
    return gLog->behind.SimConnect_AIRemoveObject(handle, object, request);
}

SimResult lf_release(SimHandle handle, u32 object, u32 request) {
    ++gLog->releases;
    lf_whole(object);
    return gLog->behind.SimConnect_AIReleaseControl(handle, object, request);
}

SimResult lf_event(SimHandle handle, u32 object, u32 event, u32 data, u32 group, u32 flags) {
    ++gLog->events;
    for (const u32 value : {object, event, data}) lf_whole(value);
    return gLog->behind.SimConnect_TransmitClientEvent(handle, object, event, data, group, flags);
}

SimResult lf_write(SimHandle handle, u32 definition, u32 object, u32 flags, u32 count, u32 size, void* data) {
    ++gLog->writes;
    lf_whole(definition);
    lf_whole(object);
    for (u32 at = 0; at + sizeof(f64) <= size; at += sizeof(f64)) {
        f64 value = 0;
        std::memcpy(&value, static_cast<const u8*>(data) + at, sizeof value);
        lf_number(value);
    }
    return gLog->behind.SimConnect_SetDataOnSimObject(handle, definition, object, flags, count, size, data);
}

}  // namespace

CommandLog::CommandLog() : behind(gSimPort), hash(kHashStart) {
    gLog = this;
    gSimPort.SimConnect_AICreateNonATCAircraft = lf_create;
    gSimPort.SimConnect_AIRemoveObject = lf_remove;
    gSimPort.SimConnect_AIReleaseControl = lf_release;
    gSimPort.SimConnect_TransmitClientEvent = lf_event;
    gSimPort.SimConnect_SetDataOnSimObject = lf_write;
}

CommandLog::~CommandLog() {
    gSimPort = behind;
    gLog = nullptr;
}

}  // namespace hcr
