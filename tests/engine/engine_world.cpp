#include "tests/engine/engine_world.h"

#include <fmt/format.h>

#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "core/model/validate.h"
#include "engine/life_cycle.h"
#include "sim/port/sandbox/sandbox.h"
#include "sim/session.h"

namespace hcr::test {

FeedLine Flight::lineAt(f64 seconds) const {
    const LatLon place = destinationPoint(start.lat, start.lon, track * kDegToRad, speed * seconds / 3600 * kFeetPerNm);
    return {.hexid = hexid,
            .lat = place.lat,
            .lon = place.lon,
            .alt = std::max(alt + vs * seconds / 60, 0.0),
            .vs = vs,
            .track = track,
            .speed = speed,
            .callsign = callsign,
            .model = model,
            .registration = registration,
            .timestamp = 1'700'000'000 + seconds,
            .tas = speed};
}

TrafficReport Flight::at(f64 seconds) const {
    const FeedLine line = lineAt(seconds);
    TrafficReport report;
    report.hexid = hexid;
    report.callsign = callsign;
    report.model = model;
    report.registration = registration;
    report.timestamp = line.timestamp;
    report.sample = sampleAt({line.lat, line.lon}, line.alt, speed, simTick + 3000);
    report.sample.vs = vs;
    report.sample.track = track;
    return report;
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

void placeUser(LatLon place, f64 alt, f64 agl) {
    UserAircraftData user{};
    user.lat = place.lat;
    user.lon = place.lon;
    user.alt = alt;
    user.agl = agl;
    gf_storeUserPosition(user);
}

void EngineWorld::begin(std::optional<LatLon> user) {
    recorder.reset();
    world.reset();
    WorldOptions options{.scenario = gf_defaultScenario(), .rangeNm = 100};
    if (user) options.scenario.user = {{.lat = user->lat, .lon = user->lon}};
    world.emplace(std::move(options));
    recorder.emplace();
}

void EngineWorld::cycle() {
    world->cycle();
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
        world->line(flight.lineAt(now()).text());
    }
    runTo(seconds);
}

bool EngineWorld::logHas(const std::string& piece) const {
    return world->log().find(piece) != std::string::npos;
}

const FlownAircraft* EngineWorld::flown(const std::string& callsign) const {
    const auto found = recorder->aircraft.find(callsign);
    return found == recorder->aircraft.end() ? nullptr : &found->second;
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
    ac.staticCgFt = 10;
    ac.lat = s1.lat;
    ac.lon = s1.lon;
    ac.alt = s1.alt;
    return ac;
}

}  // namespace hcr::test
