#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "core/model/tables.h"
#include "shell/parameters.h"
#include "sim/port/sandbox/sandbox.h"
#include "tests/support/flight_script.h"
#include "tests/support/world.h"
#include "tools/replay/flight_log.h"
#include "tools/replay/measures.h"

// A feed that tells too little, too late or the same again, as the real one does, flown by the whole program. What must
// be seen follows from the reports alone.

namespace hcr::test {
namespace {

/// Reports of one aircraft in a straight line; `until` and `every` in seconds.
struct Straight {
    FeedLine line;
    f64 from = 0, until = 120, every = 5;
};

void lf_add(std::vector<TimedLine>& lines, const Straight& given) {
    const f64 seconds = given.until - given.from;
    const f64 alt = std::max(given.line.alt + given.line.vs * seconds / 60, 0.0);
    const auto flown = flyLegs(given.line, {{seconds, given.line.speed, alt}}, given.every, given.from);
    lines.insert(lines.end(), flown.begin(), flown.end());
}

void lf_play(World& world, std::vector<TimedLine> lines, f64 seconds) {
    world.feed(inOrder({std::move(lines)}));
    EXPECT_TRUE(world.run(seconds));
}

const FlightRecord* lf_flight(const FlightLog& log, u32 hexid) {
    const auto found = log.byHexid.find(hexid);
    return found == log.byHexid.end() || log.flights[found->second].flown.empty() ? nullptr
                                                                                  : &log.flights[found->second];
}

std::size_t lf_objectsNamed(const std::string& tail) {
    const std::vector<SandboxObject> objects = gf_sandboxObjects();
    return static_cast<std::size_t>(
        std::count_if(objects.begin(), objects.end(), [&tail](const SandboxObject& o) { return o.tail == tail; }));
}

Measures lf_measureAll(const FlightLog& log, i32& due, i32& shown) {
    Measures sum;
    for (const FlightRecord& flight : log.flights) {
        std::string reason;
        if (!isDue(flight, reason)) continue;
        ++due;
        if (flight.flown.empty()) continue;
        ++shown;
        add(sum, measure(flight));
    }
    return sum;
}

/// Leaves out the reports that follow another one of the same aircraft by less than this.
std::vector<TimedLine> lf_thinned(const std::vector<TimedLine>& lines, f64 seconds) {
    std::map<std::string, f64> last;
    std::vector<TimedLine> kept;
    for (const TimedLine& line : lines) {
        const std::string id = line.line.substr(0, line.line.find(',', line.line.find(',') + 1));
        const auto found = last.find(id);
        if (found != last.end() && line.time - found->second < seconds) continue;
        last[id] = line.time;
        kept.push_back(line);
    }
    return kept;
}

}  // namespace

TEST(SparseFeed, LowTrafficIsFollowedWithoutTeethDivesOrSidewaysFlight) {
    World world{{.rangeNm = 40}};
    GenerateOptions traffic;
    traffic.minutes = 25;
    traffic.aircraft = 120;
    traffic.arrivals = 50;
    traffic.departures = 40;
    traffic.parked = traffic.vehicles = 0;
    FlightLog log(world);
    world.feed(lf_thinned(generateFeed(traffic), 18));
    ASSERT_TRUE(world.run(25 * 60.0));
    i32 due = 0, shown = 0;
    Measures sum = lf_measureAll(log, due, shown);
    EXPECT_GT(shown, 60);
    EXPECT_GE(shown, due - 1);  // who came in the last seconds may still be on the way
    EXPECT_EQ(sum.teeth, 0);
    EXPECT_EQ(sum.jumps, 0);
    EXPECT_EQ(sum.deaf, 0);
    EXPECT_EQ(sum.steps, 0);
    EXPECT_LE(sum.sidewaysSeconds, 5);
    EXPECT_EQ(sum.diveSeconds, 0);
    EXPECT_LT(spreadOf(sum.pathMetres).p95, 50);
    EXPECT_LT(spreadOf(sum.timeErrors).p95, 6);
    EXPECT_LT(spreadOf(sum.altErrorsLow).p95, 250);
    EXPECT_LT(spreadOf(sum.speedErrors).p95, 40);
    EXPECT_LE(spreadOf(sum.turnRates).worst, 15.1);
}

TEST(SparseFeed, AnAircraftThatIsToldInOnePlaceFliesOnUntilThatEnds) {
    World world;
    FlightLog log(world);
    std::vector<TimedLine> lines;
    Straight flight{.until = 60};
    lf_add(lines, flight);
    FeedLine again = flight.line;
    for (f64 at = 60; at <= 165; at += 10) {
        const LatLon place = destinationPoint(52, 4, kPi / 2, again.speed * 60 / 3600 * kFeetPerNm);
        FeedLine line = again;
        line.lat = place.lat;
        line.lon = place.lon;
        line.timestamp += at;
        lines.push_back({at, line.text()});
    }
    FeedLine single = again;  // told in one place from its first report on
    single.hexid = 4740001;
    single.callsign = "KLM124";
    single.lat = 52.2;
    for (f64 at = 0; at <= 60; at += 10) {
        single.timestamp = again.timestamp + at;
        lines.push_back({at, single.text()});
    }
    lf_play(world, lines, 190);
    EXPECT_EQ(lf_objectsNamed("KLM123"), 1U) << "its last report is due only now";
    ASSERT_TRUE(world.run(25));
    EXPECT_EQ(lf_objectsNamed("KLM123"), 0U);
    ASSERT_NE(lf_flight(log, 4740001), nullptr);
    EXPECT_GT(lf_flight(log, 4740001)->flown.back().lon, 4.05) << "it flies along its track meanwhile";
}

TEST(SparseFeed, WhoTurnedUnseenIsFollowedByATurnAndNeverVanishes) {
    World world;
    FlightLog log(world);
    std::vector<TimedLine> lines;
    lf_add(lines, {.until = 60});
    Straight back{.from = 108, .until = 300};
    back.line.lat = 52.03;
    back.line.lon = 4.16;
    back.line.track = 280;
    lf_add(lines, back);
    lf_play(world, lines, 330);
    const FlightRecord* flight = lf_flight(log, 4740000);
    ASSERT_NE(flight, nullptr);
    const Measures m = measure(*flight);
    ASSERT_GT(flight->flown.back().at, 300);
    EXPECT_EQ(flight->flown.front().object, flight->flown.back().object);
    EXPECT_LE(m.sidewaysSeconds, 1);
    EXPECT_NEAR(flight->flown.back().heading, 280, 3);
    EXPECT_EQ(m.jumps, 0);
}

TEST(SparseFeed, AimlessAltitudeNearTheGroundIsFollowedDownButNotIntoIt) {
    World world;
    FlightLog log(world);
    std::vector<TimedLine> lines;
    Straight landing{.until = 150, .every = 8};
    landing.line.alt = 1800;
    landing.line.vs = -700;
    landing.line.speed = 140;
    lf_add(lines, landing);
    lf_play(world, lines, 185);
    const FlightRecord* flight = lf_flight(log, 4740000);
    ASSERT_NE(flight, nullptr);
    const auto [low, high] =
        std::minmax_element(flight->flown.begin(), flight->flown.end(),
                            [](const FlownPoint& a, const FlownPoint& b) { return a.alt < b.alt; });
    EXPECT_LT(low->alt, 130);
    EXPECT_GT(low->alt, -11);
    EXPECT_LE(high->alt, 1810);
    EXPECT_EQ(measure(*flight).teeth, 0);
}

TEST(SparseFeed, ASpeedOutOfNothingIsBelievedWhenItIsToldTwice) {
    World world;
    FlightLog log(world);
    std::vector<TimedLine> lines;
    Straight slow{.until = 40};
    slow.line.model = "EC35";
    slow.line.speed = 4;
    slow.line.alt = 3000;
    slow.line.tas = 4;
    lf_add(lines, slow);
    Straight fast = slow;
    fast.from = 45;
    fast.until = 200;
    fast.line.speed = 100;
    lf_add(lines, fast);
    lf_play(world, lines, 230);
    const FlightRecord* flight = lf_flight(log, 4740000);
    if (flight != nullptr) {
        EXPECT_LT(measure(*flight).deafSeconds, 30);
    }
    const LiveAc* ac = findLiveByHexid(4740000);
    ASSERT_NE(ac, nullptr);
    EXPECT_GT(ac->stream.back().speed, 90);
}

TEST(Appearing, AnAircraftWithoutANameFliesUnderItsRegistration) {
    World world;
    std::vector<TimedLine> lines;
    Straight nameless;
    nameless.line.callsign = "";
    nameless.line.registration = "9Q-CXY";  // no airframe that the reference data know
    lf_add(lines, nameless);
    lf_play(world, lines, 40);
    EXPECT_EQ(lf_objectsNamed("9Q-CXY"), 1U);
}

TEST(Appearing, ABurstComesWithoutLeapsAndNobodyIsLateForLong) {
    World world{{.rangeNm = 100}};
    FlightLog log(world);
    std::vector<TimedLine> lines;
    for (u32 i = 0; i < 80; ++i) {
        Straight flight{.until = 200, .every = 6};
        flight.line.hexid = 4740000 + i;
        flight.line.callsign = "KLM" + std::to_string(200 + i);
        flight.line.lat = 51.6 + 0.01 * i;
        flight.line.alt = 8000 + 500.0 * i;
        flight.line.speed = 400;
        lf_add(lines, flight);
    }
    lf_play(world, lines, 150);
    i32 due = 0, shown = 0;
    Measures sum = lf_measureAll(log, due, shown);
    EXPECT_EQ(shown, 80);
    EXPECT_EQ(sum.jumps, 0);
    EXPECT_LT(spreadOf(sum.timeErrors).worst, 8)
        << "an aircraft that had to wait appears where its reports are by then";
    EXPECT_LT(spreadOf(sum.speedErrors).p95, 30);
    EXPECT_LT(spreadOf(sum.speedErrors).worst, 250) << "who is there some tenths of a second early may stand so long";
}

TEST(Appearing, TheLimitHoldsAndFarTrafficGivesWayOneASecond) {
    World world{{.rangeNm = 100}};
    MAX_LIVE_SEL.current = 10;
    std::vector<TimedLine> lines;
    for (u32 i = 0; i < 40; ++i) {  // each a little nearer to the user than the one before, and a little later
        Straight flight{.from = i < 20 ? 0.0 : 50.0, .until = 150, .every = 5};
        flight.line.hexid = 4740000 + i;
        flight.line.callsign = "KLM" + std::to_string(200 + i);
        flight.line.lat = 53.6 - 0.03 * i;
        flight.line.lon = 4.7;
        lf_add(lines, flight);
    }
    lf_play(world, lines, 0);
    std::size_t most = 0;
    u64 removals = 0;
    f64 lastRemoval = -10, shortest = 10;
    for (int cycle = 0; cycle < 14000; ++cycle) {
        world.cycle();
        most = std::max(most, gf_sandboxObjects().size());
        const u64 now = gf_sandboxCounters().removals;
        if (now == removals) continue;
        shortest = std::min(shortest, world.seconds() - lastRemoval);
        lastRemoval = world.seconds();
        removals = now;
    }
    EXPECT_LE(most, 11U) << "one more only while another one is on its way out";
    EXPECT_GE(most, 10U);
    EXPECT_GT(removals, 5U);
    EXPECT_GE(shortest, 0.85);
}

}  // namespace hcr::test
