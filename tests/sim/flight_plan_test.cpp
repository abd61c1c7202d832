#include "sim/flight_plan.h"

#include <fstream>
#include <sstream>

#include "core/model/aircraft_class.h"
#include "session_fixture.h"
#include "shell/parameters.h"

namespace hcr::test {
namespace {

struct FlightPlan : SessionTest {
    FlightPlan() {
        ac.objectId = 77;
        ac.acClass = Large;
        ac.callsign = "KLM1";
        ac.from = "AMS";
        ac.to = "LHR";
    }

    static std::string planText() {
        std::ifstream file("orig_dest/77.pln", std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }

    LiveAc ac;
};

TEST_F(FlightPlan, ThePlanIsAShortFileThatMsfs2020IsTold) {
    ASSERT_TRUE(gf_createFlightPlanFolder());
    ASSERT_TRUE(gf_createFlightPlanFolder());
    ac.from = "A place that a shorter plan must not leave behind";
    gf_makeFlightPlan(ac);
    ac.from = "AMS";
    takeCalls();
    gf_makeFlightPlan(ac);
    EXPECT_TRUE(ac.hasFlightPlan);
    EXPECT_EQ(planText(),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<SimBase.Document Type=\"AceXML\" version=\"4,3\">\n"
              "<FlightPlan.FlightPlan>\n"
              "<FPType>IFR</FPType>\n"
              "<DepartureID>AMS</DepartureID>\n"
              "<DestinationID>LHR</DestinationID>\n"
              "</FlightPlan.FlightPlan>\n"
              "</SimBase.Document>\n\n");
    EXPECT_EQ(
        takeCalls(),
        (std::vector<std::string>{"Plan 77 " + (std::filesystem::current_path() / "orig_dest" / "77.pln").string()}));
    ac.from = "<A&B>";
    gf_makeFlightPlan(ac);
    EXPECT_NE(planText().find("<DepartureID>&lt;A&amp;B&gt;</DepartureID>"), std::string::npos);
    gf_removeFlightPlan(77);
    EXPECT_FALSE(std::filesystem::exists("orig_dest/77.pln"));
    gf_removeFlightPlanFolder();
    EXPECT_FALSE(std::filesystem::exists("orig_dest"));
}

TEST_F(FlightPlan, Msfs2024IsToldNothingAndJetsFlyByInstruments) {
    SIM_CHOICE.current.set("MSFS 2024");
    gf_createFlightPlanFolder();
    for (const auto& [acClass, kind] : {std::pair{Light, "VFR"},
                                        {Buzjets, "IFR"},
                                        {Large, "IFR"},
                                        {Heavy, "IFR"},
                                        {HighPerf, "VFR"},
                                        {Rotorcraft, "VFR"}}) {
        ac.acClass = acClass;
        gf_makeFlightPlan(ac);
        EXPECT_TRUE(ac.hasFlightPlan);
        EXPECT_NE(planText().find(std::string("<FPType>") + kind), std::string::npos) << acClass;
    }
    EXPECT_TRUE(takeCalls().empty());
}

TEST_F(FlightPlan, HalfARouteIsNone) {
    gf_createFlightPlanFolder();
    ac.to.clear();
    gf_makeFlightPlan(ac);
    EXPECT_FALSE(ac.hasFlightPlan);
    EXPECT_FALSE(std::filesystem::exists("orig_dest/77.pln"));
    EXPECT_FALSE(logHas("failed"));
}

TEST_F(FlightPlan, AFailureIsLoggedAndTheAircraftFliesOn) {
    gf_makeFlightPlan(ac);  // no folder
    EXPECT_FALSE(ac.hasFlightPlan);
    EXPECT_TRUE(takeCalls().empty());
    gf_createFlightPlanFolder();
    gRecorded.failing = "Plan";
    gf_makeFlightPlan(ac);
    EXPECT_FALSE(ac.hasFlightPlan);
    EXPECT_FALSE(planText().empty());
    EXPECT_EQ(logCount("creating a flight plan failed"), 2U);
    EXPECT_TRUE(logHas("==> KLM1"));

    gf_removeFlightPlanFolder();
    std::ofstream("orig_dest") << "in the way";
    EXPECT_FALSE(gf_createFlightPlanFolder());
    EXPECT_TRUE(logHas("gf_createFlightPlanFolder: "));
}

}  // namespace
}  // namespace hcr::test
