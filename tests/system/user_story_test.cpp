#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "core/model/range.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "core/run/reset.h"
#include "core/run/tick.h"
#include "core/run/window_commands.h"
#include "liveries/match_memory.h"
#include "shell/messages.h"
#include "shell/parameters.h"
#include "shell/window_state.h"
#include "sim/aircraft.h"
#include "sim/port/sandbox/sandbox.h"
#include "tests/support/flight_recorder.h"
#include "tests/support/flight_script.h"

// A user who stands, flies, meets others, changes what the window lets them change; and what the simulator shows of the
// traffic then.

namespace hcr::test {
namespace {

const AirportEntry kAirport{"EHAM", "AMS", 52.3086, 4.7639, -11, 0};

bool lf_isThere(const std::string& tail) {
    const std::vector<SandboxObject> objects = gf_sandboxObjects();
    return std::any_of(objects.begin(), objects.end(), [&tail](const SandboxObject& o) { return o.tail == tail; });
}

LatLon lf_at(LatLon from, f64 bearing, f64 nm) {
    return destinationPoint(from.lat, from.lon, bearing * kDegToRad, nm * kFeetPerNm);
}

/// A user who flies level along a great circle, from the first second on.
Scenario lf_flyingUser(LatLon from, f64 heading, f64 alt, f64 speed) {
    Scenario scenario = gf_defaultScenario();
    const LatLon to = lf_at(from, heading, speed / 6);
    scenario.user = {{0, from.lat, from.lon, alt, heading, speed, false},
                     {600, to.lat, to.lon, alt, heading, speed, false}};
    return scenario;
}

/// An aircraft that meets the user, told by its place, seen from the user's first one.
struct Encounter {
    const char* callsign;
    f64 bearing, nm;  ///< degrees, nautical miles
    f64 track, speed, alt;
    const char* fate;  ///< "stays", "goes" or "never comes"
    f64 from = 0;
};

std::string lf_fate(const FlightRecorder& recorder, const std::string& tail) {
    const auto made = std::count_if(recorder.creates.begin(), recorder.creates.end(),
                                    [&tail](const CreateCall& call) { return call.tail == tail; });
    return made == 0 ? "never comes" : lf_isThere(tail) ? "stays" : "goes";
}

void lf_meet(World& world, FlightRecorder& recorder, const std::vector<Encounter>& encounters, f64 seconds) {
    const UserPoint& user = world.options.scenario.user.front();
    std::vector<std::vector<TimedLine>> flights;
    for (const Encounter& encounter : encounters) {
        const LatLon place = lf_at({user.lat, user.lon}, encounter.bearing, encounter.nm);
        FeedLine line{.hexid = 4740000 + static_cast<u32>(flights.size()),
                      .lat = place.lat,
                      .lon = place.lon,
                      .alt = encounter.alt,
                      .track = encounter.track,
                      .speed = encounter.speed,
                      .callsign = encounter.callsign,
                      .registration = ""};
        flights.push_back(flyLegs(line, {{seconds, encounter.speed, encounter.alt}}, 2, encounter.from));
    }
    world.feed(inOrder(std::move(flights)));
    std::size_t most = 0;
    for (f64 second = 0; second < seconds; ++second) {
        const u64 before = gf_sandboxCounters().removals;
        world.run(1);
        most = std::max<std::size_t>(most, gf_sandboxCounters().removals - before);
    }
    EXPECT_LE(most, 1U) << "one a second at most";
    for (const Encounter& encounter : encounters) {
        EXPECT_EQ(lf_fate(recorder, encounter.callsign), encounter.fate) << encounter.callsign;
    }
}

}  // namespace

TEST(UserStory, AFlyingUserMeetsNobodyHeadOnAndLosesNobodyElse) {
    World world{{.scenario = lf_flyingUser({53, 3.8}, 90, 10000, 240)}};
    FlightRecorder recorder;
    // They are seen 30 seconds late, when the user has flown two miles.
    lf_meet(world, recorder,
            {{"HEADON", 90, 24, 270, 300, 10000, "goes"},
             {"HEADON9", 90, 24.5, 270, 300, 10900, "goes"},
             {"ABOVE", 90, 25, 270, 300, 11200, "stays"},
             {"BELOW", 90, 26, 270, 300, 8800, "stays"},
             {"ASIDE", 85, 23, 270, 300, 10000, "stays"},
             {"BEHIND", 270, 1.5, 90, 240, 10000, "never comes"},
             {"FOLLOWS", 270, 6, 90, 330, 10000, "goes"},
             {"PARALLEL", 0, 1, 90, 240, 10000, "stays"},
             {"AHEAD", 90, 5, 90, 240, 13200, "stays"}},
            220);
}

TEST(UserStory, OnTheGroundAndOnFinalTheWayIsKeptFree) {
    struct Case {
        const char* what;
        Scenario scenario;
        std::vector<Encounter> encounters;
    };
    const LatLon field{kAirport.lat, kAirport.lon};
    const std::vector<Case> cases = {
        // Half wing spans are 5.5 and 18 m.
        {"standing",
         gf_defaultScenario(),
         {{"THROUGH", 0, 0.25, 180, 12, 0, "goes"},
          {"PASSES", 330, 0.25, 180, 12, 0, "stays"},
          {"NEAR", 90, 0.04, 90, 12, 0, "stays"},
          {"NOTFAR", 270, 0.3, 270, 12, 0, "stays"}}},
        {"on final",
         lf_flyingUser(lf_at(field, 270, 1.6), 90, 350, 20),
         {{"RUNWAY", 90, 1, 0, 14, 0, "never comes"}, {"BESIDE", 60, 1.2, 0, 14, 0, "stays"}}},
        {"high above", lf_flyingUser(lf_at(field, 270, 1.6), 90, 2500, 20), {{"RUNWAY", 90, 1, 0, 14, 0, "stays"}}},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.what);
        World world{{.scenario = one.scenario}};
        useParkAirport(kAirport);
        FlightRecorder recorder;
        lf_meet(world, recorder, one.encounters, 130);
        for (const CreateCall& call : recorder.creates) {
            const f64 metres = metresBetween(field.lat, field.lon, call.position.Latitude, call.position.Longitude);
            EXPECT_GE(metres, 145) << call.tail << " appears too near";
            if (call.tail == "NEAR") {
                EXPECT_LT(metres, 200);
            }
        }
    }
}

TEST(UserStory, TrafficComesAndGoesWithTheUserAndItsRange) {
    Scenario scenario = gf_defaultScenario();
    const LatLon field{kAirport.lat, kAirport.lon};
    const auto point = [&](f64 at, f64 nm, f64 alt, f64 speed, bool onGround) {
        const LatLon place = lf_at(field, 45, nm);
        return UserPoint{at, place.lat, place.lon, alt, 45, speed, onGround};
    };
    scenario.user = {
        point(0, 0, 0, 0, true),          point(300, 0, 0, 0, true),          point(310, 0.3, 300, 150, false),
        point(600, 20, 9000, 300, false), point(1200, 80, 20000, 360, false), point(1500, 110, 20000, 360, false)};
    World world{{.scenario = scenario, .rangeNm = 10}};
    AUTO_RANGE.current = true;  // 10 nm on the ground, 40 in the air
    GenerateOptions traffic;
    traffic.minutes = 26;
    traffic.aircraft = 160;
    traffic.rangeNm = 130;
    traffic.parked = traffic.vehicles = 0;
    std::map<std::string, std::vector<f64>> reports;  // when each was told
    world.onReport = [&](const TrafficReport& report) { reports[report.callsign].push_back(world.seconds()); };
    world.feed(generateFeed(traffic));
    f64 farthest[2] = {};
    std::size_t most = 0;
    for (int second = 0; second < 1500; ++second) {
        ASSERT_TRUE(world.run(1));
        const SandboxObject user = gf_sandboxUserObject();
        const bool flies = second > 345;
        if (second > 300 && second <= 345) continue;
        EXPECT_EQ(gRangeNm, flies ? 40 : 10);
        const std::vector<SandboxObject> objects = gf_sandboxObjects();
        for (const SandboxObject& o : objects) {
            if (o.positionWrites == 0) continue;  // it was made beyond the range, and is nobody's yet
            const f64 away = distanceNm(user.lat, user.lon, o.lat, o.lon);
            farthest[flies ? 1 : 0] = std::max(farthest[flies ? 1 : 0], away);
            // 30 seconds late, and both may fly apart.
            ASSERT_LT(away, flies ? 40 + 8 : 10 + 6) << o.tail << " at " << second;
            EXPECT_TRUE(o.released && o.frozenPosition && o.frozenAltitude && o.frozenAttitude) << o.tail;
        }
        most = std::max(most, objects.size());
        if (!flies || second % 20 != 0) continue;
        for (const auto& [callsign, told] : reports) {
            // Told in range for so long, and without a gap, that it must be there.
            if (told.size() < 12 || told.back() < second - 8) continue;
            const f64 twelfth = told[told.size() - 12];
            if (twelfth < second - 90 || twelfth > second - 40) continue;
            EXPECT_TRUE(lf_isThere(callsign)) << callsign << " is told and not shown at " << second;
        }
    }
    EXPECT_GT(most, 20U);
    EXPECT_GT(farthest[0], 6);
    EXPECT_GT(farthest[1], 30);
}

TEST(UserStory, WhatTheFeedChangesOfAnAircraftIsSeenInTheSimulator) {
    struct Change {
        const char* what;
        const char* callsign;  ///< before
        void (*change)(FeedLine& line);
        bool respawns;
        const char* shown;  ///< tail, route and livery afterwards
    };
    const Change changes[] = {
        {"other route", "KLM10", [](FeedLine& l) { l.from = "CDG", l.to = "HAM"; }, true, "KLM10 CDG-HAM"},
        {"other destination alone", "KLM11", [](FeedLine& l) { l.to = "HAM"; }, false, "KLM11 AMS-LHR"},
        {"other name", "KLM12", [](FeedLine& l) { l.callsign = "KLM99"; }, true, "KLM99 AMS-LHR"},
        {"ghost of another's name", "KLM13", [](FeedLine& l) { l.callsign = "KLM10_"; }, false, "KLM13 AMS-LHR"},
        {"nothing", "KLM14", [](FeedLine&) {}, false, "KLM14 AMS-LHR"},
    };
    for (const bool respawning : {true, false}) {
        World world;
        GUID_CHANGES.current = respawning;
        FlightRecorder recorder;
        std::vector<std::vector<TimedLine>> flights;
        for (const Change& change : changes) {
            FeedLine line{.hexid = 4740000 + static_cast<u32>(flights.size()),
                          .lat = 52.0 + 0.1 * static_cast<f64>(flights.size()),
                          .callsign = change.callsign,
                          .registration = ""};
            flights.push_back(flyLegs(line, {{80, 250, 10000}}));
            const LatLon place = lf_at({line.lat, line.lon}, 90, 250 * 82.0 / 3600);
            line.lat = place.lat;
            line.lon = place.lon;
            change.change(line);
            flights.push_back(flyLegs(line, {{60, 250, 10000}}, 2, 82));
        }
        for (std::size_t i = 0; i < flights.size(); ++i) {
            for (TimedLine& line : flights[i])
                line.line.replace(line.line.find(','), 8, fmt::format(",{}", 4740000 + i / 2));
        }
        world.feed(inOrder(std::move(flights)));
        ASSERT_TRUE(world.run(75));
        const std::vector<SandboxObject> before = gf_sandboxObjects();
        ASSERT_EQ(before.size(), std::size(changes));
        ASSERT_TRUE(world.run(50));
        const std::vector<SandboxObject> after = gf_sandboxObjects();
        for (const Change& change : changes) {
            SCOPED_TRACE(fmt::format("{}, respawning {}", change.what, respawning));
            const std::string tail(change.shown, std::string_view(change.shown).find(' '));
            const bool anew = change.respawns && respawning;
            const auto now = std::find_if(after.begin(), after.end(), [&](const SandboxObject& o) {
                return o.tail == (anew ? tail : change.callsign);
            });
            const auto then = std::find_if(before.begin(), before.end(),
                                           [&](const SandboxObject& o) { return o.tail == change.callsign; });
            ASSERT_NE(now, after.end());
            ASSERT_NE(then, before.end());
            EXPECT_EQ(now->id != then->id, anew);
            if (!anew) continue;
            EXPECT_EQ(fmt::format("{} {}-{}", now->tail, now->from, now->to), change.shown);
            EXPECT_EQ(now->title, then->title);
            EXPECT_LT(std::abs(now->lat - then->lat), 0.002) << "on its line";
        }
        EXPECT_EQ(recorder.aircraft.count("KLM10_"), 0U);
    }
}

TEST(UserStory, WhoIsNoLongerReportedOnTheGroundHoldsAsLongAsTheSettingSays) {
    World world;
    useParkAirport(kAirport);
    MAX_HOLDING_MINUTES.current = 2;
    FlightRecorder recorder;
    const LatLon place = lf_at({kAirport.lat, kAirport.lon}, 90, 0.8), other = lf_at(place, 0, 0.5);
    const auto taxi = [](u32 hexid, const char* callsign, LatLon start, f64 track, f64 seconds) {
        return flyLegs({.hexid = hexid,
                        .lat = start.lat,
                        .lon = start.lon,
                        .alt = 0,
                        .track = track,
                        .speed = 12,
                        .callsign = callsign,
                        .registration = ""},
                       {{seconds, 12, 0}});
    };
    // The second one stops behind the third, which holds there already.
    world.feed(
        inOrder({taxi(4740001, "KLM1", place, 90, 60), taxi(4740002, "KLM2", other, 90, 60),
                 taxi(4740003, "KLM3", lf_at(other, 90, 12 * 60 / 3600.0 + 0.012 + 12 * 30 / 3600.0), 270, 30)}));
    const auto runTo = [&world](f64 seconds) { return world.run(seconds - world.seconds()); };
    ASSERT_TRUE(runTo(80));
    EXPECT_TRUE(lf_isThere("KLM1") && lf_isThere("KLM2") && lf_isThere("KLM3"));
    ASSERT_TRUE(runTo(110));
    EXPECT_FALSE(lf_isThere("KLM2") && lf_isThere("KLM3")) << "who is in the way goes";
    ASSERT_TRUE(runTo(90 + 170));
    EXPECT_TRUE(lf_isThere("KLM1"));
    ASSERT_TRUE(runTo(90 + 190));
    EXPECT_FALSE(lf_isThere("KLM1"));
    EXPECT_LT(recorder.aircraft["KLM1"].worstJumpM, 1);
}

TEST(UserStory, TheWindowsCommandsWorkOnWhatIsShown) {
    World world;
    std::vector<std::vector<TimedLine>> flights;
    for (u32 i = 0; i < 3; ++i) {
        flights.push_back(flyLegs({.hexid = 4740000 + i,
                                   .lat = 52.1 + 0.1 * i,
                                   .callsign = fmt::format("KLM{}", 3 - i),
                                   .registration = fmt::format("PH-ZZ{}", i)},
                                  {{400, 250, 10000}}));
    }
    world.feed(inOrder(std::move(flights)));
    ASSERT_TRUE(world.run(45));
    gRefreshCsListCmd = true;
    ASSERT_TRUE(world.run(1.2));
    EXPECT_EQ(gf_callsignList(), "KLM1\nKLM2\nKLM3");
    CALLSIGN_2_OBJECTID.current.set("KLM2");
    gShowSelectionCmd = true;
    ASSERT_TRUE(world.run(1.2));
    const std::vector<SandboxObject> objects = gf_sandboxObjects();
    const auto chosen =
        std::find_if(objects.begin(), objects.end(), [](const SandboxObject& o) { return o.tail == "KLM2"; });
    ASSERT_NE(chosen, objects.end());
    EXPECT_EQ(gSelectedObject, chosen->id);
    EXPECT_EQ(gWindow.selectionText.get(), fmt::format("= {}", chosen->id));

    BLOCK_CALLSIGN.current.set("KLM2");
    gBlockCmd = true;
    ASSERT_TRUE(world.run(3));
    EXPECT_FALSE(lf_isThere("KLM2"));
    EXPECT_EQ(gSelectedObject, 0U);
    gShowSelectionCmd = true;
    gf_showMessage("for a while", false);
    ASSERT_TRUE(world.run(23));
    EXPECT_EQ(gWindow.selectionText.get(), "has left");
    EXPECT_EQ(gf_currentMessage(), "for a while");
    ASSERT_TRUE(world.run(4));
    EXPECT_EQ(gf_currentMessage(), "");
    ASSERT_TRUE(world.run(40));
    EXPECT_FALSE(lf_isThere("KLM2")) << "who is blocked doesn't come again";

    noMatchAircraft.insert("KLM B738 PH-ZZZ");
    ASSERT_TRUE(world.run(31));
    EXPECT_FALSE(noMatchAircraft.empty());
    gClearNoMatchCmd = true;
    ASSERT_TRUE(world.run(31));
    EXPECT_TRUE(noMatchAircraft.empty());
    noMatchAircraft.insert("KLM B738 PH-ZZZ");
    gf_resetRun();
    EXPECT_TRUE(noMatchAircraft.empty()) << "a new run asks anew";
}

TEST(UserStory, AModelThatLoadsSlowlyFliesAndOneThatComesTooLateIsTakenAway) {
    for (const bool tooLate : {false, true}) {
        Scenario scenario = gf_defaultScenario();
        scenario.announceAfter = tooLate ? 70 : 5;  // after a minute nobody waits for it any more
        World world{{.scenario = scenario}};
        FlightRecorder recorder;
        world.feed(flyLegs({.callsign = "KLM1", .registration = ""}, {{80, 250, 10000}}));
        ASSERT_TRUE(world.run(60));
        ASSERT_EQ(recorder.creates.size(), 1U);
        EXPECT_EQ(recorder.aircraft.count("KLM1"), tooLate ? 0U : 1U);
        EXPECT_EQ(gLiveAcs.size(), 1U);
        ASSERT_TRUE(world.run(35));
        EXPECT_EQ(gLiveAcs.size(), tooLate ? 0U : 1U);
        EXPECT_LT(recorder.aircraft["KLM1"].worstJumpM, 60);
        if (tooLate) {
            ASSERT_TRUE(world.run(15));
            EXPECT_FALSE(lf_isThere("KLM1"));
            EXPECT_EQ(recorder.creates.size(), 1U);
        }
    }
}

TEST(UserStory, APauseHoldsTheTrafficAndWhoComesBehindItIsShown) {
    World world;
    FlightRecorder recorder;
    world.feed(inOrder({flyLegs({.callsign = "KLM1", .registration = ""}, {{300, 250, 10000}}),
                        flyLegs({.hexid = 4740001, .lat = 52.4, .callsign = "KLM2", .registration = ""},
                                {{200, 250, 10000}}, 2, 100)}));
    ASSERT_TRUE(world.run(60));
    const std::vector<SandboxObject> before = gf_sandboxObjects();
    ASSERT_EQ(before.size(), 1U);
    gf_playSandboxFault({.kind = FaultKind::pause, .seconds = 20});
    ASSERT_TRUE(world.run(1));
    const i64 writes = gf_sandboxObjects()[0].positionWrites;
    const i32 tick = simTick;
    ASSERT_TRUE(world.run(18));
    EXPECT_EQ(gf_sandboxObjects()[0].positionWrites, writes);
    EXPECT_EQ(simTick, tick);
    ASSERT_TRUE(world.run(10));
    EXPECT_GT(gf_sandboxObjects()[0].positionWrites, writes);
    ASSERT_TRUE(world.run(70));
    EXPECT_TRUE(lf_isThere("KLM1") && lf_isThere("KLM2"));
    EXPECT_EQ(countOf(world.log(), "Flight resumed"), 1U);
}

}  // namespace hcr::test
