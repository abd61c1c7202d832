#include <cmath>
#include <string>

#include "client.h"
#include "core/model/geo.h"
#include "sim/port/sandbox/object.h"
#include "sim/port/sim_port.h"

namespace hcr {
namespace {

struct SandboxAi : SandboxClient {
    /// A world with one hill, a helicopter's title and two titles that can't be had.
    void begin() {
        Scenario s = gf_defaultScenario();
        s.elevation = 100;
        s.ground = {{53, 5, 5, 700}, {53, 5, 20, 400}};
        s.titles = {{"Heli", 4, -1, true}, {"Jumbo", 16, 1, false}};
        s.refused = {"Broken"};
        s.maxObjects = 3;
        start(s);
        open();
        subscribeAll();
        definePosition();
        mapFreezes();
        define(404, "Plane Alt Above Ground", "feet", 4);
        define(404, "Ground Altitude", "feet", 4);
        define(404, "SIM ON GROUND", "Bool", 2);
        define(404, "ATC ID", nullptr, 6);
        run(2);
    }
    u32 held(const char* title, const char* tail, f64 lat, f64 lon, f64 alt, u32 onGround = 0) {
        const u32 id = create(title, tail, lat, lon, alt, onGround);
        EXPECT_GE(gSimPort.SimConnect_AIReleaseControl(handle, id, 103), 0);
        freeze(id, true, true, true);
        return id;
    }
};

TEST_F(SandboxAi, AModelThatTakesItsTimeIsHiddenUntilItIsLoaded) {
    Scenario s = gf_defaultScenario();
    s.announceAfter = 3;
    start(s);
    open();
    subscribeAll();
    run(2);
    const u32 first = create("Slow", "KLM1"), second = create("Slow", "KLM2");
    define(404, "ATC ID", nullptr, 6);
    gSimPort.SimConnect_AIRemoveObject(handle, first, 105);
    EXPECT_TRUE(eventsOf(run(2.5), 202).empty());
    gSimPort.SimConnect_RequestDataOnSimObjectType(handle, 101, 404, 100000, SIMCONNECT_SIMOBJECT_TYPE_AIRCRAFT);
    EXPECT_EQ(countOf(answers(), SIMCONNECT_RECV_ID_SIMOBJECT_DATA_BYTYPE), 1u) << "the user alone";
    const auto shown = eventsOf(run(1), 202);
    ASSERT_EQ(shown.size(), 1u) << "what went before it came isn't announced";
    EXPECT_EQ(shown[0].dwData, second);
}

TEST_F(SandboxAi, WhatCantBeCreatedIsRefusedWithThePacketOfTheCall) {
    begin();
    const SIMCONNECT_DATA_INITPOSITION good{52, 4, 3000, 0, 0, 90, 0, 200};
    SIMCONNECT_DATA_INITPOSITION nowhere = good, nan = good;
    nowhere.Latitude = 91;
    nan.Altitude = std::nan("");
    const struct {
        const char* title;
        const char* tail;
        SIMCONNECT_DATA_INITPOSITION position;
        u32 exception;
    } rows[] = {
        {"Broken", "A", good, 22},   {"", "A", good, 22},     {"Jumbo", "ABCDEFGHIJKLM", good, 22},
        {"Jumbo", "A", nowhere, 22}, {"Jumbo", "A", nan, 22}, {"Jumbo", "ABCDEFGHIJKL", good, 0},
        {"Jumbo", "B", good, 0},     {"Jumbo", "C", good, 0}, {"Jumbo", "D", good, 11},
    };
    for (const auto& row : rows) {
        ASSERT_EQ(gSimPort.SimConnect_AICreateNonATCAircraft(handle, row.title, row.tail, row.position, 104), 0);
        const u32 sent = packet();
        const auto e = exceptionOf(answers());
        EXPECT_EQ(e.dwException, row.exception) << row.title << " " << row.tail;
        if (row.exception != 0) {
            EXPECT_EQ(e.dwSendID, sent);
        }
    }
    EXPECT_EQ(gf_sandboxCounters().refusals, 6u);
    EXPECT_EQ(gf_sandboxCounters().creates, 3u);
}

TEST_F(SandboxAi, OnTheGroundItStandsOnItsWheelsOnTheFirstDiscThatFits) {
    begin();
    const struct { f64 lat, lon, elevation; } rows[] = {{53, 5, 700}, {53.2, 5, 400}, {54, 5, 100}};
    for (const auto& row : rows) {
        const u32 id = held("Jumbo", "G", row.lat, row.lon, 99999, 1);
        EXPECT_DOUBLE_EQ(read(id, "Plane Altitude", "feet"), row.elevation + 16);
        EXPECT_DOUBLE_EQ(read(id, "Ground Altitude", "feet"), row.elevation);
        EXPECT_DOUBLE_EQ(read(id, "Plane Alt Above Ground", "feet"), 16);
        EXPECT_DOUBLE_EQ(read(id, "SIM ON GROUND", "Bool"), 1);
        EXPECT_NEAR(read(id, "Static Pitch", "degrees"), 1, 1e-12);
        EXPECT_NEAR(read(id, "Plane Pitch degrees", "radians"), 1 * kDegToRad, 1e-12);
        gSimPort.SimConnect_AIRemoveObject(handle, id, 0);
    }
}

TEST_F(SandboxAi, OnlyAReleasedAndFrozenAircraftStaysWhereItIsPut) {
    begin();
    const struct {
        const char* what;
        bool release, position, altitude, attitude;
        bool moves, sinks, turns;
    } rows[] = {
        {"all held", true, true, true, true, false, false, false},
        {"not released", false, true, true, true, true, true, true},
        {"not frozen at all", true, false, false, false, true, true, true},
        {"position free", true, false, true, true, true, false, false},
        {"altitude free", true, true, false, true, false, true, false},
        {"attitude free", true, true, true, false, false, false, true},
    };
    for (const auto& row : rows) {
        const u32 id = create("Jumbo", "X", 52, 4, 5000);
        if (row.release) gSimPort.SimConnect_AIReleaseControl(handle, id, 103);
        freeze(id, row.position, row.altitude, row.attitude);
        write(id, 52, 4, 5000);
        run(10);
        const SandboxObject o = object(id);
        EXPECT_EQ(std::abs(o.lon - 4) > 0.001, row.moves) << row.what;
        EXPECT_EQ(o.alt < 4990, row.sinks) << row.what;
        EXPECT_EQ(std::abs(o.heading - 1.5 * kRadToDeg) > 1, row.turns) << row.what;
        gSimPort.SimConnect_AIRemoveObject(handle, id, 0);
    }
}

TEST_F(SandboxAi, SettingTheFlapsHandsItBackToTheAiUntilItIsReleasedOnceMore) {
    begin();
    mapEvent(217, "FLAPS_SET");
    const u32 id = held("Jumbo", "X", 52, 4, 5000);
    send(id, 217, 10240);
    EXPECT_FALSE(object(id).released);
    run(10);
    EXPECT_LT(object(id).alt, 4990);
    gSimPort.SimConnect_AIReleaseControl(handle, id, 103);
    write(id, 52, 4, 5000);
    run(10);
    EXPECT_DOUBLE_EQ(object(id).alt, 5000);
    EXPECT_EQ(object(id).flaps, 10240u);
}

TEST_F(SandboxAi, AWrittenRecordIsReadBackInOtherUnitsAndTypes) {
    begin();
    const u32 id = held("Jumbo", "KLM1", 52, 4, 5000);
    f64 record[8] = {-33.5, 179.25, 0.02, -0.1, 3.0, 12000, -10, 250};
    ASSERT_EQ(gSimPort.SimConnect_SetDataOnSimObject(handle, 402, id, 0, 0, sizeof record, record), 0);
    EXPECT_DOUBLE_EQ(read(id, "PLANE LATITUDE", "radians"), -33.5 * kDegToRad);
    EXPECT_DOUBLE_EQ(read(id, "plane longitude", "degrees"), 179.25);
    EXPECT_DOUBLE_EQ(read(id, "Plane Heading degrees true", "degrees"), 3.0 * kRadToDeg);
    EXPECT_NEAR(read(id, "Vertical Speed", "feet per minute"), -600, 1e-9);
    EXPECT_NEAR(read(id, "Plane Altitude", "meters"), 3657.6, 0.001);
    define(700, "Airspeed True", "knots", SIMCONNECT_DATATYPE_INT32);
    define(700, "ATC ID", nullptr, SIMCONNECT_DATATYPE_STRING8);
    define(700, "Plane Altitude", "feet", SIMCONNECT_DATATYPE_FLOAT32);
    define(700, "TITLE", nullptr, SIMCONNECT_DATATYPE_STRINGV);
    define(700, "Plane Longitude", "degrees", SIMCONNECT_DATATYPE_INT64);
    ask(1, 700, id);
    ASSERT_EQ(answers().size(), 1u);
    const SeenMessage& m = seen[0];
    const auto head = m.as<SIMCONNECT_RECV_SIMOBJECT_DATA>();
    EXPECT_EQ(head.dwSize, 40u + 4 + 8 + 4 + 6 + 8);
    EXPECT_EQ(head.dwDefineCount, 5u);
    EXPECT_EQ(head.dwentrynumber, 1u);
    EXPECT_EQ(m.value<i32>(0), 250);
    EXPECT_STREQ(reinterpret_cast<const char*>(m.bytes.data()) + 44, "KLM1");
    EXPECT_FLOAT_EQ(m.value<f32>(12), 12000);
    EXPECT_STREQ(reinterpret_cast<const char*>(m.bytes.data()) + 56, "Jumbo");
    EXPECT_EQ(m.value<i64>(22), 179);
}

TEST_F(SandboxAi, RequestsByTypeCountTheirAnswersWithinTheRadius) {
    begin();
    held("Jumbo", "NEAR", 52.4, 4.8, 3000);
    held("Jumbo", "FAR*", 53.5, 4.8, 3000);
    answers();
    const struct {
        u32 metres, type;
        std::vector<std::string> tails;
    } rows[] = {
        {20000, SIMCONNECT_SIMOBJECT_TYPE_AIRCRAFT, {"PH-HCR", "NEAR"}},
        {200000, SIMCONNECT_SIMOBJECT_TYPE_ALL, {"PH-HCR", "NEAR", "FAR*"}},
        {200000, SIMCONNECT_SIMOBJECT_TYPE_USER, {"PH-HCR"}},
        {0, SIMCONNECT_SIMOBJECT_TYPE_AIRCRAFT, {"PH-HCR"}},
        {200000, SIMCONNECT_SIMOBJECT_TYPE_BOAT, {}},
    };
    for (const auto& row : rows) {
        gSimPort.SimConnect_RequestDataOnSimObjectType(handle, 101, 404, row.metres, row.type);
        const auto messages = answers();
        ASSERT_EQ(messages.size(), std::max<std::size_t>(row.tails.size(), 1)) << row.metres;
        for (std::size_t i = 0; i < messages.size(); ++i) {
            const auto head = messages[i].as<SIMCONNECT_RECV_SIMOBJECT_DATA>();
            EXPECT_EQ(head.dwID, SIMCONNECT_RECV_ID_SIMOBJECT_DATA_BYTYPE);
            EXPECT_EQ(head.dwoutof, row.tails.size());
            EXPECT_EQ(head.dwentrynumber, row.tails.empty() ? 0 : i + 1);
            EXPECT_EQ(head.dwSize, row.tails.empty() ? 40 : 40 + sizeof(AiStatusData));
            if (row.tails.empty()) continue;
            EXPECT_EQ(row.tails[i], reinterpret_cast<const char*>(messages[i].bytes.data()) + 40 + 24);
        }
    }
}

TEST_F(SandboxAi, EventsAndLeversWorkOnTheObjectTheyNameAndLeversGoBelowZero) {
    begin();
    const u32 id = held("Jumbo", "A", 52, 4, 5000), other = held("Jumbo", "B", 52, 4, 6000);
    mapEvent(222, "THROTTLE_SET");
    mapEvent(213, "ALL_LIGHTS_TOGGLE");
    send(id, 222, 4914);
    send(id, 213, 0);
    EXPECT_EQ(object(id).throttle, 4914);
    EXPECT_EQ(object(id).cabin, 1u);
    EXPECT_EQ(object(other).throttle, 0);
    EXPECT_EQ(object(other).cabin, 0u);
    define(401, "SPOILERS HANDLE POSITION", "percent", 4);
    define(401, "GENERAL ENG THROTTLE LEVER POSITION:1", "percent", 4);
    define(401, "GENERAL ENG THROTTLE LEVER POSITION:2", "percent", 4);
    f64 record[3] = {50, -25, 75};
    gSimPort.SimConnect_SetDataOnSimObject(handle, 401, id, 0, 0, sizeof record, record);
    EXPECT_EQ(object(id).spoilers, 8192u);
    EXPECT_EQ(object(id).throttle, -4096) << "reverse";
    EXPECT_DOUBLE_EQ(read(id, "GENERAL ENG THROTTLE LEVER POSITION:2", "percent"), 75);
    EXPECT_EQ(object(id).positionWrites, 0);
}

}  // namespace
}  // namespace hcr
