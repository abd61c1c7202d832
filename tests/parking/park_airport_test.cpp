#include "parking/park_airport.h"

#include <gtest/gtest.h>

#include "core/model/range.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "parking/plan.h"
#include "shell/parameters.h"
#include "shell/window_state.h"
#include "sim/session.h"
#include "tests/engine/engine_world.h"

namespace hcr::test {
namespace {

struct ParkAirport : EngineWorld {};

TEST_F(ParkAirport, RangeFollowsTheUser) {
    struct Row {
        bool onGround;
        f64 agl, miles;  // to the first airport, negative for none
        i32 range;
    };
    const Row rows[] = {
        {true, 0, -1, 10},       {false, 25000, 5, 100}, {false, 10000, 5, 40}, {false, 3000, -1, 40},
        {false, 3000, 7, 10},    {false, 3000, 7.4, 8},  {false, 3000, 8.4, 8}, {false, 3000, 8.6, 10},
        {false, 3000, 12, 12},   {false, 3000, 18, 18},  {false, 3000, 30, 30}, {false, 3000, 36.9, 35},
        {false, 3000, 37.1, 40},
    };
    AR_ABOVE_HEIGHT.current = 20000;
    AIRP_HEIGHT.current = 8000;
    for (const Row& row : rows) {
        gUserOnGround = row.onGround;
        placeUser({0, 10}, row.agl, row.agl);
        gParkAirports.clear();
        if (row.miles >= 0) gParkAirports.push_back({"EHAM", "", row.miles / 60, 10, 0});
        gf_autoRange();
        EXPECT_EQ(gRangeNm, row.range) << row.agl << ' ' << row.miles;
        EXPECT_EQ(RANGE.current, row.range);
        EXPECT_EQ(gf_rangeMetres(), static_cast<u32>(row.range) * 1852);
    }
    gf_setRange(500);
    EXPECT_EQ(RANGE.current, RANGE.upper);
    EXPECT_EQ(gRangeNm, 500);
}

TEST_F(ParkAirport, DestinationGoesToTheFront) {
    gf_setDestination("EHAM", {52, 4});
    gf_setDestination("EGLL", {51, 0});
    gf_setDestination("EHAM", {});
    ASSERT_EQ(gParkAirports.size(), 2U);
    EXPECT_EQ(gParkAirports[0].code, "EHAM");
    EXPECT_EQ(gParkAirports[0].lat, 52);
}

TEST_F(ParkAirport, CountersCountWhatIsThere) {
    for (u32 i = 0; i < 5; ++i) activeAc(sampleAt({52, 4.0 + i}, 9000, 300, simTick), 500 + i);
    gSlot = HalfHourSlot{2, 10};
    gLiveAcs[0].lifeState = LifeState::removingfromsim;
    gLiveAcs[1].flightState = FlightState::parked;
    gLiveAcs[1].parkedSince = HalfHourSlot{2, 7};
    gLiveAcs[2].flightState = FlightState::parked;
    gLiveAcs[2].parkedSince = HalfHourSlot{3, 1};  // later than now: counts no time
    ParkedAc& standing = gParkedAcs.emplace_back();
    standing.lifeState = LifeState::active;
    standing.parkedSince = HalfHourSlot{1, 47};
    gParkedAcs.emplace_back();
    gf_refreshCounters();
    EXPECT_EQ(gWindow.liveCount, 2U);
    EXPECT_EQ(gWindow.parkedLiveCount, 2U);
    EXPECT_EQ(gWindow.staticCount, 1U);
    EXPECT_FLOAT_EQ(gWindow.fitLive, 3 / 4.0F + 0.5F);
    EXPECT_FLOAT_EQ(gWindow.fitStatic, 11 / 2.0F + 0.5F);
}

TEST_F(ParkAirport, ARenewalLocksItsControlsAndShowsTheMinutesToTheNextOne) {
    gf_beginRenewal();
    EXPECT_FALSE(gNowButton.enabled || parking_percentage.enabled);
    gf_endRenewal();
    EXPECT_TRUE(gNowButton.enabled && parking_percentage.enabled);
    EXPECT_EQ(gWindow.minutesToRenewal, 19);
    gWindow.minutesToRenewal = 0;
}

TEST_F(ParkAirport, LeavingTheAirportTakesItsGroundTrafficAway) {
    activeAc(sampleAt({52, 4}, 9000, 300, simTick), 500);
    activeAc(sampleAt({52, 4}, 0, 10, simTick), 501).standId = 7;
    gParkAirport.code = "EHAM";
    lf_leaveAirport();
    EXPECT_FALSE(gf_hasParkAirport());
    EXPECT_EQ(gLiveAcs[0].lifeState, LifeState::active);
    EXPECT_EQ(gLiveAcs[1].lifeState, LifeState::removingfromsim);
    EXPECT_EQ(gLiveAcs[1].standId, 0U);
}

}  // namespace
}  // namespace hcr::test
