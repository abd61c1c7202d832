#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "platform/clock.h"
#include "sim/port/sandbox/sandbox.h"
#include "sim/port/sim_port.h"

namespace {

constexpr int kDispatches = 40;
constexpr hcr::i64 kStepUs = 250000;

/// A client that does everything once, so that whatever the scenario allows is carried out.
void lf_runClient() {
    using namespace hcr;
    SimHandle handle = nullptr;
    u32 id = 0;
    for (int i = 0; i < kDispatches; ++i) {
        gf_turnClock(kStepUs);
        if (!handle) {
            if (gSimPort.SimConnect_Open(&handle, "fuzz", nullptr, 0, nullptr, 0) < 0) continue;
            gSimPort.SimConnect_SubscribeToSystemEvent(handle, 201, "Sim");
            gSimPort.SimConnect_SubscribeToSystemEvent(handle, 202, "ObjectAdded");
            gSimPort.SimConnect_SubscribeToSystemEvent(handle, 204, "Frame");
            gSimPort.SimConnect_AddToDataDefinition(handle, 1, "TITLE", nullptr, 11, 0, 0);
            gSimPort.SimConnect_AddToDataDefinition(handle, 1, "Plane Latitude", "degrees", 1, 0, 0);
            gSimPort.SimConnect_AddToDataDefinition(handle, 1, "ZULU YEAR", "Number", 2, 0, 0);
            gSimPort.SimConnect_AddToDataDefinition(handle, 1, "Ground Altitude", "feet", 3, 0, 0);
            gSimPort.SimConnect_RequestDataOnSimObject(handle, 1, 1, 0, SIMCONNECT_PERIOD_SECOND, 0, 0, 0, 0);
        }
        gSimPort.SimConnect_AICreateNonATCAircraft(handle, "Fuzz", "F1", {52, 4, 100, 0, 0, 0, 0, 200}, 1);
        gSimPort.SimConnect_RequestDataOnSimObjectType(handle, 2, 1, 200000, SIMCONNECT_SIMOBJECT_TYPE_ALL);
        if (gSimPort.SimConnect_CallDispatch(
                handle, [](SIMCONNECT_RECV*, u32, void*) {}, &id) < 0) {
            gSimPort.SimConnect_Close(handle);
            handle = nullptr;
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace hcr;
    Scenario scenario;
    try {
        scenario = gf_parseScenario(std::string(reinterpret_cast<const char*>(data), size), "fuzz");
    } catch (const std::runtime_error&) {
        return 0;
    }
    gf_holdClock(1.7e9);
    gf_startSandbox(scenario);
    lf_runClient();
    gf_stopSandbox();
    gf_releaseClock();
    return 0;
}
