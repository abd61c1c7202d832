#include <stdexcept>

#include "client.h"
#include "sim/port/sim_port.h"

namespace hcr {
namespace {

struct SandboxCalls : SandboxClient {};

constexpr u32 kSim = 201, kAdded = 202, kRemoved = 203, kFrame = 204, kLoaded = 205;

ScenarioFault lf_fault(FaultKind kind, f64 at, f64 seconds = 0) {
    ScenarioFault fault;
    fault.kind = kind;
    fault.at = at;
    fault.seconds = seconds;
    return fault;
}

TEST_F(SandboxCalls, EveryExceptionNamesThePacketAndTheParameter) {
    start(gf_defaultScenario());
    open();
    subscribeAll();
    define(402, "Plane Latitude", "degree", 4);
    define(407, "TITLE", nullptr, SIMCONNECT_DATATYPE_STRINGV);
    mapEvent(219, "GEAR_SET");
    answers();
    const auto& p = gSimPort;
    f64 value = 1, nonsense = 91;
    const struct {
        const char* what;
        SimResult result;
        u32 exception, index;
    } rows[] = {
        {"variable", p.SimConnect_AddToDataDefinition(handle, 1, "Plane Latitute", "degree", 4, 0, 0), 7, 2},
        {"index on a plain variable", p.SimConnect_AddToDataDefinition(handle, 1, "Plane Altitude:1", "feet", 4, 0, 0),
         7, 2},
        {"fifth engine",
         p.SimConnect_AddToDataDefinition(handle, 1, "GENERAL ENG THROTTLE LEVER POSITION:5", "percent", 4, 0, 0), 7,
         2},
        {"unit", p.SimConnect_AddToDataDefinition(handle, 1, "Plane Latitude", "feet", 4, 0, 0), 7, 3},
        {"no unit", p.SimConnect_AddToDataDefinition(handle, 1, "Plane Latitude", nullptr, 4, 0, 0), 7, 3},
        {"number as text", p.SimConnect_AddToDataDefinition(handle, 1, "Plane Latitude", "degree", 6, 0, 0), 18, 4},
        {"text as number", p.SimConnect_AddToDataDefinition(handle, 1, "ATC ID", nullptr, 4, 0, 0), 18, 4},
        {"no such type", p.SimConnect_AddToDataDefinition(handle, 1, "ATC ID", nullptr, 99, 0, 0), 18, 4},
        {"definition", p.SimConnect_RequestDataOnSimObject(handle, 1, 999, 0, 1, 0, 0, 0, 0), 3, 2},
        {"object", p.SimConnect_RequestDataOnSimObject(handle, 1, 402, 77, 1, 0, 0, 0, 0), 3, 3},
        {"period", p.SimConnect_RequestDataOnSimObject(handle, 1, 402, 0, 5, 0, 0, 0, 0), 27, 4},
        {"definition by type", p.SimConnect_RequestDataOnSimObjectType(handle, 1, 999, 1000, 2), 3, 2},
        {"radius", p.SimConnect_RequestDataOnSimObjectType(handle, 1, 402, 200001, 2), 31, 3},
        {"object type", p.SimConnect_RequestDataOnSimObjectType(handle, 1, 402, 1000, 9), 27, 4},
        {"write to no definition", p.SimConnect_SetDataOnSimObject(handle, 999, 0, 0, 0, 8, &value), 3, 1},
        {"write to no object", p.SimConnect_SetDataOnSimObject(handle, 402, 77, 0, 0, 8, &value), 3, 2},
        {"size", p.SimConnect_SetDataOnSimObject(handle, 402, 0, 0, 0, 4, &value), 19, 5},
        {"beyond the pole", p.SimConnect_SetDataOnSimObject(handle, 402, 0, 0, 0, 8, &nonsense), 31, 6},
        {"write of a read-only text", p.SimConnect_SetDataOnSimObject(handle, 407, 0, 0, 0, 0, &value), 19, 5},
        {"event name", p.SimConnect_MapClientEventToSimEvent(handle, 1, "GEAR_SETT"), 7, 2},
        {"event twice", p.SimConnect_MapClientEventToSimEvent(handle, 219, "FLAPS_SET"), 9, 1},
        {"event unmapped", p.SimConnect_AddClientEventToNotificationGroup(handle, 301, 999, 1), 3, 2},
        {"event twice in the group", p.SimConnect_AddClientEventToNotificationGroup(handle, 301, 219, 1), 29, 2},
        {"group", p.SimConnect_SetNotificationGroupPriority(handle, 999, 1), 3, 1},
        {"system event", p.SimConnect_SubscribeToSystemEvent(handle, 999, "Framee"), 7, 2},
        {"subscribed twice", p.SimConnect_SubscribeToSystemEvent(handle, 999, "frame"), 26, 2},
        {"transmit to no object", p.SimConnect_TransmitClientEvent(handle, 77, 219, 1, 301, 0), 3, 1},
        {"transmit unmapped", p.SimConnect_TransmitClientEvent(handle, 0, 999, 1, 301, 0), 3, 2},
        {"transmit in no group", p.SimConnect_TransmitClientEvent(handle, 0, 219, 1, 302, 0), 3, 4},
        {"release of nobody", p.SimConnect_AIReleaseControl(handle, 77, 0), 3, 1},
        {"release of the user", p.SimConnect_AIReleaseControl(handle, 1, 0), 24, 1},
        {"removal of the user", p.SimConnect_AIRemoveObject(handle, 0, 0), 24, 1},
        {"plan for nobody", p.SimConnect_AISetAircraftFlightPlan(handle, 77, "x.pln", 0), 3, 1},
    };
    const u32 last = packet();
    const auto messages = answers();
    ASSERT_EQ(messages.size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_EQ(rows[i].result, 0) << rows[i].what;
        const auto e = messages[i].as<SIMCONNECT_RECV_EXCEPTION>();
        EXPECT_EQ(e.dwID, SIMCONNECT_RECV_ID_EXCEPTION) << rows[i].what;
        EXPECT_EQ(e.dwException, rows[i].exception) << rows[i].what;
        EXPECT_EQ(e.dwIndex, rows[i].index) << rows[i].what;
        EXPECT_EQ(e.dwSendID, last - std::size(rows) + 1 + i) << rows[i].what;
    }
}

TEST_F(SandboxCalls, AfterQuitTheSessionIsDeadAndTheSimulatorComesBackLater) {
    Scenario s = gf_defaultScenario();
    s.faults = {lf_fault(FaultKind::quit, 5, 30)};
    start(s);
    open();
    subscribeAll();
    run(4);
    create("A320", "KLM1");
    const auto end = run(1.5);
    EXPECT_EQ(countOf(end, SIMCONNECT_RECV_ID_QUIT), 1u);
    EXPECT_EQ(end.back().id(), SIMCONNECT_RECV_ID_QUIT);
    EXPECT_TRUE(gf_sandboxObjects().empty());
    EXPECT_LT(gSimPort.SimConnect_AIRemoveObject(handle, 2, 0), 0);
    EXPECT_LT(dispatch(), 0);
    EXPECT_EQ(gSimPort.SimConnect_Close(handle), 0);
    EXPECT_LT(gSimPort.SimConnect_Open(&handle, "test", nullptr, 0, nullptr, 0), 0);
    gf_turnClock(30000000);
    open();
    subscribeAll();
    const auto again = run(2);
    EXPECT_EQ(again.front().id(), SIMCONNECT_RECV_ID_OPEN);
    EXPECT_EQ(eventsOf(again, kSim).back().dwData, 1u);
    EXPECT_NEAR(gf_sandboxSeconds(), 37.5, 1e-6) << "its clock doesn't begin anew";
}

TEST_F(SandboxCalls, FaultsReachTheClient) {
    start(gf_defaultScenario());
    open();
    subscribeAll();
    run(2);
    gf_playSandboxFault(lf_fault(FaultKind::flightLoaded, 0));
    gf_playSandboxFault(lf_fault(FaultKind::newFile, 0));
    ScenarioFault exception = lf_fault(FaultKind::exception, 0);
    exception.number = 5;
    gf_playSandboxFault(exception);
    ScenarioFault teleport = lf_fault(FaultKind::teleport, 0);
    teleport.lat = 40;
    teleport.lon = -73;
    gf_playSandboxFault(teleport);
    ScenarioFault foreign = lf_fault(FaultKind::addObject, 0);
    foreign.text = "AS-GEN";
    foreign.lat = 40;
    foreign.lon = -73;
    gf_playSandboxFault(foreign);
    const auto messages = answers();
    ASSERT_EQ(eventsOf(messages, kLoaded).size(), 2u);
    EXPECT_EQ(countOf(messages, SIMCONNECT_RECV_ID_EVENT_FILENAME), 1u);
    EXPECT_EQ(exceptionOf(messages).dwException, 5u);
    EXPECT_EQ(eventsOf(messages, kAdded).size(), 1u);
    EXPECT_DOUBLE_EQ(read(0, "Plane Latitude", "degrees"), 40);
    ScenarioFault remove = lf_fault(FaultKind::removeObject, 0);
    remove.text = "AS-GEN";
    gf_playSandboxFault(remove);
    EXPECT_EQ(eventsOf(answers(), kRemoved).size(), 1u);
}

}  // namespace
}  // namespace hcr
