#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "core/model/geo.h"
#include "core/model/tables.h"
#include "core/model/validate.h"
#include "sim/port/sandbox/sandbox.h"
#include "tests/support/flight_recorder.h"
#include "tests/support/world.h"

// An hour of generated traffic around the user through the whole program in simulated time: datagram texts in, calls of
// the simulator out. What must be seen follows from the reports alone.

namespace hcr::test {
namespace {

constexpr f64 kHour = 3600;
constexpr i32 kRangeNm = 40;
constexpr f64 kDelay = 30;             // the whole program plays so far behind the feed
constexpr f64 kLongestExtension = 64;  // eight steps of eight seconds
constexpr f64 kGap = 25;               // reports further apart may make an aircraft leave and come again

struct Report {
    f64 at = 0;  ///< seconds since the world's first cycle
    f64 lat = 0, lon = 0, alt = 0, speed = 0;
    bool seen = false;  ///< clearly in the air
};

struct Expected {
    std::string callsign;
    FeedKind kind = FeedKind::overflight;
    std::vector<Report> reports;
    std::vector<f64> seenAt;

    bool steady() const {
        for (std::size_t i = 1; i < seenAt.size(); ++i) {
            if (seenAt[i] - seenAt[i - 1] > kGap) return false;
        }
        return true;
    }
};

/// Nobody near the ground, where it takes more than the line to say whether an aircraft is in the air.
bool lf_clearlyFlies(const Report& report) {
    return report.alt > 500 && report.speed > 60;
}

f64 lf_metresOff(const SandboxObject& state, const std::vector<Report>& reports) {
    const f64 scale = 60 * kMetresPerNm, east = std::cos(state.lat * kDegToRad) * scale;
    f64 best = 1e9;
    for (std::size_t i = 1; i < reports.size(); ++i) {
        const f64 ax = (reports[i - 1].lon - state.lon) * east, ay = (reports[i - 1].lat - state.lat) * scale;
        const f64 dx = (reports[i].lon - state.lon) * east - ax, dy = (reports[i].lat - state.lat) * scale - ay;
        const f64 length = dx * dx + dy * dy;
        const f64 along = length > 0 ? std::clamp(-(ax * dx + ay * dy) / length, 0.0, 1.0) : 0;
        best = std::min(best, std::hypot(ax + along * dx, ay + along * dy));
    }
    return best;
}

/// When each aircraft left the buffer, by looking at the live table ten times a second.
struct SpawnWatch {
    std::unordered_map<u32, f64> at;
    void look(f64 seconds) {
        for (const LiveAc& ac : gLiveAcs) {
            if (ac.lifeState == LifeState::adding2sim) at.try_emplace(ac.hexid, seconds);
        }
    }
};

struct Hour {
    World world{{.rangeNm = kRangeNm}};
    FeedPlan plan = generatePlan({.minutes = 60, .aircraft = 140, .seed = 7});
    FlightRecorder recorder;
    SpawnWatch spawns;
    std::unordered_map<u32, Expected> expected;

    Hour() {
        for (const GeneratedAircraft& ac : plan.aircraft) {
            if (ac.kind == FeedKind::overflight || ac.kind == FeedKind::arrival || ac.kind == FeedKind::departure) {
                expected[ac.hexid] = {ac.callsign, ac.kind, {}, {}};
            }
        }
        world.onReport = [this](const TrafficReport& report) { expect(report); };
        world.feed(plan.lines);
        const f64 end = kHour + kDelay + kLongestExtension + 10;
        for (f64 passed = 0; passed < end; passed += 0.1) {
            for (int cycle = 0; cycle < 10; ++cycle) world.cycle();
            EXPECT_EQ(validateLiveTable(), "");
            spawns.look(world.seconds());
        }
    }
    void expect(const TrafficReport& told) {
        const auto found = expected.find(told.hexid);
        if (found == expected.end()) return;
        const PosSample& sample = told.sample;
        Report report{world.seconds(), sample.lat, sample.lon, sample.alt, sample.speed};
        report.seen = lf_clearlyFlies(report);
        if (report.seen) found->second.seenAt.push_back(report.at);
        found->second.reports.push_back(report);
        f64& speed = recorder.aircraft[found->second.callsign].speedKt;
        speed = std::max(speed, report.speed);
    }
    /// The sandbox counts from its opening, the world from its first cycle.
    f64 sandboxShift() const { return gf_sandboxSeconds() - world.seconds(); }
};

void lf_checkOne(const Hour& hour, u32 hexid, const Expected& expected) {
    SCOPED_TRACE(fmt::format("{} ({}), first seen at {:.1f} s", expected.callsign, hexid, expected.seenAt.front()));
    const auto spawned = hour.spawns.at.find(hexid);
    ASSERT_NE(spawned, hour.spawns.at.end()) << "never created";
    // A departure takes off, and an arrival lands, below the height at which the line alone tells that it flies.
    if (expected.kind != FeedKind::departure) {
        EXPECT_GE(spawned->second - expected.seenAt.front(), 26.9);
    }
    EXPECT_LE(spawned->second - expected.seenAt.front(), 29.3);
    const auto found = hour.recorder.aircraft.find(expected.callsign);
    ASSERT_NE(found, hour.recorder.aircraft.end());
    const FlownAircraft& flown = found->second;
    EXPECT_EQ(flown.appearances, 1);
    const f64 shift = hour.sandboxShift();
    const f64 left = flown.lastWrite - shift - expected.seenAt.back();
    EXPECT_GE(left, kDelay - 6);
    if (expected.kind != FeedKind::arrival) {
        EXPECT_LE(left, kDelay + kLongestExtension + 10);
    }
    EXPECT_LT(flown.worstJumpM, 1.0) << "at " << flown.worstJumpAt;
    for (std::size_t i = 0; i < flown.path.size(); ++i) {
        if (flown.pathTimes[i] - shift > expected.seenAt.back() + kDelay) break;
        ASSERT_LT(lf_metresOff(flown.path[i], expected.reports), 60) << "at " << flown.pathTimes[i] - shift;
    }
}

TEST(Hour, EveryAircraftInRangeAppearsOnceFollowsItsPathAndLeaves) {
    const Hour hour;
    int checked = 0;
    for (const auto& [hexid, expected] : hour.expected) {
        if (expected.seenAt.size() < 2 || expected.seenAt[1] - expected.seenAt[0] > kGap || !expected.steady())
            continue;
        if (expected.seenAt.back() + kDelay > kHour) continue;
        lf_checkOne(hour, hexid, expected);
        ++checked;
    }
    EXPECT_GE(checked, 40);
    EXPECT_TRUE(gLiveAcs.empty());
    EXPECT_TRUE(gf_sandboxObjects().empty());
    const std::string log = hour.world.log();
    EXPECT_EQ(countOf(log, "\n==> "), 0) << log;
}

}  // namespace
}  // namespace hcr::test
