#include "sim/port/sandbox/sandbox.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "platform/clock.h"
#include "sim/port/sim_port.h"

namespace hcr {
namespace {

constexpr i64 kFrameUs = 33334;

/// A sandbox full of aircraft that a client placed and froze.
struct FullSky {
    SimHandle handle = nullptr;
    std::vector<u32> ids;

    explicit FullSky(i64 count) {
        gf_holdClock(1.7e9);
        Scenario s = gf_defaultScenario();
        for (i32 i = 0; i < 10; ++i) s.ground.push_back({52.0 + i * 0.1, 4.7, 3, 100.0 * i});
        gf_startSandbox(s);
        const SimPort& p = gSimPort;
        p.SimConnect_Open(&handle, "bench", nullptr, 0, nullptr, 0);
        p.SimConnect_SubscribeToSystemEvent(handle, 204, "Frame");
        for (const char* name : {"Plane Latitude", "Plane Longitude"}) define(402, name, "degree", 4);
        for (const char* name : {"Plane Pitch degrees", "Plane Bank degrees", "Plane Heading degrees true"}) {
            define(402, name, "radians", 4);
        }
        define(402, "Plane Altitude", "feet", 4);
        define(402, "Vertical Speed", "feet per second", 4);
        define(402, "Airspeed True", "knots", 4);
        define(404, "Plane Alt Above Ground", "feet", 4);
        define(404, "Ground Altitude", "feet", 4);
        define(404, "SIM ON GROUND", "Bool", 2);
        define(404, "ATC ID", nullptr, 6);
        const char* freezes[] = {"FREEZE_LATITUDE_LONGITUDE_SET", "FREEZE_ALTITUDE_SET", "FREEZE_ATTITUDE_SET"};
        for (u32 i = 0; i < 3; ++i) {
            p.SimConnect_MapClientEventToSimEvent(handle, 214 + i, freezes[i]);
            p.SimConnect_AddClientEventToNotificationGroup(handle, 301, 214 + i, 1);
        }
        for (i64 i = 0; i < count; ++i) {
            const SIMCONNECT_DATA_INITPOSITION at{52.3, 4.7, 3000, 0, 0, 0, 0, 200};
            p.SimConnect_AICreateNonATCAircraft(handle, "A320", fmt::format("KLM{}", i).c_str(), at, 104);
        }
        for (const SandboxObject& o : gf_sandboxObjects()) {
            ids.push_back(o.id);
            p.SimConnect_AIReleaseControl(handle, o.id, 103);
            for (u32 i = 0; i < 3; ++i) p.SimConnect_TransmitClientEvent(handle, o.id, 214 + i, 1, 301, 0);
        }
        for (int i = 0; i < 100; ++i) frame();
    }
    ~FullSky() {
        gf_stopSandbox();
        gf_releaseClock();
    }

    void define(u32 id, const char* name, const char* unit, u32 type) {
        gSimPort.SimConnect_AddToDataDefinition(handle, id, name, unit, type, 0, SIMCONNECT_UNUSED);
    }
    void frame() {
        gf_turnClock(kFrameUs);
        gSimPort.SimConnect_CallDispatch(
            handle, [](SIMCONNECT_RECV*, u32, void*) {}, nullptr);
    }
};

/// One frame in which every aircraft gets a new position; items are position writes.
void SandboxPositionWrites(benchmark::State& state) {
    FullSky sky(state.range(0));
    f64 record[8] = {52.3, 4.7, 0, 0, 1, 3000, 0, 200};
    for (auto _ : state) {
        sky.frame();
        record[0] += 1e-7;
        for (const u32 id : sky.ids) {
            gSimPort.SimConnect_SetDataOnSimObject(sky.handle, 402, id, 0, 0, sizeof record, record);
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(SandboxPositionWrites)->Arg(300)->Arg(500);

/// The periodic status of all aircraft after all have moved; items are replies.
void SandboxStatusReplies(benchmark::State& state) {
    FullSky sky(state.range(0));
    f64 record[8] = {52.3, 4.7, 0, 0, 1, 3000, 0, 200};
    for (auto _ : state) {
        record[0] += 1e-7;
        for (const u32 id : sky.ids) {
            gSimPort.SimConnect_SetDataOnSimObject(sky.handle, 402, id, 0, 0, sizeof record, record);
        }
        gSimPort.SimConnect_RequestDataOnSimObjectType(sky.handle, 101, 404, 100000,
                                                       SIMCONNECT_SIMOBJECT_TYPE_AIRCRAFT);
        sky.frame();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(SandboxStatusReplies)->Arg(300);

/// A dispatch in which nothing is due.
void SandboxIdleDispatch(benchmark::State& state) {
    FullSky sky(300);
    for (auto _ : state) {
        gSimPort.SimConnect_CallDispatch(
            sky.handle, [](SIMCONNECT_RECV*, u32, void*) {}, nullptr);
    }
}
BENCHMARK(SandboxIdleDispatch);

}  // namespace
}  // namespace hcr
