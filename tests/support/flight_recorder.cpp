#include "tests/support/flight_recorder.h"

#include <algorithm>
#include <cmath>

#include "core/model/geo.h"
#include "sim/port/sandbox/sandbox.h"

namespace hcr::test {
namespace {

constexpr f64 kMetresPerSecondPerKnot = kMetresPerNm / 3600.0;

void lf_compareWithLast(FlownAircraft& ac, const SandboxObject& now, f64 seconds) {
    const f64 passed = seconds - ac.lastWrite;
    const f64 moved = metresBetween(ac.lat, ac.lon, now.lat, now.lon);
    const f64 jump = moved - std::max(now.tas, ac.speedKt) * kMetresPerSecondPerKnot * passed;
    if (jump > ac.worstJumpM) {
        ac.worstJumpM = jump;
        ac.worstJumpAt = seconds;
    }
    if (passed <= 0) return;
    const f64 turn = std::abs(wrapPi((now.heading - ac.heading) * kDegToRad)) * kRadToDeg / passed;
    ac.worstTurnDegPerS = std::max(ac.worstTurnDegPerS, turn);
    ac.worstClimbFtPerS = std::max(ac.worstClimbFtPerS, std::abs(now.alt - ac.alt) / passed);
}

FlightRecorder* gRecorder = nullptr;

SimResult lf_onCreate(SimHandle handle, const char* title, const char* tail, SIMCONNECT_DATA_INITPOSITION position,
                      u32 request) {
    gRecorder->creates.push_back({gf_sandboxSeconds(), title, tail, position});
    return gRecorder->behind.SimConnect_AICreateNonATCAircraft(handle, title, tail, position, request);
}

void lf_onWrite(const SandboxObject& object, f64 seconds, void* context) {
    FlownAircraft& ac = static_cast<FlightRecorder*>(context)->aircraft[object.tail];
    if (ac.lastObject != object.id) {
        ac.lastObject = object.id;
        ++ac.appearances;
        if (ac.appearances == 1) ac.firstWrite = seconds;
    } else {
        lf_compareWithLast(ac, object, seconds);
    }
    ac.lastWrite = seconds;
    ac.lat = object.lat;
    ac.lon = object.lon;
    ac.alt = object.alt;
    ac.heading = object.heading;
    if (!ac.pathTimes.empty() && seconds < ac.pathTimes.back() + gRecorder->step) return;
    ac.pathTimes.push_back(seconds);
    ac.path.push_back(object);
}

}  // namespace

FlightRecorder::FlightRecorder() : behind(gSimPort) {
    gRecorder = this;
    gSimPort.SimConnect_AICreateNonATCAircraft = lf_onCreate;
    gf_setSandboxPositionHook(lf_onWrite, this);
}

FlightRecorder::~FlightRecorder() {
    gf_setSandboxPositionHook(nullptr, nullptr);
    gSimPort.SimConnect_AICreateNonATCAircraft = behind.SimConnect_AICreateNonATCAircraft;
    gRecorder = nullptr;
}

f64 metresBetween(f64 latA, f64 lonA, f64 latB, f64 lonB) {
    return distanceNm(latA, lonA, latB, lonB) * kMetresPerNm;
}

}  // namespace hcr::test
