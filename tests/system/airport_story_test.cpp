#include <gtest/gtest.h>

#include <algorithm>

#include "core/model/geo.h"
#include "core/model/tables.h"
#include "liveries/match_memory.h"
#include "tests/support/flight_recorder.h"
#include "tests/support/flight_script.h"

// Arrivals, departures and a go-around at the park airport, as the simulator sees them: what is set when, in which
// height and at which speed, told by a table for each kind of aircraft.

namespace hcr::test {
namespace {

const AirportEntry kAirport{"EHAM", "AMS", 52.3086, 4.7639, -11, 0};
constexpr u32 kSandboxFull = 16383;
constexpr f64 kCg = 9;  // feet, of the sandbox's aircraft

/// All states with this height (feet above ground, in the air) or speed (knots, on the ground) look like this.
struct Phase {
    const char* name;
    bool ground;
    f64 low, high;
    const char* look;  ///< words of lf_look
};

struct Story {
    const char* callsign;
    const char* model;
    const char* title;
    FeedLine line{};
    std::vector<FlightLeg> legs{};
    std::size_t airborneLegs = 0;  ///< of an arrival: at their end it is over the airport; 0 for what begins there or,
                                   ///< in the air, 12 miles away
    std::vector<Phase> phases{};
};

/// Lights in the order nav, beacon, landing, taxi, strobes, logo, cabin; "-" for those that are off.
std::string lf_look(const SandboxObject& o) {
    const u32 lights[] = {o.nav, o.beacon, o.landing, o.taxi, o.strobes, o.logo, o.cabin};
    std::string text = fmt::format(" gear={} flaps={} throttle={} spoilers={} engines={} lights=", o.gear, o.flaps,
                                   o.throttle, o.spoilers, o.engines);
    for (std::size_t i = 0; i < std::size(lights); ++i) text += lights[i] != 0 ? "NBLTSGC"[i] : '-';
    return text + ' ';
}

bool lf_isIn(const Phase& phase, const SandboxObject& o) {
    const f64 value = phase.ground ? o.tas : o.agl;
    return o.onGround == phase.ground && value > phase.low && value < phase.high;
}

void lf_checkPhase(const FlownAircraft& flown, const Phase& phase) {
    int seen = 0;
    for (std::size_t i = 0; i < flown.path.size(); ++i) {
        if (!lf_isIn(phase, flown.path[i])) continue;
        ++seen;
        const std::string look = lf_look(flown.path[i]);
        std::string_view words = phase.look;
        while (!words.empty()) {
            const std::string_view word = words.substr(0, words.find(' '));
            words.remove_prefix(std::min(word.size() + 1, words.size()));
            ASSERT_NE(look.find(fmt::format(" {} ", word)), std::string::npos)
                << phase.name << ": no " << word << " in" << look << "at " << flown.pathTimes[i] << " s, "
                << flown.path[i].agl << " ft, " << flown.path[i].tas << " kt";
        }
    }
    EXPECT_GT(seen, 10) << phase.name;
}

/// Feet per second with which the aircraft sinks through this band above the ground.
f64 lf_sinkThrough(const FlownAircraft& flown, f64 low, f64 high) {
    std::vector<std::size_t> inside;
    for (std::size_t i = 0; i < flown.path.size(); ++i) {
        if (flown.path[i].agl > low && flown.path[i].agl < high) inside.push_back(i);
    }
    if (inside.size() < 3) return 0;
    const std::size_t a = inside.front(), b = inside.back();
    return (flown.path[a].agl - flown.path[b].agl) / (flown.pathTimes[b] - flown.pathTimes[a]);
}

/// Every story at once, each with a place of its own round the airport.
std::map<std::string, FlownAircraft> lf_play(std::vector<Story>& stories, std::vector<CreateCall>* creates = nullptr) {
    World world;
    useParkAirport(kAirport);
    FlightRecorder recorder;
    recorder.step = 0.1;
    std::vector<std::vector<TimedLine>> flights;
    f64 bearing = 20;
    for (Story& story : stories) {
        story.line.hexid += static_cast<u32>(bearing);
        story.line.callsign = story.callsign;
        story.line.model = story.model;
        story.line.registration = fmt::format("PH-{}", story.callsign);
        story.line.track = bearing;
        rememberedLiveries[story.line.hexid] = story.title;
        const bool elsewhere = story.airborneLegs == 0 && story.line.alt > 0;
        const LatLon place =
            destinationPoint(kAirport.lat, kAirport.lon, bearing * kDegToRad, (elsewhere ? 12 : 1.2) * kFeetPerNm);
        const auto end = story.legs.begin() + static_cast<std::ptrdiff_t>(story.airborneLegs);
        story.line = beginFor(story.line, {story.legs.begin(), end}, place);
        flights.push_back(flyLegs(story.line, story.legs));
        bearing += 60;
    }
    world.feed(inOrder(std::move(flights)));
    EXPECT_TRUE(world.run(world.lines.back().time - world.lines.front().time + 28));
    EXPECT_EQ(countOf(world.log(), "\n==> "), 0U) << world.log();
    if (creates != nullptr) *creates = recorder.creates;
    return recorder.aircraft;
}

const std::vector<FlightLeg> kJetArrival = {{60, 250, 9500}, {180, 220, 4000}, {100, 180, 2500}, {60, 160, 2000},
                                            {200, 135, 0},   {30, 40, 0},      {10, 15, 0, 60},  {40, 12, 0}};
const std::vector<FlightLeg> kSlowArrival = {{120, 100, 1800}, {120, 80, 700},  {84, 65, 0},
                                             {15, 20, 0},      {10, 15, 0, 60}, {30, 12, 0}};

std::vector<Phase> lf_jetPhases(const char* braking) {
    return {
        {"high", false, 10150, 10800, "gear=0 flaps=0 throttle=11468 lights=NB----C engines=1"},
        {"descent", false, 2450, 9700, "gear=0 flaps=0 throttle=8191 lights=NBLTSGC spoilers=0"},
        {"first flaps", false, 2100, 2300, "gear=0 flaps=3072 lights=NBLTSGC"},
        {"approach", false, 60, 1950, "gear=1 flaps=16383 throttle=4914 lights=NBLTSG-"},
        {"idle", false, kCg + 1, kCg + 7, "gear=1 flaps=16383 throttle=0 spoilers=0"},
        {"braking", true, 98, 125, braking},
        {"slow on the runway", true, 45, 80, "flaps=3072 throttle=0 spoilers=0 gear=1"},
        {"off the runway", true, 11.9, 13.8, "flaps=0 throttle=0 spoilers=0 gear=1 lights=NB-T-GC"},
    };
}

void lf_checkArrival(const FlownAircraft& flown, const FeedLine& told) {
    EXPECT_NEAR(lf_sinkThrough(flown, 80, 300), 10, 1.5) << "no flare up there";
    EXPECT_NEAR(lf_sinkThrough(flown, kCg + 21, kCg + 26), 10, 1);
    EXPECT_NEAR(lf_sinkThrough(flown, kCg + 11, kCg + 17), 7.5, 0.8);
    EXPECT_NEAR(lf_sinkThrough(flown, kCg + 4, kCg + 8), 5, 0.5);
    EXPECT_NEAR(lf_sinkThrough(flown, kCg + 0.4, kCg + 2), 2.5, 0.3);
    const auto higherNose = [](const SandboxObject& a, const SandboxObject& b) { return a.pitch < b.pitch; };
    const auto low =
        std::find_if(flown.path.begin(), flown.path.end(), [](const SandboxObject& o) { return o.agl < 50; });
    const auto nose = std::min_element(low, flown.path.end(), higherNose);
    ASSERT_NE(nose, flown.path.end());
    EXPECT_GE(nose->pitch, -4.001);
    EXPECT_LT(nose->pitch, -2.5);
    EXPECT_TRUE(std::any_of(low, flown.path.end(),
                            [](const SandboxObject& o) { return o.onGround && o.spoilers == kSandboxFull; }));
    const SandboxObject& end = flown.path.back();
    EXPECT_NEAR(end.pitch, 0.5, 1e-6) << "on its wheels";
    EXPECT_NEAR(end.alt, kAirport.alt + kCg, 1e-6);
    EXPECT_LT(metresBetween(end.lat, end.lon, told.lat, told.lon), 30) << "it follows its reports off the runway";
    EXPECT_EQ(flown.appearances, 1);
    EXPECT_LT(flown.worstJumpM, 1) << "at " << flown.worstJumpAt;
}

}  // namespace

TEST(AirportStory, ArrivalsAreSetUpByHeightFlareAndRollOut) {
    std::vector<Story> stories = {
        {"KLM1",
         "B738",
         "Story B738",
         {.alt = 11000, .speed = 280},
         kJetArrival,
         5,
         lf_jetPhases("spoilers=16383 throttle=16383 flaps=16383")},
        {"KLM2",
         "B738",
         "FSLTL_B738",
         {.alt = 11000, .speed = 280},
         kJetArrival,
         5,
         lf_jetPhases("spoilers=16383 throttle=-16383 flaps=16383")},
        {"KLM9",  // lands elsewhere, as far as anybody knows
         "B738",
         "Story B738",
         {.alt = 3000, .speed = 200},
         {{60, 180, 2000}, {100, 140, 1000}, {40, 130, 600}},
         0,
         {{"low", false, 650, 1900, "gear=0 flaps=3072 lights=NBLTSG-"}}},
        {"PHABC",
         "C172",
         "Story C172",
         {.alt = 3000, .speed = 110},
         kSlowArrival,
         3,
         {{"clean", false, 2450, 2900, "gear=0 flaps=0 lights=NBLTSGC"},
          {"first flaps", false, 2050, 2330, "gear=0 flaps=3072"},
          {"second flaps", false, 700, 1900, "gear=0 flaps=10240 lights=NBLTSGC"},
          {"approach", false, 60, 590, "gear=1 flaps=16383 throttle=4914 lights=NBLTSG-"},
          {"off the runway", true, 11.9, 13.8, "flaps=0 throttle=0 spoilers=0 lights=NB-T-GC"}}},
        {"LIFELN1",
         "EC35",
         "Story EC35",
         {.alt = 3000, .speed = 110},
         kSlowArrival,
         3,
         {{"cruise", false, 700, 2300, "gear=0 flaps=0 lights=NBLTSGC"},
          {"approach", false, 60, 590, "gear=0 flaps=0 throttle=16383 lights=NBLTSG-"}}},
    };
    const auto aircraft = lf_play(stories);
    for (const Story& story : stories) {
        SCOPED_TRACE(story.title);
        const auto found = aircraft.find(story.callsign);
        ASSERT_NE(found, aircraft.end());
        for (const Phase& phase : story.phases) lf_checkPhase(found->second, phase);
        if (story.airborneLegs != 0 && std::string(story.model) != "EC35")
            lf_checkArrival(found->second, endOf(story.line, story.legs));
    }
}

TEST(AirportStory, ADepartureTaxiesRunsRotatesAndClimbsOutInSteps) {
    std::vector<CreateCall> creates;
    std::vector<Story> stories = {
        {"KLM3",
         "B738",
         "Story B738",
         {.alt = 0, .speed = 18},
         {{60, 18, 0},
          {40, 15, 0},
          {8, 12, 0, 90},
          {40, 155, 0},
          {4, 160, 60},
          {70, 200, 2500},
          {240, 280, 11500},
          {60, 300, 13000}},
         0,
         {{"taxi", true, 17, 19, "gear=1 flaps=3072 throttle=0 lights=NB-T-GC engines=1"},
          {"run", true, 60, 140, "gear=1 flaps=3072 throttle=16383 spoilers=0 lights=NBLTSG-"},
          {"climb-out", false, 200, 750, "gear=0 flaps=0 throttle=16383 lights=NBLTSG-"},
          {"clean", false, 900, 1950, "gear=0 flaps=0 throttle=11468"},
          {"climb", false, 2600, 9700, "gear=0 flaps=0 throttle=11468 lights=NBLTSGC"},
          {"high", false, 10300, 12500, "gear=0 flaps=0 throttle=11468 lights=NB----C"}}},
        {"KLM4",
         "B738",
         "Story B738",
         {.alt = 4000, .vs = -900, .speed = 200, .roll = 12},
         {{100, 180, 2500}, {60, 160, 2000}, {150, 140, 500}, {10, 150, 500}, {120, 200, 3500}, {60, 220, 5000}},
         3,
         {{"gone around", false, 4200, 4900, "throttle=11468 gear=0 flaps=0"}}},
    };
    const auto aircraft = lf_play(stories, &creates);
    for (const Story& story : stories) {
        SCOPED_TRACE(story.callsign);
        for (const Phase& phase : story.phases) lf_checkPhase(aircraft.at(story.callsign), phase);
    }
    for (const CreateCall& made : creates) {
        const bool taxies = made.tail == "KLM3";
        EXPECT_NEAR(f64{made.position.Heading}, taxies ? 20 : 80, 1) << "degrees";
        EXPECT_NEAR(f64{made.position.Pitch}, taxies ? 0.6 : -3 + 450 / 600.0 * 2.2, 0.2);
        EXPECT_NEAR(f64{made.position.Bank}, taxies ? 0 : -12, 0.01) << "the simulator counts to the left";
    }
    EXPECT_EQ(creates.size(), 2U);

    const FlownAircraft& flown = aircraft.at("KLM3");
    const auto first =
        std::find_if(flown.path.begin(), flown.path.end(), [](const SandboxObject& o) { return o.agl > kCg + 0.01; });
    ASSERT_NE(first, flown.path.end());
    EXPECT_NEAR(first->pitch, -6, 0.3) << "rotated on the ground";
    const auto liftOff = static_cast<std::size_t>(first - flown.path.begin());
    const auto stateAfter = [&](f64 seconds) -> const SandboxObject& {
        std::size_t i = liftOff;
        while (i + 1 < flown.path.size() && flown.pathTimes[i] < flown.pathTimes[liftOff] + seconds) ++i;
        return flown.path[i];
    };
    const auto gained = [&](f64 from) { return stateAfter(from + 0.7).alt - stateAfter(from + 0.1).alt; };
    const f64 full = gained(4);
    EXPECT_GT(full, 3);
    EXPECT_NEAR(gained(0) / full, 0.1, 0.05) << "the rate itself changes with each report";
    EXPECT_NEAR(gained(1) / full, 0.2, 0.05);
    EXPECT_NEAR(gained(2) / full, 0.5, 0.125);
    EXPECT_EQ(stateAfter(2.7).gear, 1U);
    EXPECT_EQ(stateAfter(3.3).gear, 0U);
    const auto higherNose = [](const SandboxObject& a, const SandboxObject& b) { return a.pitch < b.pitch; };
    EXPECT_NEAR(std::min_element(flown.path.begin(), flown.path.end(), higherNose)->pitch, -16.5, 1);
    EXPECT_LT(flown.worstJumpM, 1);
}

}  // namespace hcr::test
