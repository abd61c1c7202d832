#include "parking/learned.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "core/model/aircraft_class.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "liveries/dbase.h"
#include "parking/airport_xml.h"
#include "parking/learned_file.h"
#include "parking/quality.h"
#include "parking/stand_search.h"
#include "shell/file_names.h"
#include "shell/parameters.h"
#include "shell/window_state.h"
#include "tests/parking/airport_world.h"

namespace hcr::test {
namespace {

using testing::HasSubstr;

struct Learned : AirportWorld {
    /// The aircraft is on the first stand in this half hour of Monday.
    void see(LiveAc& ac, i32 halfHour, i32 kind = arrivedOnStand, i32 day = 1) {
        gSlot = HalfHourSlot{day, halfHour};
        lf_addRealStandOption(1, ac, kind);
    }
    /// "day hours cs1+cs2 coupled" of the options of the first stand.
    std::vector<std::string> options() const {
        std::vector<std::string> texts;
        for (const StandOption& o : gStands.at(0).options) {
            texts.push_back(std::to_string(o.day) + " " + gf_bitset2hours(o.hours).value_or("?") + " " + o.cs1 + "+" +
                            o.cs2 + (o.coupled ? " coupled" : ""));
        }
        return texts;
    }
    using Texts = std::vector<std::string>;
};

TEST_F(Learned, FollowsAVisitOverTheDay) {
    writeAirport(stand("A1", 0));
    ASSERT_EQ(read(), "");
    LiveAc ac = learner("PH-BXB_", "KLM1_");
    see(ac, 10);
    EXPECT_EQ(ac.airline + ac.model, "DLHB738");
    see(ac, 10);
    ac.callsign = "KLM2";
    see(ac, 15, pushesBack);
    EXPECT_EQ(options(), (Texts{"1 10:15 KLM1+KLM2 coupled"}));
    see(ac, 20);  // the second visit of the day
    see(ac, 26);  // news come too late for the same visit
    EXPECT_EQ(options(), (Texts{"1 10:15 KLM1+KLM2 coupled", "1 20 KLM2+", "1 26 KLM2+"}));
    see(ac, 0, createdOnStand, 2);
    EXPECT_EQ(options().back(), "2 0 KLM2+");
    EXPECT_EQ(gLearnedUpdates, 4U);
    EXPECT_EQ(gWindow.updatesCount, 4);
    EXPECT_EQ(gStands[0].options.back().index, 4U);
    LiveAc unknown = learner("N999", "AAL1"), nameless = learner("", "AAL1");
    see(unknown, 3);
    see(nameless, 3);
    EXPECT_EQ(gStands[0].options.size(), 4U);
}

TEST_F(Learned, WaitsLongerForCargoAndHeavyAircraft) {
    const struct {
        bool cargo;
        i32 acClass, gap;
    } kCases[] = {{false, Large, 6}, {false, Heavy, 8}, {true, Heavy, 12}, {true, Large, 12}};
    for (const auto& c : kCases) {
        writeAirport(stand("A1", 0));
        ASSERT_EQ(read(), "");
        LiveAc ac = learner("PH-BXA", "KLM1");
        ac.cargo = c.cargo;
        ac.acClass = c.acClass;
        see(ac, 5);
        see(ac, 5 + c.gap - 1);
        EXPECT_EQ(gStands[0].options.size(), 1U) << c.gap;
        see(ac, 5 + 2 * c.gap - 1);
        EXPECT_EQ(gStands[0].options.size(), 2U) << c.gap;
    }
}

TEST_F(Learned, LeavesTheArchivedHistoryAlone) {
    writeAirport(stand("A1", 0, opt("PH-BXA", "10:12", "KLM1")));
    ASSERT_EQ(read(), "");
    LiveAc ac = learner("PH-BXA", "KLM1");
    see(ac, 20);
    EXPECT_EQ(options(), (Texts{"1 10:12 KLM1+"})) << "the archive says that it is here at other times";
    see(ac, 11);
    EXPECT_EQ(options(), (Texts{"1 10:12 KLM1+", "1 11 KLM1+"}));
}

TEST_F(Learned, KnowsUnderWhichCallsignAFlightLeaves) {
    writeAirport(stand("A1", 0, opt("PH-BXA", "30:33", "KLM1:KLM2") + opt("PH-BXA", "5", "KLM1:KLM9")));
    ASSERT_EQ(read(), "");
    const auto search = [](i32 acClass, i32 halfHour) {
        LiveAc ac = learner("PH-BXA", "KLM2_");
        ac.airline = "KLM";
        ac.acClass = acClass;
        lf_searchForCoupledCsAroundThisTime(HalfHourSlot{1, halfHour}, ac);
        return ac.coupledCs1 + "+" + ac.coupledCs2;
    };
    EXPECT_EQ(search(Large, 20), "KLM1+KLM2");
    EXPECT_EQ(search(Large, 19), "+");
    EXPECT_EQ(search(Heavy, 16), "KLM1+KLM2");
    EXPECT_EQ(search(Heavy, 15), "+");
    EXPECT_EQ(search(Large, 43), "KLM1+KLM2");
    EXPECT_EQ(search(Large, 44), "+");
}

TEST_F(Learned, IsKeptAndMergedAtTheNextVisit) {
    writeAirport(stand("A1", 0, opt("D-AIZA", "7", "DLH1")) + stand("A2", 500) + stand("A3", 900));
    ASSERT_EQ(read(), "");
    LiveAc ac = learner("PH-BXA", "KLM1");
    see(ac, 10);
    gStands[1].radius = 30 / 1852.0;
    gStands[1].radiusChanged = true;
    gStands[1].cargo = gStands[1].cargoChanged = true;
    parking_percentage.current = 65;
    MAX_FIT_FL.current = 3;
    leave();
    const std::string text = learned();
    EXPECT_EQ(text.find("DLH1"), std::string::npos) << "the archive's own";
    EXPECT_EQ(text.find("A3"), std::string::npos) << "nothing new there";
    EXPECT_THAT(
        text, HasSubstr(R"(<parkpos id="A2" radius_change="true" radius="30.0" cargo_change="true" cargo="true" />)"));
    EXPECT_THAT(text, HasSubstr(R"(<opt reg="PH-BXA" day="1" hh="10" cs="KLM1" />)"));
    EXPECT_TRUE(folder.logged("EHAM.xml' saved with 1 update"));
    ASSERT_EQ(read(), "");
    EXPECT_EQ(options(), (Texts{"1 7 DLH1+", "1 10 KLM1+"}));
    EXPECT_EQ(gStands[0].options[1].origin, 0U);
    EXPECT_NEAR(gStands[1].radius * 1852, 30, 1e-9);
    EXPECT_TRUE(gStands[1].cargo && gStands[1].cargoChanged);
    EXPECT_EQ(parking_percentage.current, 65);
    EXPECT_EQ(MAX_FIT.current, 5);
    EXPECT_EQ(gLearnedUpdates, 1U);
}

/// A learned file of this version.
std::string lf_learned(const std::string& version, const std::string& stands, const std::string& parameters = {}) {
    return R"(<root><meta><info name="copyright" value="x"/><info name="version" value=")" + version +
           R"("/></meta><parameters><parameter name="airport_name" value="Schiphol"/>)" + parameters +
           "</parameters><parkpositions>" + stands + "</parkpositions></root>";
}

TEST_F(Learned, OfAnOldVersionLosesItsFlightsButNoSizes) {
    const std::string stands = R"(<parkpos id="A1" radius_change="true" radius="33">)" + opt("PH-BXA", "10", "KLM1") +
                               "</parkpos>" + stand("M", 700, opt("PH-BXA", "9", "KLM1"), R"(manual="true")") +
                               stand("A1", 700, {}, R"(manual="true")") + R"(<parkpos id="gone"/>)";
    for (const bool old : {true, false}) {
        writeAirport(stand("A1", 0));
        writeWhole(gFiles().learnedSimaddon / "EHAM.xml", lf_learned(old ? "11.9.9" : "11.10.0", stands));
        ASSERT_EQ(read(), "");
        ASSERT_EQ(gStands.size(), 2U);
        EXPECT_NEAR(gStands[0].radius * 1852, 33, 1e-9);
        EXPECT_EQ(gStands[0].options.empty(), old);
        EXPECT_TRUE(gStands[1].manual);
        EXPECT_EQ(gStands[1].options.empty(), old);
        leave();
    }
    EXPECT_TRUE(folder.logged("manually created standid A1 already exists in "));
    EXPECT_TRUE(folder.logged("learned stand gone in "));
}

TEST_F(Learned, FileThatIsHandmadeStandsForTheAirport) {
    writeAirport(stand("A1", 0, opt("D-AIZA", "7", "DLH1")));
    writeWhole(gFiles().learnedSimaddon / "EHAM.xml",
               lf_learned("11.0.0", stand("B1", 0, opt("PH-BXA", "10", "KLM1")),
                          R"(<parameter name="handmade" value="true"/><parameter name="altitude" value="99"/>)"));
    ASSERT_EQ(read(), "");
    ASSERT_EQ(gStands.size(), 1U);
    EXPECT_EQ(gStands[0].id, "B1");
    EXPECT_EQ(gStands[0].options.size(), 1U);
    EXPECT_EQ(gAirportAltitude, 99);
    EXPECT_TRUE(head.handmade && gWindow.handmade);
    gStands[0].radiusChanged = true;
    leave();
    EXPECT_THAT(learned(), HasSubstr(R"(heading="90.0" radius="20.0")")) << "all of it, or it loses its place";
    EXPECT_THAT(learned(), HasSubstr("Qf_real"));
}

TEST_F(Learned, FileThatIsDamagedCostsOnlyItself) {
    for (const std::string& damaged :
         {std::string("<root><meta"),
          lf_learned("11.10.5", stand("B1", 0) + stand("B1", 0), R"(<parameter name="handmade" value="true"/>)")}) {
        writeAirport(stand("A1", 0));
        writeWhole(gFiles().learnedSimaddon / "EHAM.xml", damaged);
        ASSERT_EQ(read(), "");
        EXPECT_EQ(gStands.at(0).id, "A1");
        leave();
        EXPECT_EQ(readWhole(gFiles().learnedSimaddon / "EHAM0.xml"), damaged) << "kept aside";
    }
}

TEST_F(Learned, QualityRisesWithWhatIsKnown) {
    writeAirport(stand("A1", 0));
    ASSERT_EQ(read(), "");
    EXPECT_EQ(gf_qualityFactor(), (std::pair<i32, i32>{-1, -1}));
    writeAirport(stand("A1", 0, opt("D-AIZA", "7", "DLH1", R"(soft="1")")) + stand("A2", 500));
    ASSERT_EQ(read(), "");
    EXPECT_EQ(gf_qualityFactor(), (std::pair<i32, i32>{0, 32}));  // (20 + 10000 + 100 + 2) / 2 / 160
    writeAirport(stand("A1", 0, opt("D-AIZA", "0:47", "DLH1") + opt("D-AIZA", "0:47", "DLH1", R"(day="2")")));
    ASSERT_EQ(read(), "");
    EXPECT_EQ(gf_qualityFactor(), (std::pair<i32, i32>{65, 0}));  // (40 + 10000 + 200 + 192) / 160
    EXPECT_EQ(head.qualityReal, 65);
}

TEST_F(Learned, StandOfALiveAircraftIsFoundByPlaceSizeAndFlight) {
    writeAirport(stand("A1", 0, opt("D-AIZA", "7", "DLH1:DLH2")) + stand("H", 0, {}, R"(heli="1")") + stand("A3", 300));
    ASSERT_EQ(read(), "");
    gStands[1].lat = 1;
    const f64 perMetre = 1 / (1852.0 * 60);
    LiveAc ac = learner("D-AIZA", "DLH2");
    ac.model = "A320";
    classHalfSpan[Large] = 18 / 1852.0;
    const auto at = [&](f64 metres, f64 maxDist, bool byFlight) {
        const ParkPos* found = gf_findStand({0, 10 + metres * perMetre}, ac, maxDist / 1852.0, byFlight);
        return found == nullptr ? std::string("none") : found->id;
    };
    EXPECT_EQ(at(54, 55, false), "A1");
    EXPECT_EQ(at(56, 55, false), "none");
    EXPECT_EQ(at(84, 55, true), "A1");
    EXPECT_EQ(at(86, 55, true), "none");
    EXPECT_EQ(at(260, 55, true), "A3") << "what is near goes before the flight's own";
    ac.callsign = "KLM7";
    ac.airline = "KLM";
    EXPECT_EQ(at(84, 55, true), "none");
    ac.airline = "DLH";
    EXPECT_EQ(at(84, 55, true), "A1");
    gStands[0].takenByLive = true;
    EXPECT_EQ(at(0, 55, true), "none");
    EXPECT_EQ(gf_findStand({1, 10}, ac, 55 / 1852.0, false), nullptr) << "a helipad";
    gStands[0].takenByLive = false;
    classHalfSpan[Large] = 25 / 1852.0;
    EXPECT_EQ(at(21, 55, false), "none") << "too narrow";
    EXPECT_EQ(gLearnedUpdates, 0U);
    EXPECT_EQ(at(19, 55, false), "A1");
    EXPECT_NEAR(gStands[0].radius * 1852, 24, 1e-6) << "as wide as it but for a metre";
    EXPECT_TRUE(gStands[0].radiusChanged);
}

}  // namespace
}  // namespace hcr::test
