#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>
#include <tuple>

#include "platform/clock.h"
#include "sim/port/sandbox/sandbox.h"
#include "sim/port/sim_port.h"
#include "stand_in.h"

namespace hcr::test {
namespace {

using Bytes = std::vector<u8>;

constexpr u32 kAdded = 202, kTouched = 409, kPosition = 402, kUnknown = 999;
constexpr SIMCONNECT_DATA_INITPOSITION kStart{52.25, -4.75, 3500.5, -3.5, 1.25, 181.5, 0, 240};

const std::string kScenario = R"({"flightAfter": 0, "frameRate": 200, "utcAtOpen": 1700000000, "elevation": 12,
    "user": [{"at": 0, "lat": 52.31, "lon": 4.76, "alt": 0, "heading": 90, "onGround": true}],
    "refused": ["Refused Livery"]})";

template <typename T>
T as(const Bytes& bytes) {
    T record{};
    std::memcpy(&record, bytes.data(), std::min(sizeof record, bytes.size()));
    return record;
}

u32 idOf(const Bytes& message) {
    return as<SIMCONNECT_RECV>(message).dwID;
}

/// A client that goes through a session call by call, and notes each result and each message but for the frames.
struct Client {
    SimHandle handle = nullptr;
    std::vector<SimResult> results;
    std::vector<Bytes> messages;
    u32 fence = 9000;

    bool open() {
        results.push_back(gSimPort.SimConnect_Open(&handle, "Halcyrane", nullptr, 0, nullptr, 0));
        return results.back() >= 0;
    }
    template <typename... Parameters>
    SimResult call(SimResult (*function)(SimHandle, Parameters...), std::type_identity_t<Parameters>... arguments) {
        results.push_back(function(handle, arguments...));
        return results.back();
    }
    static void keep(SIMCONNECT_RECV* message, u32 size, void* context) {
        if (message->dwID == SIMCONNECT_RECV_ID_EVENT_FRAME) return;
        const u8* bytes = reinterpret_cast<const u8*>(message);
        static_cast<Client*>(context)->messages.emplace_back(bytes, bytes + size);
        std::memset(static_cast<void*>(message), 0xEE, size);  // the memory isn't the client's afterwards
    }
    /// Dispatches until it holds for a message; the simulator's time is the wall's.
    template <typename Condition>
    bool until(Condition condition) {
        constexpr int kMostPolls = 30000;
        for (int poll = 0; poll < kMostPolls; ++poll) {
            gSimPort.SimConnect_CallDispatch(handle, keep, this);
            if (std::any_of(messages.begin(), messages.end(), condition)) return true;
            gf_sleepMs(1);
        }
        return false;
    }
    /// Until all is answered that was asked so far: answers come in the order of the calls.
    bool settle() {
        call(gSimPort.SimConnect_RequestDataOnSimObject, ++fence, kTouched, SIMCONNECT_OBJECT_ID_USER,
             SIMCONNECT_PERIOD_ONCE, 0, 0, 0, 0);
        return until([this](const Bytes& message) {
            return idOf(message) == SIMCONNECT_RECV_ID_SIMOBJECT_DATA &&
                   as<SIMCONNECT_RECV_SIMOBJECT_DATA>(message).dwRequestID == fence;
        });
    }
    u32 packet() {
        u32 id = 0;
        call(gSimPort.SimConnect_GetLastSentPacketID, &id);
        return id;
    }
    template <typename T>
    T last(SimRecvId id) const {
        const auto found =
            std::find_if(messages.rbegin(), messages.rend(), [id](const Bytes& m) { return idOf(m) == id; });
        EXPECT_NE(found, messages.rend()) << "no message " << id;
        if (found == messages.rend()) return {};
        EXPECT_GE(found->size(), sizeof(T));
        return as<T>(*found);
    }

    void prepare() {
        const char* events[] = {"Sim", "ObjectAdded", "ObjectRemoved", "Frame", "FlightLoaded"};
        for (u32 i = 0; i < 5; ++i) call(gSimPort.SimConnect_SubscribeToSystemEvent, 201 + i, events[i]);
        const auto define = [this](u32 definition, const char* variable, const char* unit, u32 type) {
            call(gSimPort.SimConnect_AddToDataDefinition, definition, variable, unit, type, 0.0F, SIMCONNECT_UNUSED);
        };
        define(kTouched, "SIM ON GROUND", "Bool", SIMCONNECT_DATATYPE_INT64);
        const std::tuple<const char*, const char*> position[] = {{"Plane Latitude", "degree"},
                                                                 {"Plane Longitude", "degree"},
                                                                 {"Plane Pitch degrees", "radians"},
                                                                 {"Plane Bank degrees", "radians"},
                                                                 {"Plane Heading degrees true", "radians"},
                                                                 {"Plane Altitude", "feet"},
                                                                 {"Vertical Speed", "feet per second"},
                                                                 {"Airspeed True", "knots"}};
        for (const auto& [variable, unit] : position) define(kPosition, variable, unit, SIMCONNECT_DATATYPE_FLOAT64);
        define(404, "Plane Alt Above Ground", "feet", SIMCONNECT_DATATYPE_FLOAT64);
        define(404, "Ground Altitude", "feet", SIMCONNECT_DATATYPE_FLOAT64);
        define(404, "SIM ON GROUND", "Bool", SIMCONNECT_DATATYPE_INT64);
        define(404, "ATC ID", nullptr, SIMCONNECT_DATATYPE_STRING32);
        define(407, "TITLE", nullptr, SIMCONNECT_DATATYPE_STRINGV);
        define(kUnknown, "NO SUCH VARIABLE", "feet", SIMCONNECT_DATATYPE_FLOAT64);
        const char* freezes[] = {"FREEZE_LATITUDE_LONGITUDE_SET", "FREEZE_ALTITUDE_SET", "FREEZE_ATTITUDE_SET",
                                 "FLAPS_SET"};
        for (u32 i = 0; i < 4; ++i) {
            call(gSimPort.SimConnect_MapClientEventToSimEvent, 214 + i, freezes[i]);
            call(gSimPort.SimConnect_AddClientEventToNotificationGroup, 301, 214 + i, 1);
        }
        call(gSimPort.SimConnect_SetNotificationGroupPriority, 301, SIMCONNECT_GROUP_PRIORITY_HIGHEST);
    }

    u32 create(const char* title) {
        call(gSimPort.SimConnect_AICreateNonATCAircraft, title, "KLM1023", kStart, 104);
        return packet();
    }

    /// Takes the new aircraft over, places it, has it describe itself and takes it away.
    void fly(u32 object) {
        call(gSimPort.SimConnect_AIReleaseControl, object, 103);
        for (u32 event = 214; event < 217; ++event) {
            call(gSimPort.SimConnect_TransmitClientEvent, object, event, 1, 301, 0);
        }
        call(gSimPort.SimConnect_TransmitClientEvent, object, 217, 16383, 301, 0);
        f64 place[8] = {52.3, 4.8, 0.01, 0.02, 3, 2000, -10, 150};
        call(gSimPort.SimConnect_SetDataOnSimObject, kPosition, object, 0, 0, sizeof place, place);
        for (const u32 definition : {kPosition, 404U, 407U}) {
            call(gSimPort.SimConnect_RequestDataOnSimObject, definition, definition, object, SIMCONNECT_PERIOD_ONCE, 0,
                 0, 0, 0);
        }
        call(gSimPort.SimConnect_RequestDataOnSimObjectType, 101, 404, 50000, SIMCONNECT_SIMOBJECT_TYPE_AIRCRAFT);
        call(gSimPort.SimConnect_AISetAircraftFlightPlan, object, "no such plan.pln", 110);
        call(gSimPort.SimConnect_AIRemoveObject, object, 105);
        call(gSimPort.SimConnect_AIRemoveObject, object, 105);
    }
};

/// One session; what it must show whatever simulator is behind the port.
Client wholeSession() {
    Client client;
    EXPECT_TRUE(client.open());
    client.prepare();
    EXPECT_TRUE(client.until([](const Bytes& m) {
        const auto event = as<SIMCONNECT_RECV_EVENT>(m);
        return idOf(m) == SIMCONNECT_RECV_ID_EVENT && event.uEventID == 201 && event.dwData == 1;
    }));
    EXPECT_EQ(client.last<SIMCONNECT_RECV_EXCEPTION>(SIMCONNECT_RECV_ID_EXCEPTION).dwException,
              u32{SIMCONNECT_EXCEPTION_NAME_UNRECOGNIZED});

    const u32 refused = client.create("Refused Livery");
    EXPECT_TRUE(client.settle());
    const auto refusal = client.last<SIMCONNECT_RECV_EXCEPTION>(SIMCONNECT_RECV_ID_EXCEPTION);
    EXPECT_EQ(refusal.dwException, u32{SIMCONNECT_EXCEPTION_CREATE_OBJECT_FAILED});
    EXPECT_EQ(refusal.dwSendID, refused);

    client.create("A320 House");
    EXPECT_TRUE(client.settle());
    const auto added = client.last<SIMCONNECT_RECV_EVENT_OBJECT_ADDREMOVE>(SIMCONNECT_RECV_ID_EVENT_OBJECT_ADDREMOVE);
    EXPECT_EQ(added.uEventID, kAdded);
    EXPECT_EQ(added.eObjType, u32{SIMCONNECT_SIMOBJECT_TYPE_AIRCRAFT});
    client.fly(added.dwData);
    EXPECT_TRUE(client.settle());

    EXPECT_EQ(client.call(gSimPort.SimConnect_Close), 0);
    EXPECT_LT(client.call(gSimPort.SimConnect_AIRemoveObject, added.dwData, 105), 0);
    EXPECT_LT(client.call(gSimPort.SimConnect_CallDispatch, Client::keep, &client), 0);
    return client;
}

/// The calls that a trace tells, without their times.
std::vector<std::string> tracedCalls(const std::filesystem::path& trace) {
    std::vector<std::string> calls;
    std::istringstream lines(readFile(trace));
    for (std::string line; std::getline(lines, line);) {
        nlohmann::json json = nlohmann::json::parse(line);
        json.erase("t");
        if (json.contains("call")) calls.push_back(json.dump());
    }
    return calls;
}

TEST(SimConnectPort, ASessionThroughALibraryIsByteForByteTheOneWithoutIt) {
    const TempFolder folder;
    gf_startSandbox(gf_parseScenario(kScenario, "scenario"), "direct.jsonl");
    const Client direct = wholeSession();
    gf_stopSandbox();

    Client through;
    {
        const StandIn standIn(kScenario, "through.jsonl");
        through = wholeSession();
    }
    EXPECT_EQ(through.results, direct.results);
    EXPECT_EQ(through.messages, direct.messages);
    EXPECT_GT(through.messages.size(), 15U);

    const std::vector<std::string> calls = tracedCalls("through.jsonl");
    EXPECT_EQ(calls, tracedCalls("direct.jsonl"));
    EXPECT_EQ(std::count(calls.begin(), calls.end(), R"({"call":"SimConnect_Close"})"), 1);
    // The one argument that is handed over as a whole record.
    const auto create = std::find_if(calls.begin(), calls.end(), [](const std::string& call) {
        return call.find("A320 House") != std::string::npos;
    });
    ASSERT_NE(create, calls.end());
    for (const char* field : {R"("lat":52.25)", R"("lon":-4.75)", R"("alt":3500.5)", R"("pitch":-3.5)",
                              R"("bank":1.25)", R"("heading":181.5)", R"("on_ground":0)", R"("airspeed":240)"}) {
        EXPECT_NE(create->find(field), std::string::npos) << field << " in " << *create;
    }
}

TEST(SimConnectPort, ASimulatorThatStartsLateAndEndsEarlyIsSeenByResultsAndByTheQuitMessage) {
    const TempFolder folder;
    const StandIn standIn(R"({"openAfter": 0.2, "flightAfter": 0,
        "faults": [{"at": 0.2, "kind": "quit", "seconds": 0.2}]})");
    Client client;
    const auto openAtLast = [&client] {
        int refused = 0;
        for (; !client.open() && refused < 30000; ++refused) gf_sleepMs(1);
        return refused;
    };
    EXPECT_GT(openAtLast(), 0);
    EXPECT_TRUE(client.until([](const Bytes& m) { return idOf(m) == SIMCONNECT_RECV_ID_QUIT; }));
    EXPECT_LT(client.call(gSimPort.SimConnect_SubscribeToSystemEvent, 201, "Sim"), 0);
    client.call(gSimPort.SimConnect_Close);
    client.messages.clear();
    openAtLast();  // how often it is refused is a matter of how fast this machine is
    EXPECT_TRUE(client.until([](const Bytes& m) { return idOf(m) == SIMCONNECT_RECV_ID_OPEN; }));
}

/// What the user reads when this library is named.
std::string refusal(const std::filesystem::path& name) {
    try {
        Library library = gf_loadSimConnect(name);
        gf_closeLibrary(library);
        return "loaded";
    } catch (const std::runtime_error& e) {
        return e.what();
    }
}

TEST(SimConnectPort, ALibraryThatIsOfNoUseIsToldWithFileReasonAndAdvice) {
    const TempFolder folder;
    gSimPort = {};
    writeFile("no library.so", "text");
    // Whoever puts a library into the folder in which the program happens to run must not get it loaded.
    std::filesystem::copy_file(standInFile(), "libOfTheWorkingFolder.so");
    const std::filesystem::path incomplete = gf_programFolder() / gf_libraryFileName("incomplete_simconnect");
    const auto shown = [](const std::filesystem::path& path) { return gf_shownPath(path); };
    struct Row {
        std::filesystem::path name;
        std::vector<std::string> told;
    };
    const std::vector<Row> rows = {
        {"libOfTheWorkingFolder.so", {"libOfTheWorkingFolder.so was not found", shown(gf_programFolder())}},
        {folder.path / "absent" / "SimConnect.dll", {"SimConnect.dll was not found", shown(folder.path / "absent")}},
        {folder.path / "no library.so", {shown(folder.path / "no library.so") + " can't be loaded: "}},
        {incomplete, {shown(incomplete), "it lacks SimConnect_AIRemoveObject."}},
    };
    for (const Row& row : rows) {
        const std::string text = refusal(row.name);
        for (const std::string& piece : row.told) EXPECT_NE(text.find(piece), std::string::npos) << text;
        EXPECT_NE(text.find("SDK"), std::string::npos) << text;
        EXPECT_NE(text.find("--sandbox"), std::string::npos) << text;
        EXPECT_EQ(text.find('%'), std::string::npos) << text;
        EXPECT_EQ(gSimPort.SimConnect_Open, nullptr);
    }
    EXPECT_EQ(refusal(folder.path / "libOfTheWorkingFolder.so"), "loaded");
    gSimPort = {};
}

}  // namespace
}  // namespace hcr::test
