#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "platform/clock.h"
#include "sim/port/sandbox/sandbox.h"
#include "sim/port/sim_port.h"

namespace hcr {

/// What a client saw: copies of the messages in the order in which they came.
struct SeenMessage {
    std::vector<u8> bytes;

    u32 id() const { return as<SIMCONNECT_RECV>().dwID; }
    template <class Message>
    Message as() const {
        Message message{};
        std::memcpy(&message, bytes.data(), std::min(sizeof message, bytes.size()));
        return message;
    }
    /// A value of the data record at this offset.
    template <class T>
    T value(std::size_t offset) const {
        T v{};
        if (40 + offset + sizeof v > bytes.size()) {
            ADD_FAILURE() << "the record is too short";
            return v;
        }
        std::memcpy(&v, bytes.data() + 40 + offset, sizeof v);
        return v;
    }
};

/// A client of the sandbox with a clock that the test turns by hand.
struct SandboxClient : ::testing::Test {
    static constexpr f64 kUtc = 1795381200;  // Sun Nov 22 2026 21:00:00
    SimHandle handle = nullptr;
    std::vector<SeenMessage> seen;

    void SetUp() override { gf_holdClock(kUtc); }
    void TearDown() override {
        gf_setSandboxPositionHook(nullptr, nullptr);
        gf_stopSandbox();
        gf_releaseClock();
    }

    void start(const Scenario& scenario, const std::filesystem::path& trace = {}) { gf_startSandbox(scenario, trace); }
    void open() { ASSERT_GE(gSimPort.SimConnect_Open(&handle, "test", nullptr, 0, nullptr, 0), 0); }

    static void keep(SIMCONNECT_RECV* message, u32 size, void* context) {
        const u8* bytes = reinterpret_cast<const u8*>(message);
        static_cast<SandboxClient*>(context)->seen.push_back({{bytes, bytes + size}});
    }
    /// One dispatch; what came is in `seen`.
    SimResult dispatch() {
        seen.clear();
        return gSimPort.SimConnect_CallDispatch(handle, keep, this);
    }
    /// Lets time pass in dispatches of 10 ms and returns all that came.
    std::vector<SeenMessage> run(f64 seconds) {
        seen.clear();
        for (i64 left = static_cast<i64>(seconds * 100 + 0.5); left > 0; --left) {
            gf_turnClock(10000);
            gSimPort.SimConnect_CallDispatch(handle, keep, this);
        }
        return seen;
    }
    /// Delivers what the calls before caused, without letting time pass.
    std::vector<SeenMessage> answers() {
        dispatch();
        return seen;
    }

    u32 packet() const {
        u32 id = 0;
        EXPECT_GE(gSimPort.SimConnect_GetLastSentPacketID(handle, &id), 0);
        return id;
    }
    void define(u32 definition, const char* variable, const char* unit, u32 type) {
        EXPECT_GE(
            gSimPort.SimConnect_AddToDataDefinition(handle, definition, variable, unit, type, 0, SIMCONNECT_UNUSED), 0);
    }
    void ask(u32 request, u32 definition, u32 object, u32 period = SIMCONNECT_PERIOD_ONCE) {
        EXPECT_GE(gSimPort.SimConnect_RequestDataOnSimObject(handle, request, definition, object, period, 0, 0, 0, 0),
                  0);
    }
    /// One number of one object, read through a definition of its own.
    f64 read(u32 object, const char* variable, const char* unit) {
        static u32 definition = 5000;
        define(++definition, variable, unit, SIMCONNECT_DATATYPE_FLOAT64);
        ask(definition, definition, object);
        for (const SeenMessage& message : answers()) {
            if (message.id() == SIMCONNECT_RECV_ID_SIMOBJECT_DATA) return message.value<f64>(0);
        }
        ADD_FAILURE() << "no answer for " << variable;
        return 0;
    }
    void subscribeAll() {
        const char* names[] = {"Sim", "ObjectAdded", "ObjectRemoved", "Frame", "FlightLoaded"};
        for (u32 i = 0; i < 5; ++i) {
            ASSERT_GE(gSimPort.SimConnect_SubscribeToSystemEvent(handle, 201 + i, names[i]), 0);
        }
    }
    void mapEvent(u32 event, const char* name) {
        ASSERT_GE(gSimPort.SimConnect_MapClientEventToSimEvent(handle, event, name), 0);
        ASSERT_GE(gSimPort.SimConnect_AddClientEventToNotificationGroup(handle, 301, event, 1), 0);
    }
    void send(u32 object, u32 event, u32 data) {
        EXPECT_GE(gSimPort.SimConnect_TransmitClientEvent(handle, object, event, data, 301, 0), 0);
    }
    void freeze(u32 object, bool position, bool altitude, bool attitude) {
        send(object, 214, position);
        send(object, 215, altitude);
        send(object, 216, attitude);
    }
    void mapFreezes() {
        mapEvent(214, "FREEZE_LATITUDE_LONGITUDE_SET");
        mapEvent(215, "FREEZE_ALTITUDE_SET");
        mapEvent(216, "FREEZE_ATTITUDE_SET");
    }
    /// Definition 402 as a client would use it.
    void definePosition() {
        define(402, "Plane Latitude", "degree", 4);
        define(402, "Plane Longitude", "degree", 4);
        define(402, "Plane Pitch degrees", "radians", 4);
        define(402, "Plane Bank degrees", "radians", 4);
        define(402, "Plane Heading degrees true", "radians", 4);
        define(402, "Plane Altitude", "feet", 4);
        define(402, "Vertical Speed", "feet per second", 4);
        define(402, "Airspeed True", "knots", 4);
    }
    SimResult write(u32 object, f64 lat, f64 lon, f64 alt) {
        f64 record[8] = {lat, lon, 0, 0, 1.5, alt, -10, 140};
        return gSimPort.SimConnect_SetDataOnSimObject(handle, 402, object, 0, 0, sizeof record, record);
    }
    /// Creates an aircraft; its id, or 0 when none came.
    u32 create(const char* title, const char* tail, f64 lat = 52.4, f64 lon = 4.8, f64 alt = 3000, u32 onGround = 0,
               u32 airspeed = 180) {
        const SIMCONNECT_DATA_INITPOSITION p{lat, lon, alt, -3, 0, 90, onGround, airspeed};
        const std::size_t before = gf_sandboxObjects().size();
        EXPECT_GE(gSimPort.SimConnect_AICreateNonATCAircraft(handle, title, tail, p, 104), 0);
        const auto objects = gf_sandboxObjects();
        return objects.size() > before ? objects.back().id : 0;
    }
    SandboxObject object(u32 id) const {
        for (SandboxObject& o : gf_sandboxObjects()) {
            if (o.id == id) return o;
        }
        ADD_FAILURE() << "no object " << id;
        return {};
    }
};

inline std::size_t countOf(const std::vector<SeenMessage>& messages, u32 id) {
    std::size_t count = 0;
    for (const SeenMessage& m : messages) count += m.id() == id;
    return count;
}

/// The first exception of these messages; number 0 when there is none.
inline SIMCONNECT_RECV_EXCEPTION exceptionOf(const std::vector<SeenMessage>& messages) {
    for (const SeenMessage& m : messages) {
        if (m.id() == SIMCONNECT_RECV_ID_EXCEPTION) return m.as<SIMCONNECT_RECV_EXCEPTION>();
    }
    return {};
}

/// The events with this client id.
inline std::vector<SIMCONNECT_RECV_EVENT> eventsOf(const std::vector<SeenMessage>& messages, u32 event) {
    std::vector<SIMCONNECT_RECV_EVENT> events;
    for (const SeenMessage& m : messages) {
        const u32 id = m.id();
        if (id < SIMCONNECT_RECV_ID_EVENT || id > SIMCONNECT_RECV_ID_EVENT_FRAME) continue;
        const auto e = m.as<SIMCONNECT_RECV_EVENT>();
        if (e.uEventID == event) events.push_back(e);
    }
    return events;
}

}  // namespace hcr
