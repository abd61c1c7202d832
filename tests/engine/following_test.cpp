#include "engine/following.h"

#include <gtest/gtest.h>

#include <cmath>

#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "engine/intake.h"
#include "engine/leg.h"
#include "engine/life_cycle.h"
#include "engine/reappearance.h"
#include "engine/sim_news.h"
#include "engine/standstill.h"
#include "shell/random.h"
#include "sim/drain.h"
#include "tests/engine/allocation_count.h"
#include "tests/engine/engine_world.h"

namespace hcr::test {
namespace {

struct Following : EngineWorld {};

TEST_F(Following, FliesOnOverTheEdgesOfTheMap) {
    struct Row {
        const char* what;
        LatLon start;
        f64 track;
    };
    const Row rows[] = {
        {"eastwards over the antimeridian", {10, 179.9}, 90},
        {"westwards over the antimeridian", {-40, -179.9}, 270},
        {"over the equator and the prime meridian", {0.05, 0.05}, 225},
        {"past the north pole", {89.8, 20}, 5},
        {"past the south pole", {-89.8, -170}, 185},
        {"straight over the north pole", {89.85, 60}, 0},
    };
    for (const Row& row : rows) {
        begin(destinationPoint(row.start.lat, row.start.lon, 1, 30 * kFeetPerNm));
        const Flight flight{.start = row.start, .track = row.track, .speed = 480};
        fly(flight, 140);
        const FlownAircraft* seen = flown("KLM1023");
        ASSERT_NE(seen, nullptr) << row.what;
        const FeedLine real = flight.lineAt(now() - 30);
        EXPECT_LT(distanceNm(seen->lat, seen->lon, real.lat, real.lon), 1.5) << row.what;
        for (const SandboxObject& state : seen->path) {
            ASSERT_LE(std::abs(state.lat), 90) << row.what;
            ASSERT_LE(std::abs(state.lon), 180) << row.what;
        }
        if (std::abs(row.start.lat) < 80) {
            EXPECT_LT(seen->worstJumpM, 1) << row.what;
        }
    }
}

TEST_F(Following, TimesRiseHoweverReportsCome) {
    LiveAc& ac = activeAc(sampleAt({52, 4}, 12000, 300, simTick + 3000));
    for (const i32 time : {3000, 2000, 3500, 3500, -100}) {
        decodeExisting(ac, sampleAt({52 + 0.01 * static_cast<f64>(ac.stream.size()), 4}, 12000, 300, simTick + time));
    }
    ASSERT_EQ(ac.stream.size(), 6U);
    for (std::size_t i = 1; i < ac.stream.size(); ++i) EXPECT_GT(ac.stream[i].time, ac.stream[i - 1].time);
}

TEST_F(Following, StandingTimeIsTrimmed) {
    struct Row {
        const char* what;
        const char* stream;  // m = moving, s = standing, one every ten seconds
        bool stationary;
        f64 metresFromLastMove;
        std::size_t left;  // with the new sample
    };
    const Row rows[] = {
        {"all standing", "sss", true, 0, 2},
        {"standing behind a move", "mss", true, 0, 4},
        {"a short stop", "mms", false, 500, 3},
        {"a long stop", "mmsss", false, 500, 6},
        {"a long stop that led nowhere", "mmsss", false, 20, 3},
        {"moved too long ago", "mssssss", false, 5, 8},
    };
    for (const Row& row : rows) {
        gLiveAcs.clear();
        const PosSample base = sampleAt({52, 4}, 0, 10, simTick);
        LiveAc& ac = activeAc(base);
        ac.stream.clear();
        f64 lat = 52;
        for (const char* kind = row.stream; *kind != '\0'; ++kind) {
            PosSample sample = base;
            sample.stationary = *kind == 's';
            if (!sample.stationary) lat += 0.001;
            sample.lat = lat;
            sample.time = simTick + 1000 * static_cast<i32>(ac.stream.size());
            ac.stream.push_back(sample);
        }
        PosSample sample = base;
        sample.lat = row.stationary ? lat : lat + row.metresFromLastMove / 111120.0;
        sample.time = simTick + 9000;
        decodeExisting(ac, sample);
        EXPECT_EQ(ac.stream.size(), row.left) << row.what;
    }
}

TEST_F(Following, SmallMovesOnTheGroundAreNone) {
    LiveAc& ac = activeAc(sampleAt({52, 4}, 0, 10, simTick));
    struct Row {
        f64 dLat, speed, lastSpeed;
        bool takeOffRun, airborne, kept, stationary;
    };
    const Row rows[] = {
        {0, 5, 10, false, false, true, true},       {0, 5, 30, true, false, false, true},
        {0, 5, 10, false, true, false, true},       {0.0001, 5, 10, false, false, true, true},
        {0.0001, 5, 50, true, false, false, false}, {0.001, 5, 10, false, false, true, false},
        {0.001, 0, 10, false, false, true, false},  {0.001, 0, 60, true, false, false, false},
    };
    for (const Row& row : rows) {
        ac.takeOffRun = row.takeOffRun;
        ac.stream.back().speed = row.lastSpeed;
        PosSample sample = sampleAt({52 + row.dLat, 4}, row.airborne ? 1000 : 0, row.speed, simTick + 100);
        EXPECT_EQ(lf_checkGroundSample(ac, sample), row.kept) << row.dLat << ' ' << row.speed;
        EXPECT_EQ(sample.stationary, row.stationary) << row.dLat << ' ' << row.speed;
    }
}

TEST_F(Following, StuckStreamIsGivenUp) {
    LiveAc& ac = activeAc(sampleAt({52, 4}, 12000, 300, simTick + 3000));
    for (i32 i = 1; i < 250; ++i) decodeExisting(ac, sampleAt({52 + 0.01 * i, 4}, 12000, 300, simTick + 3000 + i));
    EXPECT_EQ(ac.lifeState, LifeState::removingfromsim);
    EXPECT_LE(ac.stream.size(), 249U);
}

TEST_F(Following, ALegThatCannotBePlannedHoldsUpNobodyElse) {
    LiveAc& sick = activeAc(sampleAt({52, 4}, 12000, 5, simTick), 501);
    sick.stream.push_back(sampleAt({52.01, 4}, 12000, -5, simTick + 500));
    LiveAc& well = activeAc(sampleAt({52, 5}, 12000, 300, simTick), 502);
    well.stream.push_back(sampleAt({53, 5}, 12000, 300, simTick + 72000));
    cycles(2000);
    EXPECT_NEAR(findLiveByHexid(4740502)->lat, 52 + 20 * 300 / 3600.0 / 60, 1e-3);
    EXPECT_TRUE(logHas("updateLiveAc: "));
    EXPECT_TRUE(logHas("sz:2, fs:flying, st:active"));
    EXPECT_EQ(countOf(world->log(), "updateLiveAc: "), 1U);
    cycles(1100);
    EXPECT_NE(findLiveByHexid(4740501)->lifeState, LifeState::active);
    EXPECT_EQ(findLiveByHexid(4740502)->lifeState, LifeState::active);
}

TEST_F(Following, AbsurdReportsNeverGiveAPositionThatIsNoNumber) {
    constexpr f64 kNasty[] = {0, -0.0, 1, -1, 43, 400, 1e9, -1e9, 1.7e308, -1.7e308, 1e-308, 359.99, -720, 12000, 90};
    constexpr LatLon kPlaces[] = {{90, 0}, {-90, 180}, {0, 180}, {0, -180}, {89.9999, 90}, {52, 4}, {52.0001, 4}};
    const auto nasty = [&] { return kNasty[gf_randomGenerator()() % std::size(kNasty)]; };
    for (i32 round = 0; round < 400; ++round) {
        if (round % 40 == 0) {
            gLiveAcs.clear();
            gRemovedObjects.clear();
            for (u32 i = 0; i < 12; ++i) activeAc(sampleAt(kPlaces[i % 7], nasty(), nasty(), simTick), 500 + i);
        }
        for (LiveAc& ac : gLiveAcs) {
            PosSample sample = sampleAt(kPlaces[gf_randomGenerator()() % 7], nasty(), nasty(), simTick + 300);
            sample.vs = nasty();
            sample.tas = nasty();
            sample.track = nasty();
            sample.roll = nasty();
            sample.rollValid = true;
            sample.trueHeading = nasty();
            sample.adsb = sample.trueHeadingValid = ac.hexid % 2 == 0;
            ac.acClass = static_cast<i32>(ac.hexid % 6);
            ac.landing = ac.hexid % 5 == 0;
            if (ac.lifeState == LifeState::active) decodeExisting(ac, sample);
        }
        cycles(30);
    }
}

TEST_F(Following, BrokenRecordsLeave) {
    activeAc(sampleAt({52, 4}, 12000, 300, simTick), 501).stream.clear();
    LiveAc& noObject = activeAc(sampleAt({52, 4}, 12000, 300, simTick + 100), 502);
    noObject.objectId = 0;
    gf_updateAllLive();
    EXPECT_EQ(gLiveAcs[0].lifeState, LifeState::removingfromsim);
    EXPECT_EQ(gLiveAcs[1].lifeState, LifeState::removingfromsim);
    EXPECT_TRUE(logHas("updateLiveAc stream empty ? "));
    EXPECT_TRUE(logHas("updateLiveAc objectid=0? hexid: 4740502,cs:KLM502, reg:, aimo:"));
}

TEST_F(Following, LegTimesStayWithinTheLimitsAndNeverTooShort) {
    LiveAc& ac = activeAc(sampleAt({52, 4}, 12000, 300, simTick));
    ac.stream.push_back(sampleAt({52.1, 4}, 12000, 300, simTick + 5000));
    struct Row {
        i32 extendCount, legTicks, arrival;
    };
    for (const Row& row : {Row{0, 5500, 5500}, {0, 9000, 6000}, {0, 100, 4000}, {3, 9000, 9000}}) {
        ac.extendCount = row.extendCount;
        ac.stream[1].time = simTick + 5000;
        lf_setArrival(ac, row.legTicks);
        EXPECT_EQ(ac.stream[1].time - simTick, row.arrival) << row.legTicks;
    }
    ac.stream[1].time = simTick - 500;
    EXPECT_EQ(legTicksLeft(ac), 25);
    EXPECT_THROW(roundToTicks(std::nan("")), std::range_error);
    EXPECT_THROW(roundToTicks(3e9), std::range_error);
    EXPECT_EQ(roundToTicks(-2147483648.0), std::numeric_limits<i32>::min());
}

TEST_F(Following, ManyAircraftAreMovedWithoutAnAllocation) {
    for (u32 i = 0; i < 200; ++i) {
        LiveAc& ac = activeAc(sampleAt({50 + 0.01 * i, 4}, 9000.0 + 20 * i, 300, simTick), 500 + i);
        for (i32 k = 1; k < 15; ++k) {
            ac.stream.push_back(sampleAt({50 + 0.01 * i, 4 + 0.02 * k}, 9000.0 + 20 * i, 300, simTick + 900 * k));
        }
    }
    // The buffers have grown to the traffic after the first leg.
    for (i32 i = 0; i < 50; ++i) cycle();
    gEventQueue.reserve(1 << 14);
    AllocationCount allocations;
    for (i32 i = 0; i < 5000; ++i) {
        gf_handleSimMessages();
        gf_updateAllLive();
        simTick += 1;
        gEventQueue.clear();
    }
    EXPECT_EQ(allocations.count(), 0U);
    const std::vector<int> one(1);
    EXPECT_EQ(allocations.count(), one.size());
    EXPECT_EQ(gPosQueueFront.size(), 200U);
}

}  // namespace
}  // namespace hcr::test
