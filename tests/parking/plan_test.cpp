#include "parking/plan.h"

#include <gmock/gmock.h>

#include "core/model/park_state.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "feed/traffic_reader.h"
#include "parking/history_search.h"
#include "parking/plan_levels.h"
#include "parking/renewal.h"
#include "parking/static_aircraft.h"
#include "shell/parameters.h"
#include "tests/parking/airport_world.h"

namespace hcr::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Plan : AirportWorld {
    Plan() {
        RANDOM.current = false;
        MAX_PARK_SEL.current = MAX_PARK_SEL.upper;
    }
    ~Plan() override {
        gTrafficReader.realCallsigns.clear();
        gRealCallsigns.clear();
    }

    /// Reads an airport of these stands and plans all of it.
    void plan(const std::string& stands, i32 percentage = 100) {
        writeAirport(stands);
        ASSERT_EQ(read(), "");
        parking_percentage.current = percentage;
        gf_planParking();
    }
    /// "stand callsign fit" of the queue, the next one last.
    static std::vector<std::string> queue() {
        std::vector<std::string> texts;
        for (const ParkPlanEntry& e : gParkPlanQueue) {
            texts.push_back(findStand(e.standNumber)->id + " " + e.cs1 + " " + std::to_string(e.fit));
        }
        return texts;
    }
    /// Lets the planned aircraft stand.
    static void create() {
        while (!gParkPlanQueue.empty()) lf_detcs();
        for (ParkedAc& ac : gParkedAcs) {
            if (ac.lifeState != LifeState::adding2sim) continue;
            ac.lifeState = LifeState::active;
            ac.objectId = 1000 + ac.hexid;
        }
        gParkedAdding.clear();
        gf_endRenewal();
    }
    static std::vector<std::string> statics() {
        std::vector<std::string> texts;
        for (const ParkedAc& ac : gParkedAcs) {
            if (ac.lifeState == LifeState::active) texts.push_back(findStand(ac.standId)->id + " " + ac.callsign);
        }
        return texts;
    }
    /// Half an hour later; who was to leave has left.
    static void renewAt(i32 halfHour, i32 day = 1) {
        gSlot = HalfHourSlot{day, halfHour};
        gf_renewParking();
        std::erase_if(gParkedAcs, [](const ParkedAc& ac) { return ac.lifeState == LifeState::removingfromsim; });
    }
};

TEST_F(Plan, WantsAShareOfTheStands) {
    const struct {
        std::size_t stands;
        i32 percentage, custom, most, wanted;
    } kCases[] = {{1, 5, -1, 200, 1},    {3, 30, -1, 200, 1}, {3, 50, -1, 200, 2},  {4, 30, -1, 200, 1},
                  {100, 30, -1, 25, 25}, {10, 30, 0, 200, 0}, {10, 30, 80, 200, 8}, {10, 30, -1, 0, 0}};
    for (const auto& c : kCases) {
        gStands.resize(c.stands);
        parking_percentage.current = c.percentage;
        CUSTOM_PARKING_PERCENTAGE.current = c.custom;
        MAX_PARK_SEL.current = c.most;
        EXPECT_EQ(gf_wantedParked(), c.wanted) << c.stands << " stands, " << c.percentage << " %";
        EXPECT_EQ(gMaxParked, c.wanted);
    }
    CUSTOM_PARKING_PERCENTAGE.current = -1;
}

TEST_F(Plan, TakesWhoStoodThereBestFitsFirst) {
    plan(stand("A", 0, opt("PH-BXA", "20", "KLM1")) + stand("B", 500, opt("D-AIZA", "17", "DLH1")) +
         stand("C", 900, opt("G-CIVA", "21", "KLM3")) + stand("D", 1300));
    EXPECT_THAT(queue(), ElementsAre("B DLH1 3", "A KLM1 0"));
    EXPECT_TRUE(gRenewalRunning);
}

TEST_F(Plan, LooksBackNoFurtherThanAsked) {
    const std::string stands =
        stand("A", 0, opt("PH-BXA", "1", "KLM1")) + stand("B", 500, opt("D-AIZA", "46", "DLH1", R"(day="7")"));
    WEEK.current = false;
    gSlot = HalfHourSlot{1, 1};
    writeAirport(stands);
    for (const i32 fit : {0, 2, 3}) {
        ASSERT_EQ(read(), "");
        WEEK.current = false;
        MAX_FIT.current = fit;
        parking_percentage.current = 100;
        gf_planParking();
        EXPECT_EQ(gParkPlanQueue.size(), fit == 3 ? 2U : 1U) << "Sunday 23:00 is three half hours before";
    }
}

TEST_F(Plan, TakesSoftDataAndOtherDaysOnlyWhenAskedTo) {
    const std::string stands = stand("A", 0, opt("PH-BXA", "20", "KLM1", R"(soft="1")")) +
                               stand("B", 500, opt("D-AIZA", "20", "DLH1", R"(day="3")")) +
                               stand("C", 900, opt("G-CIVA", "20", "KLM3", R"(day="4" soft="1")"));
    writeAirport(stands);
    const auto planned = [&](bool soft, bool week) {
        EXPECT_EQ(read(), "");
        PARK_SOFT.current = soft;
        WEEK.current = week;
        parking_percentage.current = 100;
        gf_planParking();
        std::string names;
        for (const ParkPlanEntry& e : gParkPlanQueue) names += findStand(e.standNumber)->id;
        std::sort(names.begin(), names.end());
        return names;
    };
    EXPECT_EQ(planned(false, false), "");
    EXPECT_EQ(planned(true, false), "A");
    EXPECT_EQ(planned(false, true), "B");
    EXPECT_EQ(planned(true, true), "ABC");
}

TEST_F(Plan, PutsNobodyOnTwoPlacesAndNobodyBesideAnother) {
    gTrafficReader.realCallsigns = {"KLM5_"};
    plan(stand("A", 0, opt("PH-BXA", "20", "KLM1")) + stand("B", 30, opt("D-AIZA", "20", "DLH1")) +
         stand("C", 500, opt("PH-BXA", "20", "KLM7")) + stand("D", 900, opt("PH-BXB", "20", "DLH9:KLM5")) +
         stand("E", 1300, opt("G-CIVA", "20", "KLM1:KLM4")) + stand("F", 1700, opt("D-AIZA", "19", "DLH8")));
    EXPECT_THAT(queue(), ElementsAre("F DLH8 1", "A KLM1 0"));
}

TEST_F(Plan, KeepsTheUsersStandFree) {
    gSelectedStand = "A";
    plan(stand("A", 0, opt("PH-BXA", "20", "KLM1")) + stand("B", 500, opt("D-AIZA", "20", "DLH1")));
    EXPECT_THAT(queue(), ElementsAre("B DLH1 0"));
}

TEST_F(Plan, BecomesAircraftUnderTheNameOfTheirNextFlight) {
    plan(stand("A", 0, opt("PH-BXA", "20:21", "KLM1:KLM2")) + stand("B", 500, opt("D-AIZA", "20", "DLH1_:DLH2_")) +
         stand("C", 900, opt("G-CIVA", "18", "")) +
         stand("D", 1300, opt("X", "20", "ZZ1", R"(airl="QQQ" type="F16")")));
    gParkedCounter = 9998;
    create();
    EXPECT_THAT(statics(), testing::UnorderedElementsAre("A KLM1*", "B DLH2*", "C KLM3*"));
    const ParkedAc& late = *std::find_if(gParkedAcs.begin(), gParkedAcs.end(),
                                         [](const ParkedAc& ac) { return ac.registration == "G-CIVA"; });
    EXPECT_EQ(late.parkedSince, (HalfHourSlot{1, 18}));
    EXPECT_LT(late.rotationPitch, 0) << "it has the values of its class";
    for (const ParkedAc& ac : gParkedAcs) EXPECT_TRUE(ac.hexid >= 1 && ac.hexid <= 9999) << ac.hexid;
}

TEST_F(Plan, GivesWayToLiveAircraft) {
    plan(stand("A", 0, opt("PH-BXA", "20", "KLM1")) + stand("B", 500, opt("D-AIZA", "20", "DLH1")) + stand("B2", 530));
    for (const u32 standId : {1U, 3U}) {
        LiveAc& live = gLiveAcs.emplace_back();
        live.hexid = 4740000 + standId;
        live.callsign = "KLM9";
        live.flightState = standId == 1 ? FlightState::parked : FlightState::parking;
        live.standId = standId;
    }
    create();
    EXPECT_THAT(statics(), IsEmpty());
    EXPECT_TRUE(folder.logged("A       : no static parking for KLM1, live aircraft KLM9 standing here"));
    EXPECT_TRUE(folder.logged(
        "B       : no static parking for DLH1, live aircraft KLM9 is adjacent at B2, possibly colliding"));
}

TEST_F(Plan, RenewalLeavesWhoStaysAndReplacesWhoGoes) {
    plan(stand("A", 0, opt("PH-BXA", "18:30", "KLM1:KLM2")) + stand("B", 500, opt("D-AIZA", "20", "DLH1:DLH2")) +
         stand("C", 900, opt("G-CIVA", "20:22", "KLM3") + opt("PH-BXB", "21:25", "DLH7")));
    create();
    EXPECT_THAT(statics(), testing::UnorderedElementsAre("A KLM1*", "B DLH2*", "C KLM3*"));
    MAX_FIT.current = 1;
    renewAt(21);
    EXPECT_THAT(queue(), IsEmpty());
    EXPECT_EQ(statics().size(), 3U) << "all of them were there half an hour ago";
    gTrafficReader.realCallsigns = {"KLM3"};
    renewAt(22);
    EXPECT_THAT(queue(), ElementsAre("C DLH7 1")) << "KLM3 is on its way";
    create();
    renewAt(24);
    EXPECT_THAT(queue(), IsEmpty());
    EXPECT_THAT(statics(), testing::UnorderedElementsAre("A KLM1*", "C DLH7*")) << "the flight from B has left";
    renewAt(30);
    EXPECT_THAT(queue(), ElementsAre("A KLM1 10")) << "made anew for its departure";
    create();
    EXPECT_THAT(statics(), ElementsAre("A KLM2*"));
}

TEST_F(Plan, RenewalCutsDownToTheWantedNumber) {
    plan(stand("A", 0, opt("PH-BXA", "18:30", "KLM1")) + stand("B", 500, opt("D-AIZA", "20:30", "DLH1")) +
         stand("C", 900, opt("G-CIVA", "15:30", "KLM3")) + stand("D", 1300));
    create();
    ASSERT_EQ(statics().size(), 3U);
    for (ParkedAc& ac : gParkedAcs) ac.parkedSince.halfHour = ac.registration == "G-CIVA" ? 15 : 20;
    parking_percentage.current = 50;
    renewAt(21);
    EXPECT_THAT(statics(), testing::UnorderedElementsAre("A KLM1*", "B DLH1*")) << "the longest parked goes first";
    parking_percentage.current = 0;
    renewAt(21);
    EXPECT_THAT(statics(), IsEmpty());
}

}  // namespace
}  // namespace hcr::test
