#include "tests/engine/engine_world.h"

#include <fmt/format.h>

#include "core/model/range.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "core/model/validate.h"
#include "engine/following.h"
#include "engine/life_cycle.h"
#include "engine/sim_news.h"
#include "engine/spawn.h"
#include "liveries/dbase.h"
#include "liveries/livery_tables.h"
#include "liveries/match_memory.h"
#include "parking/park_airport.h"
#include "shell/random.h"
#include "sim/drain.h"
#include "sim/session.h"
#include "sim/session_reset.h"
#include "sim/sim_message.h"

namespace hcr::test {
namespace {

constexpr f64 kCgFt = 10;
constexpr f64 kFirstTimestamp = 1'780'000'000;
constexpr const char* kTitles[] = {"A320 KLM", "B77W KLM", "C172 House", "EC35 House"};

void fillLiveries() {
    aircraftTypes = {"A320", "B77W", "C172", "EC35"};
    gClassTypes[2] = {"A320"};
    gClassTypes[3] = {"B77W"};
    gClassTypes[5] = {"EC35"};
    halfSpans = {{"A320", 0.0093}, {"B77W", 0.0175}, {"C172", 0.003}, {"EC35", 0.003}};
    airlineTitles[0]["KLM"] = {{"A320", {kTitles[0]}}, {"B77W", {kTitles[1]}}};
    airlineTitles[0]["ZZZ"] = {{"C172", {kTitles[2]}}, {"EC35", {kTitles[3]}}};
}

void forgetEverything() {
    gf_clearTables();
    gf_forgetExchanges();
    gf_resetSimSession();
    gf_forgetDbase();
    gf_forgetLiveries();
    for (auto& titles : airlineTitles) titles.clear();
    regcodeTitles.clear();
    noMatchAircraft.clear();
    failedTitles.clear();
    failedModels.clear();
    matchSteps = {};
    gParkAirports.clear();
    gParkAirport = AirportEntry{};
    gQnh = 1013;
    gRangeNm = 100;
}

}  // namespace

TrafficReport Flight::at(f64 seconds) const {
    TrafficReport report;
    report.hexid = hexid;
    report.callsign = callsign;
    report.model = model;
    report.registration = registration;
    const LatLon place = destinationPoint(start.lat, start.lon, track * kDegToRad, speed * seconds / 3600 * kFeetPerNm);
    PosSample& sample = report.sample;
    sample = sampleAt(place, std::max(alt + vs * seconds / 60, 0.0), speed, 0);
    sample.vs = vs;
    sample.track = track;
    return report;
}

void placeUser(LatLon place, f64 alt, f64 agl) {
    UserAircraftData user{};
    user.lat = place.lat;
    user.lon = place.lon;
    user.alt = alt;
    user.agl = agl;
    user.groundSpeed = 250;
    gf_storeUserPosition(user);
}

PosSample sampleAt(LatLon place, f64 alt, f64 speed, i32 time) {
    PosSample sample;
    sample.lat = place.lat;
    sample.lon = place.lon;
    sample.alt = alt;
    sample.speed = sample.tas = speed;
    sample.time = time;
    sample.airborne = alt > 0;
    return sample;
}

void EngineWorld::SetUp() {
    ShellWorld::SetUp();
    forgetEverything();
    fillLiveries();
    gf_seedRandom(11);
    startTick = simTick;
}

void EngineWorld::TearDown() {
    forgetEverything();
    gf_setRange(40);
    ShellWorld::TearDown();
}

f64 EngineWorld::now() const {
    return (simTick - startTick) / 100.0;
}

void EngineWorld::report(TrafficReport given) {
    given.sample.time = simTick + 3000;
    given.timestamp = kFirstTimestamp + now();
    gReports.push_back(std::move(given));
}

void EngineWorld::cycle() {
    gf_handleSimMessages();
    gf_updateAllLive();
    gf_paceQueues(simTick);
    for (i32 i = 0; i < 2 && !gReports.empty(); ++i) {
        gf_decodeReport(gReports.front());
        gReports.pop_front();
    }
    if (!gAddingStack.empty()) {
        const u32 hexid = gAddingStack.back();
        gAddingStack.pop_back();
        if (const LiveAc* ac = findLiveByHexid(hexid)) {
            AiCreateRequest request;
            request.lat = ac->lat;
            request.lon = ac->lon;
            request.alt = ac->alt;
            request.callsign = ac->callsign;
            request.title = ac->liveryTitle;
            request.id = hexid;
            gLiveAdding.push_back(std::move(request));
        }
    }
    simulate();
    simTick += 1;
    ASSERT_EQ(validateLiveTable(), "") << "at " << now() << " s";
}

void EngineWorld::cycles(i32 count) {
    for (i32 i = 0; i < count && !HasFatalFailure(); ++i) cycle();
}

bool EngineWorld::runTo(f64 seconds, const std::function<bool()>& until) {
    while (now() < seconds && !HasFatalFailure()) {
        if (until && until()) return true;
        cycle();
    }
    return until && until();
}

void EngineWorld::fly(const Flight& flight, f64 seconds, f64 every) {
    const f64 from = now();
    for (i32 i = 0; from + i * every < seconds; ++i) {
        runTo(from + i * every);
        report(flight.at(now()));
    }
    runTo(seconds);
}

void EngineWorld::simulate() {
    for (const PositionCommand& command : gPosQueueFront) {
        FakeObject& target = objects[command.objectId];
        EXPECT_EQ(target.goneAt, 0) << "written after its removal: " << target.callsign;
        target.writes.push_back(command.block);
        target.writeTicks.push_back(simTick);
    }
    gPosQueueFront.clear();
    events.insert(events.end(), gEventQueue.begin(), gEventQueue.end());
    gEventQueue.clear();
    for (const AiCreateRequest& request : gCreateQueue) {
        FakeObject& made = objects[nextObject];
        made.hexid = request.id;
        made.callsign = request.callsign;
        made.title = request.title;
        made.created.lat = request.lat;
        made.created.lon = request.lon;
        made.created.alt = request.alt;
        gf_pushSimMessage({nextObject, request.id, 0, SimKind::liveCreated, 0, request.alt - ground});
        gf_pushSimMessage({nextObject, 0, 0, SimKind::staticData, kCgFt, 0.01});
        ++nextObject;
    }
    gCreateQueue.clear();
    for (const u32 id : gRemovalQueue) {
        objects[id].goneAt = simTick;
        gf_pushSimMessage({id, 0, 0, SimKind::objectGone, 0, 0});
    }
    gRemovalQueue.clear();
    if (simTick % 20 == 0) sendStatus();
}

void EngineWorld::sendStatus() {
    for (const auto& [id, known] : objects) {
        if (known.goneAt != 0 || known.writes.empty()) continue;
        const f64 agl = known.writes.back().alt - ground;
        if (agl <= 2500) gf_pushSimMessage({id, agl <= kCgFt ? 1U : 0U, 0, SimKind::aiStatus, ground, agl});
    }
}

FakeObject* EngineWorld::object(const std::string& callsign) {
    FakeObject* found = nullptr;
    for (auto& [id, known] : objects) {
        if (known.callsign == callsign) found = &known;
    }
    return found;
}

LiveAc& EngineWorld::activeAc(const PosSample& s1, u32 objectId) {
    Flight flight;
    flight.hexid = 4740000 + objectId;
    flight.callsign = fmt::format("KLM{}", objectId);
    TrafficReport first = flight.at(0);
    first.sample = s1;
    gf_decodeReport(first);
    LiveAc& ac = gLiveAcs.back();
    ac.lifeState = LifeState::active;
    ac.flightState = s1.airborne ? FlightState::flying : FlightState::taxi;
    ac.onGround = !s1.airborne;
    ac.objectId = objectId;
    ac.createdTick = simTick - 100000;  // long ago
    ac.staticCgFt = kCgFt;
    ac.lat = s1.lat;
    ac.lon = s1.lon;
    ac.alt = s1.alt;
    return ac;
}

std::vector<std::string> EngineWorld::eventsOf(u32 objectId) const {
    std::vector<std::string> texts;
    for (const EventCommand& event : events) {
        if (event.objectId == objectId) texts.push_back(fmt::format("{}={}", event.eventId, event.data));
    }
    return texts;
}

}  // namespace hcr::test
