#include "tools/feed/generator.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <map>
#include <set>

#include "shell/text.h"

using namespace hcr;

namespace {

struct Report {
    f64 time = 0, lat = 0, lon = 0, alt = 0, vs = 0, track = 0, speed = 0;
};

f64 number(std::string_view text) {
    f64 value = NAN;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

std::map<std::string, std::vector<Report>> reportsByHexid(const FeedPlan& plan) {
    std::map<std::string, std::vector<Report>> reports;
    for (const TimedLine& line : plan.lines) {
        const std::vector<std::string_view> f = gf_splitCommas(line.line);
        EXPECT_EQ(f.size(), 44u) << line.line;
        if (f.size() != 44) continue;
        reports[std::string(f[1])].push_back(
            {number(f[14]), number(f[2]), number(f[3]), number(f[4]), number(f[5]), number(f[7]), number(f[8])});
    }
    return reports;
}

GenerateOptions shortPlan() {
    GenerateOptions options;
    options.minutes = 12;
    options.aircraft = 45;
    return options;
}

}  // namespace

TEST(FeedGenerator, TheSameSeedGivesTheSameLines) {
    const std::vector<TimedLine> first = generateFeed(shortPlan());
    const std::vector<TimedLine> again = generateFeed(shortPlan());
    GenerateOptions other = shortPlan();
    other.seed = 2;
    ASSERT_EQ(first.size(), again.size());
    for (std::size_t i = 0; i < first.size(); ++i) {
        ASSERT_EQ(first[i].line, again[i].line);
        ASSERT_EQ(first[i].time, again[i].time);
    }
    EXPECT_NE(first.front().line, generateFeed(other).front().line);
}

TEST(FeedGenerator, NoAircraftJumpsOrTurnsFasterThanItCan) {
    constexpr f64 kSteepestBank = 31;
    for (const auto& [hexid, reports] : reportsByHexid(generatePlan(shortPlan()))) {
        for (std::size_t i = 1; i < reports.size(); ++i) {
            const Report& a = reports[i - 1];
            const Report& b = reports[i];
            const f64 seconds = b.time - a.time;
            ASSERT_GT(seconds, 0) << hexid;
            const f64 flown = distanceNm(a.lat, a.lon, b.lat, b.lon);
            const f64 told = (a.speed + b.speed) / 2 * seconds / 3600;
            EXPECT_NEAR(flown, told, 0.02 + 0.06 * told) << hexid << " at " << b.time;
            if (a.alt <= 0 || b.alt <= 0) continue;
            const f64 rate = std::remainder((b.track - a.track) * kDegToRad, 2 * kPi) / seconds;
            const f64 bank = std::atan(rate * a.speed * kMetresPerNm / 3600 / 9.80665) * kRadToDeg;
            EXPECT_LT(std::abs(bank), kSteepestBank) << hexid << " at " << b.time;
            EXPECT_NEAR((b.alt - a.alt) / seconds * 60, (a.vs + b.vs) / 2, 750) << hexid << " at " << b.time;
        }
    }
}

TEST(FeedGenerator, ArrivalsEndOnTheStandsAndTheRunwayOfTheCaller) {
    GenerateOptions options;
    options.lat = -33.9461;
    options.lon = 179.99;  // runway and stands lie across the date line
    options.minutes = 40;
    options.aircraft = options.arrivals = 3;
    options.departures = options.parked = options.helicopters = options.vehicles = options.lights = 0;
    options.runway = {{-33.93, 179.995, 163, 9000}};
    options.stands = {{-33.945, -179.998, 73}, {-33.946, -179.9975, 73}, {-33.947, -179.997, 73}};
    const FeedPlan plan = generatePlan(options);
    std::map<std::string, std::vector<Report>> reports = reportsByHexid(plan);
    ASSERT_EQ(plan.aircraft.size(), 3u);
    std::set<i32> stands;
    for (const GeneratedAircraft& aircraft : plan.aircraft) {
        EXPECT_TRUE(stands.insert(aircraft.stand).second) << "two aircraft on one stand";
        const std::vector<Report>& own = reports[std::to_string(aircraft.hexid)];
        if (aircraft.runwayTime > options.start + 1500) continue;  // still taxiing at the end
        const FeedStand& stand = plan.stands[static_cast<std::size_t>(aircraft.stand)];
        EXPECT_LT(distanceNm(own.back().lat, own.back().lon, stand.lat, stand.lon), 0.002);
        EXPECT_NEAR(own.back().track, 73, 0.1);
        EXPECT_EQ(own.back().speed, 0);
    }
}
